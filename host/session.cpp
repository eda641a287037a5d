#include "host/session.h"

#include <algorithm>

#include "host/description_text.h"
#include "host/held_argument.h"
#include "host/host.h"
#include "host/overload_choice.h"
#include "host/utf8.h"
#include "host/value_builder.h"
#include "host/value_text.h"
#include "meta_object/type/array.h"
#include "meta_object/type/blob.h"

namespace quenlatrix::host {

namespace {

using meta_object::TypeDesc;
namespace type = meta_object::type;
namespace handler_status = meta_object::handler_status;

std::string NameOf(const ParameterDescription& parameter) { return ToUtf8(parameter.name); }

// What the call's outcome says to the person who made it.
std::string WhyFailed(const std::string& called, const CallOutcome& outcome) {
  const std::string text = ToUtf8(outcome.failureText);
  if (!text.empty()) return called + " failed: " + text;
  return called +
         " was not called: the plug-in could not pass the arguments on, or has no way to carry the "
         "result (status " +
         std::to_string(outcome.status) + "); \"describe\" shows the types of both";
}

struct ElementType {
  TypeDesc::Key key;
  const wchar_t* name;
};

// The nearest Java type that every element with a key has: a walk doesn't tell an Integer from a
// Long.
constexpr ElementType kElementTypes[] = {
    {TypeDesc::Key::Int, L"java.lang.Number"},    {TypeDesc::Key::Real, L"java.lang.Number"},
    {TypeDesc::Key::String, L"java.lang.String"}, {TypeDesc::Key::Char, L"java.lang.Character"},
    {TypeDesc::Key::Bool, L"java.lang.Boolean"},
};

TypeDesc TypeOfElement(const type::Object& element) {
  TypeDesc desc = element.GetMetaItemType();
  if (desc.typeName.getWCharPtr() == nullptr && !desc.arrayInfo) {
    for (const ElementType& row : kElementTypes) {
      if (row.key == desc.key) desc.typeName.assign(row.name);
    }
  }
  return desc;
}

[[noreturn]] void RefuseWalk(BeanObject& bean) {
  throw HostError(ExitStatus::Failed,
                  bean.ClassName() +
                      " can't be walked: expected iterator(), size() and elements that are not "
                      "null, and found one that is missing or failed; \"describe\" shows what it "
                      "has");
}

// An error of the operation is about the word, unless it knows better.
template <typename Operation>
decltype(auto) About(const Word& word, Operation operation) {
  try {
    return operation();
  } catch (HostError& error) {
    if (!error.place) error.place = word.GetPlace();
    throw;
  }
}

}  // namespace

void Report::Fail(ExitStatus newStatus, const std::string& newError) {
  status = newStatus;
  error = newError;
  document["error"] = newError;
}

void Report::Fail(const HostError& newError, std::string_view statement) {
  Fail(newError.exitStatus,
       newError.place ? ShowPlace(newError.what(), statement, *newError.place) : newError.what());
}

Session::Session(Host& host, HeldValues& names, const TextStyle& style)
    : host(host),
      boxes(host),
      names(names),
      loan(names),
      style(style),
      elements(std::make_shared<std::atomic<std::size_t>>(0)) {}

template <typename Operation>
Report Session::Reported(Operation operation) {
  Report report;
  try {
    operation(report);
  } catch (const HostError& error) {
    report.Fail(error, statement);
  } catch (const std::exception& error) {
    report.Fail(ExitStatus::Failed, std::string("it can't be done: ") + error.what());
  }
  loan.End();
  return report;
}

// One call, from its arguments to its outcome.
struct Session::PreparedCall {
  std::string called;  // class and method, for messages
  const MethodDescription* method = nullptr;
  std::vector<ValuePtr> parameters;
  std::vector<std::string> parameterTexts;  // of arrays, as they went out
  CallOutcome outcome;
};

ObjectView Session::View(const type::Object& value, const std::string& letName) {
  ObjectView view;
  std::optional<BeanObject> object = BeanObject::FromValue(host, value);
  if (!object) return view;
  view.className = object->ClassName();
  if (const std::optional<WideString> text = object->ToText()) view.text = ToUtf8(*text);
  view.heldName = letName.empty() ? names.NameOf(object->GetHandler()) : letName;
  return view;
}

BeanObject Session::Make(const Word& className, Report& report) {
  Host::Creation creation = host.Create(className.text);
  if (!creation.object) {
    report.document["status"] = creation.status;
    throw HostError(ExitStatus::Failed, creation.text, className.GetPlace());
  }
  return std::move(*creation.object);
}

BeanObject& Session::GetObject(const Word& name) {
  return About(name, [&]() -> BeanObject& { return loan.GetObject(name.text); });
}

const std::vector<MethodDescription>& Session::MethodsOf(BeanObject& bean) {
  if (const std::vector<MethodDescription>* methods = bean.Methods()) return *methods;
  throw HostError(ExitStatus::Failed, "the methods of class " + bean.ClassName() +
                                          " can't be learnt: its introspection failed; see whether "
                                          "all classes that it needs are on the class path");
}

Report Session::New(const Word& name, const Word& className) {
  return Reported([&](Report& report) {
    report.document["name"] = name.text;
    report.document["class"] = className.text;
    About(name, [&] { loan.RequireFree(name.text); });
    Held bean;
    bean.object = Make(className, report);
    report.document["class"] = bean.object->ClassName();
    report.document["status"] = handler_status::kSuccess;
    About(name, [&] { loan.Keep(name.text, std::move(bean)); });
  });
}

void Session::DescribeBean(BeanObject& bean, Report& report) {
  const std::vector<MethodDescription>& methods = MethodsOf(bean);
  const ObjectDescription description = bean.Describe();
  report.document = DescriptionDocument(bean.ClassName(), description, methods);
  report.text = DescriptionText(bean.ClassName(), description, methods, style);
}

Report Session::Describe(const Word& nameOrClass) {
  return Reported([&](Report& report) {
    report.document["class"] = nameOrClass.text;
    if (loan.Find(nameOrClass.text) != nullptr) {
      DescribeBean(GetObject(nameOrClass), report);
      return;
    }
    BeanObject bean = Make(nameOrClass, report);
    DescribeBean(bean, report);
  });
}

void Session::Prepare(BeanObject& bean, const CallRequest& request, PreparedCall& call) {
  std::vector<Argument> arguments;
  for (const Argument& argument : request.arguments) {
    const Word word{argument.source, argument.at};
    arguments.push_back(About(word, [&] { return Resolve(host, argument, loan); }));
  }
  call.method = &ChooseMethod(MethodsOf(bean), bean.ClassName(), request.method, arguments);
  call.called = ToSourceForm(bean.ClassName()) + "." + ToSourceForm(*call.method);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const ParameterDescription& parameter = call.method->parameters[i];
    call.parameters.push_back(BuildValue(arguments[i], parameter, boxes));
    call.parameterTexts.push_back(
        parameter.type.arrayInfo
            ? ValueText(call.parameters.back().get(), parameter.type,
                        [this](const type::Object& value) { return View(value, {}); })
            : std::string());
  }
}

void Session::KeepResult(const Word& letName, PreparedCall& call) {
  if (!call.outcome.result) {
    const bool isVoid = call.method->returnType.key == TypeDesc::Key::Void;
    throw HostError(ExitStatus::Failed,
                    "\"let\" needs a result to keep; " + call.called +
                        (isVoid ? " gives none" : " gave null or an empty array") + ", and \"" +
                        letName.text + "\" is as it was");
  }
  Held result;
  result.type = call.method->returnType;
  result.object = BeanObject::FromValue(host, *call.outcome.result);
  if (result.object) {
    // Learnt now, so that the copies which statements take know it, and none sets the identity of
    // a handler that others use. What fails here fails again where it is needed.
    result.object->Introspect();
  } else {
    result.value = std::move(call.outcome.result);
  }
  loan.Keep(letName.text, std::move(result));
}

void Session::ReportCall(const std::string& letName, PreparedCall& call, Report& report) {
  const MethodDescription& method = *call.method;
  const ObjectViewer view = [this](const type::Object& value) { return View(value, {}); };
  const ObjectViewer viewResult = [&](const type::Object& value) {
    const bool isItself = &value == call.outcome.result.get();
    return View(value, isItself ? letName : std::string());
  };
  Document& document = report.document;
  document["method"] = ToUtf8(method.id);
  document["status"] = call.outcome.status;
  document["statusCode"] = call.outcome.statusCode;
  document["description"] = ToUtf8(call.outcome.description);
  document["failureText"] = ToUtf8(call.outcome.failureText);
  document["result"] = ValueDocument(call.outcome.result.get(), method.returnType, viewResult);
  document["parameters"] = Document::array();
  for (std::size_t i = 0; i < call.parameters.size(); ++i) {
    document["parameters"].push_back(
        ValueDocument(call.parameters[i].get(), method.parameters[i].type, view));
  }
  if (call.outcome.status != handler_status::kSuccess) {
    throw HostError(ExitStatus::Failed, WhyFailed(call.called, call.outcome));
  }
  if (method.returnType.key != TypeDesc::Key::Void) {
    report.text = letName + (letName.empty() ? "" : " = ") +
                  ValueText(call.outcome.result.get(), method.returnType, viewResult) + "\n";
  }
  for (std::size_t i = 0; i < call.parameters.size(); ++i) {
    if (!method.parameters[i].type.arrayInfo) continue;
    const std::string text = ValueText(call.parameters[i].get(), method.parameters[i].type, view);
    if (text != call.parameterTexts[i]) {
      report.text += NameOf(method.parameters[i]) + " = " + text + "\n";
    }
  }
}

// A held array that went in as it is holds afterwards what the method left in it, as in Java.
void Session::KeepArrays(const CallRequest& request, PreparedCall& call) {
  for (std::size_t i = 0; i < request.arguments.size(); ++i) {
    const Argument& argument = request.arguments[i];
    if (argument.kind != Argument::Kind::Reference) continue;
    const Held* before = loan.Find(argument.text);
    const auto* array = dynamic_cast<const type::Array*>(call.parameters[i].get());
    if (before == nullptr || !before->value || array == nullptr || array->GetItemCount() < 1) {
      continue;
    }
    if (JavaTypeOf(before->type) == JavaTypeOf(call.method->parameters[i].type)) {
      Held after;
      after.type = before->type;
      after.value = std::move(call.parameters[i]);
      loan.Keep(argument.text, std::move(after));
    }
  }
}

void Session::Call(BeanObject& bean, const CallRequest& request, const Word& letName,
                   Report& report) {
  if (!letName.text.empty()) About(letName, [&] { loan.RequireFree(letName.text); });
  PreparedCall call;
  Prepare(bean, request, call);
  call.outcome = bean.Call(*call.method, call.parameters);
  // What a void method gives is a value too, but no result.
  if (call.method->returnType.key == TypeDesc::Key::Void) call.outcome.result.reset();
  // Shown before it is kept: keeping may release what went in.
  ReportCall(letName.text, call, report);
  KeepArrays(request, call);
  if (!letName.text.empty()) KeepResult(letName, call);
}

Report Session::CallHeld(const Word& name, const CallRequest& request) {
  return Reported([&](Report& report) { Call(GetObject(name), request, {}, report); });
}

Report Session::Let(const Word& name, const Word& beanName, const CallRequest& request) {
  return Reported([&](Report& report) { Call(GetObject(beanName), request, name, report); });
}

Report Session::CallClass(const Word& className, const CallRequest& request) {
  return Reported([&](Report& report) {
    BeanObject bean = Make(className, report);
    Call(bean, request, {}, report);
  });
}

void Session::WalkBean(BeanObject& bean, int skip, Report& report) {
  *elements = 0;
  const WalkOutcome outcome = bean.Walk(skip);
  Document items = Document::array();
  const ObjectViewer view = [this](const type::Object& value) { return View(value, {}); };
  for (const ValuePtr& item : outcome.items) {
    const TypeDesc desc = item ? TypeOfElement(*item) : TypeDesc();
    items.push_back(ValueDocument(item.get(), desc, view));
    report.text += ValueText(item.get(), desc, view) + "\n";
    ++*elements;
  }
  report.document["size"] = outcome.size;
  report.document["items"] = std::move(items);
  if (outcome.status != handler_status::kSuccess) RefuseWalk(bean);
}

Report Session::Walk(const Word& name, int skip) {
  return Reported([&](Report& report) { WalkBean(GetObject(name), skip, report); });
}

Report Session::WalkClass(const Word& className, int skip) {
  return Reported([&](Report& report) {
    BeanObject bean = Make(className, report);
    WalkBean(bean, skip, report);
  });
}

Report Session::Size(const Word& name) {
  return Reported([&](Report& report) {
    BeanObject& bean = GetObject(name);
    int size = 0;
    if (bean.CollectionSize(size) != handler_status::kSuccess) RefuseWalk(bean);
    report.document["size"] = size;
    report.text = std::to_string(size) + "\n";
  });
}

Report Session::Release(const Word& name) {
  return Reported([&](Report& report) {
    report.document["name"] = name.text;
    report.document["status"] = About(name, [&] { return loan.Release(name.text); });
  });
}

}  // namespace quenlatrix::host

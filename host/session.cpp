#include "host/session.h"

#include <algorithm>

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
  return called + " was not called: the plug-in could not pass the arguments on (status " +
         std::to_string(outcome.status) + "); \"describe\" shows what each parameter takes";
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

}  // namespace

void Report::Fail(ExitStatus newStatus, const std::string& newError) {
  status = newStatus;
  error = newError;
  document["error"] = newError;
}

template <typename Operation>
Report Session::Reported(Operation operation) {
  Report report;
  try {
    operation(report);
  } catch (const HostError& error) {
    report.Fail(error.exitStatus, error.what());
  } catch (const std::exception& error) {
    report.Fail(ExitStatus::Failed, std::string("it can't be done: ") + error.what());
  }
  host.Collect();
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
  view.heldName = letName.empty() ? held.NameOf(object->GetHandler()) : letName;
  return view;
}

BeanObject Session::Make(const std::string& className, Report& report) {
  Host::Creation creation = host.Create(className);
  if (!creation.object) {
    report.document["status"] = creation.status;
    throw HostError(ExitStatus::Failed, creation.text);
  }
  return std::move(*creation.object);
}

const std::vector<MethodDescription>& Session::MethodsOf(BeanObject& bean) {
  if (const std::vector<MethodDescription>* methods = bean.Methods()) return *methods;
  throw HostError(ExitStatus::Failed, "the methods of class " + bean.ClassName() +
                                          " can't be learnt: its introspection failed; see whether "
                                          "all classes that it needs are on the class path");
}

Report Session::New(const std::string& name, const std::string& className) {
  return Reported([&](Report& report) {
    report.document["name"] = name;
    report.document["class"] = className;
    Held bean;
    bean.object = Make(className, report);
    report.document["class"] = bean.object->ClassName();
    report.document["status"] = handler_status::kSuccess;
    held.Keep(name, std::move(bean));
  });
}

void Session::DescribeBean(BeanObject& bean, Report& report) {
  const std::vector<MethodDescription>& methods = MethodsOf(bean);
  const ObjectDescription description = bean.Describe();
  report.document = DescriptionDocument(bean.ClassName(), description, methods);
  report.text = DescriptionText(bean.ClassName(), description, methods);
}

Report Session::Describe(const std::string& nameOrClass) {
  return Reported([&](Report& report) {
    report.document["class"] = nameOrClass;
    if (held.Find(nameOrClass) != nullptr) {
      DescribeBean(held.GetObject(nameOrClass), report);
      return;
    }
    BeanObject bean = Make(nameOrClass, report);
    DescribeBean(bean, report);
  });
}

void Session::Prepare(BeanObject& bean, const CallRequest& request, PreparedCall& call) {
  std::vector<Argument> arguments;
  for (const Argument& argument : request.arguments) arguments.push_back(held.Resolve(argument));
  call.called = bean.ClassName() + "." + request.method.name;
  call.method = &ChooseMethod(MethodsOf(bean), bean.ClassName(), request.method, arguments);
  call.called = bean.ClassName() + "." + ToSourceForm(*call.method);
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

void Session::KeepResult(const std::string& letName, PreparedCall& call) {
  if (!call.outcome.result) {
    const bool isVoid = call.method->returnType.key == TypeDesc::Key::Void;
    throw HostError(ExitStatus::Failed,
                    "\"let\" needs a result to keep; " + call.called +
                        (isVoid ? " gives none" : " gave null or an empty array") + ", and \"" +
                        letName + "\" is as it was");
  }
  Held result;
  result.type = call.method->returnType;
  result.object = BeanObject::FromValue(host, *call.outcome.result);
  if (result.object) {
    held.Keep(letName, std::move(result));
    return;
  }
  result.value = std::move(call.outcome.result);
  held.Keep(letName, std::move(result));
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
    Held* target = held.Find(argument.text);
    const auto* array = dynamic_cast<const type::Array*>(call.parameters[i].get());
    if (target == nullptr || !target->value || array == nullptr || array->GetItemCount() < 1) {
      continue;
    }
    if (JavaTypeOf(target->type) == JavaTypeOf(call.method->parameters[i].type)) {
      target->value = std::move(call.parameters[i]);
    }
  }
}

void Session::Call(BeanObject& bean, const CallRequest& request, const std::string& letName,
                   Report& report) {
  PreparedCall call;
  Prepare(bean, request, call);
  call.outcome = bean.Call(*call.method, call.parameters);
  // What a void method gives is a value too, but no result.
  if (call.method->returnType.key == TypeDesc::Key::Void) call.outcome.result.reset();
  // Shown before it is kept: keeping may release the bean and what went in.
  ReportCall(letName, call, report);
  KeepArrays(request, call);
  if (!letName.empty()) KeepResult(letName, call);
}

Report Session::CallHeld(const std::string& name, const CallRequest& request) {
  return Reported([&](Report& report) { Call(held.GetObject(name), request, {}, report); });
}

Report Session::Let(const std::string& name, const std::string& beanName,
                    const CallRequest& request) {
  return Reported([&](Report& report) { Call(held.GetObject(beanName), request, name, report); });
}

Report Session::CallClass(const std::string& className, const CallRequest& request) {
  return Reported([&](Report& report) {
    BeanObject bean = Make(className, report);
    Call(bean, request, {}, report);
  });
}

void Session::WalkBean(BeanObject& bean, int skip, Report& report) {
  const WalkOutcome outcome = bean.Walk(skip);
  Document items = Document::array();
  const ObjectViewer view = [this](const type::Object& value) { return View(value, {}); };
  for (const ValuePtr& item : outcome.items) {
    const TypeDesc desc = item ? TypeOfElement(*item) : TypeDesc();
    items.push_back(ValueDocument(item.get(), desc, view));
    report.text += ValueText(item.get(), desc, view) + "\n";
  }
  report.document["size"] = outcome.size;
  report.document["items"] = std::move(items);
  if (outcome.status != handler_status::kSuccess) RefuseWalk(bean);
}

Report Session::Walk(const std::string& name, int skip) {
  return Reported([&](Report& report) { WalkBean(held.GetObject(name), skip, report); });
}

Report Session::WalkClass(const std::string& className, int skip) {
  return Reported([&](Report& report) {
    BeanObject bean = Make(className, report);
    WalkBean(bean, skip, report);
  });
}

Report Session::Size(const std::string& name) {
  return Reported([&](Report& report) {
    BeanObject& bean = held.GetObject(name);
    int size = 0;
    if (bean.CollectionSize(size) != handler_status::kSuccess) RefuseWalk(bean);
    report.document["size"] = size;
    report.text = std::to_string(size) + "\n";
  });
}

Report Session::Release(const std::string& name) {
  return Reported([&](Report& report) {
    report.document["name"] = name;
    report.document["status"] = held.Release(name);
  });
}

}  // namespace quenlatrix::host

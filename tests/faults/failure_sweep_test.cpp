#include "tests/faults/failure_sweep.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <regex>
#include <sstream>

#include "meta_object/handlers/bean/class_path.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/type/array.h"
#include "tests/faults/faulty_allocations.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using meta_object::Handler;
using meta_object::HandlerStatus;
using Action = FailureSweep::Action;
using Scenario = FailureSweep::Scenario;

std::string TextOf(HandlerStatus answer, const std::string& success) {
  return answer == status::kSuccess ? success : "failed: " + std::to_string(answer);
}

// What a test reads of an outcome runs in the plug-in as well.
template <class Work>
std::string Unhindered(Work&& work) {
  const FaultyAllocations none(false);
  return work();
}

std::string Read(const type::Object* value) {
  return Unhindered([value] { return Show(value); });
}

auto Promised(const std::string& outcomes) {
  return [outcomes](const std::string&) { return outcomes; };
}

TEST_F(FailureSweep, ThePluginIsStartedOrNot) {
  Unload();
  bool hasFailed = true;
  for (int faultAt = 0; hasFailed; ++faultAt) {
    const PluginImage image;
    FaultyAllocations::Watch(image.handle);
    image.SetEnvironment(&host.environment);
    bool isStarted = false;
    {
      const FaultyJni counter(
          Env(), [](JNINativeInterface_&) {}, faultAt);
      const FaultyAllocations counted(true);
      EXPECT_NO_THROW(isStarted = image.InitHandler(image.handle));
      hasFailed = counter.HasFailed();
    }
    EXPECT_EQ(isStarted, !hasFailed);
    EXPECT_TRUE(image.InitHandler(image.handle));
    EXPECT_EQ(Utf8(image.GetHandlerInfo()->handlerType), "JAVABEAN");
  }
  EXPECT_EQ(FaultyAllocations::Live(), 0U);
}

TEST_F(FailureSweep, ABeanIsMadeOrNot) {
  Sweep({"create", [](FailureSweep& sweep) -> Action {
           return [&sweep] {
             Handler* const bean = sweep.Keep();
             if (bean == nullptr) return std::string("failed");
             const HandlerStatus answer = bean->CreateObject("JAVABEAN://beans.Point", nullptr);
             EXPECT_EQ(bean->IsValidObject(), answer == status::kSuccess);
             return TextOf(answer, "made");
           };
         }});
}

TEST_F(FailureSweep, ABeanIsReleased) {
  Sweep({"release", [](FailureSweep& sweep) -> Action {
           return [&bean = sweep.Make("beans.Point")] {
             EXPECT_EQ(bean.Release(), status::kLastReferenceReleased);
             EXPECT_FALSE(bean.IsValidObject());
             return "released";
           };
         }});
}

std::string Catalogue(const meta_object::info::cache::CachedObjectInfo& info) {
  std::string text;
  for (const auto* method : info.methods) {
    text += Utf8(method->returnType.typeName) + " " + Utf8(method->name) + "(";
    for (int i = 0; method->GetParamInfo(i) != nullptr; ++i) {
      text += Utf8(method->GetParamInfo(i)->type.typeName) + " ";
      text += Utf8(method->GetParamInfo(i)->name) + ",";
    }
    text += ");";
  }
  return text;
}

Scenario Introspection(const std::string& className, const std::string& lesserCatalogues) {
  return {"introspect " + className,
          [className](FailureSweep& sweep) -> Action {
            return [&host = sweep.host, &bean = sweep.Make(className), className] {
              const HandlerStatus answer = bean.OpenIntrospect(nullptr);
              EXPECT_EQ(bean.CloseIntrospect(), status::kSuccess);
              const bool isDone = std::ranges::count(host.log, "done") == 1;
              EXPECT_EQ(isDone, answer == status::kSuccess);
              return TextOf(answer, Catalogue(host.cache[className].info));
            };
          },
          Promised(lesserCatalogues)};
}

// The Java side's answer 0 means that it has nothing to tell, an exception of its own as well: the
// properties, the methods or one method's parameters are left out.
TEST_F(FailureSweep, AClassIsCatalogued) {
  Sweep(Introspection("beans.PlainProperty",
                      "int paint\\(java.lang.String param1,int param2,\\);|"
                      "int getColor\\(\\); setColor\\(int color,\\);"
                      "java.lang.String getName\\(\\); setName\\(java.lang.String name,\\);"
                      "(int paint\\(\\);)?"));
  Sweep(Introspection("beans.ManyMethods50",
                      "((java.lang.String method\\d+\\((int param1,java.lang.String param2,)?\\);)"
                      "{50})?"));
}

// Asks for a record, tells what is in it and gives it back.
template <class Record>
std::string Told(Handler& bean, auto ask, auto tell) {
  Record* record = nullptr;
  const HandlerStatus answer = ask(record);
  const std::string text = record == nullptr ? "" : tell(*record);
  bean.Release(record);
  return TextOf(answer, text);
}

std::string ToldText(auto ask) {
  WideString text;
  const HandlerStatus answer = ask(text);
  return TextOf(answer, Utf8(text));
}

// A text keeps its narrow form, made in the plug-in: a new one each time.
WideString Paint() { return WideString("Invoke:paint:4"); }

TEST_F(FailureSweep, AClassIsDescribed) {
  namespace info = meta_object::info;
  using Ask = std::string (*)(Handler&);
  const std::pair<const char*, Ask> questions[] = {
      {"methods",
       [](Handler& bean) {
         return Told<std::list<WideString>>(
             bean, [&](auto& ids) { return bean.GetMethodIDs(ids); },
             [](const auto& ids) {
               std::string text;
               for (const WideString& id : ids) text += Utf8(id) + ";";
               return text;
             });
       }},
      {"method",
       [](Handler& bean) {
         return Told<info::MethodInfo>(
             bean, [&](auto& method) { return bean.GetMethodInfo(Paint(), ~0UL, method, 1); },
             [](const auto& method) { return Utf8(method.methodId) + Utf8(method.name); });
       }},
      {"parameter",
       [](Handler& bean) {
         return Told<info::ParamInfo>(
             bean, [&](auto& param) { return bean.GetParamInfo(Paint(), 0, ~0UL, param, 1); },
             [](const auto& param) { return Utf8(param.name) + Utf8(param.type.typeName); });
       }},
      {"object",
       [](Handler& bean) {
         return Told<info::ObjectInfo>(
             bean, [&](auto& object) { return bean.GetObjectInfo(object, nullptr, true); },
             [](const auto& object) {
               std::string text = Utf8(object.description);
               for (const auto* p : object.properties) text += Utf8(p->name) + Utf8(p->value);
               return text;
             });
       }},
      {"bare name",
       [](Handler& bean) {
         auto kind = meta_object::MethodType::Invoke;
         return ToldText([&](auto& text) { return bean.ParseMethodID(Paint(), text, kind, true); });
       }},
      {"identifier",
       [](Handler& bean) {
         auto kind = meta_object::MethodType::Invoke;
         return ToldText([&](auto& text) {
           return bean.BuildMethodID(text, WideString("paint"), kind, nullptr, true);
         });
       }},
      {"native type",
       [](Handler& bean) {
         WideString keyword("TEXT");
         return ToldText([&](auto& text) { return bean.BuildNativeType(keyword, text, true); });
       }},
      {"identity",
       [](Handler& bean) {
         bean.SetObjectIdentity(meta_object::Identity("JAVABEAN://beans.PlainProperty"));
         return std::to_string(bean.IsHandlerAvailable("JAVABEAN://beans.Point"));
       }},
  };
  for (const auto& [name, ask] : questions) {
    Sweep({name, [ask](FailureSweep& sweep) -> Action {
             Handler& bean = sweep.Make("beans.PlainProperty");
             sweep.Introspect(bean);
             return [ask, &bean] { return ask(bean); };
           }});
  }
}

// Calls the method; the text tells the result and what has come back in arrays.
std::string CallText(Handler& bean, const std::string& method, const std::string& returnType,
                     const Values& values) {
  const CallOutcome outcome = OpenCall(bean, method, returnType, values).Invoke();
  std::string text = Unhindered([&] { return outcome.Text(); });
  for (const auto& value : values) {
    auto* const array = dynamic_cast<type::Array*>(value.get());
    if (array != nullptr) text += " of " + Read(array);
    for (int i = 0; array != nullptr && i < array->GetItemCount(); ++i) {
      type::Object* const item = array->GetItemAt(static_cast<unsigned int>(i));
      if (item != nullptr) item->ReleaseItem();
    }
    value->ReleaseItem();
  }
  return outcome.status == status::kSuccess ? text : "failed: " + text;
}

struct CallCase {
  std::string bean;
  std::string method;
  std::string returnType;
  std::vector<std::pair<std::string, std::wstring>> params;
  std::string promised = {};
  std::string thrown = {};  // what the bean throws, whose text is all that comes of the call
};

Scenario Calling(const CallCase& c) {
  return {c.method + " " + c.returnType,
          [c](FailureSweep& sweep) -> Action {
            return [c, &bean = sweep.Make("beans." + c.bean)] {
              const std::string text = CallText(bean, c.method, c.returnType, ValuesOf(c.params));
              const bool hasThrown = text == "failed: failed: Java Exception: " + c.thrown;
              return hasThrown ? c.thrown : text;
            };
          },
          Promised(c.promised)};
}

struct Kind {
  std::string type;
  std::wstring text;
  std::string withoutText = {};
};

const Kind kPrimitives[] = {{"boolean", L"true"}, {"byte", L"5"},    {"char", L"c"},
                            {"short", L"5"},      {"int", L"5"},     {"long", L"5"},
                            {"float", L"1.5"},    {"double", L"1.5"}};
const Kind kTexts[] = {{"Boolean", L"true", "Bool false"}, {"Byte", L"5", "Int 0"},
                       {"Character", L"c", "Char "},       {"Short", L"5", "Int 0"},
                       {"Integer", L"5", "Int 0"},         {"Long", L"5", "Int 0"},
                       {"Float", L"1.5", "Real 0.0+"},     {"Double", L"1.5", "Real 0.0+"}};

// A result without its toString() text is an empty one; an object that can't be held is none.
TEST_F(FailureSweep, ScalarsAndObjectsArePassed) {
  for (const auto& [type, text, none] : kPrimitives) {
    std::string method = "echo" + type;
    method[4] = static_cast<char>(method[4] - 'a' + 'A');
    Sweep(Calling({"ScalarEcho", method, type, {{type, text}}}));
  }
  for (const auto& [name, text, withoutText] : kTexts) {
    const std::string type = "java.lang." + name;
    Sweep(Calling({"ScalarEcho", "echo", type, {{type, text}}, withoutText}));
  }
  const std::string string = "java.lang.String";
  const CallCase others[] = {
      {"ScalarEcho", "nothing", "void", {}},
      {"ScalarEcho", "echoString", string, {{string, L"a"}}, "String "},
      {"Texts", "length", "int", {{string, L""}}},
      {"ObjectTaker", "takesForty", "int", {40, {string, L"a"}}},
      {"ObjectReturner", "next", "beans.ObjectReturner", {}, "null"},
      {"ObjectReturner", "textAsObject", "java.lang.Object", {}, "null"},
      {"ThrowingMethods",
       "unchecked",
       "void",
       {},
       "",
       "java.lang.IllegalArgumentException: unchecked"},
      {"ThrowingMethods",
       "checked",
       "int",
       {{string, L"a"}},
       "",
       "beans.ThrowingMethods$CheckedException: a"},
  };
  for (const CallCase& c : others) Sweep(Calling(c));
}

// Of "KEY [a,b] of KEY [a,b]": a result that is none, a parameter that is emptied and not filled
// again, and elements, each of which may be missing or, for `empty`, without its text.
std::string LesserArrays(const std::string& whole, const std::string& empty) {
  std::string array = whole.substr(whole.find(" of ") + 4);
  const std::string key = array.substr(0, array.find(' '));
  array.erase(0, array.find('['));
  array = std::regex_replace(array, std::regex("[[\\]]"), "\\$&");
  std::ostringstream element;
  element << "($&|-" << empty << ")";
  array = std::regex_replace(array, std::regex("[\\w.]+"), element.str());
  std::ostringstream lesser;
  lesser << "(null|" << key << " " << array << ") of " << key << " (" << array << "|\\[?\\]?\\])";
  return lesser.str();
}

TEST_F(FailureSweep, ArraysArePassed) {
  const auto echo = [this](const std::string& type, const std::wstring& text,
                           const std::string& empty) {
    Scenario scenario = Calling({"ArrayEcho", "echo", type, {{type, text}}});
    scenario.promised = [empty](const std::string& whole) { return LesserArrays(whole, empty); };
    Sweep(scenario);
  };
  for (const auto& [type, text, none] : kPrimitives) {
    std::wstring row = text;
    row.append(L",").append(text);
    echo(type + "[]", row, "");
    echo(type + "[][]", std::wstring(row).append(L";").append(row), "");
  }
  echo("java.lang.String[]", L"a,b", "|");
  echo("java.lang.String[][]", L"a,b;c,d", "|");
  echo("java.lang.Integer[]", L"5,6", "|0");
  Sweep(Calling({"ArrayMaker",
                 "pointsWithNull",
                 "beans.Point[]",
                 {},
                 "null|Object \\[(beans.Point|-),-,(beans.Point|-)\\]"}));
}

std::unique_ptr<type::Object> HoldTwice(Handler& point) {
  auto array = MakeValue("beans.Point[]", L"-,-");
  for (const unsigned int i : {0U, 1U}) {
    dynamic_cast<type::Array&>(*array).SetItemAt(HoldObject(point, "beans.Point").release(), i);
  }
  return array;
}

TEST_F(FailureSweep, ObjectsArePassed) {
  using Hold = std::unique_ptr<type::Object> (*)(Handler&);
  const auto taking = [](const char* method, Hold hold, const char* promised) -> Scenario {
    return {method,
            [method, hold](FailureSweep& sweep) -> Action {
              return [method, hold, &taker = sweep.Make("beans.ObjectTaker"),
                      &point = sweep.Make("beans.Point")] {
                return CallText(taker, method, "int", ValuesOf(hold(point)));
              };
            },
            Promised(promised)};
  };
  Sweep(taking(
      "takesPoint", [](Handler& point) { return HoldObject(point, "beans.Point"); }, ""));
  // The bean counts a missing point as a million.
  Sweep(taking("takesPoints", HoldTwice,
               "Int (0|1000000) of Object (\\[(beans.Point|-),(beans.Point|-))?\\]"));
}

// Of the size, the items after the first and, anew, all items: the size of a collection that
// doesn't tell it, an item that wasn't skipped, and items without their text.
TEST_F(FailureSweep, ACollectionIsWalked) {
  const auto walk = [](Handler& bean) {
    meta_object::context::CollectionContext context;
    std::list<type::Object*> items;
    int size = -1;
    const HandlerStatus answers[] = {
        bean.OpenCollection(context),  bean.GetCollectionSize(context, size),
        bean.SkipItems(context, 1),    bean.GetNextItems(context, 0, items, nullptr),
        bean.ResetCollection(context), bean.GetNextItems(context, 0, items, nullptr),
        bean.CloseCollection(context)};
    std::string text = std::to_string(size);
    for (type::Object* item : items) {
      text += " " + Read(item);
      item->ReleaseItem();
      bean.Release(item);
    }
    const auto* const failed = std::ranges::find_if(answers, [](auto a) { return a != 0; });
    return TextOf(failed == std::end(answers) ? status::kSuccess : *failed, text);
  };
  Sweep({"walk",
         [walk](FailureSweep& sweep) -> Action {
           return [walk, &bean = sweep.Make("beans.ThreeStrings")] { return walk(bean); };
         },
         Promised("[03]( String one)? String (two)? String (three)?"
                  " String (one)? String (two)? String (three)?")});
}

// A count beyond the names tells that the search has ended early.
TEST_F(FailureSweep, BeansAreDiscovered) {
  const auto discover = [](JNIEnv* env) {
    std::list<char*> names;
    const int count = meta_object::handlers::bean::GetBeanNames(
        env, TestVm::Jar("test_beans.jar").c_str(), names);
    std::string text = count == 0 || count != std::ssize(names) ? "failed" : "";
    for (const char* name : names) {
      text += std::string(" ") + name;
      delete[] name;
    }
    return text;
  };
  Sweep({"discover", [discover](FailureSweep&) -> Action {
           return [discover, env = TestVm::Env()] { return discover(env); };
         }});
}

}  // namespace
}  // namespace quenlatrix::test

#include <thread>

#include "meta_object/handlers/bean/bean_method_invoke.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {
namespace {

namespace bean = meta_object::handlers::bean;
namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using meta_object::Handler;
using testing::HasSubstr;
using testing::StartsWith;

class InvocationTest : public PluginTest {};

Values One(const std::string& javaType, const wchar_t* text) {
  Values values;
  values.push_back(MakeValue(javaType, text));
  return values;
}

Values One(std::unique_ptr<type::Object> value) {
  Values values;
  values.push_back(std::move(value));
  return values;
}

TEST_F(InvocationTest, TheSignatureOfTheValuesPicksTheOverload) {
  Handler& overloads = Make("beans.Overloads");
  const std::pair<std::vector<std::pair<std::string, const wchar_t*>>, const char*> cases[] = {
      {{}, "none"},
      {{{"int", L"5"}}, "int 5"},
      {{{"long", L"5"}}, "long 5"},
      {{{"double", L"5"}}, "double 5.0"},
      {{{"java.lang.Integer", L"5"}}, "Integer 5"},
      {{{"java.lang.String", L"5"}}, "String 5"},
      {{{"int[]", L"5"}}, "int[] 1"},
      {{{"int[][]", L"5;6"}}, "int[][] 2"},
      {{{"int", L"1"}, {"java.lang.String", L"a"}}, "int, String 1a"},
      {{{"java.lang.String", L"a"}, {"int", L"1"}}, "String, int a1"},
  };
  for (const auto& [params, expected] : cases) {
    Values values;
    for (const auto& [javaType, text] : params) {
      values.push_back(MakeValue(javaType, text));
    }
    EXPECT_EQ(Call(overloads, "which", "java.lang.String", values).Text(),
              std::string("String ") + expected);
  }
}

TEST_F(InvocationTest, WhatCannotBeCalledFailsWithoutAnException) {
  Handler& echo = Make("beans.ScalarEcho");
  const std::string failed = "failed: JavaBean method call failed";
  struct Case {
    const char* method;
    const char* returnType;
    const char* paramType;
    const wchar_t* text;
    std::string answer;
  };
  const Case cases[] = {
      {"noSuchMethod", "int", "int", L"1", failed},
      {"echoInt", "long", "int", L"1", failed},
      {"echoInt", "int", "long", L"1", failed},
      {"echoInt", "array of int", "int", L"1", "Int 1"},
      {"<init>", "void", "int", L"1", failed},
      {"<clinit>", "void", "int", L"1", failed},
      {"", "int", "int", L"1", "refused"},
      {"echoInt", "int", "int", L"", "refused"},
      {"echoInt", "int", "", L"1", "refused"},
      {"echoInt", "int", "java.util.List", L"", "refused"},
      {"echoInt", "int", "java.lang.Integer", L"", "refused"},
      {"echo", "java.lang.Integer", "java.lang.Integer", L"no number", "refused"},
      {"echo", "java.lang.Date", "java.lang.Date", L"2000-01-01", "refused"},
      {"echoInt", "int[][][]", "int", L"1", "refused"},
      {"echoInt\xC3\xA9", "int", "int", L"1", failed},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Call(echo, c.method, c.returnType, One(c.paramType, c.text)).Text(), c.answer)
        << c.method << " " << c.returnType << " " << c.paramType;
  }
  EXPECT_EQ(Call(echo, "<init>", "void", {}).Text(), failed);
  EXPECT_EQ(Call(echo, "nothing", "", {}).Text(), "Void ");
  EXPECT_EQ(Call(echo, "nothing", "", One(nullptr)).Text(), "refused");
  EXPECT_EQ(Call(NewHandler(), "toString", "java.lang.String", {}).Text(), failed);
}

TEST_F(InvocationTest, EveryKindOfThrowableBecomesAText) {
  Handler& throwing = Make("beans.ThrowingMethods");
  struct Case {
    const char* method;
    const char* returnType;
    const char* text;
  };
  const Case cases[] = {
      {"unchecked", "void", "java.lang.IllegalArgumentException: unchecked"},
      {"error", "java.lang.String", "java.lang.AssertionError: error"},
      {"nullMessage", "java.lang.Object", "java.lang.IllegalStateException"},
      {"unprintable", "int", ""},
      {"nullText", "int", ""},
      {"stackOverflow", "int", "java.lang.StackOverflowError"},
      {"outOfMemory", "long[]", "java.lang.OutOfMemoryError"},
  };
  for (const Case& c : cases) {
    const CallOutcome outcome = Call(throwing, c.method, c.returnType, {});
    EXPECT_THAT(outcome.Text(), StartsWith(std::string("failed: Java Exception: ") + c.text));
    if (*c.text == '\0') {
      EXPECT_EQ(outcome.Text(), "failed: Java Exception: ");
    }
    EXPECT_EQ(Utf8(outcome.record.description), std::string("Method: ") + c.method);
  }
  EXPECT_EQ(Call(throwing, "checked", "int", One("java.lang.String", L"gr\u00F6\u00DFer  ")).Text(),
            "failed: Java Exception: beans.ThrowingMethods$CheckedException: gr\xC3\xB6\xC3\x9F"
            "er");
  EXPECT_EQ(Call(throwing, "fine", "int", {}).Text(), "Int 1");
}

TEST_F(InvocationTest, ParametersAccumulateAndTheLastResultTypeWins) {
  Handler& echo = Make("beans.Overloads");
  meta_object::context::MethodCallContext context;
  ASSERT_EQ(echo.OpenMethodCall(context, WideString(L"invoke:which:77")), 0U);
  const auto first = MakeValue("int", L"1");
  const auto second = MakeValue("java.lang.String", L"b");
  std::list<type::Object*> one{first.get()};
  std::list<type::Object*> two{second.get()};
  echo.PrepareMethodCall(context, one);
  echo.PrepareMethodCall(context, two);
  echo.SetReturnDataType(context, DescribeType("int"));
  echo.SetReturnDataType(context, DescribeType("java.lang.String"));
  for (int i = 0; i < 2; ++i) {
    meta_object::MethodInvokeStatus record;
    record.failureText.assign(L"untouched");
    type::Object* result = nullptr;
    EXPECT_EQ(echo.InvokeMethod(context, record, &result), 0U);
    EXPECT_EQ(Show(result), "String int, String 1b");
    EXPECT_EQ(Utf8(record.failureText), "untouched");
    echo.Release(result);
    EXPECT_TRUE(first->CanInvoke());
    EXPECT_EQ(echo.InvokeMethod(context, record, nullptr), 0U) << "a result that nobody wants";
  }
  EXPECT_EQ(echo.CloseMethodCall(context), 0U);
  EXPECT_EQ(echo.PrepareMethodCall(context, one), status::kCallFailed);
  EXPECT_EQ(echo.SetReturnDataType(context, DescribeType("int")), status::kCallFailed);
}

TEST_F(InvocationTest, ReturnedObjectsHaveMethodsInTheirTurn) {
  const JniReferenceTracker tracker(Env());
  std::vector<CallOutcome> chain;
  chain.push_back(Call(Make("beans.ObjectReturner"), "next", "beans.ObjectReturner", {}));
  for (int i = 0; i < 4; ++i) {
    ASSERT_NE(chain.back().Object(), nullptr);
    chain.push_back(Call(*chain.back().Object(), "next", "beans.ObjectReturner", {}));
  }
  EXPECT_EQ(chain.back().Text(), "Object beans.ObjectReturner");
  EXPECT_EQ(Call(*chain.back().Object(), "depth", "int", {}).Text(), "Int 5");
  EXPECT_EQ(chain.back().Object()->GetReferenceCount(), 1U);
}

TEST_F(InvocationTest, AResultIsWhatItsStaticTypeSays) {
  Handler& returner = Make("beans.ObjectReturner");
  const std::pair<std::pair<const char*, const char*>, const char*> cases[] = {
      {{"pointAsObject", "java.lang.Object"}, "Object java.lang.Object"},
      {{"textAsObject", "java.lang.Object"}, "Object java.lang.Object"},
      {{"arrayAsObject", "java.lang.Object"}, "Object java.lang.Object"},
      {{"textAsInterface", "java.lang.Comparable"}, "Object java.lang.Comparable"},
      {{"vector", "java.util.Vector"}, "Object java.util.Vector"},
      {{"nullPoint", "beans.Point"}, "null"},
      {{"nullObject", "java.lang.Object"}, "null"},
      {{"nullText", "java.lang.String"}, "null"},
      {{"nullInteger", "java.lang.Integer"}, "null"},
  };
  for (const auto& [call, expected] : cases) {
    EXPECT_EQ(Call(returner, call.first, call.second, {}).Text(), expected) << call.first;
  }
  const CallOutcome text = Call(returner, "textAsObject", "java.lang.Object", {});
  EXPECT_EQ(Call(*text.Object(), "length", "int", {}).Text(), "Int 4");
  const CallOutcome unprintable =
      Call(Make("java.util.ArrayList"), "clone", "java.lang.Object", {});
  EXPECT_EQ(Call(*unprintable.Object(), "size", "int", {}).Text(), "Int 0");
}

TEST_F(InvocationTest, TheVeryObjectArrivesThatIsPassed) {
  Handler& returner = Make("beans.ObjectReturner");
  Handler& taker = Make("beans.ObjectTaker");
  Values coordinates;
  coordinates.push_back(MakeValue("int", L"3"));
  coordinates.push_back(MakeValue("int", L"4"));
  const CallOutcome point = Call(returner, "point", "beans.Point", coordinates);
  Values move;
  move.push_back(HoldObject(*point.Object(), "beans.Point"));
  move.push_back(MakeValue("int", L"7"));
  move.push_back(MakeValue("int", L"8"));
  EXPECT_EQ(Call(taker, "move", "void", move).Text(), "Void ");
  EXPECT_EQ(Call(*point.Object(), "getX", "int", {}).Text(), "Int 7");
  EXPECT_EQ(
      Call(taker, "takesPoint", "int", One(HoldObject(*point.Object(), "beans.Point"))).Text(),
      "Int 708");
  const CallOutcome list = Call(returner, "list", "java.util.List", {});
  EXPECT_EQ(
      Call(taker, "takesList", "int", One(HoldObject(*list.Object(), "java.util.List"))).Text(),
      "Int 3");
  EXPECT_EQ(Call(taker, "takesObject", "java.lang.String",
                 One(HoldObject(*point.Object(), "java.lang.Object")))
                .Text(),
            "String beans.Point (7, 8)");
  Values both;
  both.push_back(HoldObject(*point.Object(), "java.lang.Object"));
  both.push_back(HoldObject(*point.Object(), "java.lang.Object"));
  EXPECT_EQ(Call(taker, "same", "boolean", both).Text(), "Bool true");
}

// A wrong object in the VM's hands is memory corruption: each of these ends before the call.
TEST_F(InvocationTest, AWrongObjectIsRefusedBeforeTheCall) {
  Handler& taker = Make("beans.ObjectTaker");
  const std::string failed = "failed: JavaBean method call failed";
  const CallOutcome list = Call(Make("beans.ObjectReturner"), "list", "java.util.List", {});
  const CallOutcome foreign =
      Call(Make("beans.LoaderTrick"), "foreignPoint", "java.lang.Object", {});
  ASSERT_NE(foreign.Object(), nullptr);
  for (Handler* wrong : {list.Object(), foreign.Object(), &taker}) {
    EXPECT_EQ(Call(taker, "takesPoint", "int", One(HoldObject(*wrong, "beans.Point"))).Text(),
              failed);
    EXPECT_EQ(Call(taker, "takesPoint", "int", One(HoldObject(*wrong, "beans/Point"))).Text(),
              failed);
    auto array = MakeValue("beans.Point[]", L"x,x");
    auto& items = static_cast<type::Array&>(*array);
    delete items.GetItemAt(0);
    items.SetItemAt(HoldObject(*wrong, "beans.Point").release(), 0);
    EXPECT_EQ(Call(taker, "takesPoints", "int", One(std::move(array))).Text(), failed);
  }
  EXPECT_EQ(
      Call(taker, "takesList", "int", One(HoldObject(*foreign.Object(), "java.util.List"))).Text(),
      failed);

  Handler& point = Make("beans.Point");
  const auto reference = std::to_wstring(reinterpret_cast<std::uintptr_t>(point.GetObjectRef()));
  EXPECT_EQ(Call(taker, "takesPoint", "int", One("beans.Point", reference.c_str())).Text(),
            "Int 0");
  const std::wstring forged[] = {
      L"0",
      L"1",
      L"-1",
      L"no number",
      L"18446744073709551615",
      std::to_wstring(reinterpret_cast<std::uintptr_t>(&point)),
      std::to_wstring(reinterpret_cast<std::uintptr_t>(point.GetObjectRef()) + 8)};
  for (const std::wstring& text : forged) {
    EXPECT_EQ(Call(taker, "takesPoint", "int", One("beans.Point", text.c_str())).Text(), "refused")
        << Utf8(text.c_str());
  }
  EXPECT_EQ(Call(taker, "takesPoint", "int", One(HoldObject(NewHandler(), "beans.Point"))).Text(),
            "refused");
  point.Release();
  EXPECT_EQ(Call(taker, "takesPoint", "int", One("beans.Point", reference.c_str())).Text(),
            "refused")
      << "no longer live";
}

// Type names whose signature would stand for other parameters than there are values.
TEST_F(InvocationTest, ATypeNameCannotSmuggleParametersIntoTheSignature) {
  Handler& overloads = Make("beans.Overloads");
  Handler& taker = Make("beans.ObjectTaker");
  const char* const names[] = {"java.lang.String;I",
                               "java.lang.String;Ijava",
                               "java.lang.Object;Ljava.lang.Object",
                               "java.lang.Object;)Ljava.lang",
                               "[I",
                               "Ljava.lang.String;"};
  for (const char* name : names) {
    auto value = HoldObject(taker, "java.lang.Object");
    value->GetMetaItemType().typeName.assign(name);
    Values values = One(std::move(value));
    EXPECT_THAT(Call(overloads, "which", "java.lang.String", values).Text(),
                StartsWith("failed: JavaBean"))
        << name;
    EXPECT_THAT(Call(taker, "same", "boolean", values).Text(), StartsWith("failed: JavaBean"))
        << name;
    auto array = MakeValue("beans.Point[]", L"-");
    auto& items = static_cast<type::Array&>(*array);
    items.SetDesc(WideString(name));
    items.SetItemAt(HoldObject(taker, name).release(), 0);
    EXPECT_THAT(Call(taker, "same", "boolean", One(std::move(array))).Text(),
                StartsWith("failed: JavaBean"))
        << name;
  }
}

TEST_F(InvocationTest, TheExceptionCheckDescribesAndClears) {
  JNIEnv* const env = Env();
  WideString text(L"former");
  EXPECT_FALSE(bean::IsJavaExceptionHappened(nullptr, &text));
  EXPECT_FALSE(bean::IsJavaExceptionHappened(env, &text));
  EXPECT_EQ(Utf8(text), "former");
  const JniReferenceTracker tracker(env);
  const auto raise = [env](const char* cls) {
    const auto found = bean::FindJavaClass(env, cls);
    env->ThrowNew(found.Get(), "why");
  };
  raise("java/lang/IllegalStateException");
  EXPECT_TRUE(bean::IsJavaExceptionHappened(env, nullptr));
  raise("java/lang/IllegalStateException");
  EXPECT_TRUE(bean::IsJavaExceptionHappened(env, &text));
  EXPECT_EQ(Utf8(text), "Java Exception: java.lang.IllegalStateException: why");
  EXPECT_FALSE(bean::IsJavaExceptionHappened(env, &text));
  EXPECT_EQ(tracker.LiveLocals(), 0);
}

TEST_F(InvocationTest, AClassNameGetsSlashes) {
  std::string names[] = {"a.b.Bean", "Bean", ".", ""};
  const char* const expected[] = {"a/b/Bean", "Bean", "/", ""};
  for (std::size_t i = 0; i < std::size(names); ++i) {
    EXPECT_EQ(bean::dotsToSlashes(names[i].data()), names[i].data());
    EXPECT_EQ(names[i], expected[i]);
  }
}

TEST_F(InvocationTest, LendsItsParametersByPosition) {
  bean::CBeanMethodInvoke call(L"Invoke:x:0", nullptr, nullptr, true);
  EXPECT_EQ(call.GetParamItem(0), nullptr);
  type::Int value(1);
  std::list<type::Object*> params{nullptr, &value};
  EXPECT_EQ(call.PrepareMethodCall(params), 0U);
  EXPECT_EQ(call.GetParamItem(1), &value);
  EXPECT_EQ(call.GetParamItem(2), nullptr);
  EXPECT_EQ(call.GetParamItem(-1), nullptr);
  meta_object::MethodInvokeStatus record;
  type::Object* result = nullptr;
  EXPECT_EQ(call.InvokeMethod(record, &result), status::kCallFailed) << "no environment, no name";
  EXPECT_EQ(record.statusCode, 0U);
  for (const int number : {-1, 10}) {
    EXPECT_EQ(bean::callJavaMethod(number, Env(), nullptr, nullptr, nullptr).j, 0) << "no call";
  }
}

}  // namespace
}  // namespace quenlatrix::test

#include "meta_object/type/array.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using meta_object::Handler;
using testing::StartsWith;

class InvocationTest : public PluginTest {};

const std::string kFailed = "failed: JavaBean method call failed";

TEST_F(InvocationTest, TheSignatureOfTheValuesPicksTheOverload) {
  Handler& overloads = Make("beans.Overloads");
  const std::pair<std::vector<std::pair<std::string, std::wstring>>, const char*> cases[] = {
      {{}, "none"},
      {{{"int", L"5"}}, "int 5"},
      {{{"long", L"5"}}, "long 5"},
      {{{"java.lang.Integer", L"5"}}, "Integer 5"},
      {{{"java.lang.String", L"5"}}, "String 5"},
      {{{"int[]", L"5"}}, "int[] 1"},
      {{{"int", L"1"}, {"java.lang.String", L"a"}}, "int, String 1a"},
      {{{"java.lang.String", L"a"}, {"int", L"1"}}, "String, int a1"},
  };
  for (const auto& [params, expected] : cases) {
    EXPECT_EQ(Answer(overloads, "which", "java.lang.String", ValuesOf(params)),
              std::string("String ") + expected);
  }
}

TEST_F(InvocationTest, WhatCannotBeCalledFailsWithoutAnException) {
  Handler& echo = Make("beans.ScalarEcho");
  const std::tuple<const char*, const char*, const char*, const wchar_t*, std::string> cases[] = {
      {"noSuchMethod", "int", "int", L"1", kFailed},
      {"echoInt", "long", "int", L"1", kFailed},
      {"echoInt", "int", "long", L"1", kFailed},
      {"echoInt", "array of int", "int", L"1", "Int 1"},
      {"<init>", "void", "int", L"1", kFailed},
      {"", "int", "int", L"1", "refused"},
      {"echoInt", "int", "int", L"", "refused"},
      {"echoInt", "int", "", L"1", "refused"},
      {"echoInt", "int", "java.lang.Integer", L"", "refused"},
      {"echo", "java.lang.Integer", "java.lang.Integer", L"no number", "refused"},
      {"echo", "java.lang.Date", "java.lang.Date", L"2000-01-01", "refused"},
      {"echoInt", "int[][][]", "int", L"1", "refused"},
      {"echoInt\xC3\xA9", "int", "int", L"1", kFailed},
  };
  for (const auto& [method, returnType, paramType, text, answer] : cases) {
    EXPECT_EQ(Answer(echo, method, returnType, ValuesOf({{paramType, text}})), answer)
        << method << " " << returnType << " " << paramType;
  }
  EXPECT_EQ(Answer(echo, "<init>", "void"), kFailed);
  EXPECT_EQ(Answer(echo, "nothing", ""), "Void ");
  EXPECT_EQ(Answer(echo, "nothing", "", ValuesOf(std::unique_ptr<type::Object>())), "refused");
  EXPECT_EQ(Answer(NewHandler(), "toString", "java.lang.String"), kFailed);
}

TEST_F(InvocationTest, EveryKindOfThrowableBecomesAText) {
  Handler& throwing = Make("beans.ThrowingMethods");
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"unchecked", "void", "java.lang.IllegalArgumentException: unchecked"},
      {"error", "java.lang.String", "java.lang.AssertionError: error"},
      {"nullMessage", "java.lang.Object", "java.lang.IllegalStateException"},
      {"unprintable", "int", ""},
      {"nullText", "int", ""},
      {"stackOverflow", "int", "java.lang.StackOverflowError"},
      {"outOfMemory", "long[]", "java.lang.OutOfMemoryError"},
  };
  for (const auto& [method, returnType, text] : cases) {
    const CallOutcome outcome = Call(throwing, method, returnType);
    const std::string answer = std::string("failed: Java Exception: ") + text;
    EXPECT_THAT(outcome.Text(),
                *text == '\0' ? testing::Matcher<std::string>(answer) : StartsWith(answer));
    EXPECT_EQ(Utf8(outcome.record.description), std::string("Method: ") + method);
  }
  EXPECT_EQ(
      Answer(throwing, "checked", "int", ValuesOf({{"java.lang.String", L"gr\u00F6\u00DFer  "}})),
      "failed: Java Exception: beans.ThrowingMethods$CheckedException: gr\xC3\xB6\xC3\x9F"
      "er");
  EXPECT_EQ(Answer(throwing, "fine", "int"), "Int 1");
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
  meta_object::MethodInvokeStatus record;
  EXPECT_EQ(echo.InvokeMethod(context, record, nullptr), status::kCallFailed);
}

TEST_F(InvocationTest, AResultIsWhatItsStaticTypeSays) {
  Handler& returner = Make("beans.ObjectReturner");
  const std::pair<std::pair<const char*, const char*>, const char*> cases[] = {
      {{"pointAsObject", "java.lang.Object"}, "Object java.lang.Object"},
      {{"textAsInterface", "java.lang.Comparable"}, "Object java.lang.Comparable"},
      {{"nullPoint", "beans.Point"}, "null"},
      {{"nullObject", "java.lang.Object"}, "null"},
      {{"nullText", "java.lang.String"}, "null"},
      {{"nullInteger", "java.lang.Integer"}, "null"},
  };
  for (const auto& [call, expected] : cases) {
    EXPECT_EQ(Answer(returner, call.first, call.second), expected) << call.first;
  }
  const CallOutcome text = Call(returner, "textAsObject", "java.lang.Object");
  EXPECT_EQ(Answer(*text.Object(), "length", "int"), "Int 4");
  const CallOutcome unprintable = Call(Make("java.util.ArrayList"), "clone", "java.lang.Object");
  EXPECT_EQ(Answer(*unprintable.Object(), "size", "int"), "Int 0");
}

// An array of the named class with the object in its only place.
std::unique_ptr<type::Object> HoldAlone(Handler& handler, const char* javaType) {
  auto array = MakeValue("beans.Point[]", L"-");
  static_cast<type::Array&>(*array).SetDesc(WideString(javaType));
  static_cast<type::Array&>(*array).SetItemAt(HoldObject(handler, javaType).release(), 0);
  return array;
}

// A wrong object in the VM's hands is memory corruption: each of these ends before the call.
TEST_F(InvocationTest, AWrongObjectIsRefusedBeforeTheCall) {
  Handler& taker = Make("beans.ObjectTaker");
  const CallOutcome list = Call(Make("beans.ObjectReturner"), "list", "java.util.List");
  const CallOutcome foreign = Call(Make("beans.LoaderTrick"), "foreignPoint", "java.lang.Object");
  ASSERT_NE(foreign.Object(), nullptr);
  for (Handler* wrong : {list.Object(), foreign.Object(), &taker}) {
    for (const char* javaType : {"beans.Point", "beans/Point"}) {
      EXPECT_EQ(Answer(taker, "takesPoint", "int", ValuesOf(HoldObject(*wrong, javaType))),
                kFailed);
    }
    EXPECT_EQ(Answer(taker, "takesPoints", "int", ValuesOf(HoldAlone(*wrong, "beans.Point"))),
              kFailed);
  }
  EXPECT_EQ(
      Answer(taker, "takesList", "int", ValuesOf(HoldObject(*foreign.Object(), "java.util.List"))),
      kFailed);

  for (const wchar_t* nameless : {L"", L"\xD800"}) {
    auto object = HoldObject(taker, "beans.Point");
    object->GetMetaItemType().typeName.assign(nameless);
    auto array = HoldAlone(taker, "beans.Point");
    array->SetDesc(WideString(nameless));
    EXPECT_EQ(Answer(taker, "takesPoint", "int", ValuesOf(std::move(object))), "refused");
    EXPECT_EQ(Answer(taker, "takesPoints", "int", ValuesOf(std::move(array))), "refused");
  }

  Handler& point = Make("beans.Point");
  const auto takesPoint = [&taker](const std::wstring& text) {
    return Answer(taker, "takesPoint", "int", ValuesOf({{"beans.Point", text}}));
  };
  const auto address = reinterpret_cast<std::uintptr_t>(point.GetObjectRef());
  EXPECT_EQ(takesPoint(std::to_wstring(address)), "Int 0");
  for (const std::wstring& forged :
       {std::wstring(L"0"), std::wstring(L"1"), std::wstring(L"-1"), std::wstring(L"no number"),
        std::wstring(L"18446744073709551615"), std::to_wstring(address + 8),
        std::to_wstring(reinterpret_cast<std::uintptr_t>(&point))}) {
    EXPECT_EQ(takesPoint(forged), "refused") << Utf8(forged.c_str());
  }
  point.Release();
  EXPECT_EQ(takesPoint(std::to_wstring(address)), "refused") << "no longer live";
  EXPECT_EQ(Answer(taker, "takesPoint", "int", ValuesOf(HoldObject(NewHandler(), "beans.Point"))),
            "refused");
}

// Two classes of one name are two classes, whichever was asked about first.
TEST_F(InvocationTest, AnObjectIsOfTheClassThatTheMethodsOwnLoaderKnows) {
  Handler& trick = Make("beans.LoaderTrick");
  const auto alone = [&](const wchar_t* name, const wchar_t* own) {
    return Call(trick, "alone", "java.lang.Object",
                ValuesOf({{"java.lang.String", name}, {"java.lang.String", own}}));
  };
  const auto pointBeside = [&](const CallOutcome& other) {
    return Call(trick, "beside", "java.lang.Object",
                ValuesOf(HoldObject(*other.Object(), "java.lang.Object"),
                         MakeValue("java.lang.String", L"beans.Point")));
  };
  const CallOutcome foreign = alone(L"beans.ObjectTaker", L"beans.*");
  const CallOutcome foreignPoint = pointBeside(foreign);
  // What it inherits takes the points of its base class's loader.
  const CallOutcome heir = alone(L"beans.LoaderTrick$Heir", L"beans.(LoaderTrick.Heir|Point)");
  const CallOutcome heirsPoint = pointBeside(heir);
  Handler& taker = Make("beans.ObjectTaker");
  Handler& point = Make("beans.Point");
  const struct {
    Handler& taker;
    Handler& point;
    std::string answer;
  } cases[] = {{*foreign.Object(), *foreignPoint.Object(), "Int 0"},
               {*foreign.Object(), point, kFailed},
               {taker, *foreignPoint.Object(), kFailed},
               {taker, point, "Int 0"},
               {*heir.Object(), *heirsPoint.Object(), kFailed},
               {*heir.Object(), point, "Int 0"}};
  for (int i = 0; i < 2; ++i) {
    for (const auto& c : cases) {
      const auto number = std::to_string(&c - cases);
      EXPECT_EQ(Answer(c.taker, "takesPoint", "int", ValuesOf(HoldObject(c.point, "beans.Point"))),
                c.answer)
          << number;
      EXPECT_EQ(Answer(c.taker, "takesPoints", "int", ValuesOf(HoldAlone(c.point, "beans.Point"))),
                c.answer)
          << number;
    }
  }
}

TEST_F(InvocationTest, NamesakesOfTwoLoadersHaveTheirOwnMethods) {
  Handler& point = Make("beans.Point");
  const CallOutcome namesake = Call(Make("beans.LoaderTrick"), "namesake", "java.lang.Object",
                                    ValuesOf({{"java.lang.String", L"beans.Point"}}));
  ASSERT_NE(namesake.Object(), nullptr);
  for (int i = 0; i < 2; ++i) {
    for (Handler* handler : {&point, namesake.Object()}) {
      const bool isPoint = handler == &point;
      EXPECT_EQ(Answer(*handler, "getX", "int"), isPoint ? "Int 0" : kFailed);
      host.cache.clear();
      EXPECT_EQ(handler->OpenIntrospect("JAVABEAN://beans.Point"), status::kSuccess);
      EXPECT_EQ(handler->GetMethodCount() > 0, isPoint);
      EXPECT_EQ(handler->CloseIntrospect(), status::kSuccess);
    }
  }
}

TEST_F(InvocationTest, NothingIsKeptThatKeepsAClassFromBeingUnloaded) {
  Handler& trick = Make("beans.LoaderTrick");
  {
    const CallOutcome taker = Call(
        trick, "alone", "java.lang.Object",
        ValuesOf({{"java.lang.String", L"beans.ObjectTaker"}, {"java.lang.String", L"beans.*"}}));
    Handler& foreign = *taker.Object();
    const Values self = ValuesOf(HoldObject(foreign, "beans.ObjectTaker"));
    EXPECT_EQ(Answer(foreign, "takesPoint", "int", self), kFailed);
    self[0]->ReleaseItem();
    EXPECT_EQ(foreign.OpenIntrospect("JAVABEAN://beans.ObjectTaker"), status::kSuccess);
    EXPECT_EQ(foreign.CloseIntrospect(), status::kSuccess);
    EXPECT_EQ(Answer(trick, "isLastGone", "boolean"), "Bool false") << "while it is in use";
  }
  EXPECT_EQ(Answer(trick, "isLastGone", "boolean"), "Bool true");
}

// Type names whose signature would stand for other parameters than there are values.
TEST_F(InvocationTest, ATypeNameCannotSmuggleParametersIntoTheSignature) {
  Handler& overloads = Make("beans.Overloads");
  Handler& taker = Make("beans.ObjectTaker");
  const char* const names[] = {"java.lang.String;I",
                               "java.lang.String;Ijava",
                               "java.lang.Object;Ljava.lang.Object",
                               "java.util.List;Ljava.lang.String",
                               "java.lang.Object;)Ljava.lang",
                               "[I",
                               "Ljava.lang.String;"};
  for (const char* name : names) {
    auto value = HoldObject(taker, "java.lang.Object");
    value->GetMetaItemType().typeName.assign(name);
    const Values values = ValuesOf(std::move(value));
    EXPECT_EQ(Answer(overloads, "which", "java.lang.String", values), "refused") << name;
    EXPECT_EQ(Answer(taker, "same", "boolean", values), "refused") << name;
    EXPECT_EQ(Answer(taker, "same", "boolean", ValuesOf(HoldAlone(taker, name))), "refused")
        << name;
  }
}

TEST_F(InvocationTest, AnInstanceThatWasReleasedIsNotUsedNorAnotherOneInItsPlace) {
  Handler& list = Make("java.util.ArrayList");
  const void* const reference = list.GetObjectRef();
  meta_object::context::CollectionContext walk;
  ASSERT_EQ(list.OpenCollection(walk), status::kSuccess);
  OpenCall call(list, "size", "int", {});
  EXPECT_EQ(list.Release(), status::kLastReferenceReleased);
  for (const bool isNumberUsedAgain : {false, true}) {
    // The VM gives a deleted reference's number to one of the next.
    for (int i = 0;
         isNumberUsedAgain && Make("java.util.ArrayDeque").GetObjectRef() != reference;) {
      ASSERT_LT(++i, 1000);
    }
    EXPECT_EQ(call.Invoke().Text(), kFailed);
    int size = -1;
    EXPECT_EQ(list.GetCollectionSize(walk, size), status::kNoCollection);
    EXPECT_EQ(size, -1);
    std::list<type::Object*> items;
    EXPECT_EQ(list.GetNextItems(walk, 1, items, nullptr), status::kNoCollection);
    EXPECT_EQ(list.SkipItems(walk, 1), status::kNoCollection);
    EXPECT_EQ(list.ResetCollection(walk), status::kNoCollection);
  }
  EXPECT_EQ(list.CloseCollection(walk), status::kSuccess);
}

}  // namespace
}  // namespace quenlatrix::test

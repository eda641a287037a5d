#include <sys/resource.h>

#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"
#include "tests/support/locales.h"

namespace quenlatrix::test {
namespace {

namespace type = meta_object::type;
using meta_object::Handler;
using meta_object::TypeDesc;

class MarshallingTest : public PluginTest {
 protected:
  // What beans.ArrayText says about the array that arrives.
  std::string Arrived(std::unique_ptr<type::Object> value) {
    if (text == nullptr) text = &Make("beans.ArrayText");
    return Answer(*text, "text", "java.lang.String", ValuesOf(std::move(value)));
  }

  Handler* text = nullptr;
};

// Texts and what the bean's echo of each is, by type.
const std::pair<std::string, std::vector<std::pair<const wchar_t*, const char*>>> kScalars[] = {
    {"boolean",
     {{L"true", "Bool true"},
      {L"True", "Bool true"},
      {L"TRUE", "Bool true"},
      {L"tRUE", "Bool false"},
      {L"1", "Bool false"},
      {L"yes", "Bool false"},
      {L"true ", "Bool false"}}},
    {"byte", {{L"-1", "Int 255"}, {L"127", "Int 127"}, {L"300", "Int 44"}}},
    {"char", {{L"AB", "Char A"}}},
    {"short", {{L"-1", "Int -1"}, {L"65537", "Int 1"}}},
    {"int",
     {{L"-2147483648", "Int -2147483648"},
      {L"5000000000", "Int 705032704"},
      {L" +42abc", "Int 42"},
      {L"text", "Int 0"}}},
    {"long",
     {{L"5000000000", "Int 5000000000"}, {L"-9223372036854775808", "Int -9223372036854775808"}}},
    {"float", {{L"1.5", "Real 1.500000"}, {L"1e-3", "Real 0.001000"}}},
    {"double", {{L"-2.25e3", "Real -2250.000000"}, {L"1,5", "Real 1.000000"}}},
    {"java.lang.String",
     {{L"", "String "},
      {L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB", "String "},
      {L"a b\tc", "String a b\tc"}}},
    {"java.lang.Boolean", {{L"TRUE", "Bool true"}}},
    {"java.lang.Byte", {{L"-5", "Int -5"}, {L"300", "refused"}}},
    {"java.lang.Character", {{L"zyx", "Char z"}, {L"\xd800", "refused"}}},
    {"java.lang.Short", {{L"-32768", "Int -32768"}}},
    {"java.lang.Integer", {{L"42", "Int 42"}}},
    {"java.lang.Long", {{L"9223372036854775807", "Int 9223372036854775807"}}},
    {"java.lang.Float", {{L"0.5", "Real 0.500000"}}},
    {"java.lang.Double", {{L"1e3", "Real 1000.000000"}, {L"1,5", "refused"}}}};

TEST_F(MarshallingTest, EveryScalarGoesOutAndComesBackWhateverTheDecimalPoint) {
  Handler& echo = Make("beans.ScalarEcho");
  for (const char* locale : {utf8Locale, utf8CommaLocale, singleByteCommaLocale}) {
    const LocaleScope scope(locale);
    for (const auto& [type, texts] : kScalars) {
      std::string method = "echo" + (type.starts_with("java") ? "" : type);
      if (type == "java.lang.String") method += "String";
      if (method.size() > 4) method[4] = static_cast<char>(std::toupper(method[4]));
      for (const auto& [text, answer] : texts) {
        EXPECT_EQ(Answer(echo, method, type, ValuesOf({{type, text}})), answer)
            << type << " " << Utf8(text) << " " << locale;
      }
    }
    const std::string huge =
        Answer(echo, "echoDouble", "double", ValuesOf({{"double", L"1e300x"}}));
    EXPECT_EQ(huge.size(), std::string("Real ").size() + 301 + 7) << "whole, however large";
  }
}

TEST_F(MarshallingTest, ValuesOfTheirOwnClassesGoOutAlike) {
  Handler& echo = Make("beans.ScalarEcho");
  auto real = std::make_unique<type::Real>(2.5);
  real->GetMetaItemType() = DescribeType("double");
  auto high = std::make_unique<type::Char>();
  high->GetMetaItemType() = DescribeType("char");
  high->SetValue(L'\u00E9');
  const LocaleScope scope(singleByteCommaLocale);
  EXPECT_EQ(Answer(echo, "echoDouble", "double", ValuesOf(std::move(real))), "Real 2.500000");
  const CallOutcome outcome = Call(echo, "echoChar", "char", ValuesOf(std::move(high)));
  EXPECT_EQ(static_cast<const type::Char*>(outcome.result)->GetValue(), 0)
      << "U+FFE9, a byte's sign in all bits, is no character of Latin-1";
}

TEST_F(MarshallingTest, TextGoesOutNarrowAndComesBackWhole) {
  const std::tuple<const char*, const wchar_t*, const char*> outgoing[] = {
      {utf8Locale, L"plain", "String 70 6c 61 69 6e"},
      {utf8Locale, L"gr\u00FC\u00DFe", "String 67 72 fc"},
      {utf8Locale, L"gr\u00FC\u00DFe  ", "String 67 72 fc df 65"},
      {utf8Locale, L"\U0001F600abc", "String d83d de00"},
      {utf8Locale, L"\u20AC\u20AC\u20AC", "String 20ac"},
      {singleByteCommaLocale, L"gr\u00FC\u00DFe", "String 67 72 fc df 65"},
      {singleByteCommaLocale, L"\u20AC", "refused"},  // Latin-1 has no euro sign
  };
  Handler& texts = Make("beans.Texts");
  for (const auto& [locale, text, codes] : outgoing) {
    const LocaleScope scope(locale);
    const Values values = ValuesOf({{"java.lang.String", text}});
    EXPECT_EQ(Answer(texts, "codes", "java.lang.String", values), codes);
  }
  const std::pair<const char*, const wchar_t*> coming[] = {
      {"latin", L"String gr\u00FC\u00DFe"},
      {"supplementary", L"String \U0001F600\U0010FFFF"},
      {"withNul", L"String a"},
      {"loneSurrogate", L"String a\uFFFDb"},
      {"empty", L"String "},
  };
  for (const char* locale : {utf8Locale, singleByteCommaLocale}) {
    const LocaleScope scope(locale);
    for (const auto& [method, text] : coming) {
      EXPECT_EQ(Answer(texts, method, "java.lang.String"), Utf8(text)) << locale;
    }
  }
  // Both sides of the length up to which a text is short, and a very long one.
  for (const std::size_t length : {127, 128, 129, 1000000}) {
    const std::size_t part = length > 1000 ? 1000 : 1;
    const Values values = ValuesOf(
        {{"java.lang.String", std::wstring(part, L'x')}, {"int", std::to_wstring(length / part)}});
    EXPECT_EQ(Answer(texts, "repeated", "java.lang.String", values),
              "String " + std::string(length, 'x'));
  }
}

// What arrives, what comes back as result, and what an array parameter holds after it was reversed.
struct ArrayCase {
  const char* javaType;
  const wchar_t* elements;
  const char* arrived;
  const char* back;
  const char* reversed;
};

constexpr ArrayCase kArrays[] = {
    {"boolean[]", L"true,false,no", "[true, false, false]", "Bool [true,false,false]",
     "Bool [false,false,true]"},
    {"byte[]", L"-1,2,300", "[-1, 2, 44]", "Int [-1,2,44]", "Int [44,2,-1]"},
    {"char[]", L"a,bc,d", "[a, b, d]", "Char [a,b,d]", "Char [d,b,a]"},
    {"short[]", L"-1,65537", "[-1, 1]", "Int [-1,1]", "Int [1,-1]"},
    {"int[]", L"1,-2147483648,5000000000", "[1, -2147483648, 705032704]",
     "Int [1,-2147483648,705032704]", "Int [705032704,-2147483648,1]"},
    {"long[]", L"1,-1,5000000000", "[1, -1, 705032704]", "Int [1,-1,705032704]",
     "Int [705032704,-1,1]"},
    {"float[]", L"1.5,-2", "[1.5, -2.0]", "Real [1.500000,-2.000000]", "Real [-2.000000,1.500000]"},
    {"double[]", L"1.5", "[1.5]", "Real [1.500000]", "Real [1.500000]"},
    {"java.lang.String[]", L"a,bb,c", "[a, bb, c]", "String [a,bb,c]", "String [c,bb,a]"},
    {"boolean[][]", L"true,false;false,false", "[[true, false], [false, false]]",
     "Bool [[true,false],[false,false]]", "Bool [[false,false],[false,true]]"},
    {"byte[][]", L"1,2;3,4", "[[1, 2], [3, 4]]", "Int [[1,2],[3,4]]", "Int [[4,3],[2,1]]"},
    {"char[][]", L"a,b;c,d", "[[a, b], [c, d]]", "Char [[a,b],[c,d]]", "Char [[d,c],[b,a]]"},
    {"short[][]", L"1,2;3,4", "[[1, 2], [3, 4]]", "Int [[1,2],[3,4]]", "Int [[4,3],[2,1]]"},
    {"int[][]", L"1,2,3;4,5,6", "[[1, 2, 3], [4, 5, 6]]", "Int [[1,2,3],[4,5,6]]",
     "Int [[6,5,4],[3,2,1]]"},
    {"long[][]", L"1;2;3", "[[1], [2], [3]]", "Int [[1],[2],[3]]", "Int [[3],[2],[1]]"},
    {"float[][]", L"1.5,2", "[[1.5, 2.0]]", "Real [[1.500000,2.000000]]",
     "Real [[2.000000,1.500000]]"},
    {"double[][]", L"1.5;2", "[[1.5], [2.0]]", "Real [[1.500000],[2.000000]]",
     "Real [[2.000000],[1.500000]]"},
    {"java.lang.String[][]", L"a,b;c,d", "[[a, b], [c, d]]", "String [[a,b],[c,d]]",
     "String [[d,c],[b,a]]"},
    // Elements that aren't there: no array of primitives, no call with objects.
    {"int[]", L"1,-,3", "null", "null", nullptr},
    {"boolean[]", L"-", "null", "null", nullptr},
    {"java.lang.String[]", L"a,-,c", nullptr, nullptr, nullptr},
    {"java.lang.String[][]", L"a,-", nullptr, nullptr, nullptr},
    {"int[][]", L"1,-;2,3", nullptr, nullptr, nullptr},
    // An empty text makes no Java object: none in the first place, an empty place elsewhere.
    {"java.lang.String[]", L",b", nullptr, nullptr, nullptr},
    {"java.lang.String[]", L"a,,c", "[a, null, c]", "String [a,-,c]", nullptr},
    {"java.lang.String[][]", L"a,,c;d,e,f", "[[a, null, c], [d, e, f]]", "String [[a,-,c],[d,e,f]]",
     nullptr},
    {"java.lang.String[]", L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB,b", "[, b]", "String [,b]",
     nullptr},
};

TEST_F(MarshallingTest, EveryArrayGoesOutComesBackAndIsFilledAgain) {
  Handler& echo = Make("beans.ArrayEcho");
  Handler& changer = Make("beans.ArrayChanger");
  const LocaleScope scope(utf8CommaLocale);
  for (const ArrayCase& c : kArrays) {
    const std::string name = c.javaType + Utf8(c.elements);
    EXPECT_EQ(Arrived(MakeValue(c.javaType, c.elements)),
              c.arrived == nullptr ? "refused" : std::string("String ") + c.arrived)
        << name;
    const Values values = ValuesOf({{c.javaType, c.elements}});
    const std::string before = Show(values[0].get());
    const std::string echoed = Answer(echo, "echo", c.javaType, values);
    EXPECT_EQ(echoed, c.back == nullptr ? "refused" : c.back) << name;
    const bool isFilledAgain = c.back != nullptr && echoed != "null";
    EXPECT_EQ(Show(values[0].get()), isFilledAgain ? c.back : before) << name;
    if (c.reversed != nullptr) {
      for (const char* expected : {c.reversed, c.back}) {
        EXPECT_EQ(Answer(changer, "reverse", "void", values), "Void ") << name;
        EXPECT_EQ(Show(values[0].get()), expected) << name << ", again and again";
        EXPECT_TRUE(values[0]->CanInvoke());
      }
    }
  }
}

TEST_F(MarshallingTest, ResultsOfEveryShapeComeBack) {
  Handler& maker = Make("beans.ArrayMaker");
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"emptyInts", "int[]", "null"},
      {"nullInts", "int[]", "null"},
      {"emptyRows", "int[][]", "null"},
      {"noRows", "int[][]", "null"},
      {"grid", "int[][]", "Int [[1,2,3],[4,5,6]]"},
      {"unevenRows", "int[][]", "Int [[1,2,3],[4,-,-],[5,6,7]]"},
      {"nullRow", "int[][]", "Int [[1,2],[-,-],[3,4]]"},
      {"hugeTable", "byte[][]", nullptr},
      {"nullFirstRow", "int[][]", "null"},
      {"cube", "int[][][]", "refused"},
      {"stringsWithNull", "java.lang.String[]", "String [first,-,,last]"},
      {"stringGridWithNull", "java.lang.String[][]", "String [[a,-],[,d]]"},
      {"integersWithNull", "java.lang.Integer[]", "Int [1,-,3]"},
      {"pointsWithNull", "beans.Point[]", "Object [beans.Point,-,beans.Point]"},
      {"mixed", "java.lang.Object[]",
       "Object [java.lang.Object,java.lang.Object,java.lang.Object]"},
  };
  for (const auto& [method, returnType, answer] : cases) {
    const CallOutcome outcome = Call(maker, method, returnType);
    if (answer != nullptr) {
      EXPECT_EQ(outcome.Text(), answer) << method;
    } else {
      EXPECT_EQ(outcome.status, meta_object::handler_status::kCallFailed) << method;
      EXPECT_THAT(Utf8(outcome.record.failureText), testing::HasSubstr("places of an array"));
    }
  }
}

// Each byte that is copied would take a value.
TEST_F(MarshallingTest, WhatIsCutOffARowIsNotCopied) {
  Handler& maker = Make("beans.ArrayMaker");
  Call(maker, "grid", "int[][]");
  rusage before = {};
  rusage after = {};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_EQ(Answer(maker, "longSecondRow", "byte[][]"), "Int [[1,2],[0,0]]");
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 100000) << "kilobytes";
}

TEST_F(MarshallingTest, ArgumentsThatChangeShapeAreFilledAgain) {
  Handler& changer = Make("beans.ArrayChanger");
  struct Case {
    const char* method;
    const char* returnType;
    const char* javaType;
    const wchar_t* elements;
    const char* answer;
    const char* after;
  };
  const Case cases[] = {
      {"clear", "void", "java.lang.String[]", L"a,b", "Void ", "String [-,-]"},
      {"shortenFirstRow", "void", "int[][]", L"1,2;3,4", "Void ", "Int [[1],[3]]"},
      {"lengthenLastRow", "void", "int[][]", L"1,2;3,4", "Void ", "Int [[1,2],[3,4]]"},
      {"dropSecondRow", "void", "int[][]", L"1,2;3,4;5,6", "Void ", "Int [[1,2],[-,-],[5,6]]"},
      {"changeAndThrow", "void", "int[]", L"1,2",
       "failed: Java Exception: java.lang.IllegalStateException: changed 2", "Int [1,2]"},
  };
  for (const Case& c : cases) {
    const Values values = ValuesOf({{c.javaType, c.elements}});
    EXPECT_EQ(Answer(changer, c.method, c.returnType, values), c.answer) << c.method;
    EXPECT_EQ(Show(values[0].get()), c.after) << c.method;
  }
}

TEST_F(MarshallingTest, ShapesAndElementsThatDoNotFitAreNotPassed) {
  using Dimensions = std::vector<TypeDesc::ArrayInfo::DimensionInfo>;
  // What the descriptor says in spite of the elements.
  const std::tuple<const char*, const wchar_t*, Dimensions, const char*> shapes[] = {
      {"int[]", L"1,2", {{1, 2}}, "String null"},
      {"java.lang.String[]", L"a", {{1, 1}}, "refused"},
      {"int[][]", L"1,2;3,4", {{1, 2}, {0, 2}}, "refused"},
      {"int[]", L"1", {{0, 1}, {0, 1}, {0, 1}}, "refused"},
      {"int[]", L"1", {}, "refused"},
      {"int[]", L"7,8", {{0, -1}}, "String [7]"},  // an unknown count stands for one element
      {"int[]", L"7,8", {{0, 3}}, "String null"},
  };
  for (const auto& [javaType, elements, dimensions, answer] : shapes) {
    auto value = MakeValue(javaType, elements);
    value->GetMetaItemType().arrayInfo->dimensions = dimensions;
    EXPECT_EQ(Arrived(std::move(value)), answer) << javaType << dimensions.size();
  }
  auto scalar = MakeValue("int", L"1");
  scalar->GetMetaItemType() = DescribeType("int[]");
  EXPECT_EQ(Arrived(std::move(scalar)), "refused");

  const std::tuple<const char*, const wchar_t*, type::Object*, const char*> intruders[] = {
      {"int[]", L"1,2", new type::Real(2.0), "String null"},
      {"double[]", L"1,2", new type::Int(2), "String null"},
      {"char[]", L"a,b", new type::Bool(), "String null"},
      {"int[][]", L"1,2;3,4", new type::Void(), "refused"},
      {"java.lang.String[]", L"a,b", new type::Int(2), "String [a, 2]"},
  };
  for (const auto& [javaType, elements, intruder, answer] : intruders) {
    auto value = MakeValue(javaType, elements);
    auto& array = static_cast<type::Array&>(*value);
    delete array.GetItemAt(1);
    array.SetItemAt(intruder, 1);
    EXPECT_EQ(Arrived(std::move(value)), answer) << javaType;
  }
}

TEST_F(MarshallingTest, AnArrayTakesTheClassOfItsFirstElement) {
  Handler& point = Make("beans.Point");
  const auto objects = [](std::string elementType, std::vector<Handler*> handlers) {
    auto value = MakeValue(elementType + "[]", std::wstring(handlers.size() - 1, L','));
    auto& array = static_cast<type::Array&>(*value);
    for (unsigned int i = 0; i < handlers.size(); ++i) {
      delete array.GetItemAt(i);
      array.SetItemAt(HoldObject(*handlers[i], elementType).release(), i);
    }
    return value;
  };
  EXPECT_EQ(Arrived(objects("beans.Point", {&point, &point})), "String [(0, 0), (0, 0)]");
  EXPECT_EQ(
      Answer(*text, "classOf", "java.lang.String", ValuesOf(objects("java.lang.Object", {&point}))),
      "String [Lbeans.Point;");
  EXPECT_EQ(Arrived(objects("java.lang.Object", {&point, text})), "refused")
      << "what doesn't fit the first element's class";
  const JniReferenceTracker tracker(Env());
  {
    const Values values = ValuesOf(objects("beans.Point", {&point, &point}));
    Handler& changer = Make("beans.ArrayChanger");
    EXPECT_EQ(Answer(changer, "reverse", "void", values), "Void ");
    EXPECT_EQ(Show(values[0].get()), "Object [beans.Point,beans.Point]");
    EXPECT_EQ(tracker.LiveGlobals(), 6) << "the changer's two and two for each new element";
    EXPECT_EQ(point.GetReferenceCount(), 2U) << "only the refused array still holds it";
    auto& array = static_cast<type::Array&>(*values[0]);
    array.GetItemAt(0)->ReleaseItem();
    array.GetItemAt(1)->ReleaseItem();
    changer.Release();
  }
  EXPECT_EQ(tracker.LiveGlobals(), 0);
}

}  // namespace
}  // namespace quenlatrix::test

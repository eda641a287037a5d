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
  static std::string CallOne(Handler& bean, const std::string& method,
                             const std::string& returnType, std::unique_ptr<type::Object> value) {
    Values values;
    values.push_back(std::move(value));
    return Call(bean, method, returnType, values).Text();
  }
  static std::string CallOne(Handler& bean, const std::string& method,
                             const std::string& returnType, const std::string& javaType,
                             const std::wstring& text) {
    return CallOne(bean, method, returnType, MakeValue(javaType, text));
  }
};

struct ScalarCase {
  const char* method;
  const char* javaType;
  const wchar_t* text;
  const char* answer;
};

constexpr ScalarCase kScalars[] = {
    {"echoBoolean", "boolean", L"true", "Bool true"},
    {"echoBoolean", "boolean", L"True", "Bool true"},
    {"echoBoolean", "boolean", L"TRUE", "Bool true"},
    {"echoBoolean", "boolean", L"tRUE", "Bool false"},
    {"echoBoolean", "boolean", L"1", "Bool false"},
    {"echoBoolean", "boolean", L"yes", "Bool false"},
    {"echoBoolean", "boolean", L"true ", "Bool false"},
    {"echoByte", "byte", L"-1", "Int 255"},
    {"echoByte", "byte", L"127", "Int 127"},
    {"echoByte", "byte", L"300", "Int 44"},
    {"echoChar", "char", L"AB", "Char A"},
    {"echoShort", "short", L"-1", "Int -1"},
    {"echoShort", "short", L"65537", "Int 1"},
    {"echoInt", "int", L"-2147483648", "Int -2147483648"},
    {"echoInt", "int", L"5000000000", "Int 705032704"},
    {"echoInt", "int", L" +42abc", "Int 42"},
    {"echoInt", "int", L"text", "Int 0"},
    {"echoLong", "long", L"5000000000", "Int 5000000000"},
    {"echoLong", "long", L"-9223372036854775808", "Int -9223372036854775808"},
    {"echoFloat", "float", L"1.5", "Real 1.500000"},
    {"echoFloat", "float", L"1e-3", "Real 0.001000"},
    {"echoDouble", "double", L"-2.25e3", "Real -2250.000000"},
    {"echoDouble", "double", L"1e300x", nullptr},
    {"echoDouble", "double", L"1,5", "Real 1.000000"},
    {"echoString", "java.lang.String", L"", "String "},
    {"echoString", "java.lang.String", L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB", "String "},
    {"echoString", "java.lang.String", L"a b\tc", "String a b\tc"},
    {"echo", "java.lang.Boolean", L"TRUE", "Bool true"},
    {"echo", "java.lang.Byte", L"-5", "Int -5"},
    {"echo", "java.lang.Character", L"zyx", "Char z"},
    {"echo", "java.lang.Short", L"-32768", "Int -32768"},
    {"echo", "java.lang.Integer", L"42", "Int 42"},
    {"echo", "java.lang.Long", L"9223372036854775807", "Int 9223372036854775807"},
    {"echo", "java.lang.Float", L"0.5", "Real 0.500000"},
    {"echo", "java.lang.Double", L"1e3", "Real 1000.000000"},
    {"echo", "java.lang.Byte", L"300", "refused"},
    {"echo", "java.lang.Double", L"1,5", "refused"},
};

TEST_F(MarshallingTest, EveryScalarGoesOutAndComesBackWhateverTheDecimalPoint) {
  Handler& echo = Make("beans.ScalarEcho");
  for (const char* locale : {utf8Locale, utf8CommaLocale, singleByteCommaLocale}) {
    const LocaleScope scope(locale);
    for (const ScalarCase& c : kScalars) {
      const std::string answer = CallOne(echo, c.method, c.javaType, c.javaType, c.text);
      if (c.answer != nullptr) {
        EXPECT_EQ(answer, c.answer) << c.method << " " << Utf8(c.text) << " " << locale;
      } else {
        EXPECT_EQ(answer.size(), std::string("Real ").size() + 301 + 7) << "whole, however large";
      }
    }
  }
}

TEST_F(MarshallingTest, ValuesOfTheirOwnClassesGoOutAlike) {
  Handler& echo = Make("beans.ScalarEcho");
  auto real = std::make_unique<type::Real>(2.5);
  real->GetMetaItemType() = DescribeType("double");
  auto flag = std::make_unique<type::Bool>();
  flag->GetMetaItemType() = DescribeType("boolean");
  flag->SetValue(true);
  auto high = std::make_unique<type::Char>();
  high->GetMetaItemType() = DescribeType("char");
  high->SetValue(L'\u00E9');
  const LocaleScope scope(singleByteCommaLocale);
  EXPECT_EQ(CallOne(echo, "echoDouble", "double", std::move(real)), "Real 2.500000");
  EXPECT_EQ(CallOne(echo, "echoBoolean", "boolean", std::move(flag)), "Bool true");
  Values values;
  values.push_back(std::move(high));
  const CallOutcome outcome = Call(echo, "echoChar", "char", values);
  EXPECT_EQ(static_cast<const type::Char*>(outcome.result)->GetValue(), 0)
      << "U+FFE9, a byte's sign in all bits, is no character of Latin-1";
}

TEST_F(MarshallingTest, EachArgumentArrivesInItsOwnPlace) {
  const std::pair<const char*, const wchar_t*> params[] = {
      {"boolean", L"true"}, {"byte", L"-2"},     {"char", L"c"},
      {"short", L"-4"},     {"int", L"5"},       {"long", L"-6"},
      {"float", L"7.5"},    {"double", L"-8.5"}, {"java.lang.String", L"nine"}};
  Values values;
  for (const auto& [javaType, text] : params) {
    values.push_back(MakeValue(javaType, text));
  }
  EXPECT_EQ(Call(Make("beans.ScalarEcho"), "combine", "java.lang.String", values).Text(),
            "String true|-2|99|-4|5|-6|7.5|-8.5|nine");
}

TEST_F(MarshallingTest, TextGoesOutNarrowAndComesBackWhole) {
  struct Case {
    const char* locale;
    const wchar_t* text;
    const char* codes;
  };
  const Case cases[] = {
      {utf8Locale, L"plain", "70 6c 61 69 6e"},
      {utf8Locale, L"gr\u00FC\u00DFe", "67 72 fc"},
      {utf8Locale, L"gr\u00FC\u00DFe  ", "67 72 fc df 65"},
      {utf8Locale, L"\U0001F600abc", "d83d de00"},
      {utf8Locale, L"\u20AC\u20AC\u20AC", "20ac"},
      {singleByteCommaLocale, L"gr\u00FC\u00DFe", "67 72 fc df 65"},
  };
  Handler& texts = Make("beans.Texts");
  for (const Case& c : cases) {
    const LocaleScope scope(c.locale);
    EXPECT_EQ(CallOne(texts, "codes", "java.lang.String", "java.lang.String", c.text),
              std::string("String ") + c.codes);
  }
  for (const char* locale : {utf8Locale, singleByteCommaLocale}) {
    const LocaleScope scope(locale);
    EXPECT_EQ(Call(texts, "latin", "java.lang.String", {}).Text(),
              "String gr\xC3\xBC\xC3\x9F"
              "e");
    EXPECT_EQ(Call(texts, "supplementary", "java.lang.String", {}).Text(),
              "String \xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(Call(texts, "withNul", "java.lang.String", {}).Text(), "String a");
    EXPECT_EQ(Call(texts, "loneSurrogate", "java.lang.String", {}).Text(),
              "String a\xED\xA0\x80"
              "b");
    EXPECT_EQ(Call(texts, "empty", "java.lang.String", {}).Text(), "String ");
    EXPECT_EQ(CallOne(texts, "length", "int", "java.lang.String", L""), "Int 0");
  }
  const LocaleScope scope(singleByteCommaLocale);
  EXPECT_EQ(CallOne(texts, "codes", "java.lang.String", "java.lang.String", L"\u20AC"), "refused")
      << "Latin-1 has no euro sign";
}

TEST_F(MarshallingTest, ALongTextIsNotCut) {
  Handler& texts = Make("beans.Texts");
  Values values;
  values.push_back(MakeValue("java.lang.String", std::wstring(1000, L'x')));
  values.push_back(MakeValue("int", L"1000"));
  EXPECT_EQ(Call(texts, "repeated", "java.lang.String", values).Text(),
            "String " + std::string(1000000, 'x'));
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
    {"java.lang.String[]", L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB,b", "[, b]", "String [,b]",
     nullptr},
};

TEST_F(MarshallingTest, EveryArrayGoesOutComesBackAndIsFilledAgain) {
  Handler& text = Make("beans.ArrayText");
  Handler& echo = Make("beans.ArrayEcho");
  Handler& changer = Make("beans.ArrayChanger");
  const LocaleScope scope(utf8CommaLocale);
  for (const ArrayCase& c : kArrays) {
    const std::string name = c.javaType + Utf8(c.elements);
    EXPECT_EQ(CallOne(text, "text", "java.lang.String", c.javaType, c.elements),
              c.arrived == nullptr ? "refused" : std::string("String ") + c.arrived)
        << name;
    Values values;
    values.push_back(MakeValue(c.javaType, c.elements));
    const std::string before = Show(values[0].get());
    const std::string echoed = Call(echo, "echo", c.javaType, values).Text();
    EXPECT_EQ(echoed, c.back == nullptr ? "refused" : c.back) << name;
    const bool isFilledAgain = c.back != nullptr && echoed != "null";
    EXPECT_EQ(Show(values[0].get()), isFilledAgain ? c.back : before) << name;
    if (c.reversed != nullptr) {
      for (const char* expected : {c.reversed, c.back}) {
        EXPECT_EQ(Call(changer, "reverse", "void", values).Text(), "Void ") << name;
        EXPECT_EQ(Show(values[0].get()), expected) << name << ", again and again";
        EXPECT_TRUE(values[0]->CanInvoke());
      }
    }
  }
}

TEST_F(MarshallingTest, ResultsOfEveryShapeComeBack) {
  Handler& maker = Make("beans.ArrayMaker");
  struct Case {
    const char* method;
    const char* returnType;
    const char* answer;
  };
  const Case cases[] = {
      {"emptyInts", "int[]", "null"},
      {"nullInts", "int[]", "null"},
      {"emptyRows", "int[][]", "null"},
      {"noRows", "int[][]", "null"},
      {"grid", "int[][]", "Int [[1,2,3],[4,5,6]]"},
      {"unevenRows", "int[][]", "Int [[1,2,3],[4,-,-],[5,6,7]]"},
      {"nullRow", "int[][]", "Int [[1,2],[-,-],[-,-]]"},
      {"nullFirstRow", "int[][]", "null"},
      {"cube", "int[][][]", "refused"},
      {"stringsWithNull", "java.lang.String[]", "String [first,-,,last]"},
      {"stringGridWithNull", "java.lang.String[][]", "String [[a,-],[-,-]]"},
      {"integersWithNull", "java.lang.Integer[]", "Int [1,-,3]"},
      {"pointsWithNull", "beans.Point[]", "Object [beans.Point,-,beans.Point]"},
      {"mixed", "java.lang.Object[]",
       "Object [java.lang.Object,java.lang.Object,java.lang.Object]"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Call(maker, c.method, c.returnType, {}).Text(), c.answer) << c.method;
  }
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
      {"dropLastRow", "void", "int[][]", L"1,2;3,4", "Void ", "Int [[1,2],[-,-]]"},
      {"reverseAndReturn", "int[]", "int[]", L"1,2,3", "Int [3,2,1]", "Int [3,2,1]"},
      {"changeAndThrow", "void", "int[]", L"1,2",
       "failed: Java Exception: java.lang.IllegalStateException: changed 2", "Int [1,2]"},
  };
  for (const Case& c : cases) {
    Values values;
    values.push_back(MakeValue(c.javaType, c.elements));
    EXPECT_EQ(Call(changer, c.method, c.returnType, values).Text(), c.answer) << c.method;
    EXPECT_EQ(Show(values[0].get()), c.after) << c.method;
  }
}

TEST_F(MarshallingTest, ShapesAndElementsThatDoNotFitAreNotPassed) {
  Handler& text = Make("beans.ArrayText");
  const auto shift = [](std::unique_ptr<type::Object> value) {
    value->GetMetaItemType().arrayInfo->dimensions[0].lowerBound = 1;
    return value;
  };
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", shift(MakeValue("int[]", L"1,2"))),
            "String null");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", shift(MakeValue("java.lang.String[]", L"a"))),
            "refused");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", shift(MakeValue("int[][]", L"1,2;3,4"))),
            "refused");

  const auto mix = [](const char* javaType, const wchar_t* elements, type::Object* intruder) {
    auto value = MakeValue(javaType, elements);
    auto& array = static_cast<type::Array&>(*value);
    delete array.GetItemAt(1);
    array.SetItemAt(intruder, 1);
    return value;
  };
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", mix("int[]", L"1,2", new type::Real(2.0))),
            "String null");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", mix("double[]", L"1,2", new type::Int(2))),
            "String null");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", mix("char[]", L"a,b", new type::Bool())),
            "String null");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", mix("int[][]", L"1,2;3,4", new type::Void())),
            "refused");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String",
                    mix("java.lang.String[]", L"a,b", new type::Int(2))),
            "String [a, 2]");

  auto cube = MakeValue("int[]", L"1");
  cube->GetMetaItemType().arrayInfo->dimensions.assign(3, {0, 1});
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", std::move(cube)), "refused");
  auto none = MakeValue("int[]", L"1");
  none->GetMetaItemType().arrayInfo->dimensions.clear();
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", std::move(none)), "refused");
  auto unknown = MakeValue("int[]", L"7,8");
  unknown->GetMetaItemType().arrayInfo->dimensions[0].elementCount = -1;
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", std::move(unknown)), "String [7]")
      << "an unknown count stands for one element";
  auto longer = MakeValue("int[]", L"7,8");
  longer->GetMetaItemType().arrayInfo->dimensions[0].elementCount = 3;
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", std::move(longer)), "String null");
  auto scalar = MakeValue("int", L"1");
  scalar->GetMetaItemType() = DescribeType("int[]");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", std::move(scalar)), "refused");
}

TEST_F(MarshallingTest, AnArrayTakesTheClassOfItsFirstElement) {
  Handler& text = Make("beans.ArrayText");
  Handler& point = Make("beans.Point");
  const auto objects = [](const char* elementType, std::vector<Handler*> handlers) {
    auto value =
        MakeValue(std::string(elementType) + "[]", std::wstring(handlers.size() - 1, L','));
    auto& array = static_cast<type::Array&>(*value);
    for (unsigned int i = 0; i < handlers.size(); ++i) {
      delete array.GetItemAt(i);
      array.SetItemAt(HoldObject(*handlers[i], elementType).release(), i);
    }
    return value;
  };
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", objects("beans.Point", {&point, &point})),
            "String [(0, 0), (0, 0)]");
  EXPECT_EQ(CallOne(text, "classOf", "java.lang.String", objects("java.lang.Object", {&point})),
            "String [Lbeans.Point;");
  EXPECT_EQ(CallOne(text, "text", "java.lang.String", objects("java.lang.Object", {&point, &text})),
            "refused")
      << "what doesn't fit the first element's class";
  const JniReferenceTracker tracker(Env());
  {
    Values values;
    values.push_back(objects("beans.Point", {&point, &point}));
    Handler& changer = Make("beans.ArrayChanger");
    EXPECT_EQ(Call(changer, "reverse", "void", values).Text(), "Void ");
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

#include "host/argument.h"

#include <gmock/gmock.h>

#include <map>

#include "host/host_error.h"
#include "host/utf8.h"

namespace quenlatrix::host {
namespace {

using Kind = Argument::Kind;
using testing::ElementsAre;
using testing::HasSubstr;

// "[int:1;text:a;]".
std::string Shown(const Argument& argument) {
  if (argument.kind == Kind::Array) {
    std::string shown = "[";
    for (const Argument& item : argument.items) shown += Shown(item) + ";";
    return shown + "]";
  }
  static const std::map<Kind, const char*> kinds = {
      {Kind::Null, "null"},     {Kind::Bool, "bool:"}, {Kind::Integer, "int:"},
      {Kind::Real, "real:"},    {Kind::Text, "text:"}, {Kind::Character, "char:"},
      {Kind::Reference, "ref:"}};
  return kinds.at(argument.kind) + (argument.kind == Kind::Null ? "" : argument.text);
}

// Why a text is no literal, with its place.
std::string WhyNoLiteral(std::string_view source) {
  try {
    ParseArgument(source);
    return {};
  } catch (const HostError& error) {
    EXPECT_EQ(error.exitStatus, ExitStatus::Usage) << source;
    return ShowPlace(error.what(), source, error.place.value());
  }
}

TEST(Argument, IsALiteralACharacterANameOrABareWord) {
  const std::pair<const char*, const char*> cases[] = {
      {"5", "int:5"},
      {"123456789012345678901234567890", "int:123456789012345678901234567890"},
      {"-1E+3", "real:-1E+3"},
      {"0.1000000000000000055511151231257827", "real:0.1000000000000000055511151231257827"},
      {"true", "bool:true"},
      {"null", "null"},
      {"\"a \\\"b\\\" \\u00fc\"", "text:a \"b\" ü"},
      {"\"@list\"", "text:@list"},
      {"[1, -0, 2.0,\"a\",null]", "[int:1;int:-0;real:2.0;text:a;null;]"},
      {"[[1,2],[3]]", "[[int:1;int:2;];[int:3;];]"},
      {"'c'", "char:c"},
      {"'\\''", "char:'"},
      {"'\\n'", "char:\n"},
      {"'\\u20AC'", "char:€"},
      {"'€'", "char:€"},
      {"@list", "ref:list"},
      {"@größe-2.b", "ref:größe-2.b"},
      {"", "text:"},
      {"2024-01-31", "text:2024-01-31"},
      {"007", "text:007"},
      {"1.", "text:1."},
      {"-", "text:-"},
  };
  for (const auto& [source, expected] : cases) {
    EXPECT_EQ(Shown(ParseArgument(source)), expected) << source;
  }
}

TEST(Argument, ThatBeginsLikeALiteralAndIsNoneShowsThePlace) {
  const std::pair<const char*, const char*> cases[] = {
      {"[\"ü\",x]", "\n  [\"ü\",x]\n       ^\n"},
      {"\"abc", "\n  \"abc\n      ^\n"},
      {"\"a\"b", "\n  \"a\"b\n     ^\n"},
      {"{\"a\":1}", "a JSON object is no value"},
      {"[{}]", "a JSON object is no value that an array holds\n  [{}]\n   ^"},
      {"[[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]]", "one or two dimensions"},
      {"[1e999]", "number overflow"},
      {"'c", "closing ' is missing"},
      {"'", "closing ' is missing"},
      {"'\\x'", "with one character"},
      {"'\\uD800'", "with one character"},
      {"@2", "name of a held value"},
      {"\"\xff\"", "ill-formed UTF-8"},
  };
  for (const auto& [source, expected] : cases) {
    EXPECT_THAT(WhyNoLiteral(source), HasSubstr(expected)) << source;
  }
}

TEST(Argument, ThatNoParameterCanTakeIsRefusedWithItsOwnText) {
  const std::pair<const char*, const char*> cases[] = {
      {"[1,null]", "null can't be passed"}, {"[[1],2]", "element 2 is number 2"},
      {"[1,[2]]", "element 1 is number 1"}, {"[[[1]]]", "more than two dimensions"},
      {"\"a\\u0000b\"", "U+0000"},          {"[\"\\u0000\"]", "U+0000"},
  };
  for (const auto& [source, expected] : cases) {
    EXPECT_THAT(WhyUnpassable(ParseArgument(source)), HasSubstr(expected)) << source;
  }
  for (const char* source : {"[[1,2],[3,4]]", "[\"\"]", "\"\"", "true", "1e400"}) {
    EXPECT_EQ(WhyUnpassable(ParseArgument(source)), "") << source;
  }
}

TEST(Argument, EndsAtTheFirstBlankOutsideOfALiteral) {
  EXPECT_THAT(
      SplitArguments("  5 \"a b\" [1, [2, 3]]\t' ' word@x \"]\" [\"] \", 'x']  "),
      ElementsAre("5", "\"a b\"", "[1, [2, 3]]", "' '", "word@x", "\"]\"", "[\"] \", 'x']"));
  EXPECT_THAT(SplitArguments("\"a \\\" b\" [1 2"), ElementsAre("\"a \\\" b\"", "[1 2"));
  EXPECT_THAT(SplitArguments("\"a\"b [1]x y"), ElementsAre("\"a\"b", "[1]x", "y"));
  EXPECT_THAT(SplitArguments(" \t"), ElementsAre());
}

TEST(Utf8, KeepsEveryCharacterAndRepairsTheRest) {
  const std::wstring characters = L"a\u00e4\u20ac\U0001F600";
  EXPECT_EQ(WideToUtf8(characters), "a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
  EXPECT_EQ(Utf8ToWide(WideToUtf8(characters)), characters);
  const std::string_view broken[] = {"\xff", "\xc0\x80", "\xed\xa0\x80", "\xe2\x82",
                                     "\xf5\x80\x80\x80"};
  for (const std::string_view bytes : broken) {
    EXPECT_EQ(Utf8ToWide(bytes), std::wstring(bytes.size(), L'\uFFFD'));
  }
  EXPECT_EQ(WideToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xef\xbf\xbd");
}

}  // namespace
}  // namespace quenlatrix::host

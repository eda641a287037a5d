#include <gtest/gtest.h>

#include <list>
#include <string>
#include <tuple>
#include <utility>

#include "text/zu_text.h"

namespace {

using Pair = std::pair<ZuText, ZuText>;

TEST(ZuTextParsing, KnowsQuotesAndBrackets) {
  const std::tuple<const char*, bool, const char*, bool, const char*> cases[] = {
      {"'a'", true, "a", false, "'a'"},         {"\"\"", true, "", false, "\"\""},
      {"'a\"", false, "'a\"", false, "'a\""},   {"'", false, "'", false, "'"},
      {"  (x)", false, "  (x)", true, "x"},     {"[x]", false, "[x]", true, "x"},
      {"(x]", false, "(x]", false, "(x]"},      {"  (", false, "  (", false, "("},
      {"\t(x)", false, "\t(x)", false, "\t(x)"}};
  for (const auto& [text, isQuoted, unquoted, isInBrackets, bare] : cases) {
    ZuText quoted(text);
    ZuText bracketed(text);
    EXPECT_EQ(quoted.IsQuoted(), isQuoted);
    quoted.StripQuotes();
    EXPECT_STREQ(quoted.GetTextEx(), unquoted);
    EXPECT_EQ(ZuText(text).IsInBrackets(), isInBrackets);
    bracketed.StripBrackets();
    EXPECT_STREQ(bracketed.GetTextEx(), bare);
  }
  ZuText t("  (x)");
  EXPECT_TRUE(t.IsInBrackets());
  EXPECT_STREQ(t.GetTextEx(), "(x)");
}

TEST(ZuTextParsing, SplitsNameValuePairs) {
  const std::tuple<const char*, const char*, bool, const char*, const char*> cases[] = {
      {"key=value", "=", true, "key", "value"},
      {"=v", "=", true, "", "v"},
      {"k=", "=", true, "k", ""},
      {" k = v\n", "=", true, " k", " v"},
      {" k = v\n", "=", false, " k ", " v\n"},
      {"a=b=c", "=", true, "a", "b=c"},
      {"a::b", "::", true, "a", ":b"}};
  for (const auto& [text, sep, trim, name, value] : cases) {
    Pair pair("old", "old");
    EXPECT_TRUE(ZuText(text).SplitNameValuePair(pair, sep, trim));
    EXPECT_STREQ(pair.first.GetTextEx(), name);
    EXPECT_STREQ(pair.second.GetTextEx(), value);
  }
  Pair pair("a=b", "a=b");
  EXPECT_FALSE(ZuText("novalue").SplitNameValuePair(pair, "=", true) ||
               ZuText().SplitNameValuePair(pair, "=", true) ||
               ZuText("a").SplitNameValuePair(pair, "", true));
  EXPECT_STREQ(pair.first.GetTextEx(), "a=b");
}

TEST(ZuTextParsing, SplitsIntoThePairItStandsIn) {
  Pair pair("k=v", "=");
  EXPECT_TRUE(pair.first.SplitNameValuePair(pair, pair.second, false));
  EXPECT_STREQ(pair.first.GetTextEx(), "k");
  EXPECT_STREQ(pair.second.GetTextEx(), "v");
}

TEST(ZuTextParsing, CutsIntoTokens) {
  const std::tuple<std::string, const char*, bool, std::list<std::string>> cases[] = {
      {"a,,b,", ",", true, {"a", "", "b", ""}},
      {"a,,b,", ",", false, {"a", "b"}},
      {",a", ",", true, {"", "a"}},
      {"a;b,c", ",;", true, {"a", "b", "c"}},
      {"a,b", "", true, {"a,b"}},
      {"a,b", nullptr, false, {"a,b"}},
      {std::string("a\0,b", 4), ",", true, {std::string("a\0", 2), "b"}}};
  for (const auto& [text, delims, keepEmpty, expected] : cases) {
    ZuText t;
    t.SetEqualTo(text.data(), text.size(), 0);
    std::list<ZuText> out;
    t.Tokenizer(delims, keepEmpty, out);
    std::list<std::string> tokens;
    for (const ZuText& token : out) {
      tokens.emplace_back(token.GetTextEx(), token.GetSize());
    }
    EXPECT_EQ(tokens, expected) << text;
  }
  std::list<ZuText> out{ZuText("before")};
  ZuText().Tokenizer(",", true, out);
  EXPECT_EQ(out.size(), 1U);
  out.front().Tokenizer("f", true, out);
  EXPECT_STREQ(out.back().GetTextEx(), "ore");
}

}  // namespace

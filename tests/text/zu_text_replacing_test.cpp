#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "text/zu_text.h"
#include "text/zu_text_local.h"

namespace {

TEST(ZuTextReplacing, ReplacesEveryMatchOnce) {
  const std::tuple<const char*, const char*, const char*, bool, const char*> cases[] = {
      {"aaa", "a", "aa", true, "aaaaaa"},
      {"abcAbc", "AB", "x", false, "xcxc"},
      {"abcAbc", "AB", "x", true, "abcAbc"},
      {"abab", "ab", "", true, ""},
      {"aXbxc", "x", "xyz", false, "axyzbxyzc"},
      {"aaa", "aa", "b", true, "ba"},
      {"abc", "", "x", true, "abc"},
      {"\xE4\xC4", "\xE4", "ae", false, "aeae"}};
  for (const auto& [text, find, repl, caseSensitive, expected] : cases) {
    ZuText t(text);
    t.ReplaceAll(find, repl, caseSensitive);
    EXPECT_STREQ(t.GetTextEx(), expected) << text << ", " << find;
  }
}

TEST(ZuTextReplacing, ReplacesOneOccurrence) {
  const auto replaced = [](const char* text, const char* find, unsigned long n,
                           bool caseSensitive) {
    ZuText t(text);
    t.ReplaceOccurrence(find, "b", n, caseSensitive);
    return std::string(t.GetTextEx());
  };
  EXPECT_EQ(replaced("aaa", "a", 2, true), "aba");
  EXPECT_EQ(replaced("aaaa", "aa", 2, true), "aab");
  EXPECT_EQ(replaced("aAa", "A", 2, false), "aba");
  EXPECT_EQ(replaced("aAa", "A", 2, true), "aAa");
  EXPECT_EQ(replaced("aaa", "a", 0, true) + replaced("aaa", "a", 4, true), "aaaaaa");
}

TEST(ZuTextReplacing, ReplacingTextKeepsTheTerminator) {
  ZuText t;
  t.ReplaceText(5, 5, "abcd");
  EXPECT_STREQ(t.GetTextEx(), "abcd");
  t.ReplaceText(2, 100, "XYZ");
  EXPECT_STREQ(t.GetTextEx(), "abXYZ");
  t.ReplaceText(99, 1, "!");
  EXPECT_STREQ(t.GetTextEx(), "abXYZ!");
  t.ReplaceText(1, 4, ZuText());
  EXPECT_STREQ(t.GetTextEx(), "a!");
}

TEST(ZuTextReplacing, TakesItselfAsArgument) {
  ZuText t("ab");
  t.ReplaceText(1, 0, t);
  EXPECT_STREQ(t.GetTextEx(), "aabb");
  t.ReplaceAll("A", t, false);
  EXPECT_STREQ(t.GetTextEx(), "aabbaabbbb");
  t.ReplaceAll(t, "x");
  EXPECT_STREQ(t.GetTextEx(), "x");
}

TEST(ZuTextReplacing, StopsWhereAFixedTextIsFull) {
  ZuTextLocal<31> t("aaaaaaaaaaaaaaaaaaaaaaaaaa");
  t.ReplaceAll("a", "bb");
  EXPECT_STREQ(t.GetTextEx(), "bbbbbbbbaaaaaaaaaaaaaaaaaaaaaa");
  t.ReplaceAll("A", "cc", false);
  EXPECT_STREQ(t.GetTextEx(), "bbbbbbbbaaaaaaaaaaaaaaaaaaaaaa");
  t.ReplaceAll("A", "c", false);
  EXPECT_STREQ(t.GetTextEx(), "bbbbbbbbcccccccccccccccccccccc");
}

}  // namespace

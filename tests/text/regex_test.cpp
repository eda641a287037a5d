#include "text/regex.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>

#include "text/zu_text_local.h"

namespace quenlatrix::regex {
namespace {

TEST(RegEx, MatchesExtendedSyntaxAnywhere) {
  const std::tuple<const char*, const char*, bool> cases[] = {{"xabx", "ab", true},
                                                              {"xabx", "^ab", false},
                                                              {"xabx", "AB", false},
                                                              {"aab", "^(a|b){3}$", true},
                                                              {"a+b", "a\\+b", true},
                                                              {"", "^$", true},
                                                              {"12", "[[:alpha:]]", false},
                                                              {"a", "(a", false},
                                                              {"a", "[", false},
                                                              {"a", "*", false},
                                                              {"a", "a{2,1}", false},
                                                              {"a", "[[:none:]]", false},
                                                              {nullptr, "a", false},
                                                              {"a", nullptr, false}};
  for (const auto& [text, pattern, expected] : cases) {
    EXPECT_EQ(RegExMatch(text, pattern), expected) << (pattern == nullptr ? "null" : pattern);
  }
}

TEST(RegEx, GivesUpOnWhatWouldNotEnd) {
  const std::string text(1 << 20, 'a');
  EXPECT_TRUE(RegExMatch(text.c_str(), "^.*$"));
  EXPECT_FALSE(RegExMatch(text.c_str(), "[ab]*c"));
  EXPECT_FALSE(RegExMatch(text.c_str(), "^(a|b)*$"));
  EXPECT_FALSE(RegExMatch(std::string(60, 'a').c_str(), "^(a|aa)+$b"));
  EXPECT_FALSE(RegExMatch(text.c_str(), "(((a{1,1000}){1,1000}){1,1000})b"));
  const std::string open(100000, '(');
  EXPECT_FALSE(RegExMatch("a", (open + "a" + std::string(open.size(), ')')).c_str()));
  std::string alternatives = "b";
  while (alternatives.size() < 200000) alternatives += "|a";
  EXPECT_FALSE(RegExMatch("z", alternatives.c_str()));
}

TEST(RegEx, ReadsSpansThatLieWithinTheText) {
  const std::tuple<const char*, boost::regmatch_t, const char*, bool, unsigned long, const char*>
      cases[] = {{"abCde", {1, 4}, "BcD", true, 3, "bCd"},
                 {"abCde", {1, 4}, "Bc", false, 3, "bCd"},
                 {"abCde", {0, 5}, "abcde", true, 5, "abCde"},
                 {"abCde", {2, 2}, "", false, 0, ""},
                 {"abCde", {-1, -1}, "a", false, 0, ""},
                 {"abCde", {3, 6}, "de", false, 0, "old"},
                 {"abCde", {4, 1}, "bCd", false, 0, "old"},
                 {"abCde", {LONG_MAX - 1, LONG_MAX}, "a", false, 0, "old"},
                 {"abCde", {-3, 2}, "ab", false, 0, "old"},
                 {"", {0, 1}, "a", false, 0, "old"},
                 {nullptr, {0, 1}, nullptr, false, 0, "old"}};
  for (const auto& [text, m, s, equal, length, copied] : cases) {
    EXPECT_EQ(CompRegExMatch(text, m, s), equal) << m.rm_so << " " << m.rm_eo;
    ZuText out("old");
    EXPECT_EQ(CopyRegExMatch(text, m, out), length) << m.rm_so << " " << m.rm_eo;
    EXPECT_STREQ(out.GetTextEx(), copied);
  }
}

TEST(RegEx, CopiesWithinTheTextItselfAndCutsForFixedStorage) {
  ZuText t("abcde");
  EXPECT_EQ(CopyRegExMatch(t.GetText(), {2, 5}, t), 3U);
  EXPECT_STREQ(t.GetTextEx(), "cde");
  ZuTextLocal<31> fixed;
  EXPECT_EQ(CopyRegExMatch(std::string(40, 'x').c_str(), {0, 40}, fixed), 40U);
  EXPECT_EQ(fixed.GetSize(), 30U);
}

TEST(RegEx, TellsScalarNames) {
  for (const char* name : {"abc_1", "A", "a_"}) {
    EXPECT_TRUE(ZuText(name).validScalarName()) << name;
  }
  for (const char* name : {"", "1abc", "_abc", "ab-c", "abc ", "ab\n-c", "\xE4"}) {
    EXPECT_FALSE(ZuText(name).validScalarName()) << name;
  }
  EXPECT_TRUE(ZuText(std::string(62, 'a').c_str()).validScalarName());
  EXPECT_FALSE(ZuText(std::string(63, 'a').c_str()).validScalarName());
  ZuText nulInside;
  nulInside.SetEqualTo("ab\0-c", 5, 0);
  EXPECT_FALSE(nulInside.validScalarName());
}

}  // namespace
}  // namespace quenlatrix::regex

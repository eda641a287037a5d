#include "host/security_policy.h"

#include <gtest/gtest.h>

#include "meta_object/info/security_info.h"

namespace quenlatrix::host {
namespace {

using Patterns = std::vector<std::string>;

TEST(SecurityPolicy, DenyWinsOverAllowAndAnyAllowMakesAListOfWhatIsAllowed) {
  const std::tuple<Patterns, Patterns, const char*, bool> cases[] = {
      {{}, {}, "shop.cart.Widget", true},
      {{"shop.*"}, {}, "shop.cart.Widget", true},
      {{"shop.*"}, {}, "bank.Account", false},
      {{"bank.*", "shop.*"}, {}, "shop.cart.Widget", true},
      {{}, {"shop.*"}, "shop.cart.Widget", false},
      {{}, {"shop.*"}, "bank.Account", true},
      {{"shop.*"}, {"*.Widget"}, "shop.cart.Widget", false},
      {{"shop.*"}, {"*.Widget"}, "shop.cart.Basket", true},
      // A class can be asked for, and a pattern written, with slashes.
      {{}, {"shop.*"}, "shop/cart/Widget", false},
      {{}, {"shop/*"}, "shop.cart.Widget", false},
      {{"shop.cart"}, {}, "shop.cart.Widget", false},
      {{"SHOP.*"}, {}, "shop.cart.Widget", false},
      // The host's own class.
      {{"shop.*"}, {"*"}, "HostOwn", true},
      {{"shop.*"}, {"*"}, "HostOwnNot", false},
  };
  for (const auto& [allow, deny, className, allowed] : cases) {
    const SecurityPolicy policy(allow, deny, "HostOwn");
    EXPECT_EQ(policy.Allows(className), allowed)
        << testing::PrintToString(allow) << testing::PrintToString(deny) << className;
    EXPECT_EQ(policy.WhyRefused(className).empty(), allowed);
  }
}

TEST(SecurityPolicy, GlobsMatchTheWholeText) {
  const std::pair<const char*, const char*> matching[] = {
      {"", ""},         {"*", ""},         {"**", "abc"},        {"a*c", "abbbc"}, {"a?c", "abc"},
      {"*b*d", "abcd"}, {"*ab", "aaabab"}, {"a*b*c", "a.b.b.c"}, {"abc*", "abc"},  {"*?", "a"}};
  for (const auto& [pattern, text] : matching) {
    EXPECT_TRUE(MatchesGlob(pattern, text)) << pattern << " " << text;
  }
  const std::pair<const char*, const char*> other[] = {
      {"", "a"},      {"?", ""},  {"abc", "ab"},  {"ab", "abc"},
      {"a*c", "abd"}, {"*?", ""}, {"a.c", "abc"}, {"*ab", "aba"}};
  for (const auto& [pattern, text] : other) {
    EXPECT_FALSE(MatchesGlob(pattern, text)) << pattern << " " << text;
  }
  std::string stars;
  for (int i = 0; i < 200; ++i) stars += "*a";
  EXPECT_FALSE(MatchesGlob(stars + "b", std::string(5000, 'a'))) << "and in no time";
}

TEST(SecurityPolicy, TheInstalledPolicyAnswersTheCallback) {
  meta_object::info::SecurityInfo record;
  record.firstValue = "JAVABEAN";
  record.secondValue = "shop.cart.Widget";
  EXPECT_TRUE(SecurityPolicy::Check(&record));
  const SecurityPolicy policy({}, {"shop.*"}, "");
  SecurityPolicy::Install(&policy);
  EXPECT_FALSE(SecurityPolicy::Check(&record));
  EXPECT_FALSE(SecurityPolicy::Check(nullptr));
  record.secondValue = "bank.Account";
  EXPECT_TRUE(SecurityPolicy::Check(&record));
  SecurityPolicy::Install(nullptr);
}

}  // namespace
}  // namespace quenlatrix::host

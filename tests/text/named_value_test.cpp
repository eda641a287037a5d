#include "text/named_value.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "text/zu_text_local.h"

namespace {

TEST(NamedValue, IsReadFromRequestAndCookieText) {
  const std::tuple<const char*, const char*, char, const char*> cases[] = {
      {"a=1&b=2", "b", '&', "2"},
      {"a=1&b=2", "a", '&', "1"},
      {"id=1; user = bob; x=2", "user", ';', " bob"},
      {"a=&b=2", "a", '&', ""},
      {"a&b=2&a=3", "a", '&', "3"},
      {"ab&b=2", "a", '&', ""},
      {"xa=1&a=2", "a", '&', "1"},
      {"a=1\r\n&b=2", "a", '&', "1"},
      {"a=1&b", "b", '&', ""},
      {"a=1", "A", '&', ""},
      {"a=1&b=2", "b", '\0', "2"},
      {"a&a=1", "a", '\0', ""},
      {"", "a", '&', ""},
      {"=1", "", '&', ""}};
  for (const auto& [data, name, sep, expected] : cases) {
    ZuText value("old");
    EXPECT_EQ(&ScanGetPostCookie(data, name, value, sep), &value);
    EXPECT_STREQ(value.GetTextEx(), expected) << data << ", " << name;
  }
}

TEST(NamedValue, MayReplaceTheDataOrTheName) {
  ZuText t("a=1&b=22");
  EXPECT_STREQ(ScanGetPostCookie(t, "b", t, '&').GetTextEx(), "22");
  ZuText name("a");
  EXPECT_STREQ(ScanGetPostCookie("a=1", name, name, '&').GetTextEx(), "1");
}

TEST(NamedValue, IsCutByFixedStorage) {
  ZuTextLocal<31> value;
  ScanGetPostCookie(("a=" + std::string(40, 'x')).c_str(), "a", value, '&');
  EXPECT_EQ(value.GetTextEx(), std::string(30, 'x'));
}

}  // namespace

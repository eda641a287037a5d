#include "text/named_value.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "text/zu_text_local.h"

namespace {

TEST(NamedValue, IsReadFromRequestAndCookieText) {
  const std::tuple<const char*, const char*, char, const char*> cases[] = {
      {"id=1; user = bob; x=2", "user", ';', " bob"},
      {"a=&b=2", "a", '&', ""},
      {"a&b=2&a=3", "a", '&', "3"},
      {"xa=1&a=2", "a", '&', "1"},
      {"a=1\r\n&b=2", "a", '&', "1"},
      {"a=1", "A", '&', ""},
      {"a=1&b=2", "b", '\0', "2"},
      {"=1", "", '&', ""}};
  for (const auto& [data, name, sep, expected] : cases) {
    ZuText value("old");
    EXPECT_EQ(&ScanGetPostCookie(data, name, value, sep), &value);
    EXPECT_STREQ(value.GetTextEx(), expected) << data << ", " << name;
  }
  ZuTextLocal<31> cut;
  ScanGetPostCookie(("a=" + std::string(40, 'x')).c_str(), "a", cut, '&');
  EXPECT_EQ(cut.GetTextEx(), std::string(30, 'x'));
}

}  // namespace

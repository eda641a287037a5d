#include "text/wide_string.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "tests/support/locales.h"

namespace {

std::wstring Text(const WideString& s) {
  return s.getWCharPtr() == nullptr ? L"(none)" : s.getWCharPtr();
}

std::string Narrow(const WideString& s) {
  return s.getCharPtr() == nullptr ? "(none)" : s.getCharPtr();
}

TEST(WideString, EveryWayToNothingLeavesNoBuffer) {
  const WideString strings[] = {WideString(),
                                WideString(static_cast<const char*>(nullptr)),
                                WideString(""),
                                WideString(static_cast<const wchar_t*>(nullptr)),
                                WideString(L""),
                                WideString(WideString::empty),
                                WideString(L"x").assign(""),
                                WideString(L"x").assign(static_cast<const char*>(nullptr)),
                                WideString(L"x").assign(L""),
                                WideString(L"x").assign(L"abc", 0),
                                WideString(L"x").assign(L"", 3),
                                WideString(L"x") = WideString()};
  for (const WideString& s : strings) {
    EXPECT_EQ(s.getWCharPtr(), nullptr);
    EXPECT_EQ(s.getCharPtr(), nullptr);
    EXPECT_EQ(s.find(L"a"), -1);
    EXPECT_EQ(s.find(nullptr), -1);
    EXPECT_EQ(s.substr(0, -1).getWCharPtr(), nullptr);
    EXPECT_EQ(s.compare(L"", 0), -1);
    EXPECT_EQ(s.compareNoCase(nullptr, 1), 0);
  }
}

TEST(WideString, ChangesDropTheNarrowCopy) {
  WideString s("abc");
  EXPECT_EQ(Narrow(s), "abc");
  EXPECT_EQ(s.getCharPtr(), s.getCharPtr());
  EXPECT_EQ(Narrow(s.append("de")), "abcde");
  EXPECT_EQ(Narrow(s.append(L"f")), "abcdef");
  EXPECT_EQ(Narrow(s.append(static_cast<const wchar_t*>(nullptr))), "abcdef");
  EXPECT_EQ(Narrow(s.append(static_cast<const char*>(nullptr))), "abcdef");
  EXPECT_EQ(Narrow(s.assign(L"ghi", 2)), "gh");
  EXPECT_EQ(Narrow(s.assign("j")), "j");
  EXPECT_EQ(Narrow(s = WideString("k")), "k");
  const WideString l("l");
  EXPECT_EQ(Narrow(s = l), "l");
}

TEST(WideString, TakesItsOwnTextAsArgument) {
  WideString s(L"abcd");
  s.assign(s.getWCharPtr() + 1);
  EXPECT_EQ(Text(s), L"bcd");
  s.append(s.getWCharPtr());
  EXPECT_EQ(Text(s), L"bcdbcd");
  s.assign(s.getCharPtr() + 4);
  s.append(s.getCharPtr());
  EXPECT_EQ(Text(s), L"cdcd");
  s.assign(s.getWCharPtr() + 1, 2);
  EXPECT_EQ(Text(s), L"dc");
  WideString& self = s;
  s = self;
  EXPECT_EQ(Text(s), L"dc");
  const WideString moved(std::move(s));
  EXPECT_EQ(Text(moved), L"dc");
  EXPECT_EQ(Text(s), L"(none)");
}

TEST(WideString, AnAllocatedEmptyTextIsAcceptedEverywhere) {
  WideString s;
  s.append(L"");
  EXPECT_EQ(Text(s), L"");
  EXPECT_EQ(Narrow(s), "");
  EXPECT_EQ(s.compare(L"", 0), 0);
  EXPECT_EQ(s.find(L"a"), -1);
  EXPECT_EQ(Text(WideString(s)) + Text(s.substr(0, -1)), L"(none)(none)");
  EXPECT_EQ(Text(s.append("b")), L"b");
}

TEST(WideString, ComparesWithAndWithoutCaseAndCount) {
  const WideString s(L"abc");
  EXPECT_TRUE(s.compare(nullptr, 0) == 1 && s.compareNoCase(nullptr, 0) == 1);
  EXPECT_TRUE(s.compare(L"abc", 0) == 0 && s.compare(L"ABC", 0) > 0 && s.compare(L"abd", 0) < 0);
  EXPECT_TRUE(s.compareNoCase(L"ABC", 0) == 0 && s.compareNoCase(L"abd", 0) == -1);
  EXPECT_TRUE(s.compare(L"abd", 2) == 0 && s.compareNoCase(L"aBd", 2) == 0);
}

TEST(WideString, PartsEndWithTheText) {
  const WideString s(L"abc");
  EXPECT_EQ(Text(s.substr(0, -1)) + Text(s.substr(1, 10)) + Text(s.substr(1, 1)), L"abcbcb");
  for (const auto& [start, count] : {std::pair(3, 1), {-1, 1}, {0, 0}, {0, -2}}) {
    EXPECT_EQ(Text(s.substr(start, count)), L"(none)") << start << ", " << count;
  }
  WideString filled;
  filled.assign(L"ab", 5);
  EXPECT_EQ(std::wstring(filled.getWCharPtr(), 6), std::wstring(L"ab\0\0\0\0", 6));
  EXPECT_EQ(Text(filled.assign(L"abcdef", 3)), L"abc");
}

TEST(WideString, ConvertsByTheEncodingOfTheProcess) {
  // What comes back is cut to as many bytes as there are characters.
  const std::tuple<const char*, const char*, const wchar_t*, const char*> cases[] = {
      {utf8Locale, "plain", L"plain", "plain"},
      {utf8Locale, "\xC3\xA4", L"\u00E4", ""},
      {utf8Locale, "ab\xC3\xA4", L"ab\u00E4", "ab"},
      {utf8Locale, "a\xC3\xA4z", L"a\u00E4z", "a\xC3\xA4"},
      {utf8Locale, "\xF0\x9F\x98\x80zzz", L"\U0001F600zzz", "\xF0\x9F\x98\x80"},
      {utf8Locale, "ab\xFF", L"(none)", "(none)"},
      {utf8Locale, "\xC3", L"(none)", "(none)"},
      {singleByteCommaLocale, "a\xE4\xDFz", L"a\u00E4\u00DFz", "a\xE4\xDFz"},
  };
  for (const auto& [locale, narrow, wide, back] : cases) {
    const LocaleScope scope(locale);
    const WideString s(narrow);
    EXPECT_EQ(Text(s), wide) << narrow;
    EXPECT_EQ(Narrow(s), back) << narrow;
  }
}

TEST(WideString, WhatCannotBeConvertedChangesAndFindsNothing) {
  const LocaleScope utf8(utf8Locale);
  WideString t(L"abc");
  EXPECT_EQ(Text(t.append("d\xFF")), L"abc");
  EXPECT_EQ(Text(t.append("\xC3\xA4")), L"abc\u00E4");
  const LocaleScope latin(singleByteCommaLocale);
  const WideString s(L"a\u4E2Db");
  EXPECT_EQ(s.getCharPtr(), nullptr);
  EXPECT_EQ(s.find(L"a"), -1);
  EXPECT_EQ(WideString(L"ab").find(L"\u4E2D"), -1);
  EXPECT_EQ(s.allocConvert(L"\u4E2D"), nullptr);
}

TEST(WideString, FindCountsBytesOfTheNarrowForm) {
  const LocaleScope utf8(utf8Locale);
  const WideString s(L"abc");
  EXPECT_TRUE(s.find(L"c") == 2 && s.find(L"z") == -1);
  EXPECT_TRUE(s.find(L"") == 0 && s.find(nullptr) == 0);
  EXPECT_EQ(WideString(L"\u00E4bc").find(L"b"), 2);
  EXPECT_EQ(WideString(L"\u00E4bc").find(L"c"), -1);  // cut off: four bytes, three characters
  std::wstring const longText(300, L'x');
  EXPECT_EQ(WideString((L"-" + longText).c_str()).find(longText.c_str()), 1);
}

TEST(WideString, AllocatedConversionsLeaveTheStringAlone) {
  const LocaleScope utf8(utf8Locale);
  const WideString s(L"abc");
  const char* const narrowCopy = s.getCharPtr();
  const std::unique_ptr<wchar_t[]> wide(s.allocConvert("\xC3\xA4z"));
  EXPECT_STREQ(wide.get(), L"\u00E4z");
  const std::unique_ptr<char[]> narrow(s.allocConvert(L"a\u00E4z"));
  EXPECT_STREQ(narrow.get(), "a\xC3\xA4");
  const std::unique_ptr<wchar_t[]> none(s.allocConvert(""));
  EXPECT_STREQ(none.get(), L"");
  EXPECT_EQ(s.allocConvert("\xFF"), nullptr);
  EXPECT_EQ(s.allocConvert(static_cast<const wchar_t*>(nullptr)), nullptr);
  EXPECT_EQ(s.getCharPtr(), narrowCopy);
}

}  // namespace

#include "text/wide_chars.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>

#include "tests/support/locales.h"

namespace {

namespace text = quenlatrix::text;

TEST(WideChars, ComparisonFoldsTheLowByteAndGivesTheDifferenceOfWholeCharacters) {
  EXPECT_EQ(wcsicmp(L"a", L"b"), -1);
  EXPECT_EQ(wcsicmp(L"aBc", L"AbC"), 0);
  EXPECT_EQ(wcsicmp(L"ab", L"a"), L'b');
  EXPECT_EQ(wcsicmp(L"\u0141x", L"ay"), -1);
  EXPECT_EQ(wcsnicmp(L"abc", L"ABD", 2), 0);
  EXPECT_EQ(wcsnicmp(L"abc", L"ABD", 3), L'c' - L'D');
  EXPECT_EQ(wcsnicmp(L"a", L"b", 0), 0);
  EXPECT_NE(wcsicmp(L"\u00E4", L"\u00C4"), 0);
  const LocaleScope german(singleByteCommaLocale);
  EXPECT_EQ(wcsicmp(L"\u00E4", L"\u00C4"), 0);
}

TEST(WideChars, ComparisonEndsWhereEitherTextEnds) {
  // On the heap, so that the address sanitizer sees a read past the end.
  std::wstring const a(100, L'\u0100');
  EXPECT_EQ(wcsicmp(L"", a.c_str()), 0);
  EXPECT_EQ(wcsicmp(a.c_str(), L""), 0);
}

TEST(WideChars, NumberReadingStopsAtTheSamePlaceInTheWideText) {
  const std::tuple<std::wstring, int, long, long> cases[] = {
      {L"  42x", 10, 42, 4},
      {L"", 10, 0, 0},
      {L"-0x1Fg", 0, -31, 5},
      {L"\u01321\u01002", 10, 21, 2},  // low bytes: '2', '1', NUL, '2'
      {std::wstring(200, L'0') + L"7!", 10, 7, 201},
      {L"99999999999999999999 ", 10, LONG_MAX, 20}};
  for (const auto& [digits, base, value, stop] : cases) {
    wchar_t* end = nullptr;
    EXPECT_EQ(text::wcstol(digits.c_str(), &end, base), value);
    EXPECT_EQ(end - digits.c_str(), stop);
    EXPECT_EQ(text::wcstol(digits.c_str(), nullptr, base), value);
  }
}

TEST(WideChars, LettersMarksAndNumbersOfTheFirstPlaneAreAlphanumeric) {
  for (const wchar_t c : std::wstring(L"aZ5\u00DF\u0416\u4E2D\u0301\u2160\u00BD\u0660\x7FFF0061")) {
    EXPECT_TRUE(text::iswalnum(c)) << std::hex << static_cast<int>(c);
  }
  for (const wchar_t c : std::wstring(L"-_; \u00D7\u2028\uE000\uFFFF\u20AC\U0001002D")) {
    EXPECT_FALSE(text::iswalnum(c)) << std::hex << static_cast<int>(c);
  }
}

}  // namespace

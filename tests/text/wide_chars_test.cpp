#include "text/wide_chars.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/support/locales.h"

namespace {

namespace text = quenlatrix::text;

TEST(WideChars, ComparisonFoldsTheLowByteAndGivesTheDifferenceOfWholeCharacters) {
  EXPECT_EQ(wcsicmp(L"a", L"b"), -1);
  EXPECT_EQ(wcsicmp(L"aBc", L"AbC"), 0);
  EXPECT_EQ(wcsicmp(L"a", L"C"), L'a' - L'C');
  EXPECT_EQ(wcsicmp(L"ab", L"a"), L'b');
  EXPECT_EQ(wcsicmp(L"\u0141", L"a"), 0);
  EXPECT_EQ(wcsicmp(L"\u0141x", L"ay"), -1);
  EXPECT_EQ(wcsnicmp(L"abc", L"ABD", 2), 0);
  EXPECT_EQ(wcsnicmp(L"abc", L"ABD", 3), L'c' - L'D');
  EXPECT_EQ(wcsnicmp(L"a", L"b", 0), 0);
}

TEST(WideChars, ComparisonFoldsByTheProcessLocale) {
  EXPECT_NE(wcsicmp(L"\u00E4", L"\u00C4"), 0);
  LocaleScope const german(singleByteCommaLocale);
  EXPECT_EQ(wcsicmp(L"\u00E4", L"\u00C4"), 0);
}

// Exactly sized, so that the address sanitizer sees a read past the end.
TEST(WideChars, ComparisonEndsWhereEitherTextEnds) {
  std::wstring const a(L"");
  std::wstring const b(1, L'\u0100');
  EXPECT_EQ(wcsicmp(a.c_str(), b.c_str()), 0);
  EXPECT_EQ(wcsicmp(b.c_str(), a.c_str()), 0);
}

TEST(WideChars, NumberReadingStopsAtTheSamePlaceInTheWideText) {
  struct {
    std::wstring text;
    int base;
    long value;
    long stop;
  } const cases[] = {
      {L"  42x", 10, 42, 4},
      {L"", 10, 0, 0},
      {L"x", 10, 0, 0},
      {L"-0x1Fg", 0, -31, 5},
      {L"\u01321", 10, 21, 2},  // the low byte of U+0132 is '2'
      {L"1\u01002", 10, 1, 1},  // and that of U+0100 ends the number
      {std::wstring(200, L'0') + L"7!", 10, 7, 201},
      {L"99999999999999999999 ", 10, LONG_MAX, 20},
  };
  for (auto const& c : cases) {
    wchar_t* end = nullptr;
    EXPECT_EQ(text::wcstol(c.text.c_str(), &end, c.base), c.value);
    EXPECT_EQ(end - c.text.c_str(), c.stop);
    EXPECT_EQ(text::wcstol(c.text.c_str(), nullptr, c.base), c.value);
  }
}

TEST(WideChars, LettersMarksAndNumbersOfTheFirstPlaneAreAlphanumeric) {
  for (wchar_t const c : {L'a', L'Z', L'5', L'\u00DF', L'\u0416', L'\u4E2D', L'\u0301', L'\u2160',
                          L'\u00BD', L'\u0660'}) {
    EXPECT_TRUE(text::iswalnum(c)) << std::hex << static_cast<int>(c);
  }
  for (wchar_t const c :
       {L'-', L'_', L';', L' ', L'\0', L'\u00D7', L'\u2028', L'\uE000', L'\uFFFF', L'\u20AC'}) {
    EXPECT_FALSE(text::iswalnum(c)) << std::hex << static_cast<int>(c);
  }
  EXPECT_TRUE(text::iswalnum(static_cast<wchar_t>(0x7FFF0000 + L'a')));
  EXPECT_FALSE(text::iswalnum(L'\U0001002D'));
}

}  // namespace

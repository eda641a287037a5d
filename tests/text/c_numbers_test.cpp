#include "text/c_numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/locales.h"

namespace quenlatrix::text {
namespace {

std::string CPrint(char const* fmt, auto value) {
  char out[400];
  std::snprintf(out, sizeof out, fmt, value);
  return out;
}

// The C library's own answers in the C locale are the measure; they are taken before the locale
// changes.
TEST(CNumbers, PrintsAsTheCLocaleWhateverTheDecimalPointIs) {
  double const reals[] = {
      0.0,     -0.0,     1.5,     -2.0000005, 0.0000005, 1e22, 123456789.987654321,
      DBL_MAX, -DBL_MAX, DBL_MIN, INFINITY,   -INFINITY, NAN,  -NAN};
  for (double const value : reals) {
    std::string const expected = CPrint("%f", value);
    LocaleScope const comma(utf8CommaLocale);
    auto const printed = PrintReal(value);
    EXPECT_EQ(printed.c_str(), expected);
    EXPECT_EQ(printed.size(), expected.size());
  }
  for (long long const value : {0LL, 7LL, -5LL, LLONG_MAX, LLONG_MIN}) {
    EXPECT_EQ(PrintInteger(value).c_str(), CPrint("%lld", value));
  }
  EXPECT_STREQ(PrintUnsigned(ULLONG_MAX).c_str(), "18446744073709551615");
}

TEST(CNumbers, ReadsAsTheCLibraryWhateverTheDecimalPointIs) {
  char const* const texts[] = {"",
                               " \t\n\v\f\r-12.75x",
                               "1,5",
                               "1.5e3",
                               "+.5",
                               "- 1",
                               "0x1.8p3z",
                               "-INFinity",
                               "nan(ab)",
                               "1e400",
                               "1e",
                               ".",
                               "-1e-400",
                               "2147483648",
                               "0x",
                               "infin",
                               "12e+",
                               "\xA0"
                               "1",
                               "99999999999999999999",
                               "-99999999999999999999"};
  for (char const* const text : texts) {
    double const real = std::atof(text);
    long const whole = std::atol(text);
    LocaleScope const comma(singleByteCommaLocale);
    double const read = ReadReal(text);
    EXPECT_TRUE(read == real || (std::isnan(read) && std::isnan(real))) << text << ": " << read;
    EXPECT_EQ(std::signbit(read), std::signbit(real)) << text;
    EXPECT_EQ(ReadLong(text), whole) << text;
    EXPECT_EQ(ReadInt(text), static_cast<int>(whole)) << text;
  }
  EXPECT_EQ(ReadReal(nullptr), 0.0);
  EXPECT_EQ(ReadLong(nullptr), 0);
}

TEST(CNumbers, SaysWhereReadingStopped) {
  struct {
    char const* text;
    int base;
  } const cases[] = {{"  42x", 10}, {"-0x1Fg", 0}, {"0x", 16},
                     {"z9!", 36},   {"+", 10},     {"789", 8},
                     {"", 10},      {"-1", 10},    {"99999999999999999999,", 10}};
  for (auto const& c : cases) {
    char* expectedEnd = const_cast<char*>(c.text);
    char const* end = nullptr;
    EXPECT_EQ(ReadLong(c.text, &end, c.base), std::strtol(c.text, &expectedEnd, c.base)) << c.text;
    EXPECT_EQ(end, expectedEnd) << c.text;
    EXPECT_EQ(ReadUnsignedLong(c.text, &end, c.base), std::strtoul(c.text, &expectedEnd, c.base))
        << c.text;
    EXPECT_EQ(end, expectedEnd) << c.text;
  }
  char const* const text = "5";
  char const* end = nullptr;
  EXPECT_EQ(ReadLong(text, &end, 1), 0);
  EXPECT_EQ(end, text);
}

}  // namespace
}  // namespace quenlatrix::text

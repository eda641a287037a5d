#include "text/c_numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "tests/support/locales.h"

namespace quenlatrix::text {
namespace {

// The measure is the C library's own answer in the C locale, taken before the locale changes.

TEST(CNumbers, PrintsAsTheCLocaleWhateverTheDecimalPointIs) {
  for (const double value :
       {0.0, -0.0, 1.5, -2.0000005, 0.0000005, 1e22, 123456789.987654321, DBL_MAX, -DBL_MAX,
        DBL_MIN, HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")}) {
    char expected[400];
    const int length = std::snprintf(expected, sizeof expected, "%f", value);
    const LocaleScope comma(utf8CommaLocale);
    const auto printed = PrintReal(value);
    EXPECT_STREQ(printed.c_str(), expected);
    EXPECT_EQ(printed.size(), static_cast<std::size_t>(length));
  }
  EXPECT_STREQ(PrintInteger(LLONG_MIN).c_str(), "-9223372036854775808");
  EXPECT_STREQ(PrintUnsigned(ULLONG_MAX).c_str(), "18446744073709551615");
}

TEST(CNumbers, ReadsAsTheCLibraryWhateverTheDecimalPointIs) {
  std::istringstream texts(
      "| \t\n\v\f\r-12.75x|1,5|1.5e3|+.5|- "
      "1|0x1.8p3z|-INFinity|infin|nan(ab)|1e400|1e|.|-1e-400|0x|"
      "2147483648|12e+|\2401|99999999999999999999|-99999999999999999999|");
  for (std::string text; std::getline(texts, text, '|');) {
    const double real = std::atof(text.c_str());
    const long whole = std::atol(text.c_str());
    const LocaleScope comma(singleByteCommaLocale);
    const double read = ReadReal(text.c_str());
    EXPECT_TRUE(read == real || (std::isnan(read) && std::isnan(real))) << text << ": " << read;
    EXPECT_EQ(std::signbit(read), std::signbit(real)) << text;
    EXPECT_EQ(ReadLong(text.c_str()), whole) << text;
    EXPECT_EQ(ReadInt(text.c_str()), static_cast<int>(whole)) << text;
  }
  EXPECT_EQ(ReadReal(nullptr) + static_cast<double>(ReadLong(nullptr)), 0.0);
}

TEST(CNumbers, SaysWhereReadingStopped) {
  for (const char* const text :
       {"  42x", "-0x1Fg", "0x", "z9!", "+", "789", "", "-1", "99999999999999999999,"}) {
    for (const int base : {0, 8, 10, 16, 36}) {
      char* expected = nullptr;
      const char* end = nullptr;
      EXPECT_EQ(ReadLong(text, &end, base), std::strtol(text, &expected, base)) << text;
      EXPECT_EQ(end, expected) << text << ", base " << base;
      EXPECT_EQ(ReadUnsignedLong(text, &end, base), std::strtoul(text, &expected, base)) << text;
      EXPECT_EQ(end, expected) << text << ", base " << base;
    }
    const char* end = nullptr;
    EXPECT_EQ(ReadLong(text, &end, 1), 0);
    EXPECT_EQ(end, text);
  }
}

}  // namespace
}  // namespace quenlatrix::text

#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

// Locales for tests. Link the CMake target test_locales.
inline constexpr char utf8Locale[] = "C.UTF-8";
inline constexpr char singleByteCommaLocale[] = "de_DE.ISO-8859-1";
inline constexpr char utf8CommaLocale[] = "de_DE.UTF-8";

// Sets the process's locale until the end of the scope; fails the test if there is no such locale.
class LocaleScope {
 public:
  explicit LocaleScope(char const* name, int category = LC_ALL) : category(category) {
    setenv("LOCPATH", QUENLATRIX_TEST_LOCALES, 1);
    previous = std::setlocale(category, nullptr);
    EXPECT_NE(std::setlocale(category, name), nullptr)
        << "expected the locale " << name << " in " << QUENLATRIX_TEST_LOCALES
        << " or among the system's: build the target test_locale_files";
  }
  LocaleScope(LocaleScope const&) = delete;
  LocaleScope& operator=(LocaleScope const&) = delete;
  ~LocaleScope() { std::setlocale(category, previous.c_str()); }

 private:
  int category;
  std::string previous;
};

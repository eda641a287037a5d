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
  explicit LocaleScope(const char* name, int category = LC_ALL) : category(category) {
    previous = std::setlocale(category, nullptr);
    EXPECT_TRUE(Set(name)) << "expected the locale " << name << " in " << QUENLATRIX_TEST_LOCALES
                           << " or among the system's: build the target test_locale_files";
  }
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;
  ~LocaleScope() { EXPECT_TRUE(Set(previous.c_str())) << previous; }

 private:
  // The path is known for no longer than the call: with it, the C library's newlocale leaks memory.
  bool Set(const char* name) const {
    setenv("LOCPATH", QUENLATRIX_TEST_LOCALES, 1);
    const bool done = std::setlocale(category, name) != nullptr;
    unsetenv("LOCPATH");
    return done;
  }

  int category;
  std::string previous;
};

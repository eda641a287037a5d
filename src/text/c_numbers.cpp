#include "text/c_numbers.h"

#include <langinfo.h>
#include <locale.h>

#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace quenlatrix::text {
namespace {

class CLocale {
 public:
  CLocale() : handle(newlocale(LC_ALL_MASK, "C", nullptr)) {}
  CLocale(CLocale const&) = delete;
  CLocale& operator=(CLocale const&) = delete;
  ~CLocale() {
    if (handle != nullptr) {
      freelocale(handle);
    }
  }
  // The locale, made by the first call and given back when the library is unloaded.
  static locale_t Get() {
    static CLocale const instance;
    return instance.handle;
  }

 private:
  locale_t handle;
};

// Gives the calling thread a decimal point for its lifetime, and leaves all else of its locale.
class DecimalPointScope {
 public:
  DecimalPointScope() {
    if (std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0) {
      return;
    }
    locale_t const copy = duplocale(uselocale(nullptr));
    if (copy == nullptr) {
      return;
    }
    changed = newlocale(LC_NUMERIC_MASK, "C", copy);
    if (changed == nullptr) {
      freelocale(copy);
      return;
    }
    previous = uselocale(changed);
  }
  DecimalPointScope(DecimalPointScope const&) = delete;
  DecimalPointScope& operator=(DecimalPointScope const&) = delete;
  ~DecimalPointScope() {
    if (changed != nullptr) {
      uselocale(previous);
      freelocale(changed);
    }
  }

 private:
  locale_t changed = nullptr;
  locale_t previous = nullptr;
};

template <typename Printed, typename... Value>
Printed Print(Value... value) {
  Printed printed;
  printed.end_at(std::to_chars(printed.begin(), printed.limit(), value...).ptr);
  return printed;
}

}  // namespace

PrintedInteger PrintInteger(long long value) { return Print<PrintedInteger>(value); }

PrintedInteger PrintUnsigned(unsigned long long value) { return Print<PrintedInteger>(value); }

PrintedReal PrintReal(double value) {
  return Print<PrintedReal>(value, std::chars_format::fixed, 6);
}

int PrintFormatted(char* out, std::size_t size, char const* fmt, va_list args) {
  DecimalPointScope const point;
  return std::vsnprintf(out, size, fmt, args);
}

int ReadInt(char const* s) { return static_cast<int>(ReadLong(s)); }

long ReadLong(char const* s) { return ReadLong(s, nullptr, 10); }

double ReadReal(char const* s) { return s == nullptr ? 0.0 : strtod_l(s, nullptr, CLocale::Get()); }

long ReadLong(char const* s, char const** end, int base) {
  auto* stop = const_cast<char*>(s);
  long const value = s == nullptr ? 0 : strtol_l(s, &stop, base, CLocale::Get());
  if (end != nullptr) {
    *end = stop;
  }
  return value;
}

unsigned long ReadUnsignedLong(char const* s, char const** end, int base) {
  auto* stop = const_cast<char*>(s);
  unsigned long const value = s == nullptr ? 0 : strtoul_l(s, &stop, base, CLocale::Get());
  if (end != nullptr) {
    *end = stop;
  }
  return value;
}

}  // namespace quenlatrix::text

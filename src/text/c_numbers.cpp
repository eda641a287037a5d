#include "text/c_numbers.h"

#include <langinfo.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

namespace quenlatrix::text {
namespace {

class CLocale {
 public:
  CLocale() : handle(newlocale(LC_ALL_MASK, "C", nullptr)) {}
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;
  // The locale, made by the first call. Never given back: threads that the process's end finds at
  // work still print with it, and for the plain C locale the C library lends one of its own.
  static locale_t Get() {
    static const CLocale instance;
    return instance.handle;
  }

 private:
  locale_t handle;
};

// Whether what `fmt` prints may depend on more of the locale than its numbers: wide text on the
// encoding, the text of an error number on the language.
bool NeedsLocale(const char* fmt) {
  return std::strpbrk(fmt, "SCm") != nullptr || std::strstr(fmt, "ls") != nullptr ||
         std::strstr(fmt, "lc") != nullptr;
}

// Flags of a conversion that ask for the locale's grouping and digits; the C locale has none.
constexpr char kLocaleFlags[] = "'I";
constexpr char kFlags[] = "-+ #0'I";

bool HasLocaleFlags(const char* fmt) {
  for (const char* at = fmt; (at = std::strchr(at, '%')) != nullptr;) {
    ++at;
    const std::string_view flags(at, std::strspn(at, kFlags));
    if (flags.find_first_of(kLocaleFlags) != std::string_view::npos) {
      return true;
    }
    at += flags.size();
    at += *at == '%' ? 1 : 0;
  }
  return false;
}

std::string WithoutLocaleFlags(std::string_view fmt) {
  std::string kept;
  while (!fmt.empty()) {
    const std::size_t sign = std::min(fmt.find('%'), fmt.size() - 1) + 1;
    kept += fmt.substr(0, sign);
    fmt.remove_prefix(sign);
    for (; !fmt.empty() && std::strchr(kFlags, fmt[0]) != nullptr; fmt.remove_prefix(1)) {
      if (std::strchr(kLocaleFlags, fmt[0]) == nullptr) {
        kept += fmt[0];
      }
    }
    if (!fmt.empty()) {
      kept += fmt[0];
      fmt.remove_prefix(1);
    }
  }
  return kept;
}

// Gives the calling thread a decimal point while `fmt` is printed. The C locale, at no cost, does
// for nearly all formats; the others get a copy of the thread's locale, changed in its numbers.
class DecimalPointScope {
 public:
  explicit DecimalPointScope(const char* fmt) {
    if (std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0) {
      return;
    }
    if (NeedsLocale(fmt)) {
      MakeCopy();
    }
    previous = uselocale(copy == nullptr ? CLocale::Get() : copy);
  }
  DecimalPointScope(const DecimalPointScope&) = delete;
  DecimalPointScope& operator=(const DecimalPointScope&) = delete;
  ~DecimalPointScope() {
    if (previous != nullptr) {
      uselocale(previous);
    }
    if (copy != nullptr) {
      freelocale(copy);
    }
  }

 private:
  void MakeCopy() {
    const locale_t duplicate = duplocale(uselocale(nullptr));
    if (duplicate == nullptr) {
      return;
    }
    copy = newlocale(LC_NUMERIC_MASK, "C", duplicate);
    if (copy == nullptr) {
      freelocale(duplicate);
    }
  }

  locale_t copy = nullptr;
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

int PrintFormatted(char* out, std::size_t size, const char* fmt, va_list args) {
  std::string changed;
  if (HasLocaleFlags(fmt)) {
    try {
      changed = WithoutLocaleFlags(fmt);
    } catch (const std::bad_alloc&) {
      return -1;
    }
    fmt = changed.c_str();
  }
  const DecimalPointScope point(fmt);
  return std::vsnprintf(out, size, fmt, args);
}

int ReadInt(const char* s) { return static_cast<int>(ReadLong(s)); }

long ReadLong(const char* s) { return ReadLong(s, nullptr, 10); }

double ReadReal(const char* s) { return s == nullptr ? 0.0 : strtod_l(s, nullptr, CLocale::Get()); }

long ReadLong(const char* s, const char** end, int base) {
  auto* stop = const_cast<char*>(s);
  const long value = s == nullptr ? 0 : strtol_l(s, &stop, base, CLocale::Get());
  if (end != nullptr) {
    *end = stop;
  }
  return value;
}

unsigned long ReadUnsignedLong(const char* s, const char** end, int base) {
  auto* stop = const_cast<char*>(s);
  const unsigned long value = s == nullptr ? 0 : strtoul_l(s, &stop, base, CLocale::Get());
  if (end != nullptr) {
    *end = stop;
  }
  return value;
}

}  // namespace quenlatrix::text

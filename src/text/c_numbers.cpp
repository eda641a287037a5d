#include "text/c_numbers.h"

#include <langinfo.h>

#include <array>
#include <charconv>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
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

// Copies a format without the flags that ask for the locale's grouping and digits; the C locale has
// none. `out` has room for the whole format, or is null. Gives the number of such flags.
std::size_t CopyWithoutLocaleFlags(const char* fmt, char* out) {
  constexpr std::string_view kLocaleFlags = "'I";
  constexpr std::string_view kBeforeConversion = "'I-+ #0123456789.*$hljztLqZ";
  std::size_t flags = 0;
  bool isDirective = false;
  for (; *fmt != '\0'; ++fmt) {
    if (isDirective && kLocaleFlags.find(*fmt) != std::string_view::npos) {
      ++flags;
      continue;
    }
    isDirective =
        isDirective ? kBeforeConversion.find(*fmt) != std::string_view::npos : *fmt == '%';
    if (out != nullptr) {
      *out++ = *fmt;
    }
  }
  if (out != nullptr) {
    *out = '\0';
  }
  return flags;
}

// A format without those flags: itself where it has none, on the heap only where it is long.
class PlainFormat {
 public:
  explicit PlainFormat(const char* fmt) : format(fmt) {
    if (CopyWithoutLocaleFlags(fmt, nullptr) == 0) {
      return;
    }
    char* copy = shortCopy.data();
    if (const std::size_t size = std::strlen(fmt) + 1; size > shortCopy.size()) {
      longCopy.reset(new (std::nothrow) char[size]);
      copy = longCopy.get();
    }
    if (copy != nullptr) {
      CopyWithoutLocaleFlags(fmt, copy);
    }
    format = copy;
  }

  // Null when there is no memory.
  const char* Get() const { return format; }

 private:
  std::array<char, 256> shortCopy;
  std::unique_ptr<char[]> longCopy;
  const char* format;
};

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
  const PlainFormat plain(fmt);
  if (plain.Get() == nullptr) {
    return -1;
  }
  const DecimalPointScope point(plain.Get());
  return std::vsnprintf(out, size, plain.Get(), args);
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

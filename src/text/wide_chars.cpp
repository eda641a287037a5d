#include "text/wide_chars.h"

#include <unicode/uchar.h>

#include <array>
#include <cctype>
#include <cwchar>
#include <limits>
#include <memory>

#include "text/c_numbers.h"

namespace {

int FoldLowByte(wchar_t c) { return std::toupper(static_cast<unsigned char>(c)); }

// Wraps around where the characters are no code points.
int Difference(wchar_t a, wchar_t b) {
  return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
}

}  // namespace

int wcsicmp(const wchar_t* a, const wchar_t* b) {
  return wcsnicmp(a, b, std::numeric_limits<unsigned long>::max());
}

int wcsnicmp(const wchar_t* a, const wchar_t* b, unsigned long n) {
  for (; n > 0; --n, ++a, ++b) {
    if (*a != *b && FoldLowByte(*a) != FoldLowByte(*b)) {
      return Difference(*a, *b);
    }
    // A character such as U+0100 folds like a terminator: neither text is read past its end.
    if (*a == L'\0' || *b == L'\0') {
      return 0;
    }
  }
  return 0;
}

namespace quenlatrix::text {

long wcstol(const wchar_t* s, wchar_t** end, int base) {
  std::size_t const length = s == nullptr ? 0 : std::wcslen(s);
  if (length == 0) {
    if (end != nullptr) {
      *end = const_cast<wchar_t*>(s);
    }
    return 0;
  }
  std::array<char, 64> shortText;
  std::unique_ptr<char[]> longText;
  char* narrow = shortText.data();
  if (length >= shortText.size()) {
    longText.reset(new char[length + 1]);
    narrow = longText.get();
  }
  for (std::size_t i = 0; i <= length; ++i) {
    narrow[i] = static_cast<char>(s[i]);
  }
  const char* stop = narrow;
  const long value = ReadLong(narrow, &stop, base);
  if (end != nullptr) {
    *end = const_cast<wchar_t*>(s) + (stop - narrow);
  }
  return value;
}

bool iswalnum(wchar_t c) {
  const auto category = u_charType(static_cast<UChar32>(static_cast<unsigned int>(c) & 0xFFFFU));
  return ((1U << category) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

}  // namespace quenlatrix::text

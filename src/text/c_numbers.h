#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>

// Numbers to and from narrow text, always as in the C locale: the one place that keeps a process
// with a decimal comma from changing what is stored and exchanged. Any number of threads may call
// these functions at once; none of them but PrintFormatted allocates.
namespace quenlatrix::text {

// A printed number on the stack, NUL-terminated.
template <std::size_t N>
class PrintedNumber {
 public:
  const char* c_str() const { return digits.data(); }
  std::size_t size() const { return length; }

  // For the functions below: the room for the digits, and what of it was filled.
  char* begin() { return digits.data(); }
  char* limit() { return digits.data() + N - 1; }
  void end_at(const char* end) {
    length = static_cast<std::size_t>(end - digits.data());
    digits[length] = '\0';
  }

 private:
  std::array<char, N> digits;
  std::size_t length = 0;
};

using PrintedInteger = PrintedNumber<24>;
// Sign, 309 digits, point, 6 digits, terminator.
using PrintedReal = PrintedNumber<320>;

// As "%d", "%ld" and "%lld" print.
PrintedInteger PrintInteger(long long value);
// As "%u", "%lu" and "%llu" print.
PrintedInteger PrintUnsigned(unsigned long long value);
// As "%f" prints: six decimals, whole however large.
PrintedReal PrintReal(double value);

// As vsnprintf, with numbers as in the C locale, the flags ' and I included, while %ls, %lc, %S, %C
// and %m keep the process's encoding and language. -1, with `out` as it was, also when there is no
// memory for a long format without those flags.
[[gnu::format(printf, 3, 0)]] int PrintFormatted(char* out, std::size_t size, const char* fmt,
                                                 va_list args);

// Each reads as the C function that it names: blanks before the number, signs, what stops it, what
// overflows. A null `s` reads as an empty text.
int ReadInt(const char* s);      // atoi; a value outside `int` keeps its low 32 bits
long ReadLong(const char* s);    // atol
double ReadReal(const char* s);  // atof
// strtol and strtoul; `end` may be null.
long ReadLong(const char* s, const char** end, int base);
unsigned long ReadUnsignedLong(const char* s, const char** end, int base);

}  // namespace quenlatrix::text

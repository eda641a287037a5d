#pragma once

// Functions on wide characters. Any number of threads may call them at once.

// Compares two texts (not null) without regard to case: characters fold by the C library's toupper
// of their low 8 bits, so characters that differ only above these are equal. The result is 0 or
// the difference of the first two whole characters that fold to different values.
int wcsicmp(const wchar_t* a, const wchar_t* b);

// The same, looking at no more than `n` characters.
int wcsnicmp(const wchar_t* a, const wchar_t* b, unsigned long n);

// Named apart from the C library's functions of the same name, which the library never calls.
namespace quenlatrix::text {

// Reads a number as strtol does from the low 8 bits of each character, in the C locale. `end`,
// where not null, receives the place in `s` where reading stopped: `s` itself if nothing was read.
// A null `s` reads as an empty text.
long wcstol(const wchar_t* s, wchar_t** end, int base);

// Whether the low 16 bits of `c` are a Unicode letter, mark or number (categories L*, M*, N*).
bool iswalnum(wchar_t c);

}  // namespace quenlatrix::text

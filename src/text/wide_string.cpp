#include "text/wide_string.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "text/wide_chars.h"

namespace {

using WideBuffer = std::unique_ptr<wchar_t[]>;
using NarrowBuffer = std::unique_ptr<char[]>;

constexpr auto failed = static_cast<std::size_t>(-1);

// Both directions convert ASCII by themselves: it reads the same in every encoding that a locale
// may have, and the C library's conversion takes many times as long.

// Converts `length` bytes into `out`, which has room for as many characters and a NUL. Gives the
// number of characters, or `failed`.
std::size_t Widen(const char* s, std::size_t length, wchar_t* out) {
  unsigned char seen = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(s[i]);
    seen |= byte;
    out[i] = byte;
  }
  std::size_t const count = seen < 0x80 ? length : std::mbstowcs(out, s, length);
  if (count != failed) {
    out[count] = L'\0';
  }
  return count;
}

// Converts `length` characters into `out`, which has room for as many bytes and a NUL; what takes
// more is cut. Gives the number of bytes, or `failed`.
std::size_t Narrow(const wchar_t* s, std::size_t length, char* out) {
  wchar_t seen = 0;
  for (std::size_t i = 0; i < length; ++i) {
    seen |= s[i];
    out[i] = static_cast<char>(s[i]);
  }
  std::size_t const count = seen >= 0 && seen < 0x80 ? length : std::wcstombs(out, s, length);
  if (count != failed) {
    out[count] = '\0';
  }
  return count;
}

// The characters of `s`, `tail` after them, and a NUL.
WideBuffer Join(const wchar_t* s, std::size_t length, const wchar_t* tail, std::size_t tailLength) {
  WideBuffer joined(new wchar_t[length + tailLength + 1]);
  std::copy_n(s, length, joined.get());
  std::copy_n(tail, tailLength, joined.get() + length);
  joined[length + tailLength] = L'\0';
  return joined;
}

// Null for no characters.
WideBuffer CopyOf(const wchar_t* s, std::size_t length) {
  if (length == 0) {
    return nullptr;
  }
  return Join(s, length, nullptr, 0);
}

WideBuffer CopyOf(const wchar_t* s) { return CopyOf(s, s == nullptr ? 0 : std::wcslen(s)); }

// `s` in a buffer of its number of bytes and a NUL, and the number of characters; null on failure.
WideBuffer WidenCopy(const char* s, std::size_t length, std::size_t& count) {
  WideBuffer wide(new wchar_t[length + 1]);
  count = Widen(s, length, wide.get());
  return count == failed ? nullptr : std::move(wide);
}

NarrowBuffer NarrowCopy(const wchar_t* s) {
  std::size_t const length = std::wcslen(s);
  NarrowBuffer narrow(new char[length + 1]);
  return Narrow(s, length, narrow.get()) == failed ? nullptr : std::move(narrow);
}

}  // namespace

constinit const WideString WideString::empty;
const WideString::NumberFormats WideString::numberFormats = {L"%d", L"%f"};

WideString::WideString(const char* s) { assign(s); }

WideString::WideString(const wchar_t* s) : wideBuffer(CopyOf(s).release()) {}

WideString::WideString(const WideString& o)
    : wideBuffer(IsFormat(o.wideBuffer.get()) ? o.wideBuffer.get()
                                              : CopyOf(o.wideBuffer.get()).release()) {}

WideString WideString::Adopt(std::unique_ptr<wchar_t[]> text) noexcept {
  WideString adopted;
  adopted.wideBuffer.reset(text.release());
  return adopted;
}

WideString& WideString::operator=(const WideString& o) {
  assign(o.wideBuffer.get());
  return *this;
}

WideString& WideString::assignBytes(const char* s) {
  assign(s);
  if (wideBuffer != nullptr) {
    const std::size_t size = std::strlen(s) + 1;
    narrowCopy = std::make_unique_for_overwrite<char[]>(size);
    std::memcpy(narrowCopy.get(), s, size);
  }
  return *this;
}

WideString& WideString::assignFormat(const wchar_t (&format)[3]) {
  wideBuffer.reset(const_cast<wchar_t*>(format));
  narrowCopy.reset();
  return *this;
}

WideString& WideString::assign(const char* s) {
  std::size_t const length = s == nullptr ? 0 : std::strlen(s);
  std::size_t count = 0;
  WideBuffer wide = length == 0 ? nullptr : WidenCopy(s, length, count);
  if (wide != nullptr && count < length) {
    wide = CopyOf(wide.get(), count);
  }
  wideBuffer.reset(wide.release());
  narrowCopy.reset();
  return *this;
}

WideString& WideString::assign(const wchar_t* s) {
  wideBuffer.reset(CopyOf(s).release());
  narrowCopy.reset();
  return *this;
}

WideString& WideString::assign(const wchar_t* s, int count) {
  WideBuffer wide;
  if (s != nullptr && *s != L'\0' && count > 0) {
    const auto size = static_cast<std::size_t>(count);
    wide.reset(new wchar_t[size + 1]);
    std::wcsncpy(wide.get(), s, size);
    wide[size] = L'\0';
  }
  wideBuffer.reset(wide.release());
  narrowCopy.reset();
  return *this;
}

WideString& WideString::append(const wchar_t* s) {
  if (s != nullptr) {
    std::size_t const length = wideBuffer == nullptr ? 0 : std::wcslen(wideBuffer.get());
    wideBuffer.reset(Join(wideBuffer.get(), length, s, std::wcslen(s)).release());
    narrowCopy.reset();
  }
  return *this;
}

WideString& WideString::append(const char* s) {
  if (wideBuffer == nullptr) {
    return assign(s);
  }
  if (s != nullptr) {
    std::size_t const length = std::wcslen(wideBuffer.get());
    std::size_t const tailLength = std::strlen(s);
    WideBuffer joined(new wchar_t[length + tailLength + 1]);
    std::copy_n(wideBuffer.get(), length, joined.get());
    if (Widen(s, tailLength, joined.get() + length) != failed) {
      wideBuffer.reset(joined.release());
    }
  }
  narrowCopy.reset();
  return *this;
}

char* WideString::getCharPtr() const {
  if (narrowCopy == nullptr && wideBuffer != nullptr) {
    narrowCopy = NarrowCopy(wideBuffer.get());
  }
  return narrowCopy.get();
}

// The conversions belong to the interface of a string, though they need none.
// NOLINTBEGIN(readability-convert-member-functions-to-static)
wchar_t* WideString::allocConvert(const char* s) const {
  std::size_t count = 0;
  return s == nullptr ? nullptr : WidenCopy(s, std::strlen(s), count).release();
}

char* WideString::allocConvert(const wchar_t* s) const {
  return s == nullptr ? nullptr : NarrowCopy(s).release();
}
// NOLINTEND(readability-convert-member-functions-to-static)

int WideString::compare(const wchar_t* s, int count) const {
  const wchar_t* const text = wideBuffer.get();
  if (text == nullptr || s == nullptr) {
    return static_cast<int>(text != nullptr) - static_cast<int>(s != nullptr);
  }
  return count == 0 ? std::wcscmp(text, s) : std::wcsncmp(text, s, static_cast<std::size_t>(count));
}

int WideString::compareNoCase(const wchar_t* s, int count) const {
  const wchar_t* const text = wideBuffer.get();
  if (text == nullptr || s == nullptr) {
    return static_cast<int>(text != nullptr) - static_cast<int>(s != nullptr);
  }
  return count == 0 ? wcsicmp(text, s) : wcsnicmp(text, s, static_cast<unsigned long>(count));
}

WideString WideString::substr(int start, int count) const {
  WideString part;
  std::size_t const length = wideBuffer == nullptr ? 0 : std::wcslen(wideBuffer.get());
  if (start < 0 || static_cast<std::size_t>(start) >= length || count < -1) {
    return part;
  }
  const auto first = static_cast<std::size_t>(start);
  std::size_t const rest = length - first;
  std::size_t const taken = count == -1 ? rest : std::min(rest, static_cast<std::size_t>(count));
  part.wideBuffer.reset(CopyOf(wideBuffer.get() + first, taken).release());
  return part;
}

int WideString::find(const wchar_t* s) const {
  if (wideBuffer == nullptr) {
    return -1;
  }
  if (s == nullptr || *s == L'\0') {
    return 0;
  }
  std::array<char, 128> shortText;
  NarrowBuffer longText;
  std::size_t const length = std::wcslen(s);
  char* narrow = shortText.data();
  if (length >= shortText.size()) {
    longText.reset(new char[length + 1]);
    narrow = longText.get();
  }
  const char* const text = getCharPtr();
  if (text == nullptr || Narrow(s, length, narrow) == failed) {
    return -1;
  }
  const char* const match = std::strstr(text, narrow);
  return match == nullptr ? -1 : static_cast<int>(match - text);
}

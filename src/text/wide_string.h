#pragma once

#include <memory>

// The wide string that every name, identifier, type description and text value travels in.
//
// Characters are wchar_t holding UTF-32 code points. The text is kept in one heap buffer, null for
// the empty string; the formats of numbers, which every number value carries, are constants. A
// narrow copy in the process's multibyte encoding (LC_CTYPE) is made on demand and kept until the
// text changes. An argument may point into the string's own text or narrow copy.
//
// Failed conversions show in the results; a failed allocation throws std::bad_alloc.
//
// Threads: getCharPtr() and find() change the narrow copy of a const string, so a string that
// several threads read is left alone by both; getWCharPtr(), compare and copying may be shared.
class WideString {
 public:
  // The process-wide empty string.
  static const WideString empty;

  // The printf formats of numbers, for assignFormat.
  struct NumberFormats {
    wchar_t whole[3];
    wchar_t real[3];
  };
  static const NumberFormats numberFormats;

  constexpr WideString() noexcept = default;
  WideString(const char* s);
  WideString(const wchar_t* s);
  WideString(const WideString& o);
  WideString(WideString&& o) noexcept = default;
  ~WideString() = default;

  // Takes over a text that isn't empty, in memory of new wchar_t[]. Null makes the empty string.
  static WideString Adopt(std::unique_ptr<wchar_t[]> text) noexcept;

  // Copies the wide text alone. What is moved from is empty.
  WideString& operator=(const WideString& o);
  WideString& operator=(WideString&& o) noexcept = default;

  // Takes the text over. Null, empty or (narrow) undecodable text leaves the string empty.
  WideString& assign(const char* s);
  WideString& assign(const wchar_t* s);
  // The first `count` characters of `s`, in a buffer of count + 1 characters that is filled up with
  // NULs. `count` must not be negative.
  WideString& assign(const wchar_t* s, int count);

  // As assign, with `s` itself as the narrow copy, whole in whatever encoding: a file's name. Both
  // are empty where it can't be decoded.
  WideString& assignBytes(const char* s);

  // One of numberFormats, which isn't copied.
  WideString& assignFormat(const wchar_t (&format)[3]);

  // Appends `s`; null, or narrow text that can't be decoded, leaves the text as it is. (Appending
  // an empty wide text to an empty string gives it a buffer that holds just the terminator.)
  WideString& append(const wchar_t* s);
  WideString& append(const char* s);

  // The text, or null for the empty string. Lent until the string is changed or destroyed.
  const wchar_t* getWCharPtr() const noexcept { return wideBuffer.get(); }

  // The narrow copy, or null if the string is empty or has a character that the encoding lacks. It
  // is never longer in bytes than the text is in characters: where characters take several bytes,
  // it is cut after the last whole one that fits. Lent until the string is changed or destroyed.
  char* getCharPtr() const;

  // `s` converted as assign and getCharPtr do, without touching the string; null if `s` is null or
  // can't be converted. The caller frees the result with delete[].
  wchar_t* allocConvert(const char* s) const;
  char* allocConvert(const wchar_t* s) const;

  // Below, equal to or above 0, as the text stands to `s`, looking at no more than `count`
  // characters if `count` isn't 0. The empty string and null are equal and stand before all others.
  int compare(const wchar_t* s, int count) const;
  // The same with the case rule of wcsicmp.
  int compareNoCase(const wchar_t* s, int count) const;

  // At most `count` characters from `start`, the rest of the text for a `count` of -1. Empty if
  // `start` isn't within the text.
  WideString substr(int start, int count) const;

  // Where `s` begins in the text, or -1: a byte offset in the narrow copy, and so the character
  // index where all characters before it are single bytes. -1 on the empty string; nothing (null or
  // empty) is found at 0 on any other; -1 too where either text can't be converted.
  int find(const wchar_t* s) const;

 private:
  struct FreeText {
    void operator()(wchar_t* text) const {
      if (!IsFormat(text)) {
        delete[] text;
      }
    }
  };
  static bool IsFormat(const wchar_t* text) {
    return text == numberFormats.whole || text == numberFormats.real;
  }

  std::unique_ptr<wchar_t[], FreeText> wideBuffer;
  mutable std::unique_ptr<char[]> narrowCopy;
};

#pragma once

#include <cstdarg>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <utility>

#include "text/zu_data.h"

// Narrow text on a byte buffer. The terminating NUL counts in the data size, so the length is the
// data size less one; a data size below 2 is the empty text. Comparisons ignore case, by the C
// library's rules for the process's locale, unless asked not to. A null text counts as an empty one
// where nothing else is said.
//
// Storage, failures and threads as in ZuData.
class ZuText : public ZuData {
 public:
  // What GetTextEx gives for an empty text.
  static constexpr char EmptyString[] = "";

  ZuText() = default;
  // Empty, with room for `n` characters.
  explicit ZuText(unsigned long n);
  ZuText(const char* s);
  // At most `n` characters of `s`.
  ZuText(const char* s, unsigned long n);
  // One character; NUL gives the empty text.
  ZuText(char c);
  ZuText(unsigned char c);
  ZuText(const ZuText& o) = default;
  ~ZuText() override = default;

  ZuText& operator=(const ZuText& o);
  ZuText& operator=(const char* s);
  ZuText& operator=(char c);
  // Numbers in decimal digits.
  ZuText& operator=(int v);
  ZuText& operator=(long v);
  ZuText& operator=(long long v);
  ZuText& operator=(unsigned int v);
  ZuText& operator=(unsigned long v);
  ZuText& operator=(unsigned long long v);

  // Append; what finds no room changes nothing (an empty text takes what fits of a char const*).
  ZuText& operator+=(const ZuText& t);
  ZuText& operator+=(const char* s);
  ZuText& operator+=(char c);
  ZuText& operator+=(int v);
  ZuText& operator+=(long v);
  ZuText& operator+=(long long v);
  ZuText& operator+=(unsigned int v);
  ZuText& operator+=(unsigned long v);
  ZuText& operator+=(unsigned long long v);

  // The text length. Setting it terminates the text there; the bytes that a longer text gains are
  // for the caller to write. Gives the data size as it then is.
  unsigned long SetUsableDataSize(unsigned long n) override;
  unsigned long GetUsableDataSize() const override;
  bool SetBufferSize(unsigned long n) override;

  // Whether both are the same text, or `o` holds nothing before a NUL and this is empty.
  bool Equals(const ZuData& o) const override;
  // For the comparisons with `s` and `n`: `s` has `n` readable bytes, or ends in a NUL before.
  // Whether the first `n` characters agree; `n` 0 agrees with the empty text only, a null `s` only
  // with a text that never had a buffer.
  bool Equals(const char* s, unsigned long n) const override;

  // A copy of `o`'s data, with a NUL behind data that doesn't end in one. Nothing changes if there
  // is no room for all of it.
  unsigned long SetEqualTo(const ZuData& o) override;
  // `n` characters, terminated; the empty text for `n` 0. Cut to what fits a buffer that can't
  // grow.
  unsigned long SetEqualTo(const void* s, unsigned long n, unsigned long minSize) override;

  void Copy(ZuData& out, unsigned long start, unsigned long count) const override;
  // To memory: a `dst` that was filled to its end has its last byte overwritten by NUL, one that
  // got nothing its first. (So part of a text that doesn't fill `dst` comes without a terminator.)
  // They give the number of characters copied.
  unsigned long Copy(unsigned char* dst, unsigned long dstSize) const override;
  unsigned long Copy(unsigned char* dst, unsigned long dstSize, unsigned long start,
                     unsigned long count) const override;

  virtual unsigned long GetSize() const;

  // Replaces the `count` characters from `pos` by `t`; an empty text becomes a copy of `t`.
  virtual void ReplaceText(unsigned long pos, unsigned long count, const ZuText& t);
  // Replaces every `find`, left to right; what was put in isn't searched again. Not regarding case
  // means by the case tables. Once there is no room for a replacement, no more are made.
  virtual void ReplaceAll(const ZuText& find, const ZuText& repl);
  virtual void ReplaceAll(const ZuText& find, const ZuText& repl, bool caseSensitive);
  // Replaces the `n`-th `find`, counted from 1, if there are as many; not regarding case means by
  // the C library's rules.
  virtual void ReplaceOccurrence(const ZuText& find, const ZuText& repl, unsigned long n,
                                 bool caseSensitive);

  // Case-sensitive: identical bytes and size; the whole text is the `n` characters of `s` (`n` 0
  // then agrees with a data size of 0 only). Otherwise as the forms without the flag.
  virtual bool Equals(const ZuData& o, bool caseSensitive) const;
  virtual bool Equals(const char* s, unsigned long n, bool caseSensitive) const;
  // Whether the first min(length, `n`) bytes agree, without case by the tables. An empty text
  // agrees with `n` 0 only, and no other text does.
  virtual bool FirstNEquals(const char* s, unsigned long n, bool caseSensitive) const;

  // The text, never null.
  const char* GetTextEx() const;
  // The buffer, null when nothing was ever stored.
  char* GetText() const { return reinterpret_cast<char*>(buffer); }

  bool operator==(const ZuText& t) const { return Equals(static_cast<const ZuData&>(t)); }
  bool operator!=(const ZuText& t) const { return Order(t) != 0; }
  bool operator<(const ZuText& t) const { return Order(t) < 0; }
  bool operator>(const ZuText& t) const { return Order(t) > 0; }
  bool operator<=(const ZuText& t) const { return Order(t) <= 0; }
  bool operator>=(const ZuText& t) const { return Order(t) >= 0; }
  bool operator==(const char* s) const { return Compare(s) == 0; }
  bool operator!=(const char* s) const { return Compare(s) != 0; }

  // Below, equal to or above 0, as this text stands to `s` or to the first `n` characters of both.
  int Compare(const char* s) const;
  int Compare(const char* s, unsigned long n) const;
  // Whether the text begins with `s`.
  bool CiEquals(const char* s) const;
  // Whether the text begins with `t`.
  bool CompareLeft(const ZuText& t) const;

  // Parts of the text, cut to what there is. `out` may be this text.
  void Left(ZuText& out, unsigned long n) const;
  void Right(ZuText& out, unsigned long n) const;
  void Mid(ZuText& out, unsigned long start, unsigned long count) const;

  // By the case tables: ASCII and Latin-1 letters.
  void UpperCase();
  void LowerCase();
  void Reverse();

  // Trimming, for which an empty text stays as it is. Off the end go tabs, line feeds and spaces
  // (Trim), or `c`.
  void Trim();
  // With `blankFirst` a `c` at the very start becomes a space, and then nothing else happens.
  void Trim(char c, bool blankFirst);
  // Off the end, or off the start: spaces; tabs, line feeds, carriage returns and spaces.
  void TrimSpaces(bool trailing);
  void TrimWhiteSpaces(bool trailing);
  // Keeps `count` characters from `start`, or as many as remain. Nothing happens if either exceeds
  // the length.
  void Truncate(unsigned long start, unsigned long count);
  // Fills a non-empty text up to `width` characters with `c`, after it or before it; nothing
  // happens if there is no room for that many.
  void Pad(char c, unsigned long width, bool atEnd);
  // Removes the characters that occur in `chars`, or all others; nothing happens for empty `chars`.
  void Filter(const ZuText& chars, bool exclude);
  // Breaks lines of `width` columns and more by turning their last tab or space before that into a
  // carriage return; tabs count 8 columns. Line feeds and carriage returns break lines already.
  // Nothing happens to a text shorter than `width`.
  void Fold(unsigned long width);
  // Removes the backslashes that stand outside quotation marks, within the `count` characters from
  // `start` (all that follow if `count` is negative); the character after one has no meaning of its
  // own. What stands before and after the region stays.
  void RemoveEscapes(unsigned long start, long count);

  // Where `s` begins, case-sensitive: the first place from `start`, or the last one of which the
  // end isn't after `start`. -1 if there is none, `s` is null or empty, or `start` is past the end.
  long Pos(const char* s, unsigned long start, bool forward) const;
  // Whether any character of `chars` occurs.
  bool HasCharFrom(const char* chars) const;
  // Whether the text stands in a pair of the same quotation marks, ' or ".
  bool IsQuoted() const;
  // Whether the text stands in () or []. Removes leading spaces from the text before it looks.
  bool IsInBrackets();
  // Removes what IsQuoted and IsInBrackets find (and the leading spaces, as IsInBrackets does).
  void StripQuotes();
  void StripBrackets();

  // Whether the text is 1 to 62 letters, digits and underscores, the first of them a letter. What
  // is a letter, the process's locale says.
  bool validScalarName() const;

  // Splits at the first `sep`: what stands before it, and all that follows its first character.
  // `trim` is Trim of both. False, with `out` unchanged, if there is no `sep` or it is empty.
  bool SplitNameValuePair(std::pair<ZuText, ZuText>& out, const ZuText& sep, bool trim) const;
  // Appends to `out` what stands between characters of `delims`, empty tokens only if wanted. One
  // token, the whole text, if `delims` is null or empty; none for a text that never had a buffer.
  // The list's own allocations throw as ever.
  void Tokenizer(const char* delims, bool keepEmpty, std::list<ZuText>& out) const;

  // A 32-bit number as "%u" reads it; 0 if there is none.
  unsigned long GetTextAsULong() const;
  // Binary digits, most significant first, the low 32 bits of their value; 0 if there is any other
  // character.
  std::uint32_t GetTextAsBitMask() const;
  // A '*' for each character.
  std::string GetStars() const;

  // printf formats, cut at 10239 characters; numbers as in the C locale. A null or empty `fmt` adds
  // nothing. An argument of the forms that set must not be this text.
  [[gnu::format(printf, 2, 3)]] void Format(const char* fmt, ...);
  [[gnu::format(printf, 2, 3)]] void AppendFormat(const char* fmt, ...);
  [[gnu::format(printf, 2, 0)]] void VArgFormat(const char* fmt, va_list args);
  [[gnu::format(printf, 2, 0)]] void VArgAppFormat(const char* fmt, va_list args);

 private:
  bool IsEmptyText() const { return dataSize < 2; }
  // Makes the last byte of the data, or the first of the buffer if there is no data, the
  // terminator.
  void Terminate();
  void AppendTerminator();
  int Order(const ZuText& t) const;
  std::string_view View() const;
  // Makes the text its `count` characters from `start`; both are within it.
  void KeepOnly(unsigned long start, unsigned long count);
  void TrimSet(std::string_view set, bool trailing);
  // Replaces what `searched`, a text of the same length or this one, has of `find`.
  void ReplaceMatches(const ZuText& searched, const ZuText& find, const ZuText& repl);
  // How many of so many growths of the text there is room for, which is made if it can be.
  unsigned long MakeRoom(unsigned long times, unsigned long growth);
};

#include <algorithm>
#include <cstring>

#include "text/zu_text.h"

// Lengths are those up to the first NUL, as strstr sees them: a match is always as long as what was
// searched, and nothing is looked at or replaced past the end of the text.

void ZuText::ReplaceText(unsigned long pos, unsigned long count, const ZuText& t) {
  if (IsEmptyText()) {
    *this = t;
    return;
  }
  const unsigned long length = GetSize();
  pos = std::min(pos, length);
  // The terminator stays.
  Replace(pos, std::min(count, length - pos), t.GetText(), t.GetUsableDataSize());
}

void ZuText::ReplaceAll(const ZuText& find, const ZuText& repl) {
  if (&find == this || &repl == this) {
    ReplaceAll(ZuText(find), ZuText(repl));
    return;
  }
  const unsigned long findLength = std::strlen(find.GetTextEx());
  if (findLength == 0) {
    return;
  }
  unsigned long from = 0;
  while (!IsEmptyText()) {
    const char* const match = std::strstr(GetText() + from, find.GetText());
    if (match == nullptr) {
      return;
    }
    const auto pos = static_cast<unsigned long>(match - GetText());
    if (!Replace(pos, findLength, repl.GetText(), repl.GetUsableDataSize())) {
      return;
    }
    from = pos + repl.GetUsableDataSize();
  }
}

void ZuText::ReplaceAll(const ZuText& find, const ZuText& repl, bool caseSensitive) {
  if (caseSensitive) {
    ReplaceAll(find, repl);
  } else if (&repl == this) {
    ReplaceAllWithoutCase(find, ZuText(repl));
  } else {
    ReplaceAllWithoutCase(find, repl);
  }
}

void ZuText::ReplaceAllWithoutCase(const ZuText& find, const ZuText& repl) {
  ZuText upperFind(find);
  ZuText upperText(*this);
  upperFind.UpperCase();
  upperText.UpperCase();
  const unsigned long findLength = std::strlen(upperFind.GetTextEx());
  if (findLength == 0) {
    return;
  }
  // Where the unchanged text's characters now stand: `growth` wraps around when the text shrinks.
  unsigned long growth = 0;
  const char* from = upperText.GetTextEx();
  while (!IsEmptyText()) {
    const char* const match = std::strstr(from, upperFind.GetText());
    if (match == nullptr) {
      return;
    }
    const auto pos = static_cast<unsigned long>(match - upperText.GetText()) + growth;
    if (!Replace(pos, findLength, repl.GetText(), repl.GetUsableDataSize())) {
      return;
    }
    growth += repl.GetUsableDataSize() - findLength;
    from = match + findLength;
  }
}

void ZuText::ReplaceOccurrence(const ZuText& find, const ZuText& repl, unsigned long n,
                               bool caseSensitive) {
  const unsigned long findLength = std::strlen(find.GetTextEx());
  if (findLength == 0 || n == 0) {
    return;
  }
  const char* match = nullptr;
  const char* from = GetTextEx();
  for (; n > 0; --n, from = match + findLength) {
    match = caseSensitive ? std::strstr(from, find.GetText()) : strcasestr(from, find.GetText());
    if (match == nullptr) {
      return;
    }
  }
  const auto pos = static_cast<unsigned long>(match - GetText());
  Replace(pos, findLength, repl.GetText(), repl.GetUsableDataSize());
}

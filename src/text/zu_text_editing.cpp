#include <algorithm>
#include <bitset>
#include <cstring>
#include <limits>
#include <string_view>

#include "text/zu_text.h"

// All of it in place: what gets shorter or is filled never leaves the buffer.

namespace {

constexpr std::string_view lineWhiteSpace = "\t\n ";
constexpr std::string_view whiteSpace = "\t\n\r ";

constexpr unsigned long tabColumns = 8;

bool IsLineBreak(char c) { return c == '\n' || c == '\r'; }

// What a line may be broken at, or is broken at already.
bool IsFoldingPlace(char c) { return c == ' ' || c == '\t' || IsLineBreak(c); }

}  // namespace

void ZuText::KeepOnly(unsigned long start, unsigned long count) {
  SetEqualTo(GetText() + start, count, 0);
}

void ZuText::TrimSet(std::string_view set, bool trailing) {
  if (IsEmptyText()) {
    return;
  }
  const std::string_view text = View();
  if (trailing) {
    // The length where there is nothing to remove, 0 where nothing else is there.
    const unsigned long length = text.find_last_not_of(set) + 1;
    if (length < text.size()) {
      KeepOnly(0, length);
    }
  } else {
    const unsigned long start = std::min(text.find_first_not_of(set), text.size());
    if (start > 0) {
      KeepOnly(start, text.size() - start);
    }
  }
}

void ZuText::Trim() { TrimSet(lineWhiteSpace, true); }

void ZuText::Trim(char c, bool blankFirst) {
  if (blankFirst && !IsEmptyText() && *GetText() == c) {
    *GetText() = ' ';
  } else {
    TrimSet({&c, 1}, true);
  }
}

void ZuText::TrimSpaces(bool trailing) { TrimSet(" ", trailing); }

void ZuText::TrimWhiteSpaces(bool trailing) { TrimSet(whiteSpace, trailing); }

void ZuText::Truncate(unsigned long start, unsigned long count) {
  const unsigned long length = GetSize();
  if (!IsEmptyText() && start <= length && count <= length) {
    KeepOnly(start, std::min(count, length - start));
  }
}

void ZuText::Pad(char c, unsigned long width, bool atEnd) {
  const unsigned long length = GetSize();
  if (IsEmptyText() || length >= width || width == std::numeric_limits<unsigned long>::max() ||
      !SetBufferSize(width + 1)) {
    return;
  }
  SetUsableDataSize(width);
  char* const text = GetText();
  const unsigned long filled = width - length;
  if (!atEnd) {
    std::memmove(text + filled, text, length);
  }
  std::memset(atEnd ? text + length : text, c, filled);
}

void ZuText::Filter(const ZuText& chars, bool exclude) {
  if (IsEmptyText() || chars.IsEmptyText()) {
    return;
  }
  std::bitset<256> listed;
  for (const char c : chars.View()) {
    listed.set(static_cast<unsigned char>(c));
  }
  unsigned char* const end = buffer + GetSize();
  unsigned char* const kept =
      std::remove_if(buffer, end, [&](unsigned char c) { return listed.test(c) == exclude; });
  if (kept != end) {
    KeepOnly(0, static_cast<unsigned long>(kept - buffer));
  }
}

void ZuText::Fold(unsigned long width) {
  const unsigned long length = GetSize();
  if (IsEmptyText() || length < width) {
    return;
  }
  char* const text = GetText();
  // The nearest folding place up to `i`; 0, the start of the text, is none.
  unsigned long place = 0;
  unsigned long column = 0;
  for (unsigned long i = 0; i < length; ++i) {
    if (IsFoldingPlace(text[i])) {
      place = i;
    }
    if (IsLineBreak(text[i])) {
      column = 0;
    } else {
      column += text[i] == '\t' ? tabColumns : 1;
    }
    if (column >= width && place > 0) {
      if (!IsLineBreak(text[place])) {
        text[place] = '\r';
      }
      column = i - place;
    }
  }
}

void ZuText::RemoveEscapes(unsigned long start, long count) {
  const unsigned long length = GetSize();
  if (IsEmptyText() || start >= length) {
    return;
  }
  const unsigned long rest = length - start;
  const unsigned long end =
      start + (count < 0 ? rest : std::min(static_cast<unsigned long>(count), rest));
  char* const text = GetText();
  unsigned long kept = start;
  // Depth 0 is outside of quotations. Different marks nest; after a quotation was closed the next
  // one counts downwards from 0.
  long depth = 0;
  char quote = '\0';
  bool toggle = false;
  bool pending = false;
  for (unsigned long i = start; i < end; ++i) {
    const char c = text[i];
    if (!pending && depth == 0 && c == '\\') {
      pending = true;
      continue;
    }
    if (!pending && (c == '"' || c == '\'')) {
      const bool same = c == quote;
      depth += same == toggle ? 1 : -1;
      quote = same != toggle && depth == 0 ? '\0' : c;
      toggle = same != toggle;
    }
    pending = false;
    text[kept++] = c;
  }
  if (kept < end) {
    std::memmove(text + kept, text + end, length - end);
    KeepOnly(0, length - (end - kept));
  }
}

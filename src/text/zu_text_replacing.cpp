#include <algorithm>
#include <cstring>
#include <limits>

#include "text/zu_text_local.h"

// Lengths are those up to the first NUL, as strstr sees them: a match is always as long as what was
// searched, and nothing is looked at or replaced past the end of the text.

namespace {

unsigned long CountMatches(const char* text, const char* find) {
  const unsigned long length = std::strlen(find);
  unsigned long count = 0;
  while (length > 0 && (text = std::strstr(text, find)) != nullptr) {
    ++count;
    text += length;
  }
  return count;
}

// A copy for the time of one operation, on the heap only where it is long. Shorter than the text if
// there is no memory for it.
class WorkingCopy {
 public:
  explicit WorkingCopy(const ZuText& t) : shortCopy(t) {
    if (shortCopy.GetDataSize() != t.GetDataSize()) {
      longCopy = t;
    }
  }
  ZuText& Get() { return longCopy.GetBuffer() == nullptr ? shortCopy : longCopy; }

 private:
  ZuTextLocal<255> shortCopy;
  ZuText longCopy;
};

}  // namespace

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
  ReplaceMatches(*this, find, repl);
}

void ZuText::ReplaceAll(const ZuText& find, const ZuText& repl, bool caseSensitive) {
  if (caseSensitive) {
    ReplaceAll(find, repl);
    return;
  }
  WorkingCopy upperFind(find);
  WorkingCopy upperText(*this);
  upperFind.Get().UpperCase();
  upperText.Get().UpperCase();
  ReplaceMatches(upperText.Get(), upperFind.Get(), repl);
}

unsigned long ZuText::MakeRoom(unsigned long times, unsigned long growth) {
  const unsigned long room = (bufferSize - dataSize) / growth;
  if (times <= room) {
    return times;
  }
  const bool fits = times <= (std::numeric_limits<long>::max() - dataSize) / growth &&
                    SetBufferSize(dataSize + times * growth);
  return fits ? times : room;
}

// In one pass: the text moves to the end of the room that it will need and is copied from there, so
// that what is written stays behind what is still to be read.
void ZuText::ReplaceMatches(const ZuText& searched, const ZuText& find, const ZuText& repl) {
  if (Holds(find.GetText()) || Holds(repl.GetText())) {
    WorkingCopy findCopy(find);
    WorkingCopy replacement(repl);
    // One that there is no memory for would delete what it is to replace.
    if (replacement.Get().GetDataSize() == repl.GetDataSize()) {
      ReplaceMatches(searched, findCopy.Get(), replacement.Get());
    }
    return;
  }
  const unsigned long findLength = std::strlen(find.GetTextEx());
  const unsigned long replLength = repl.GetUsableDataSize();
  unsigned long matches = CountMatches(searched.GetTextEx(), find.GetTextEx());
  const unsigned long growth = replLength > findLength ? replLength - findLength : 0;
  if (growth > 0) {
    matches = MakeRoom(matches, growth);
  }
  if (matches == 0) {
    return;
  }
  char* const source = GetText() + matches * growth;
  std::memmove(source, GetText(), dataSize);
  const char* const sought = &searched == this ? source : searched.GetText();
  char* target = GetText();
  unsigned long from = 0;
  for (; matches > 0; --matches) {
    const auto pos =
        static_cast<unsigned long>(std::strstr(sought + from, find.GetText()) - sought);
    std::memmove(target, source + from, pos - from);
    target = std::copy_n(repl.GetText(), replLength, target + (pos - from));
    from = pos + findLength;
  }
  std::memmove(target, source + from, dataSize - from);
  dataSize = static_cast<unsigned long>(target - GetText()) + dataSize - from;
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

#include <strings.h>

#include <algorithm>
#include <cstring>

#include "text/case_tables.h"
#include "text/zu_text.h"

bool ZuText::Equals(const ZuData& o) const {
  if (IsEmptyText() && (o.GetDataSize() == 0 || o[0] == '\0')) {
    return true;
  }
  // Bounded by the size: data that is no text may have no terminator.
  return dataSize == o.GetDataSize() &&
         strncasecmp(GetTextEx(), reinterpret_cast<const char*>(o.GetBuffer()), dataSize) == 0;
}

bool ZuText::Equals(const char* s, unsigned long n) const {
  if (s == nullptr) {
    return buffer == nullptr;
  }
  if (IsEmptyText() || n == 0) {
    return IsEmptyText() && n == 0;
  }
  return strncasecmp(GetText(), s, n) == 0;
}

bool ZuText::Equals(const ZuData& o, bool caseSensitive) const {
  return caseSensitive ? ZuData::Equals(o) : Equals(o);
}

bool ZuText::Equals(const char* s, unsigned long n, bool caseSensitive) const {
  if (!caseSensitive) {
    return Equals(s, n);
  }
  if (n == 0) {
    return dataSize == 0;
  }
  return s != nullptr && dataSize > 0 && dataSize - 1 == n && std::memcmp(buffer, s, n) == 0;
}

bool ZuText::FirstNEquals(const char* s, unsigned long n, bool caseSensitive) const {
  if (IsEmptyText() || n == 0) {
    return IsEmptyText() && n == 0;
  }
  if (s == nullptr) {
    return false;
  }
  const auto* const other = reinterpret_cast<const unsigned char*>(s);
  const auto agree = [caseSensitive](unsigned char a, unsigned char b) {
    using quenlatrix::i18n::k2upper;
    return caseSensitive ? a == b : (k2upper[a] & 0xFFU) == (k2upper[b] & 0xFFU);
  };
  return std::equal(buffer, buffer + std::min(GetUsableDataSize(), n), other, agree);
}

int ZuText::Order(const ZuText& t) const { return strcasecmp(GetTextEx(), t.GetTextEx()); }

int ZuText::Compare(const char* s) const {
  return strcasecmp(GetTextEx(), s == nullptr ? EmptyString : s);
}

int ZuText::Compare(const char* s, unsigned long n) const {
  if (s == nullptr) {
    return buffer == nullptr ? 0 : -1;
  }
  if (IsEmptyText() || n == 0) {
    return static_cast<int>(n == 0) - static_cast<int>(IsEmptyText());
  }
  return strncasecmp(GetText(), s, n);
}

bool ZuText::CiEquals(const char* s) const { return Equals(s, s == nullptr ? 0 : std::strlen(s)); }

bool ZuText::CompareLeft(const ZuText& t) const {
  return strncasecmp(GetTextEx(), t.GetTextEx(), t.GetUsableDataSize()) == 0;
}

#include "text/zu_text.h"

#include <strings.h>

#include <algorithm>
#include <cstring>

#include "text/c_numbers.h"
#include "text/case_tables.h"
#include "text/zu_text_local.h"

namespace {

using quenlatrix::i18n::k2lower;
using quenlatrix::i18n::k2upper;
using quenlatrix::text::PrintInteger;
using quenlatrix::text::PrintUnsigned;

unsigned long LengthOf(const char* s) { return s == nullptr ? 0 : std::strlen(s); }

unsigned char Upper(unsigned char c) { return static_cast<unsigned char>(k2upper[c]); }

unsigned char Lower(unsigned char c) { return static_cast<unsigned char>(k2lower[c]); }

}  // namespace

template class ZuTextLocal<31>;
template class ZuTextLocal<63>;
template class ZuTextLocal<255>;

ZuText::ZuText(unsigned long n) : ZuData(n + 1) {}

ZuText::ZuText(const char* s) : ZuText(s, LengthOf(s)) {}

ZuText::ZuText(const char* s, unsigned long n) {
  const unsigned long length = s == nullptr ? 0 : strnlen(s, n);
  if (length > 0 && ZuData::SetEqualTo(s, length, length + 1) > 0) {
    AppendTerminator();
  }
}

ZuText::ZuText(char c) : ZuText(&c, 1) {}

ZuText::ZuText(unsigned char c) : ZuText(static_cast<char>(c)) {}

ZuText& ZuText::operator=(const ZuText& o) {
  ZuData::SetEqualTo(o);
  Terminate();
  return *this;
}

ZuText& ZuText::operator=(const char* s) {
  SetEqualTo(s, LengthOf(s), 0);
  return *this;
}

ZuText& ZuText::operator=(char c) {
  SetEqualTo(&c, c == '\0' ? 0 : 1, 0);
  return *this;
}

ZuText& ZuText::operator=(int v) { return *this = PrintInteger(v).c_str(); }
ZuText& ZuText::operator=(long v) { return *this = PrintInteger(v).c_str(); }
ZuText& ZuText::operator=(long long v) { return *this = PrintInteger(v).c_str(); }
ZuText& ZuText::operator=(unsigned int v) { return *this = PrintUnsigned(v).c_str(); }
ZuText& ZuText::operator=(unsigned long v) { return *this = PrintUnsigned(v).c_str(); }
ZuText& ZuText::operator=(unsigned long long v) { return *this = PrintUnsigned(v).c_str(); }

ZuText& ZuText::operator+=(const ZuText& t) {
  if (t.IsEmptyText()) {
    return *this;
  }
  if (IsEmptyText()) {
    SetEqualTo(t);
  } else {
    Replace(GetSize(), 1, t);
  }
  return *this;
}

ZuText& ZuText::operator+=(const char* s) {
  const unsigned long length = LengthOf(s);
  if (length == 0) {
    return *this;
  }
  if (IsEmptyText()) {
    SetEqualTo(s, length, 0);
  } else {
    Replace(GetSize(), 1, s, length + 1);
  }
  return *this;
}

ZuText& ZuText::operator+=(char c) {
  if (c == '\0') {
    return *this;
  }
  if (IsEmptyText()) {
    return *this = c;
  }
  Replace(GetSize(), 0, static_cast<unsigned char>(c));
  return *this;
}

ZuText& ZuText::operator+=(int v) { return *this += PrintInteger(v).c_str(); }
ZuText& ZuText::operator+=(long v) { return *this += PrintInteger(v).c_str(); }
ZuText& ZuText::operator+=(long long v) { return *this += PrintInteger(v).c_str(); }
ZuText& ZuText::operator+=(unsigned int v) { return *this += PrintUnsigned(v).c_str(); }
ZuText& ZuText::operator+=(unsigned long v) { return *this += PrintUnsigned(v).c_str(); }
ZuText& ZuText::operator+=(unsigned long long v) { return *this += PrintUnsigned(v).c_str(); }

void ZuText::Terminate() {
  if (buffer != nullptr && bufferSize > 0) {
    buffer[dataSize == 0 ? 0 : dataSize - 1] = '\0';
  }
}

void ZuText::AppendTerminator() {
  dataSize = std::min(dataSize + 1, bufferSize);
  Terminate();
}

unsigned long ZuText::SetUsableDataSize(unsigned long n) {
  if (bufferSize <= n && n + 1 != 0) {
    SetBufferSize(n + 1);
  }
  if (n < bufferSize) {
    dataSize = n + 1;
  }
  Terminate();
  return dataSize;
}

unsigned long ZuText::GetUsableDataSize() const { return dataSize == 0 ? 0 : dataSize - 1; }

unsigned long ZuText::GetSize() const { return GetUsableDataSize(); }

bool ZuText::SetBufferSize(unsigned long n) {
  const unsigned long oldSize = dataSize;
  const bool done = ZuData::SetBufferSize(n);
  const bool isCut = dataSize > n || dataSize < oldSize;
  if (isCut && bufferSize > 0) {
    buffer[bufferSize - 1] = '\0';
  }
  return done;
}

unsigned long ZuText::SetEqualTo(const ZuData& o) {
  const unsigned char* const data = o.GetBuffer();
  const unsigned long n = o.GetDataSize();
  if (n > 0 && data[n - 1] != '\0') {
    return Holds(data) || SetBufferSize(n + 1) ? SetEqualTo(data, n, 0) : dataSize;
  }
  ZuData::SetEqualTo(o);
  Terminate();
  return dataSize;
}

unsigned long ZuText::SetEqualTo(const void* s, unsigned long n, unsigned long minSize) {
  if (n == 0) {
    Clear();
  } else if (ZuData::SetEqualTo(s, n, std::max(n + 1, minSize)) > 0) {
    AppendTerminator();
  }
  return dataSize;
}

void ZuText::Copy(ZuData& out, unsigned long start, unsigned long count) const {
  ZuData::Copy(out, start, count);
}

unsigned long ZuText::Copy(unsigned char* dst, unsigned long dstSize) const {
  return Copy(dst, dstSize, 0, dataSize);
}

unsigned long ZuText::Copy(unsigned char* dst, unsigned long dstSize, unsigned long start,
                           unsigned long count) const {
  const unsigned long copied = ZuData::Copy(dst, dstSize, start, count);
  if (dst == nullptr || dstSize == 0) {
    return 0;
  }
  const unsigned long characters =
      std::min(copied, GetUsableDataSize() - std::min(start, GetUsableDataSize()));
  if (copied == 0) {
    dst[0] = '\0';
  } else if (copied == dstSize) {
    dst[dstSize - 1] = '\0';
    return std::min(characters, dstSize - 1);
  }
  return characters;
}

const char* ZuText::GetTextEx() const { return IsEmptyText() ? EmptyString : GetText(); }

void ZuText::Left(ZuText& out, unsigned long n) const {
  Copy(out, 0, std::min(n, GetUsableDataSize()));
}

void ZuText::Right(ZuText& out, unsigned long n) const {
  const unsigned long length = GetUsableDataSize();
  const unsigned long taken = std::min(n, length);
  Copy(out, length - taken, taken);
}

void ZuText::Mid(ZuText& out, unsigned long start, unsigned long count) const {
  const unsigned long length = GetUsableDataSize();
  if (count == 0 || start >= length) {
    out.Clear();
    return;
  }
  out.SetEqualTo(GetText() + start, std::min(length - start, count), 0);
}

void ZuText::UpperCase() {
  std::transform(buffer, buffer + GetUsableDataSize(), buffer,
                 [](unsigned char c) { return (c >= 97 && c <= 122) || c >= 224 ? Upper(c) : c; });
}

void ZuText::LowerCase() {
  std::transform(buffer, buffer + GetUsableDataSize(), buffer, [](unsigned char c) {
    return (c >= 65 && c <= 90) || (c >= 192 && c <= 223) ? Lower(c) : c;
  });
}

void ZuText::Reverse() { std::reverse(buffer, buffer + GetUsableDataSize()); }

unsigned long ZuText::GetTextAsULong() const {
  return static_cast<std::uint32_t>(quenlatrix::text::ReadUnsignedLong(GetTextEx(), nullptr, 10));
}

std::uint32_t ZuText::GetTextAsBitMask() const {
  std::uint32_t mask = 0;
  for (unsigned long i = 0; i < GetUsableDataSize(); ++i) {
    if (buffer[i] != '0' && buffer[i] != '1') {
      return 0;
    }
    mask = mask << 1U | (buffer[i] == '1' ? 1U : 0U);
  }
  return mask;
}

std::string ZuText::GetStars() const { return std::string(GetUsableDataSize(), '*'); }

#include "text/zu_data.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <utility>

#include "text/c_numbers.h"

namespace {

constexpr unsigned long smallStep = 16;
constexpr unsigned long largeStep = 4096;
constexpr unsigned long largestSmallBuffer = 4096;
constexpr unsigned long slack = 32;
constexpr unsigned long fewBytes = 256;
constexpr unsigned long largestBuffer = std::numeric_limits<long>::max() - largeStep;

struct FreeMemory {
  void operator()(unsigned char* p) const { std::free(p); }
};

// memmove that takes null for nothing.
void MoveBytes(unsigned char* to, const void* from, unsigned long n) {
  if (n > 0) {
    std::memmove(to, from, n);
  }
}

unsigned long GrownSize(unsigned long oldSize, unsigned long n) {
  const unsigned long step = oldSize <= largestSmallBuffer ? smallStep : largeStep;
  return (n + step) / step * step;
}

}  // namespace

ZuData::ZuData(unsigned long n) {
  if (n > 0) {
    ZuData::SetBufferSize(n);
  }
}

ZuData::ZuData(const ZuData& o) : ZuData(o.dataSize) {
  if (buffer != nullptr) {
    std::memcpy(buffer, o.buffer, o.dataSize);
    dataSize = o.dataSize;
  }
}

ZuData::ZuData(void* buf, unsigned long bufferSize, unsigned long dataSize) {
  Adopt(buf, bufferSize, dataSize);
}

ZuData::~ZuData() {
  ZuData::Clear();
  if (!borrowed) {
    std::free(buffer);
  }
}

ZuData& ZuData::operator=(const ZuData& o) {
  if (this != &o) {
    SetEqualTo(o);
  }
  return *this;
}

void ZuData::Adopt(void* buf, unsigned long bufferSize, unsigned long dataSize) {
  buffer = static_cast<unsigned char*>(buf);
  this->bufferSize = bufferSize;
  this->dataSize = dataSize;
  borrowed = true;
}

bool ZuData::Holds(const void* p) const {
  const auto* byte = static_cast<const unsigned char*>(p);
  return buffer != nullptr && std::greater_equal<>()(byte, buffer) &&
         std::less<>()(byte, buffer + bufferSize);
}

unsigned long ZuData::SetDataSize(unsigned long n) {
  if (n <= bufferSize) {
    dataSize = n;
  }
  return dataSize;
}

unsigned long ZuData::SetUsableDataSize(unsigned long n) { return SetDataSize(n); }

unsigned long ZuData::GetUsableDataSize() const { return dataSize; }

bool ZuData::SetBufferSize(unsigned long n) {
  if (borrowed) {
    return bufferSize >= n;
  }
  if (n == 0) {
    ReleaseData();
    return true;
  }
  if (bufferSize >= n && bufferSize - n < slack) {
    return true;
  }
  if (n > largestBuffer) {
    return false;
  }
  const unsigned long size = bufferSize > 0 && bufferSize < n ? GrownSize(bufferSize, n) : n;
  auto* resized = static_cast<unsigned char*>(std::realloc(buffer, size));
  if (resized == nullptr) {
    return false;
  }
  if (buffer == nullptr) {
    resized[0] = '\0';
  }
  buffer = resized;
  bufferSize = size;
  dataSize = std::min(dataSize, size);
  return true;
}

void ZuData::Swap(ZuData& o) noexcept {
  std::swap(buffer, o.buffer);
  std::swap(dataSize, o.dataSize);
  std::swap(bufferSize, o.bufferSize);
  std::swap(borrowed, o.borrowed);
}

void ZuData::SetBuffer(void* buf, unsigned long bufferSize, unsigned long dataSize) {
  ReleaseData();
  Adopt(buf, bufferSize, dataSize);
}

void* ZuData::ReleaseBuffer(unsigned long* dataSize, unsigned long* bufferSize) {
  if (dataSize != nullptr) {
    *dataSize = this->dataSize;
  }
  if (bufferSize != nullptr) {
    *bufferSize = this->bufferSize;
  }
  void* const released = buffer;
  Adopt(nullptr, 0, 0);
  borrowed = false;
  return released;
}

void ZuData::ReleaseData() {
  Clear();
  if (!borrowed) {
    std::free(buffer);
  }
  Adopt(nullptr, 0, 0);
  borrowed = false;
}

void ZuData::Clear() {
  dataSize = 0;
  if (buffer != nullptr && bufferSize > 0) {
    buffer[0] = '\0';
  }
}

unsigned char& ZuData::operator[](unsigned long i) const {
  static unsigned char dummy = 0;
  return buffer != nullptr && i < dataSize ? buffer[i] : dummy;
}

bool ZuData::Equals(const ZuData& o) const {
  return dataSize == o.dataSize && (dataSize == 0 || std::memcmp(buffer, o.buffer, dataSize) == 0);
}

bool ZuData::Equals(const char* p, unsigned long n) const {
  return dataSize == n && (n == 0 || (p != nullptr && std::memcmp(buffer, p, n) == 0));
}

unsigned long ZuData::SetEqualTo(const ZuData& o) {
  if (SetBufferSize(o.dataSize)) {
    const unsigned long n = std::min(o.dataSize, bufferSize);
    MoveBytes(buffer, o.buffer, n);
    dataSize = n;
  }
  return dataSize;
}

unsigned long ZuData::SetEqualTo(const void* src, unsigned long n, unsigned long minSize) {
  const unsigned long want = std::max(n, minSize);
  if (!Holds(src) && !SetBufferSize(want)) {
    const unsigned long room = want - n;
    if (bufferSize <= room) {
      Clear();
      return dataSize;
    }
    n = std::min(n, bufferSize - room);
  }
  if (buffer != nullptr) {
    dataSize = std::min(n, bufferSize);
    if (src != nullptr && src != buffer) {
      MoveBytes(buffer, src, dataSize);
    }
  }
  return dataSize;
}

void ZuData::Copy(ZuData& out, unsigned long start, unsigned long count) const {
  start = std::min(start, dataSize);
  out.SetEqualTo(buffer == nullptr ? nullptr : buffer + start, std::min(count, dataSize - start),
                 0);
}

unsigned long ZuData::Copy(unsigned char* dst, unsigned long dstSize) const {
  return ZuData::Copy(dst, dstSize, 0, dataSize);
}

unsigned long ZuData::Copy(unsigned char* dst, unsigned long dstSize, unsigned long start,
                           unsigned long count) const {
  if (dst == nullptr || start >= dataSize) {
    return 0;
  }
  const unsigned long n = std::min({count, dataSize - start, dstSize});
  MoveBytes(dst, buffer + start, n);
  return n;
}

bool ZuData::Replace(unsigned long pos, unsigned long count, const ZuData& d) {
  return Replace(pos, count, d.buffer, d.dataSize);
}

bool ZuData::Replace(unsigned long pos, unsigned long count, unsigned char c) {
  return Replace(pos, count, &c, 1);
}

bool ZuData::Replace(unsigned long pos, unsigned long count, long v) {
  const auto digits = quenlatrix::text::PrintInteger(v);
  return Replace(pos, count, digits.c_str(), digits.size());
}

bool ZuData::Replace(unsigned long pos, unsigned long count, const void* src, unsigned long n) {
  if (dataSize == 0) {
    SetEqualTo(src, n, 0);
    return GetUsableDataSize() >= n;
  }
  if (n == 0 || !Holds(src)) {
    return ReplaceBytes(pos, count, src, n);
  }
  // The bytes are about to be moved. What a local text holds is copied without the heap.
  std::array<unsigned char, fewBytes> few;
  if (n <= few.size()) {
    std::memcpy(few.data(), src, n);
    return ReplaceBytes(pos, count, few.data(), n);
  }
  const std::unique_ptr<unsigned char, FreeMemory> kept(
      static_cast<unsigned char*>(std::malloc(n)));
  if (kept == nullptr) {
    return false;
  }
  std::memcpy(kept.get(), src, n);
  return ReplaceBytes(pos, count, kept.get(), n);
}

bool ZuData::ReplaceBytes(unsigned long pos, unsigned long count, const void* src,
                          unsigned long n) {
  pos = std::min(pos, dataSize);
  count = std::min(count, dataSize - pos);
  if (n > count) {
    const unsigned long growth = n - count;
    if (growth > bufferSize - dataSize &&
        (growth > largestBuffer - std::min(bufferSize, largestBuffer) ||
         !SetBufferSize(bufferSize + growth))) {
      return false;
    }
  }
  if (n != count) {
    MoveBytes(buffer + pos + n, buffer + pos + count, dataSize - pos - count);
  }
  if (src != nullptr) {
    MoveBytes(buffer + pos, src, n);
  }
  dataSize = dataSize - count + n;
  return true;
}

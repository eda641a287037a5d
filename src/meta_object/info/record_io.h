#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "text/wide_string.h"

// The binary form that description records share: little-endian numbers without padding; a text is
// a presence byte, its UTF-32 units and a zero unit, an empty text the presence byte 0 and the zero
// unit.
namespace quenlatrix::meta_object::info {

// Collects one record. For one thread.
class RecordWriter {
 public:
  template <std::integral T>
  void Number(T number) {
    auto bits = static_cast<std::uint64_t>(number);
    for (std::size_t i = 0; i < sizeof(T); ++i, bits >>= 8) {
      record.push_back(static_cast<char>(bits & 0xFF));
    }
  }
  void Flag(bool flag) { record.push_back(flag ? 1 : 0); }
  void Text(const WideString& text);
  void Bytes(const void* bytes, std::size_t count);
  void Zeros(std::size_t count) { record.resize(record.size() + count); }

  // Hands the record out in a block of its own, to be freed with delete[] as char. False, with
  // nothing allocated, when an int can't hold the record's length.
  bool Release(void** buffer, int* size) const;

 private:
  std::vector<char> record;
};

// Reads one record, never past its end. Each operation is false, with its output left alone, when
// what it asks for isn't all there. For one thread; what is read must outlive the reader.
class RecordReader {
 public:
  // A record that is known to be whole needs no length.
  static constexpr std::size_t kTrusted = SIZE_MAX;

  RecordReader(const void* record, std::size_t size)
      : next(static_cast<const unsigned char*>(record)), left(size), isTrusted(size == kTrusted) {}

  template <std::integral T>
  bool Number(T& number) {
    const unsigned char* bytes = Take(sizeof(T));
    if (bytes == nullptr) {
      return false;
    }
    std::uint64_t bits = 0;
    for (std::size_t i = sizeof(T); i-- > 0;) {
      bits = bits << 8 | bytes[i];
    }
    number = static_cast<T>(bits);
    return true;
  }
  bool Flag(bool& flag);
  // Leaves `text` alone, too, when the record marks it as absent.
  bool Text(WideString& text);
  // Passes over `count` bytes and gives them, non-owning; null when they aren't all there.
  const unsigned char* Take(std::size_t count);
  // The length to which a record inside this one is read: its stated one, unless none is checked.
  std::size_t LengthOf(std::size_t stated) const { return isTrusted ? kTrusted : stated; }

 private:
  const unsigned char* next;
  std::size_t left;
  bool isTrusted;
};

}  // namespace quenlatrix::meta_object::info

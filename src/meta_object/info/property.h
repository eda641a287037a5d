#pragma once

#include <cstddef>
#include <cstdint>

#include "text/wide_string.h"

namespace quenlatrix::meta_object {

// One name/value pair of an object's description. What `code`, `number` and `flag` mean is the
// host's affair. Not thread-safe.
class Property {
 public:
  Property() = default;
  Property(WideString name, WideString value, bool flag);
  Property(const Property&) = default;
  Property(Property&&) noexcept = default;
  virtual ~Property();
  // One that throws leaves this record as it was.
  Property& operator=(const Property& other) { return *this = Property(other); }
  Property& operator=(Property&&) noexcept = default;

  // Stores a new record in `*buffer` and its length in bytes in `*size`. The caller frees the
  // record as `delete[] static_cast<char*>(*buffer)`. False, with nothing allocated, when `buffer`
  // or `size` is null or the record would be longer than an int can say.
  //
  // Record: numbers little-endian, no padding.
  //   presence byte, name, u32 code, presence byte, value, u64 number, flag byte, two zero bytes;
  // a string is its UTF-32 units and a zero unit, an empty one the zero unit alone.
  bool Serialize(void** buffer, int* size) const;

  // Reads a record that Serialize made and that is whole: its length isn't checked. A string that
  // the record marks as absent keeps its value. True; false for null.
  bool Deserialize(void* buffer);
  // Reads a record of `size` bytes from outside. False, with this property left as it was, when it
  // is cut short. Bytes behind the record are not looked at.
  bool Deserialize(const void* buffer, std::size_t size);

  WideString name;
  std::uint32_t code = 1;
  WideString value;
  std::int64_t number = 0;
  bool flag = true;
};

}  // namespace quenlatrix::meta_object

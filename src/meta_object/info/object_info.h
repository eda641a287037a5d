#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "meta_object/info/property.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::info {

// The description of an object: a text and a list of properties, which it owns. Not thread-safe.
class ObjectInfo {
 public:
  // As after Clear.
  ObjectInfo() = default;
  ObjectInfo(const ObjectInfo& other);
  ObjectInfo(ObjectInfo&& other) noexcept;
  virtual ~ObjectInfo();
  // Copies every field and every non-null property.
  ObjectInfo& operator=(const ObjectInfo& other);
  ObjectInfo& operator=(ObjectInfo&& other) noexcept;

  // Sets every field to the value that stands beside it below and deletes the properties.
  void Clear();

  // Stores a new record in `*buffer` and its length in bytes in `*size`. The caller frees the
  // record as `delete[] static_cast<char*>(*buffer)`. False, with nothing allocated, when `buffer`
  // or `size` is null or the record would be longer than an int can say.
  //
  // Record, in the notation of Property's:
  //   u32 infoKind, presence byte, description, flagA byte, flagB byte, presence byte, note,
  //   u64 number of properties, for each its length as u64 and its record; eight zero bytes.
  // Null properties are counted but not written; a length of 0, which the zeros at the end are,
  // ends the list for a reader.
  bool Serialize(void** buffer, int* size) const;

  // Reads a record that Serialize made and that is whole: no length is checked. Strings that the
  // record marks as absent keep their value, and the record's properties are appended to those that
  // are here. True; false, with nothing changed, for null.
  bool Deserialize(void* buffer);
  // Reads a record of `size` bytes from outside. False, with this object left as it was, when the
  // record is cut short or names a property that reaches past its end.
  bool Deserialize(const void* buffer, std::size_t size);

  std::uint32_t infoKind = 2;
  WideString description;
  bool flagA = true;
  bool flagB = false;
  WideString note;
  std::vector<Property*> properties;
};

}  // namespace quenlatrix::meta_object::info

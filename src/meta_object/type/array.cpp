#include "meta_object/type/array.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <limits>
#include <new>
#include <optional>
#include <span>
#include <utility>

namespace quenlatrix::meta_object::type {

namespace {

using Dimension = TypeDesc::ArrayInfo::DimensionInfo;

std::span<const Dimension> DimensionsOf(const TypeDesc& desc) {
  if (desc.arrayInfo == nullptr) {
    return {};
  }
  return desc.arrayInfo->dimensions;
}

// The product of the element counts; nothing where it leaves the range of an item count.
std::optional<std::int32_t> CountPlaces(std::span<const Dimension> dimensions) {
  std::int32_t count = dimensions.empty() ? 0 : 1;
  for (const Dimension& dimension : dimensions) {
    if (__builtin_mul_overflow(count, dimension.elementCount, &count)) {
      return std::nullopt;
    }
  }
  return count;
}

// The index's distance from the lower bound, or -1 when the index is out of range.
std::int64_t OffsetOf(const Dimension& dimension, int index) {
  const std::int64_t offset = std::int64_t{index} - dimension.lowerBound;
  return offset < dimension.elementCount ? std::max<std::int64_t>(offset, -1) : -1;
}

// Row-major linear index, built from the first dimension on. The descriptor may have been changed
// since the storage was made, so the index is kept within 32 bits here and compared with the number
// of places where it is used.
class LinearIndex {
 public:
  // False when the offset is none, or the index leaves its range.
  bool Add(const Dimension& dimension, std::int64_t offset) {
    linear = linear * dimension.elementCount + offset;
    return offset >= 0 && linear <= std::numeric_limits<std::int32_t>::max();
  }

  unsigned int Get() const { return static_cast<unsigned int>(linear); }

 private:
  std::int64_t linear = 0;
};

unsigned int LinearIndexOf(const TypeDesc& desc, int firstIndex, va_list otherIndices) {
  LinearIndex linear;
  bool first = true;
  for (const Dimension& dimension : DimensionsOf(desc)) {
    const int index = first ? firstIndex : va_arg(otherIndices, int);
    first = false;
    if (!linear.Add(dimension, OffsetOf(dimension, index))) {
      return Array::kNoIndex;
    }
  }
  return linear.Get();
}

}  // namespace

Array::Array() : Object(TypeDesc(TypeDesc::Key::Int, TypeDesc::RefType::ByValue, true)) {}

// Delegates, so that a clone that fails leaves the ones before it to the destructor.
Array::Array(const Array& other) : Array(static_cast<const Object&>(other)) {
  description = other.description;
  if (other.items != nullptr) {
    items = MakeStorage(other.itemCount);
    if (items == nullptr) {
      throw std::bad_alloc();
    }
  }
  itemCount = other.itemCount;
  // Places that stay empty are not written, so that they cost no memory.
  for (std::int32_t i = 0; i < itemCount; ++i) {
    if (const Object* item = other.items[static_cast<std::size_t>(i)]) {
      items[static_cast<std::size_t>(i)] = item->Clone();
    }
  }
}

Array::~Array() { Clear(); }

void Array::ReleaseItem() { Clear(); }

Object* Array::Clone() const { return new Array(*this); }

void Array::GetDesc(WideString& text) const { text = description; }

void Array::SetDesc(const WideString& text) { description = text; }

bool Array::Create(const TypeDesc& desc) {
  if (desc.arrayInfo == nullptr) {
    return false;
  }
  const std::optional<std::int32_t> count = CountPlaces(desc.arrayInfo->dimensions);
  if (!count) {
    return false;
  }
  Storage storage;
  if (*count > 0) {
    storage = MakeStorage(*count);
    if (storage == nullptr) {
      return false;
    }
  }
  typeDesc = desc;
  if (*count == 0) {
    return false;
  }
  items = std::move(storage);
  itemCount = *count;
  return true;
}

void Array::Clear() {
  for (std::int32_t i = 0; i < itemCount; ++i) {
    delete items[static_cast<std::size_t>(i)];
  }
  items.reset();
  itemCount = 0;
}

bool Array::SetItem(Object* item, int firstIndex, ...) {
  va_list otherIndices;
  va_start(otherIndices, firstIndex);
  const unsigned int index = LinearIndexOf(typeDesc, firstIndex, otherIndices);
  va_end(otherIndices);
  return SetItemAt(item, index);
}

Object* Array::GetItem(int firstIndex, ...) const {
  va_list otherIndices;
  va_start(otherIndices, firstIndex);
  const unsigned int index = LinearIndexOf(typeDesc, firstIndex, otherIndices);
  va_end(otherIndices);
  return GetItemAt(index);
}

bool Array::SetItem(Object* item, MultidimensionalArrayIterator* it) {
  return it != nullptr && SetItemAt(item, it->GetPosition());
}

Object* Array::GetItem(MultidimensionalArrayIterator* it) const {
  return it == nullptr ? nullptr : GetItemAt(it->GetPosition());
}

bool Array::SetItemAt(Object* item, unsigned int index) {
  if (!HasPlace(index)) {
    return false;
  }
  items[index] = item;
  return true;
}

Object* Array::GetItemAt(unsigned int index) const {
  return HasPlace(index) ? items[index] : nullptr;
}

unsigned int Array::GetLinearIndex(int* indices, int count) const {
  if (count != GetDimensionCount()) {
    return kNoIndex;
  }
  const std::span<const Dimension> dimensions = DimensionsOf(typeDesc);
  int* index = indices;
  for (std::size_t d = dimensions.size(); d-- > 0;) {
    const std::int64_t offset = OffsetOf(dimensions[d], *index);
    if (offset < 0) {
      return kNoIndex;
    }
    *index++ = static_cast<int>(offset);
  }
  LinearIndex linear;
  for (const Dimension& dimension : dimensions) {
    if (!linear.Add(dimension, *--index)) {
      return kNoIndex;
    }
  }
  return linear.Get();
}

int Array::GetDimensionCount() const { return static_cast<int>(DimensionsOf(typeDesc).size()); }

bool Array::GetDimensionInfo(int index, int& lowerBound, int& elementCount) const {
  return typeDesc.arrayInfo != nullptr &&
         typeDesc.arrayInfo->GetDimensionInfo(index, lowerBound, elementCount);
}

// Zeroed by the system where it can be: a huge shape costs memory only where it is filled.
Array::Storage Array::MakeStorage(int count) {
  return Storage(
      static_cast<Object**>(std::calloc(static_cast<std::size_t>(count), sizeof(void*))));
}

bool Array::HasPlace(unsigned int index) const {
  return items != nullptr && index < static_cast<unsigned int>(itemCount);
}

}  // namespace quenlatrix::meta_object::type

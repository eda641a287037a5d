#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "meta_object/array_iterator.h"
#include "meta_object/type/object.h"

namespace quenlatrix::meta_object::type {

// A multidimensional array of values. Its shape is the array information of its type descriptor;
// the elements lie in row-major order, and places that nobody set are null. The array owns its
// elements and deletes them through their destructors, without their ReleaseItem.
class Array : public Object {
 public:
  static constexpr unsigned int kNoIndex = ~0U;

  // Without shape and storage: key Int, no dimensions.
  Array();
  Array(const Array& other);
  ~Array() override;

  void ReleaseItem() override;
  Object* Clone() const override;
  // A free text beside the elements.
  void GetDesc(WideString& text) const override;
  void SetDesc(const WideString& text) override;

  // Takes over the descriptor and makes as many empty places as it describes. A dimension of
  // unknown size gives an array without storage. Elements held before are forgotten, not deleted:
  // Clear goes first where an array is used again. False for a descriptor without array
  // information or without elements, and, with nothing changed, for a shape of more than 2^31 - 1
  // places or one that memory cannot hold.
  bool Create(const TypeDesc& desc);
  // Deletes the elements and the storage; descriptor and text stay.
  void Clear();

  // One index a dimension, as int. SetItem takes the item over when it answers true; what lay at
  // the place before is not deleted. An index out of range gives false or null.
  bool SetItem(Object* item, int firstIndex, ...);
  Object* GetItem(int firstIndex, ...) const;
  // The same at the iterator's position; a null iterator gives false or null.
  bool SetItem(Object* item, MultidimensionalArrayIterator* it);
  Object* GetItem(MultidimensionalArrayIterator* it) const;
  // The same at a linear index.
  bool SetItemAt(Object* item, unsigned int index);
  Object* GetItemAt(unsigned int index) const;
  // The number of places; negative when the size is unknown.
  int GetItemCount() const { return itemCount; }

  // The linear index of the element at `indices`, which begin with the last dimension's, or
  // kNoIndex when one is out of range or `count` is not the number of dimensions. Each index up to
  // the first one out of range is overwritten with its distance from the dimension's lower bound.
  unsigned int GetLinearIndex(int* indices, int count) const;
  int GetDimensionCount() const;
  // False, with nothing set, when there is no such dimension.
  bool GetDimensionInfo(int index, int& lowerBound, int& elementCount) const;

 private:
  struct FreeStorage {
    void operator()(Object** storage) const { std::free(static_cast<void*>(storage)); }
  };
  using Storage = std::unique_ptr<Object*[], FreeStorage>;

  // Everything but the elements.
  explicit Array(const Object& base) : Object(base) {}
  static Storage MakeStorage(int count);
  bool HasPlace(unsigned int index) const;

  Storage items;  // the elements themselves are owned too
  std::int32_t itemCount = 0;
  WideString description;
};

}  // namespace quenlatrix::meta_object::type

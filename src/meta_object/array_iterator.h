#pragma once

#include <cstdint>

namespace quenlatrix::meta_object {

// Walks the index space of a multidimensional array in storage order, the last dimension fastest:
//
//   for (it.SetFirst(); !it.EOA(); it.Next()) use(current, it.GetPosition());
//
// The three arrays, one entry a dimension, belong to the caller and outlive the iterator; `current`
// receives the indices. Bounds are inclusive. A space without dimensions has one element. One
// thread at a time.
class MultidimensionalArrayIterator {
 public:
  // Does not set `current`: SetFirst does.
  MultidimensionalArrayIterator(unsigned int count, int* lowerBounds, int* upperBounds,
                                int* current);

  void SetFirst();
  // Nothing once at the end.
  void Next();
  // One step of the odometer, begun at `dimension` instead of the last one. Afterwards `dimension`
  // is the one that was increased, or kNoDimension when all of them wrapped. The position stays.
  void shift(unsigned int& dimension);
  // Is the walk over? False on the last element too, the first time it is asked there: asking is
  // what ends the walk.
  bool EOA();

  // The current element's linear index.
  std::uint32_t GetPosition() const { return position; }

  static constexpr unsigned int kNoDimension = ~0U;

 private:
  std::uint32_t dimensionCount;
  std::uint32_t position = 0;
  bool atEnd = false;
  int* lowerBounds;
  int* upperBounds;
  int* current;
};

}  // namespace quenlatrix::meta_object

#include "meta_object/array_iterator.h"

namespace quenlatrix::meta_object {

MultidimensionalArrayIterator::MultidimensionalArrayIterator(unsigned int count, int* lowerBounds,
                                                             int* upperBounds, int* current)
    : dimensionCount(count), lowerBounds(lowerBounds), upperBounds(upperBounds), current(current) {}

void MultidimensionalArrayIterator::SetFirst() {
  position = 0;
  atEnd = false;
  for (unsigned int i = 0; i < dimensionCount; ++i) {
    current[i] = lowerBounds[i];
  }
}

void MultidimensionalArrayIterator::Next() {
  if (atEnd) {
    return;
  }
  ++position;
  unsigned int dimension = dimensionCount - 1;
  shift(dimension);
}

void MultidimensionalArrayIterator::shift(unsigned int& dimension) {
  if (dimension >= dimensionCount) {
    return;
  }
  while (current[dimension] >= upperBounds[dimension]) {
    current[dimension] = lowerBounds[dimension];
    if (dimension == 0) {
      dimension = kNoDimension;
      return;
    }
    --dimension;
  }
  ++current[dimension];
}

bool MultidimensionalArrayIterator::EOA() {
  for (unsigned int i = 0; i < dimensionCount; ++i) {
    if (current[i] < upperBounds[i]) {
      return false;
    }
  }
  const bool wasAtEnd = atEnd;
  atEnd = true;
  return wasAtEnd;
}

}  // namespace quenlatrix::meta_object

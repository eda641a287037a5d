#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <numeric>
#include <vector>

// What programs built apart from the library rely on: the slots of virtual operations and the
// places of fields.

// The operations' places in the table of virtual operations, where a destructor takes two; -1 for
// one that isn't virtual.
template <class... Operations>
std::vector<std::ptrdiff_t> SlotsOf(Operations... operations) {
  const auto slotOf = [](auto operation) {
    std::ptrdiff_t entry = 0;
    std::memcpy(&entry, &operation, sizeof(entry));
    return entry % 8 == 1 ? (entry - 1) / 8 : -1;
  };
  return {slotOf(operations)...};
}

inline std::vector<std::ptrdiff_t> SlotsFrom(std::ptrdiff_t first, std::size_t count) {
  std::vector<std::ptrdiff_t> slots(count);
  std::iota(slots.begin(), slots.end(), first);
  return slots;
}

// The offsets of the fields, then the size of the whole.
template <class Whole, class... Fields>
std::vector<std::ptrdiff_t> LayoutOf(Fields... fields) {
  return {std::bit_cast<std::ptrdiff_t>(fields)..., static_cast<std::ptrdiff_t>(sizeof(Whole))};
}

#pragma once

#include <new>

namespace quenlatrix::test {

// How many allocations are granted before one is refused; none is while this is negative. For the
// programs that link the CMake target refused_allocations.
inline constinit thread_local int grantedAllocations = -1;

// Does the work with the allocation after the first `granted` ones refused. True when it was
// refused, whatever came of it; std::bad_alloc ends the work.
template <class Work>
bool RunsOutOfMemory(int granted, Work&& work) {
  grantedAllocations = granted;
  try {
    work();
  } catch (const std::bad_alloc&) {
  }
  const bool isRefused = grantedAllocations < 0;
  grantedAllocations = -1;
  return isRefused;
}

}  // namespace quenlatrix::test

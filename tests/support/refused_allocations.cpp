#include "tests/support/refused_allocations.h"

#include <cstddef>

using quenlatrix::test::grantedAllocations;

namespace {

bool IsRefused() { return grantedAllocations >= 0 && grantedAllocations-- == 0; }

}  // namespace

// The linker has what a program and its libraries allocate go through these.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" void* __real_malloc(std::size_t size);
extern "C" void* __real_realloc(void* old, std::size_t size);
extern "C" void* __real__Znwm(std::size_t size);

extern "C" void* __wrap_malloc(std::size_t size) {
  return IsRefused() ? nullptr : __real_malloc(size);
}

extern "C" void* __wrap_realloc(void* old, std::size_t size) {
  return IsRefused() ? nullptr : __real_realloc(old, size);
}

extern "C" void* __wrap__Znwm(std::size_t size) {
  return IsRefused() ? throw std::bad_alloc() : __real__Znwm(size);
}
// NOLINTEND(bugprone-reserved-identifier)

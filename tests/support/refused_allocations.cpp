#include "tests/support/refused_allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

using quenlatrix::test::grantedAllocations;

namespace {

bool IsRefused() { return grantedAllocations >= 0 && grantedAllocations-- == 0; }

}  // namespace

// The linker has the C allocations of a program and its static libraries go through these.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" void* __real_malloc(std::size_t size);
extern "C" void* __real_calloc(std::size_t count, std::size_t size);
extern "C" void* __real_realloc(void* old, std::size_t size);

extern "C" void* __wrap_malloc(std::size_t size) {
  return IsRefused() ? nullptr : __real_malloc(size);
}

extern "C" void* __wrap_calloc(std::size_t count, std::size_t size) {
  return IsRefused() ? nullptr : __real_calloc(count, size);
}

extern "C" void* __wrap_realloc(void* old, std::size_t size) {
  return IsRefused() ? nullptr : __real_realloc(old, size);
}
// NOLINTEND(bugprone-reserved-identifier)

// In place of the C++ library's, so that what the library itself allocates, a string that grows
// say, goes through these as well.

void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return IsRefused() ? nullptr : __real_malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
  void* const block = operator new(size, std::nothrow);
  return block == nullptr ? throw std::bad_alloc() : block;
}

void* operator new[](std::size_t size) { return operator new(size); }

void* operator new[](std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return operator new(size, std::nothrow);
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t /*unused*/) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t& /*unused*/) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t /*unused*/) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t& /*unused*/) noexcept { std::free(block); }

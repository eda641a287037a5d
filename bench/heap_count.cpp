#include "bench/heap_count.h"

#include <malloc.h>

namespace {

thread_local std::size_t allocations = 0;

}  // namespace

extern "C" {

// The C library's own entry points, under their other names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

[[gnu::visibility("default")]] void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) {
  ++allocations;
  return __libc_realloc(memory, size);
}

}  // extern "C"

namespace quenlatrix::bench {

std::size_t Allocations() { return allocations; }

std::size_t HeapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace quenlatrix::bench

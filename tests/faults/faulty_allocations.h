#pragma once

#include <cstddef>

namespace quenlatrix::test {

// For a scope, what the watched images allocate is counted by FaultyJni, which says whose turn it
// is to fail, or, in a scope within, left alone: what a test makes of an outcome. Only what their
// own code asks for counts (operator new, malloc, calloc, realloc), for it goes through the images'
// jump tables; the VM's and other libraries' memory doesn't. For the thread that runs the tests.
class FaultyAllocations {
 public:
  explicit FaultyAllocations(bool count) : before(areCounted) { areCounted = count; }
  ~FaultyAllocations() { areCounted = before; }
  FaultyAllocations(const FaultyAllocations&) = delete;
  FaultyAllocations& operator=(const FaultyAllocations&) = delete;

  // Watches an image, a handle of dlopen, until it is unloaded.
  static void Watch(void* image);
  // The blocks that watched images have allocated and neither they nor this program freed.
  static std::size_t Live();
  static bool AreCounted() { return areCounted; }

 private:
  inline static bool areCounted = false;
  const bool before;
};

}  // namespace quenlatrix::test

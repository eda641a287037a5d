#pragma once

#include <cstddef>

namespace quenlatrix::bench {

// The pieces of memory that the calling thread has asked the C library for since it started,
// whatever library asked: this program's malloc stands before the C library's.
std::size_t Allocations();

// The bytes of all memory that is handed out at present, in the whole process, with what the C
// library adds to each piece.
std::size_t HeapBytes();

}  // namespace quenlatrix::bench

#pragma once

#include <cstdint>

namespace quenlatrix::meta_object {

// What a catalogued method is. Entries that the host made may carry other values; they are kept as
// they are.
enum class MethodType : std::uint32_t {
  Invoke = 0,  // an ordinary method
  Get = 1,     // reads a property
  Set = 2,     // writes a property
};

}  // namespace quenlatrix::meta_object

#pragma once

#include <cstdint>

namespace quenlatrix::meta_object {

// Which way a parameter's value travels. Values from the host may be others than these; they are
// kept as they are.
enum class ParamDirection : std::uint32_t {
  In = 0,     // into the call only
  InOut = 2,  // into the call and back: objects, arrays and what is passed by reference
};

}  // namespace quenlatrix::meta_object

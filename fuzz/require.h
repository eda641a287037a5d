#pragma once

#include <cstdlib>

// Ends the run of a fuzz target where something that must hold doesn't. Any thread may ask.
inline void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

#pragma once

#include <span>
#include <string_view>

namespace quenlatrix::bench {

// What a row of the table has to keep. "base" is the benchmark of the row that stands for the
// goal's own floor ("work|base"), or the bare-JNI floor with everything kept where there is none.
struct Goal {
  enum class Measure {
    kRatio,       // ours / base
    kPerElement,  // (ours - base) / elements, in ns
    kTime,        // ours, in ns
    kCounter,     // a counter of ours
  };

  std::string_view work;
  Measure measure;
  double limit;
  double elements = 1;
  std::string_view counter = {};
};

// In the order of the table.
std::span<const Goal> Goals();

}  // namespace quenlatrix::bench

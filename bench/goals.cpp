#include "bench/goals.h"

#include <array>

namespace quenlatrix::bench {

namespace {

using Measure = Goal::Measure;

constexpr std::array kGoals = {
    Goal{"int add(int, int)", Measure::kRatio, 2.5},
    Goal{"int add(int, int)", Measure::kCounter, 12, 1, "allocations"},
    Goal{"String echo, 11 characters", Measure::kRatio, 2.0},
    Goal{"a method that throws, with its text", Measure::kRatio, 1.6},
    Goal{"object result, wrapped and released", Measure::kRatio, 4.0},
    Goal{"create and release", Measure::kRatio, 2.0},
    Goal{"int[1,000,000] in", Measure::kPerElement, 15, 1e6},
    Goal{"int[1,000,000] out", Measure::kRatio, 1.4},
    Goal{"int[1,000,000] out", Measure::kCounter, 216, 1, "bytes"},
    Goal{"String[10,000] in", Measure::kRatio, 1.8},
    Goal{"String[10,000] out", Measure::kRatio, 1.8},
    Goal{"walk 100,000 Strings", Measure::kRatio, 2.5},
    Goal{"walk 100,000 Integers", Measure::kRatio, 2.5},
    Goal{"introspect a class of 50 methods", Measure::kRatio, 1.5},
    Goal{"describe a method of a class that is known", Measure::kTime, 1000},
    Goal{"describe a method of a class that is known", Measure::kCounter, 0, 1, "JNI calls"},
    Goal{"int add(int, int), two threads", Measure::kRatio, 1 / 1.8},
    Goal{"a whole run of beanhost, one call", Measure::kRatio, 2.5},
};

}  // namespace

std::span<const Goal> Goals() { return kGoals; }

}  // namespace quenlatrix::bench

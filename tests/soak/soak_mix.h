#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/argument.h"
#include "host/host.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::soak {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kThreads = 32;

// What all threads of a soak share.
struct Ground {
  explicit Ground(host::Host& host) : host(host) {}

  host::Host& host;
  // The classes that every mix makes objects of.
  std::vector<std::string> classes;
  // Where threads leave objects for each other, each in a place of its own; by that mutex.
  std::mutex passing;
  std::array<std::optional<host::BeanObject>, kThreads> places;
  // Of the threads with even places: they stay attached, pass objects to each other only, and all
  // their references are counted. The others attach for each operation.
  test::SharedGlobals globals;
  // Odd while a bean takes all of the heap, and whatever needs Java may fail.
  std::atomic<int> heapFills = 0;
  std::mutex heap;
  Clock::time_point nextHeapFill;
  std::atomic<long> threads = 0;
  std::atomic<long> operations = 0;
  std::atomic<long> calls = 0;
  std::atomic<long> failedCalls = 0;
};

// Calls the method of that name; the result's text, or that of the failure.
std::string Ask(host::Host& host, host::BeanObject& object, const std::string& name,
                const std::vector<host::Argument>& arguments = {});

// Calls each method of a bean that takes numbers.
void CallEach(host::Host& host, const std::string& className);

// How often each operation was done, for people.
std::string DescribeOperations();

// A thread's random mix of operations, until `end` and not more than `most`; it lets go of
// everything in the end.
void RunMix(Ground& ground, std::size_t place, std::uint64_t seed, Clock::time_point end, int most);

}  // namespace quenlatrix::soak

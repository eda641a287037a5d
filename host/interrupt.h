#pragma once

#include <csignal>

namespace quenlatrix::host {

// Catches SIGINT while it lives, instead of what was to happen on one, and makes its descriptor
// readable for each. One at a time, for one thread; what the machine does with the signal must have
// been switched off (-Xrs).
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  // Forgets the interrupts that came so far.
  void Clear();
  // Waits until `descriptor` is readable, or an interrupt comes: then false.
  bool WaitFor(int descriptor);

 private:
  int descriptor;
  struct sigaction before = {};
};

}  // namespace quenlatrix::host

#include "host/interrupt.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>

namespace quenlatrix::host {

namespace {

// For the handler, which may run on any thread.
std::atomic<int> watched = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void OnInterrupt(int) {
  const int saved = errno;
  const std::uint64_t one = 1;
  static_cast<void>(!write(watched, &one, sizeof one));
  errno = saved;
}

}  // namespace

InterruptWatch::InterruptWatch() : descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  watched = descriptor;
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &before);
}

InterruptWatch::~InterruptWatch() {
  sigaction(SIGINT, &before, nullptr);
  watched = -1;
  close(descriptor);
}

void InterruptWatch::Clear() {
  std::uint64_t count = 0;
  static_cast<void>(!read(descriptor, &count, sizeof count));
}

bool InterruptWatch::WaitFor(int other) {
  pollfd either[] = {{other, POLLIN, 0}, {descriptor, POLLIN, 0}};
  while (poll(either, 2, -1) < 0 && errno == EINTR) {
  }
  return either[0].revents != 0;
}

}  // namespace quenlatrix::host

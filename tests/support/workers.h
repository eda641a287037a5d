#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <vector>

// Runs `work` with 0, 1 and so on, on so many threads beside each other, and waits for them all.
template <class Work>
void RunInThreads(int count, const Work& work) {
  std::vector<std::jthread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back([&work, i] { work(i); });
}

// A process that runs `work`, which says whether it succeeded.
template <class Work>
pid_t StartProcess(const Work& work) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(600);  // The runner of the tests ends a parent that waits too long.
    _exit(work() ? 0 : 1);
  }
  return child;
}

// Waits for the process to end.
inline bool Succeeded(pid_t process) {
  int status = -1;
  return waitpid(process, &status, 0) == process && status == 0;
}

// Lets the process work for a moment first.
inline void Kill(pid_t process, std::chrono::microseconds after) {
  std::this_thread::sleep_for(after);
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

// When a test of that duration ends. QUENLATRIX_SOAK_SECONDS makes it last longer than it does
// here.
inline std::chrono::steady_clock::time_point EndAfter(std::chrono::milliseconds duration) {
  const char* const seconds = std::getenv("QUENLATRIX_SOAK_SECONDS");
  return std::chrono::steady_clock::now() +
         (seconds == nullptr ? duration : std::chrono::seconds(std::strtol(seconds, nullptr, 10)));
}

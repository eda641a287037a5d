#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "os/thread_annotations.h"

namespace quenlatrix::host {

// A lock that one can wait under: a standard mutex and condition, known to the thread-safety
// analysis. Held through a MonitorLock, not re-entrant.
class CAPABILITY("mutex") Monitor {
 public:
  void Lock() ACQUIRE() { mutex.lock(); }
  void UnLock() RELEASE() { mutex.unlock(); }

  // Lets others in until NotifyAll; may also end by itself, so the caller looks again.
  void Wait() REQUIRES(this) {
    std::unique_lock<std::mutex> lock(mutex, std::adopt_lock);
    changed.wait(lock);
    lock.release();
  }
  // The same, for so long at the most.
  void WaitFor(std::chrono::milliseconds time) REQUIRES(this) {
    std::unique_lock<std::mutex> lock(mutex, std::adopt_lock);
    changed.wait_for(lock, time);
    lock.release();
  }
  void NotifyAll() { changed.notify_all(); }

 private:
  std::mutex mutex;
  std::condition_variable changed;
};

// Holds a Monitor for a scope.
class SCOPED_CAPABILITY MonitorLock {
 public:
  explicit MonitorLock(Monitor& monitor) ACQUIRE(monitor) : monitor(monitor) { monitor.Lock(); }
  ~MonitorLock() RELEASE() { monitor.UnLock(); }

  MonitorLock(const MonitorLock&) = delete;
  MonitorLock& operator=(const MonitorLock&) = delete;
  MonitorLock(MonitorLock&&) = delete;
  MonitorLock& operator=(MonitorLock&&) = delete;

 private:
  Monitor& monitor;
};

}  // namespace quenlatrix::host

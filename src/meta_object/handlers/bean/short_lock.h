#pragma once

#include <mutex>

#include "os/thread_annotations.h"

namespace quenlatrix::meta_object::handlers::bean {

// A lock that is held for a few instructions; not re-entrant. Any thread may use it.
class CAPABILITY("mutex") ShortLock {
 public:
  void Lock() ACQUIRE() { mutex.lock(); }
  void UnLock() RELEASE() { mutex.unlock(); }

 private:
  std::mutex mutex;
};

// Holds the lock for the length of a scope, on one thread.
class SCOPED_CAPABILITY ShortHold {
 public:
  explicit ShortHold(ShortLock& lock) ACQUIRE(lock) : lock(lock) { lock.Lock(); }
  ~ShortHold() RELEASE() { lock.UnLock(); }
  ShortHold(const ShortHold&) = delete;
  ShortHold& operator=(const ShortHold&) = delete;

 private:
  ShortLock& lock;
};

}  // namespace quenlatrix::meta_object::handlers::bean

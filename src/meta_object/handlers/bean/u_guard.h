#pragma once

#include <atomic>
#include <cstdint>

#include "os/mutex.h"

namespace quenlatrix::meta_object::handlers::bean {

// A counted guard over a mutex, with two kinds of holds that are counted apart. Holds of type 1
// join the one that took the mutex without waiting.
//
// Threads: the last release of a kind gives the mutex back, and that has to happen on the thread
// that took it. So type-1 holds of several threads must not overlap; where they could, they take
// turns under a lock of their own.
class UGuard {
 public:
  enum eLockType : int { LockType1 = 1, LockType2 = 2 };

  // A guard whose mutex can't be made, since the shared mode can't open "/dev/zero", say, grants no
  // lock.
  explicit UGuard(Mutex::MutexMode mode) noexcept;

  // Gives the mutex back and destroys it.
  ~UGuard();

  UGuard(const UGuard&) = delete;
  UGuard& operator=(const UGuard&) = delete;

  // Takes the mutex, waiting for it, and counts the hold; a type-1 hold beside another one is only
  // counted. False, with nothing counted, when the mutex could not be taken or for another type.
  bool Lock(eLockType type);

  // Takes one hold of the type away. True when it was the last one and the mutex was given back;
  // false while others remain, when there was none, or for another type.
  bool UnLock(eLockType type);

 private:
  std::atomic<std::uint32_t>* CounterOf(eLockType type);

  StaticMutex mutex;
  // A type-1 hold looks at its counter before it has the mutex, so the counters are atomic.
  std::atomic<std::uint32_t> type1Count{0};
  std::atomic<std::uint32_t> type2Count{0};
};

// Holds a UGuard for a scope. For one thread.
class UGuardLock {
 public:
  UGuardLock(UGuard& guard, UGuard::eLockType type)
      : guard(guard), type(type), isHeld(guard.Lock(type)) {}
  ~UGuardLock() { guard.UnLock(type); }

  UGuardLock(const UGuardLock&) = delete;
  UGuardLock& operator=(const UGuardLock&) = delete;
  UGuardLock(UGuardLock&&) = delete;
  UGuardLock& operator=(UGuardLock&&) = delete;

  bool IsHeld() const { return isHeld; }

 private:
  UGuard& guard;
  UGuard::eLockType type;
  const bool isHeld;
};

}  // namespace quenlatrix::meta_object::handlers::bean

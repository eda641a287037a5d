#include "meta_object/handlers/bean/u_guard.h"

namespace quenlatrix::meta_object::handlers::bean {

UGuard::UGuard(Mutex::MutexMode mode) noexcept : mutex(mode) {}

UGuard::~UGuard() NO_THREAD_SAFETY_ANALYSIS {
  mutex.UnLock();
  mutex.DestroyMutex();
}

bool UGuard::Lock(eLockType type) NO_THREAD_SAFETY_ANALYSIS {
  std::atomic<std::uint32_t>* const counter = CounterOf(type);
  if (counter == nullptr) {
    return false;
  }
  if (type == LockType1 && *counter != 0) {
    ++*counter;
    return true;
  }
  if (mutex.Lock() != 0) {
    return false;
  }
  ++*counter;
  return true;
}

bool UGuard::UnLock(eLockType type) NO_THREAD_SAFETY_ANALYSIS {
  std::atomic<std::uint32_t>* const counter = CounterOf(type);
  if (counter == nullptr || *counter == 0) {
    return false;
  }
  const bool isLast = --*counter == 0;
  // Of the holds of type 1 only the first one took the mutex, of type 2 each.
  const bool unlocks = isLast || type == LockType2;
  const bool isUnlocked = unlocks && mutex.UnLock() == 0;
  return isLast && isUnlocked;
}

std::atomic<std::uint32_t>* UGuard::CounterOf(eLockType type) {
  switch (type) {
    case LockType1:
      return &type1Count;
    case LockType2:
      return &type2Count;
  }
  return nullptr;
}

}  // namespace quenlatrix::meta_object::handlers::bean

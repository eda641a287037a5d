#pragma once

#include <pthread.h>

#include <cstdint>

#include "os/thread_annotations.h"

// The state of a Mutex. The order of the fields is part of the interface.
struct OSMUTEXDATA {
  // How many times the owning thread holds the mutex, and that thread, 0 when the mutex is free.
  // Both are changed by the thread that has the main mutex, which needs no other lock for it, and
  // atomically, since any thread may look whether it is the owner.
  std::uint32_t lockCount;
  pthread_t owner;
  // Held for the few instructions in which a thread that isn't the owner gives a hold back, never
  // during a wait. It keeps such threads apart and nothing else: the owner doesn't take it, so who
  // gives back another thread's hold sees to it that the owner is idle.
  pthread_mutex_t guard;
  // What threads wait on; null while the mutex is uncreated.
  pthread_mutex_t* mainMutex;
};

// The library's lock: the thread that holds it may take it again, and holds it until it has given
// it back as many times. Hold it through a MutexLock.
//
// A mutex is uncreated (no main mutex), or created by the constructor with a mode or by
// CreateMutex, until DestroyMutex. The owner of a created mutex calls DestroyMutex: the destructor
// neither destroys nor frees the system mutexes.
//
// Threads: Lock, TryLock and UnLock may be called by any thread, UnLock only by the thread that
// holds the mutex. Creating and destroying it is for one thread, while no other uses it.
class CAPABILITY("mutex") Mutex {
 public:
  enum MutexMode : int {
    // Both system mutexes live in this process's memory.
    Private = 0,
    // The main mutex lives in shared memory: a process forked after the mutex was created waits on
    // the same one. Which thread holds it, and how many times, every process counts for itself.
    Shared = 1,
  };

  // Uncreated, in private mode.
  Mutex();

  // Creates the mutex in the given mode; any mode but Private counts as shared. When that fails
  // the mutex stays uncreated. Throws as CreateMutex does.
  explicit Mutex(MutexMode mode);

  ~Mutex();

  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  // Creates the system mutexes of an uncreated mutex. False when that fails; the mutex is then
  // uncreated. Throws the int 1 when shared mode cannot open "/dev/zero", std::bad_alloc when
  // private mode has no memory.
  bool CreateMutex(MutexMode mode);

  // Waits for the mutex and takes it. 0 when done, 1 (at once) when the mutex is uncreated.
  int Lock() ACQUIRE();

  // Takes the mutex if that needs no wait. 0 when done, 1 when another thread holds it or it is
  // uncreated.
  int TryLock() TRY_ACQUIRE(0);

  // Gives one level back; the last one lets the next thread in. 0 when done, 1 when the mutex is
  // uncreated. A mutex that nobody holds stays as it is.
  int UnLock() RELEASE();

  // Destroys the system mutexes, whose memory stays until Release. 1 when the mutex is uncreated,
  // else 0.
  int Destroy();

  // Frees the main mutex's memory; the mutex is then uncreated. 1 when it was already, else 0.
  int Release();

  // Destroy, then Release. Always true.
  bool DestroyMutex();

  // Set every field of the record to zero.
  void InitMutexData(OSMUTEXDATA& record) const;
  void CleanUpMutexData(OSMUTEXDATA& record) const;

  MutexMode mode;
  OSMUTEXDATA data;

 private:
  // Making gives 0, 1 when there is no shared memory, 2 when a system mutex cannot be initialised.
  int _Make_P();
  int _Make_S();
  int _Lock_P();
  int _Lock_S();
  int _TryLock_P();
  int _TryLock_S();
  int _UnLock_P();
  int _UnLock_S();
  int _Destroy_P();
  int _Destroy_S();
  int _Release_P();
  int _Release_S();
};

// A mutex of static storage. Making it throws nothing, which would end the process that loads the
// library: one that can't be made stays uncreated, and every Lock fails. It is not destroyed.
class StaticMutex : public Mutex {
 public:
  explicit StaticMutex(MutexMode mode) noexcept;
};

// Holds a Mutex for a scope. For one thread; nothing is held when the mutex is uncreated.
class SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : mutex(mutex), isHeld(mutex.Lock() == 0) {}
  ~MutexLock() RELEASE() { mutex.UnLock(); }

  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;
  MutexLock(MutexLock&&) = delete;
  MutexLock& operator=(MutexLock&&) = delete;

  bool IsHeld() const { return isHeld; }

 private:
  Mutex& mutex;
  const bool isHeld;
};

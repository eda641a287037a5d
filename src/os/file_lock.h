#pragma once

#include <cerrno>
#include <ctime>

#include "os/file.h"

// Holds a whole-file lock on an open descriptor for a scope, which must end before the descriptor
// is closed. Waits until the lock is granted: a signal doesn't end the wait. A thread that holds
// one must not wait for a second file that others take first. What the lock keeps out, and what it
// doesn't, is said at LockOSFile. For one thread.
class FileLock {
 public:
  FileLock(int fd, bool exclusive) : fd(fd), held(WaitFor(fd, exclusive)) {}
  ~FileLock() {
    if (held) {
      UnLockOSFile(fd);
    }
  }

  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  FileLock(FileLock&&) = delete;
  FileLock& operator=(FileLock&&) = delete;

  // False when the lock could not be had; the reason is then in errno.
  bool IsHeld() const { return held; }

 private:
  static bool WaitFor(int fd, bool exclusive) {
    // A lock belongs to the process, so the system takes two processes for deadlocked when each has
    // a thread that waits for a file which a thread of the other is about to give back.
    constexpr timespec aMillisecond = {0, 1000000};
    while (!LockOSFile(fd, exclusive)) {
      if (errno == EDEADLK) {
        nanosleep(&aMillisecond, nullptr);
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

  int fd;
  bool held;
};

#include "os/thread.h"

#include <unistd.h>

#include <memory>
#include <new>

namespace {

constexpr int kNotStarted = -19;

struct StartRecord {
  unsigned int (*start)(void*);
  void* arg;
};

// The system's threads return a pointer, ours a number that nobody reads.
void* RunThread(void* record) {
  const auto [start, arg] = *std::unique_ptr<StartRecord>(static_cast<StartRecord*>(record));
  start(arg);
  return nullptr;
}

bool StartDetached(StartRecord* record, pthread_t& thread) {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) {
    return false;
  }
  const bool started = pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED) == 0 &&
                       pthread_attr_setscope(&attributes, PTHREAD_SCOPE_SYSTEM) == 0 &&
                       pthread_create(&thread, &attributes, RunThread, record) == 0;
  pthread_attr_destroy(&attributes);
  return started;
}

}  // namespace

unsigned int GetCurrentProcessID() { return static_cast<unsigned int>(getpid()); }

void InitExceptionHandlers() {}

int GetCurrentThread(pthread_t& thread) {
  thread = pthread_self();
  return 0;
}

int CreateNewThread(unsigned int (*start)(void*), void* arg, pthread_t& thread,
                    OSTHREADDATA& /*data*/) {
  std::unique_ptr<StartRecord> record(new (std::nothrow) StartRecord{start, arg});
  pthread_t started{};
  if (!record || !StartDetached(record.get(), started)) {
    return kNotStarted;
  }
  static_cast<void>(record.release());  // It is the thread's, and perhaps gone already.
  thread = started;
  return 0;
}

int DisposeThread(pthread_t /*thread*/, OSTHREADDATA& /*data*/) { return 0; }

void InitOSThreadData(OSTHREADDATA& /*data*/) {}

void CleanUpOSThreadData(OSTHREADDATA& /*data*/) {}

int SuspendThread(pthread_t /*thread*/, OSTHREADDATA& /*data*/) { return 0; }

int ResumeThread(pthread_t /*thread*/, OSTHREADDATA& /*data*/) { return 0; }

int WaitForThread(pthread_t /*thread*/, OSTHREADDATA& /*data*/, unsigned int /*timeout*/) {
  return 1;
}

bool IsWaitForThreadSupported() { return false; }

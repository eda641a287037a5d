#include "os/mutex.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <memory>

namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kNoSharedMemory = 1;
constexpr int kNotInitialised = 2;

// Holds the guard of a mutex's data.
class GuardHold {
 public:
  explicit GuardHold(pthread_mutex_t& guard) : guard(guard) { pthread_mutex_lock(&guard); }
  ~GuardHold() { pthread_mutex_unlock(&guard); }
  GuardHold(const GuardHold&) = delete;
  GuardHold& operator=(const GuardHold&) = delete;

 private:
  pthread_mutex_t& guard;
};

struct Unmap {
  void operator()(pthread_mutex_t* mapping) const { munmap(mapping, sizeof(pthread_mutex_t)); }
};
using SharedMainMutex = std::unique_ptr<pthread_mutex_t, Unmap>;

// Null when the memory cannot be had.
SharedMainMutex MapMainMutex() {
  const int zero = open("/dev/zero", O_RDWR | O_CLOEXEC);
  if (zero == -1) {
    throw 1;
  }
  void* const mapping =
      mmap(nullptr, sizeof(pthread_mutex_t), PROT_READ | PROT_WRITE, MAP_SHARED, zero, 0);
  close(zero);
  return SharedMainMutex(mapping == MAP_FAILED ? nullptr : static_cast<pthread_mutex_t*>(mapping));
}

// Other processes wait on a shared mutex, which the system has to be told.
bool InitMainMutex(pthread_mutex_t& mainMutex, int processShared) {
  pthread_mutexattr_t attributes;
  if (pthread_mutexattr_init(&attributes) != 0) {
    return false;
  }
  const bool made = pthread_mutexattr_setpshared(&attributes, processShared) == 0 &&
                    pthread_mutex_init(&mainMutex, &attributes) == 0;
  pthread_mutexattr_destroy(&attributes);
  return made;
}

bool InitSystemMutexes(pthread_mutex_t& guard, pthread_mutex_t& mainMutex, int processShared) {
  if (pthread_mutex_init(&guard, nullptr) != 0) {
    return false;
  }
  if (!InitMainMutex(mainMutex, processShared)) {
    pthread_mutex_destroy(&guard);
    return false;
  }
  return true;
}

// No other thread ever writes or removes this thread's own name, so what is read beside another
// thread's change is in any case not it.
bool HeldByThisThread(OSMUTEXDATA& data) {
  const pthread_t owner = std::atomic_ref(data.owner).load(std::memory_order_relaxed);
  return owner != 0 && pthread_equal(owner, pthread_self()) != 0;
}

void SetOwner(OSMUTEXDATA& data, pthread_t owner) {
  std::atomic_ref(data.owner).store(owner, std::memory_order_relaxed);
}

// The calling thread has the main mutex: nobody else changes what is changed here.
void CountHold(OSMUTEXDATA& data) {
  std::atomic_ref count(data.lockCount);
  const std::uint32_t held = count.load(std::memory_order_relaxed);
  if (held == 0) {
    SetOwner(data, pthread_self());
  }
  count.store(held + 1, std::memory_order_relaxed);
}

// True when that was the last hold. A mutex that nobody holds is left alone: a count run below
// zero would keep every later owner from giving it back.
bool DropHold(OSMUTEXDATA& data) {
  std::atomic_ref count(data.lockCount);
  const std::uint32_t held = count.load(std::memory_order_relaxed);
  if (held == 0) {
    return false;
  }
  if (held == 1) {
    SetOwner(data, 0);
  }
  count.store(held - 1, std::memory_order_relaxed);
  return held == 1;
}

bool DropHoldOfAnother(OSMUTEXDATA& data) {
  const GuardHold hold(data.guard);
  return DropHold(data);
}

}  // namespace

Mutex::Mutex() : mode(Private) { InitMutexData(data); }

Mutex::Mutex(MutexMode mode) : mode(mode) {
  InitMutexData(data);
  CreateMutex(mode);
}

Mutex::~Mutex() { CleanUpMutexData(data); }

StaticMutex::StaticMutex(MutexMode mode) noexcept {
  try {
    CreateMutex(mode);
  } catch (...) {  // NOLINT(bugprone-empty-catch): Lock tells
  }
}

bool Mutex::CreateMutex(MutexMode wantedMode) {
  mode = wantedMode;
  return (mode == Private ? _Make_P() : _Make_S()) == kDone;
}

int Mutex::Lock() { return mode == Private ? _Lock_P() : _Lock_S(); }

int Mutex::TryLock() { return mode == Private ? _TryLock_P() : _TryLock_S(); }

int Mutex::UnLock() { return mode == Private ? _UnLock_P() : _UnLock_S(); }

int Mutex::Destroy() { return mode == Private ? _Destroy_P() : _Destroy_S(); }

int Mutex::Release() { return mode == Private ? _Release_P() : _Release_S(); }

bool Mutex::DestroyMutex() {
  Destroy();
  Release();
  return true;
}

void Mutex::InitMutexData(OSMUTEXDATA& record) const { record = OSMUTEXDATA{}; }

void Mutex::CleanUpMutexData(OSMUTEXDATA& record) const { record = OSMUTEXDATA{}; }

int Mutex::_Make_P() {
  auto made = std::make_unique<pthread_mutex_t>();
  data.lockCount = 0;
  data.owner = 0;
  if (!InitSystemMutexes(data.guard, *made, PTHREAD_PROCESS_PRIVATE)) {
    return kNotInitialised;
  }
  data.mainMutex = made.release();
  return kDone;
}

int Mutex::_Make_S() {
  SharedMainMutex made = MapMainMutex();
  if (!made) {
    return kNoSharedMemory;
  }
  data.lockCount = 0;
  data.owner = 0;
  if (!InitSystemMutexes(data.guard, *made, PTHREAD_PROCESS_SHARED)) {
    return kNotInitialised;
  }
  data.mainMutex = made.release();
  return kDone;
}

int Mutex::_Lock_P() {
  if (data.mainMutex == nullptr) {
    return kRefused;
  }
  if (!HeldByThisThread(data)) {
    pthread_mutex_lock(data.mainMutex);
  }
  CountHold(data);
  return kDone;
}

int Mutex::_TryLock_P() {
  if (data.mainMutex == nullptr) {
    return kRefused;
  }
  if (!HeldByThisThread(data) && pthread_mutex_trylock(data.mainMutex) != 0) {
    return kRefused;
  }
  CountHold(data);
  return kDone;
}

int Mutex::_UnLock_P() {
  if (data.mainMutex == nullptr) {
    return kRefused;
  }
  if (HeldByThisThread(data) ? DropHold(data) : DropHoldOfAnother(data)) {
    pthread_mutex_unlock(data.mainMutex);
  }
  return kDone;
}

int Mutex::_Destroy_P() {
  if (data.mainMutex == nullptr) {
    return kRefused;
  }
  pthread_mutex_destroy(&data.guard);
  pthread_mutex_destroy(data.mainMutex);
  return kDone;
}

int Mutex::_Release_P() {
  if (data.mainMutex == nullptr) {
    return kRefused;
  }
  delete data.mainMutex;
  data = OSMUTEXDATA{};
  return kDone;
}

int Mutex::_Release_S() {
  if (data.mainMutex == nullptr) {
    return kRefused;
  }
  munmap(data.mainMutex, sizeof(pthread_mutex_t));
  data.mainMutex = nullptr;
  return kDone;
}

// Where the main mutex lies makes no difference to these.
int Mutex::_Lock_S() { return _Lock_P(); }

int Mutex::_TryLock_S() { return _TryLock_P(); }

int Mutex::_UnLock_S() { return _UnLock_P(); }

int Mutex::_Destroy_S() { return _Destroy_P(); }

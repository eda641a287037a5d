#include "os/mutex.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mman.h>

#include <cstddef>
#include <future>

#include "tests/support/no_descriptors.h"
#include "tests/support/workers.h"

namespace {

static_assert(offsetof(Mutex, mode) < offsetof(Mutex, data));
static_assert(offsetof(OSMUTEXDATA, lockCount) < offsetof(OSMUTEXDATA, owner) &&
              offsetof(OSMUTEXDATA, owner) < offsetof(OSMUTEXDATA, guard) &&
              offsetof(OSMUTEXDATA, guard) < offsetof(OSMUTEXDATA, mainMutex));

// What another thread gets when it tries; it gives the mutex back.
int TryElsewhere(Mutex& mutex) {
  return std::async(std::launch::async,
                    [&mutex] {
                      const int status = mutex.TryLock();
                      if (status == 0) {
                        mutex.UnLock();
                      }
                      return status;
                    })
      .get();
}

// Reads, lets others run, and writes back: loses counts unless it runs alone.
void CountSlowly(Mutex& mutex, volatile int& count) {
  const MutexLock lock(mutex);
  const MutexLock again(mutex);
  const int before = count;
  if (before % 8 == 0) {
    sched_yield();
  }
  count = before + 1;
}

class MutexTest : public testing::TestWithParam<Mutex::MutexMode> {
 protected:
  ~MutexTest() override { mutex.DestroyMutex(); }
  Mutex mutex{GetParam()};
};

TEST_P(MutexTest, IsHeldUntilGivenBackAsOftenAsItWasTaken) {
  EXPECT_EQ(mutex.UnLock(), 0) << "while it is free";
  EXPECT_EQ(mutex.Lock(), 0);
  EXPECT_EQ(mutex.TryLock(), 0);
  EXPECT_EQ(mutex.data.lockCount, 2u);
  EXPECT_EQ(mutex.UnLock(), 0);
  EXPECT_EQ(TryElsewhere(mutex), 1);
  EXPECT_EQ(mutex.UnLock(), 0);
  EXPECT_EQ(TryElsewhere(mutex), 0);
  EXPECT_EQ(mutex.data.owner, pthread_t{});
}

TEST_P(MutexTest, KeepsThreadsApart) {
  volatile int count = 0;
  RunInThreads(4, [&](int) {
    for (int round = 0; round < 2000; ++round) CountSlowly(mutex, count);
  });
  EXPECT_EQ(count, 8000);
}

TEST_P(MutexTest, RefusesEverythingWhileItIsUncreated) {
  Mutex uncreated;
  EXPECT_TRUE(mutex.DestroyMutex());
  for (Mutex* const each : {&uncreated, &mutex}) {
    EXPECT_EQ(each->data.mainMutex, nullptr);
    EXPECT_EQ(each->Lock(), 1);
    EXPECT_EQ(each->TryLock(), 1);
    EXPECT_EQ(each->UnLock(), 1);
    EXPECT_EQ(each->Destroy(), 1);
    EXPECT_TRUE(each->DestroyMutex());
  }
  EXPECT_TRUE(mutex.CreateMutex(GetParam()));
  EXPECT_EQ(mutex.Lock(), 0);
  EXPECT_EQ(TryElsewhere(mutex), 1);
  EXPECT_EQ(mutex.UnLock(), 0);
}

INSTANTIATE_TEST_SUITE_P(Modes, MutexTest, testing::Values(Mutex::Private, Mutex::Shared));

TEST(Mutex, SharedModeKeepsAForkedProcessOut) {
  constexpr int kRounds = 20000;
  auto* const count = static_cast<volatile int*>(
      mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  Mutex mutex(Mutex::Shared);
  const auto countOn = [&] {
    for (int round = 0; round < kRounds; ++round) CountSlowly(mutex, *count);
    return true;
  };
  const pid_t child = StartProcess(countOn);
  ASSERT_NE(child, -1);
  countOn();
  EXPECT_TRUE(Succeeded(child));
  EXPECT_EQ(*count, 2 * kRounds);
  mutex.DestroyMutex();
  munmap(const_cast<int*>(count), sizeof(int));
}

TEST(Mutex, SharedModeThrowsOneWhenNoDescriptorIsLeft) {
  const NoDescriptors none;
  Mutex mutex;
  int thrown = 0;
  try {
    mutex.CreateMutex(Mutex::Shared);
  } catch (int value) {
    thrown = value;
  }
  EXPECT_EQ(thrown, 1);
  EXPECT_EQ(mutex.Lock(), 1);
  StaticMutex ofProcess(Mutex::Shared);
  EXPECT_FALSE(MutexLock(ofProcess).IsHeld());
}

}  // namespace

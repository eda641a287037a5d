#include "meta_object/handlers/bean/u_guard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "tests/support/no_descriptors.h"

namespace {

using quenlatrix::meta_object::handlers::bean::UGuard;
using quenlatrix::meta_object::handlers::bean::UGuardLock;

class UGuardTest : public testing::TestWithParam<Mutex::MutexMode> {
 protected:
  // Another thread's hold, which may have to wait; it is given back as soon as it was granted.
  std::future<void> HoldElsewhere() {
    return std::async(std::launch::async,
                      [this] { const UGuardLock lock(guard, UGuard::LockType2); });
  }
  static bool Waits(std::future<void>& hold) {
    return hold.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout;
  }

  UGuard guard{GetParam()};
};

TEST_P(UGuardTest, TheLastTypeOneReleaseGivesTheMutexBack) {
  EXPECT_TRUE(guard.Lock(UGuard::LockType1));
  EXPECT_TRUE(guard.Lock(UGuard::LockType1));
  std::future<void> hold = HoldElsewhere();
  EXPECT_TRUE(Waits(hold));
  EXPECT_FALSE(guard.UnLock(UGuard::LockType1));
  EXPECT_TRUE(Waits(hold));
  EXPECT_TRUE(guard.UnLock(UGuard::LockType1));
  hold.get();
}

TEST_P(UGuardTest, TypesAreCountedApartAndOthersChangeNothing) {
  const auto other = static_cast<UGuard::eLockType>(3);
  EXPECT_FALSE(guard.UnLock(UGuard::LockType1));
  EXPECT_FALSE(guard.Lock(other));
  EXPECT_FALSE(guard.UnLock(other));
  HoldElsewhere().get();
  EXPECT_TRUE(guard.Lock(UGuard::LockType2));
  EXPECT_TRUE(guard.Lock(UGuard::LockType2));
  EXPECT_FALSE(guard.UnLock(UGuard::LockType2));
  EXPECT_TRUE(guard.Lock(UGuard::LockType1));
  EXPECT_TRUE(guard.UnLock(UGuard::LockType1));
  std::future<void> hold = HoldElsewhere();
  EXPECT_TRUE(Waits(hold));
  EXPECT_TRUE(guard.UnLock(UGuard::LockType2));
  hold.get();
}

TEST(UGuard, FailsToLockHoweverOftenWhenItCannotBeMade) {
  const NoDescriptors none;
  UGuard guard(Mutex::Shared);
  for (const auto type : {UGuard::LockType1, UGuard::LockType1, UGuard::LockType2}) {
    EXPECT_FALSE(guard.Lock(type));
  }
  EXPECT_FALSE(guard.UnLock(UGuard::LockType1));
}

INSTANTIATE_TEST_SUITE_P(Modes, UGuardTest, testing::Values(Mutex::Private, Mutex::Shared));

}  // namespace

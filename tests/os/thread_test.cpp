#include "os/thread.h"

#include <gtest/gtest.h>

#include <future>

namespace {

struct Seen {
  pthread_t thread = {};
  int detachState = -1;
};

unsigned int Look(void* arg) {
  auto& promise = *static_cast<std::promise<Seen>*>(arg);
  Seen seen;
  GetCurrentThread(seen.thread);
  pthread_attr_t attributes;
  pthread_getattr_np(seen.thread, &attributes);
  pthread_attr_getdetachstate(&attributes, &seen.detachState);
  pthread_attr_destroy(&attributes);
  promise.set_value(seen);
  return 7;
}

TEST(Thread, RunsDetachedWithItsArgument) {
  std::promise<Seen> promise;
  std::future<Seen> future = promise.get_future();
  pthread_t thread{};
  OSTHREADDATA data;
  ASSERT_EQ(CreateNewThread(Look, &promise, thread, data), 0);
  const Seen seen = future.get();
  EXPECT_TRUE(pthread_equal(seen.thread, thread));
  EXPECT_FALSE(pthread_equal(seen.thread, pthread_self()));
  EXPECT_EQ(seen.detachState, PTHREAD_CREATE_DETACHED);
  EXPECT_EQ(WaitForThread(thread, data, 1000), 1);
  EXPECT_FALSE(IsWaitForThreadSupported());
}

TEST(Thread, ThatCannotStartGivesMinusNineteen) {
  pthread_attr_t before;
  pthread_attr_t huge;
  ASSERT_EQ(pthread_getattr_default_np(&before), 0);
  pthread_attr_init(&huge);
  pthread_attr_setstacksize(&huge, std::size_t{1} << 60);
  ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
  std::promise<Seen> promise;
  pthread_t thread{};
  OSTHREADDATA data;
  EXPECT_EQ(CreateNewThread(Look, &promise, thread, data), -19);
  EXPECT_EQ(thread, pthread_t{});
  pthread_setattr_default_np(&before);
  pthread_attr_destroy(&huge);
  pthread_attr_destroy(&before);
}

}  // namespace

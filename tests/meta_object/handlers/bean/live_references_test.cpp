#include "meta_object/handlers/bean/live_references.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/test_vm.h"

namespace quenlatrix::meta_object::handlers::bean {
namespace {

TEST(LiveReferences, AreAcquiredUnderTheirOwnSerialUntilTheyAreRemoved) {
  JNIEnv* const env = test::TestVm::Env();
  LiveReferences live;
  std::vector<LiveInstance> instances;
  // More than any part of the set holds without an allocation.
  for (int i = 0; i < 500; ++i) {
    const auto text = LocalRef<jstring>::Adopt(env, env->NewStringUTF("text"));
    instances.push_back(live.Add(env->NewGlobalRef(text.Get())));
  }
  const LiveInstance first = instances[0];
  const LiveInstance again = live.Add(first.reference);
  EXPECT_FALSE(live.Acquire(env, first)) << "another object's serial";
  instances[0] = again;
  for (const LiveInstance& instance : instances) {
    EXPECT_TRUE(live.Acquire(env, instance));
    EXPECT_TRUE(live.Acquire(env, instance.reference));
    live.Remove(instance.reference);
    EXPECT_FALSE(live.Acquire(env, instance));
    EXPECT_FALSE(live.Acquire(env, instance.reference));
    env->DeleteGlobalRef(instance.reference);
  }
  EXPECT_FALSE(live.Acquire(env, live.Add(nullptr)));
}

}  // namespace
}  // namespace quenlatrix::meta_object::handlers::bean

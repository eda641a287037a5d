#include "tests/support/jni_reference_tracker.h"

#include <gtest/gtest.h>

#include "tests/support/test_vm.h"

namespace quenlatrix::test {
namespace {

TEST(JniReferenceTracker, CountsWhatIsMadeInItsScopeUntilItIsDeleted) {
  JNIEnv* env = TestVm::Env();
  jclass before = env->FindClass("java/lang/Object");
  const JniReferenceTracker tracker(env);
  const jmethodID constructor = env->GetMethodID(before, "<init>", "()V");
  jobject object = env->NewObject(before, constructor);
  const jobject global = env->NewGlobalRef(object);
  EXPECT_EQ(tracker.LiveLocals(), 1);
  EXPECT_EQ(tracker.LiveGlobals(), 1);
  env->DeleteLocalRef(object);
  env->DeleteLocalRef(before);
  env->DeleteLocalRef(nullptr);
  env->DeleteGlobalRef(global);
  EXPECT_EQ(tracker.Left(), 0);

  ASSERT_EQ(env->PushLocalFrame(8), JNI_OK);
  env->NewStringUTF("dies with the frame");
  jobject survivor = env->NewStringUTF("outlives it");
  EXPECT_EQ(tracker.LiveLocals(), 2);
  EXPECT_EQ(tracker.OpenFrames(), 1);
  survivor = env->PopLocalFrame(survivor);
  EXPECT_EQ(tracker.LiveLocals(), 1);
  env->DeleteLocalRef(survivor);
  EXPECT_EQ(tracker.Left(), 0);
  EXPECT_EQ(tracker.MostLocals(), 2) << "both texts";
  env->FindClass("no/such/Class");
  EXPECT_EQ(tracker.Left(), 1) << "a pending exception";
  env->ExceptionClear();
}

}  // namespace
}  // namespace quenlatrix::test

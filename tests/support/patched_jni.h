#pragma once

#include <jni.h>

namespace quenlatrix::test {

// For a scope, an environment works with a copy of its function table in which the test has changed
// entries. The JNIEnv object itself stays where it is: the VM finds its thread by that address. The
// scope ends on its thread, while the thread is still attached (hold an outer attach where the code
// under test detaches). Scopes nest.
class PatchedJni {
 public:
  explicit PatchedJni(JNIEnv* env);
  ~PatchedJni();
  PatchedJni(const PatchedJni&) = delete;
  PatchedJni& operator=(const PatchedJni&) = delete;

  // The table in use; assign entries. C++ callers reach variadic functions through the "V" entries.
  JNINativeInterface_& Table() { return table; }
  // The table as it was.
  const JNINativeInterface_& Original() const { return *original; }

 private:
  JNIEnv* env;
  const JNINativeInterface_* original;
  JNINativeInterface_ table;
};

// The same for the machine's own table (attach and detach), which all threads share.
class PatchedVm {
 public:
  explicit PatchedVm(JavaVM* machine);
  ~PatchedVm();
  PatchedVm(const PatchedVm&) = delete;
  PatchedVm& operator=(const PatchedVm&) = delete;

  JNIInvokeInterface_& Table() { return table; }
  const JNIInvokeInterface_& Original() const { return *original; }

 private:
  JavaVM* machine;
  const JNIInvokeInterface_* original;
  JNIInvokeInterface_ table;
};

}  // namespace quenlatrix::test

#pragma once

#include <jni.h>

#include <type_traits>

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

// Whether a JniReferenceTracker sees Java run on this thread: its own native code works with the
// same table.
inline thread_local bool isJavaRunning = false;

// For a scope, one call of an entry fails as it does when memory runs out. With a tracker, what
// Java itself calls is left alone.
class FaultyJni {
 public:
  using Fault = void (*)(JNINativeInterface_&);

  // The entry that a fault is for answers its failure value; an OutOfMemoryError is pending unless
  // the entry throws none.
  template <auto Entry, bool throws = true>
  static void Lose(JNINativeInterface_& table) {
    Patch<Entry, throws>(table, Entry);
  }

  // The first call of the entry has number 0.
  FaultyJni(JNIEnv* env, Fault fault, int faultAt);
  bool HasFailed() const { return callsUntilFault < 0; }

 private:
  template <auto Entry, bool throws, class Result, class... Args>
  static void Patch(JNINativeInterface_& table,
                    Result (*JNINativeInterface_::*)(JNIEnv*, Args...)) {
    table.*Entry = [](JNIEnv* env, Args... args) -> Result {
      if (isJavaRunning || callsUntilFault-- != 0) return (healthy->*Entry)(env, args...);
      if (throws) RunOutOfMemory(env);
      if constexpr (std::is_pointer_v<Result>)
        return nullptr;
      else
        return JNI_ENOMEM;
    };
  }
  static void RunOutOfMemory(JNIEnv* env);

  inline static int callsUntilFault = 0;
  inline static const JNINativeInterface_* healthy = nullptr;
  PatchedJni patch;
};

// What PatchedJni does, for the machine's own table (attach and detach), which all threads share.
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

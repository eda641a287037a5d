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

// For a scope, one call of the entries that a fault is for fails as it does when memory runs out.
// With a tracker, what Java itself calls is left alone. One a process at a time.
class FaultyJni {
 public:
  using Fault = void (*)(JNINativeInterface_&);

  // Each entry answers its failure value; an OutOfMemoryError is pending unless they throw none.
  template <auto Entry, bool throws = true>
  static void Lose(JNINativeInterface_& table) {
    Patch<Entry, throws>(table, Entry);
  }

  // The first call of an entry has number 0; no call fails for a negative number.
  FaultyJni(JNIEnv* env, Fault fault, int faultAt);
  ~FaultyJni() { healthy = nullptr; }
  FaultyJni(const FaultyJni&) = delete;
  FaultyJni& operator=(const FaultyJni&) = delete;

  bool HasFailed() const { return callsUntilFault < 0; }
  // The calls so far.
  int Calls() const { return faultAt - callsUntilFault; }
  // Counts a call, also one that goes past the table; true when it has to fail.
  static bool IsTurn(const char* entry) {
    if (healthy == nullptr || isJavaRunning || callsUntilFault-- != 0) return false;
    failed = entry;
    return true;
  }
  // What failed last, in the compiler's words.
  static const char* Failed() { return failed; }

 private:
  template <auto Entry, bool throws, class Result, class... Args>
  static void Patch(JNINativeInterface_& table,
                    Result (*JNINativeInterface_::*)(JNIEnv*, Args...)) {
    table.*Entry = [](JNIEnv* env, Args... args) -> Result {
      if (!IsTurn(__PRETTY_FUNCTION__)) return (healthy->*Entry)(env, args...);
      if (throws) RunOutOfMemory(env);
      // What makes room answers with an error; all others with nothing.
      if constexpr (std::is_same_v<Result(Args...), jint(jint)>)
        return JNI_ENOMEM;
      else
        return Result();
    };
  }
  static void RunOutOfMemory(JNIEnv* env);

  inline static int callsUntilFault = 0;
  inline static const JNINativeInterface_* healthy = nullptr;
  inline static const char* failed = "";
  PatchedJni patch;
  const int faultAt;
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

#pragma once

#include <jni.h>

#include <mutex>
#include <set>
#include <vector>

#include "tests/support/patched_jni.h"

namespace quenlatrix::test {

// The global references of several trackers, made in the scope of one and not deleted in any: for
// objects that threads hand to each other. Any thread may use it.
class SharedGlobals {
 public:
  void Note(jobject reference) {
    const std::lock_guard lock(mutex);
    live.insert(reference);
  }
  void Forget(jobject reference) {
    const std::lock_guard lock(mutex);
    live.erase(reference);
  }
  // For when no tracker is at work.
  std::size_t Live() const { return live.size(); }

 private:
  std::mutex mutex;
  std::set<jobject> live;
};

// Counts the references that are made and deleted through one environment during a scope, by
// patched entries of its table; the VM's own native code, which works with the same table while
// Java runs, is left out. One tracker a thread at a time. What was made before the scope is
// not counted, nor is its deletion a stray one. Global references go to `shared` if there is one.
class JniReferenceTracker {
 public:
  explicit JniReferenceTracker(JNIEnv* env, SharedGlobals* shared = nullptr);
  ~JniReferenceTracker();
  JniReferenceTracker(const JniReferenceTracker&) = delete;
  JniReferenceTracker& operator=(const JniReferenceTracker&) = delete;

  // Made in the scope and not deleted yet; a popped frame deletes its local references.
  int LiveLocals() const;
  int LiveGlobals() const { return static_cast<int>(own.Live()); }
  // All that was left behind: live references, frames not popped, a pending exception.
  int Left() const;
  // All that were made, live or not: a test sees that it counted something.
  int LocalsMade() const { return localsMade; }
  int GlobalsMade() const { return globalsMade; }
  // The most local references that were live at once.
  int MostLocals() const { return mostLocals; }
  // Frames pushed and not popped.
  int OpenFrames() const { return static_cast<int>(frames.size()) - 1; }

  // For the patched entries.
  const JNINativeInterface_& Original() const { return patch.Original(); }
  void NoteLocal(jobject reference);
  void NoteGlobal(jobject reference);
  void ForgetLocal(jobject reference);
  void ForgetGlobal(jobject reference);
  void PushFrame();
  void PopFrame();

 private:
  JNIEnv* env;
  PatchedJni patch;
  SharedGlobals own;
  SharedGlobals& globals;
  std::vector<std::set<jobject>> frames;
  int localsMade = 0;
  int globalsMade = 0;
  int mostLocals = 0;
};

}  // namespace quenlatrix::test

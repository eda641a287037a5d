#pragma once

#include <jni.h>

#include "meta_object/handler_status.h"

namespace quenlatrix::meta_object::handlers::bean {

// How a thread enters and leaves the Java VM. Attaches nest through a count a thread; only the
// outermost detach really detaches, and it ends every environment of that thread, also one that the
// host keeps. Any thread may call both.

// Counts one attach and gives the calling thread's environment. Null when the count can't be kept,
// for want of a thread-local slot or of memory (nothing is counted then), when no VM has been
// handed over, or when the VM gives no environment (both counted: DetachNativeThread undoes it).
JNIEnv* AttachNativeThread();

// Undoes one attach; does nothing on a thread without one. Always 0.
HandlerStatus DetachNativeThread();

// One attach for the length of a scope.
class JavaThread {
 public:
  JavaThread() : env(AttachNativeThread()) {}
  JavaThread(const JavaThread&) = delete;
  JavaThread& operator=(const JavaThread&) = delete;
  ~JavaThread() {
    if (!stays) {
      DetachNativeThread();
    }
  }

  // Lends the thread's environment; null when there is none.
  JNIEnv* Get() const { return env; }
  explicit operator bool() const { return env != nullptr; }

  // Leaves the thread attached at the end of the scope: the matching close operation detaches it.
  void StayAttached() { stays = true; }

 private:
  JNIEnv* env;
  bool stays = false;
};

}  // namespace quenlatrix::meta_object::handlers::bean

#pragma once

#include <jni.h>

#include <atomic>
#include <vector>

#include "meta_object/handlers/bean/short_lock.h"

namespace quenlatrix::meta_object::handlers::bean {

// Global references whose handler was released while its thread could not be attached: they wait
// for the next thread that can. Any thread may use it.
class OrphanedReferences {
 public:
  OrphanedReferences() = default;
  OrphanedReferences(const OrphanedReferences&) = delete;
  OrphanedReferences& operator=(const OrphanedReferences&) = delete;

  // Takes over a global reference; does nothing for null.
  void Add(jobject reference);
  // Deletes all; costs next to nothing when there are none.
  void DeleteAll(JNIEnv* env);

 private:
  std::atomic<bool> isEmpty = true;
  ShortLock lock;
  std::vector<jobject> references GUARDED_BY(lock);
};

}  // namespace quenlatrix::meta_object::handlers::bean

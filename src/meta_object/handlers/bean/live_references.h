#pragma once

#include <jni.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <unordered_map>

#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/short_lock.h"

namespace quenlatrix::meta_object::handlers::bean {

// A handler's reference to its Java object, as something that outlives both can keep it. The VM
// uses a deleted reference's number again: the serial tells which of the objects that had the
// number is meant.
struct LiveInstance {
  jobject reference = nullptr;
  std::uint64_t serial = 0;
};

// The Java references that this plug-in's live handlers hold. Only what stands here may be used: a
// number that a host passes as an object, or that a call or walk was opened with, may be no
// reference any more, and asking the VM about it could crash it. A reference is removed before it
// is deleted, under the lock that Acquire holds, so what was acquired stays valid.
//
// Every call asks, so the set is split into parts with cache lines of their own, and the first few
// references of a part need no allocation. Any thread may use it.
class LiveReferences {
 public:
  LiveReferences() = default;
  LiveReferences(const LiveReferences&) = delete;
  LiveReferences& operator=(const LiveReferences&) = delete;

  // Gives the reference its serial, a new one also where it was there before; 0 for null. Throws
  // std::bad_alloc, with nothing added.
  LiveInstance Add(jobject reference);
  // Does nothing for null and for a reference that isn't there.
  void Remove(jobject reference);

  // A local reference of the caller's own to an object that is still held under that serial. Null,
  // with nothing pending, when it has been released, or when the VM has no room.
  LocalRef<jobject> Acquire(JNIEnv* env, const LiveInstance& instance);
  // The same for whatever object is held under that number now.
  LocalRef<jobject> Acquire(JNIEnv* env, jobject reference);

 private:
  struct alignas(64) Part {
    ShortLock lock;
    std::array<LiveInstance, 3> few GUARDED_BY(lock){};
    std::unordered_map<jobject, std::uint64_t> more GUARDED_BY(lock);
  };

  Part& PartOf(jobject reference);
  // The reference's serial; null when it isn't there.
  static std::uint64_t* Find(Part& part, jobject reference) REQUIRES(part.lock);
  LocalRef<jobject> AcquireIf(JNIEnv* env, jobject reference, const std::uint64_t* wantedSerial);

  std::array<Part, 64> parts;
  std::atomic<std::uint64_t> lastSerial{0};
};

}  // namespace quenlatrix::meta_object::handlers::bean

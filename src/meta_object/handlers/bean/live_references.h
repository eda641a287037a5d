#pragma once

#include <jni.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_set>

#include "meta_object/handlers/bean/short_lock.h"

namespace quenlatrix::meta_object::handlers::bean {

// The Java references that this plug-in's live handlers hold. A number that a host passes as an
// object is used as a reference only when it is one of these: asking the VM about any other number
// could crash it. Every call asks, so the set is split into parts, each with a lock and a cache
// line of its own: threads that call different objects rarely meet. Any thread may use it.
class LiveReferences {
 public:
  LiveReferences() = default;
  LiveReferences(const LiveReferences&) = delete;
  LiveReferences& operator=(const LiveReferences&) = delete;

  // Both do nothing for null.
  void Add(jobject reference);
  void Remove(jobject reference);
  bool Contains(jobject reference);

 private:
  struct alignas(64) Part {
    ShortLock lock;
    std::unordered_set<jobject> references GUARDED_BY(lock);
  };

  Part& PartOf(jobject reference);

  std::array<Part, 64> parts;
};

}  // namespace quenlatrix::meta_object::handlers::bean

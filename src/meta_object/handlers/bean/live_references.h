#pragma once

#include <jni.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <unordered_set>

#include "meta_object/handlers/bean/short_lock.h"

namespace quenlatrix::meta_object::handlers::bean {

// The Java references that this plug-in's live handlers hold. A number that a host passes as an
// object is used as a reference only when it is one of these: asking the VM about any other number
// could crash it. Every call asks, so the set is split into parts with cache lines of their own,
// and the first few references of a part are found without a lock: threads that call different
// objects rarely meet. Any thread may use it.
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
    std::array<std::atomic<jobject>, 3> few{};
    std::atomic<std::size_t> moreCount{0};
    ShortLock lock;
    std::unordered_set<jobject> more GUARDED_BY(lock);
  };

  Part& PartOf(jobject reference);
  static bool IsAmongFew(const Part& part, jobject reference);

  std::array<Part, 64> parts;
};

}  // namespace quenlatrix::meta_object::handlers::bean

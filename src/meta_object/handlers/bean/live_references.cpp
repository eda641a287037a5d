#include "meta_object/handlers/bean/live_references.h"

#include <algorithm>

#include "meta_object/handlers/bean/java_exception.h"

namespace quenlatrix::meta_object::handlers::bean {

// References are addresses of words that lie side by side.
LiveReferences::Part& LiveReferences::PartOf(jobject reference) {
  return parts[reinterpret_cast<std::uintptr_t>(reference) / sizeof(void*) % parts.size()];
}

std::uint64_t* LiveReferences::Find(Part& part, jobject reference) {
  const auto place =
      std::ranges::find(part.few.begin(), part.few.end(), reference, &LiveInstance::reference);
  if (place != part.few.end()) {
    return &place->serial;
  }
  const auto found = part.more.find(reference);
  return found == part.more.end() ? nullptr : &found->second;
}

LiveInstance LiveReferences::Add(jobject reference) {
  if (reference == nullptr) {
    return {};
  }
  const LiveInstance added{reference, ++lastSerial};
  Part& part = PartOf(reference);
  const ShortHold hold(part.lock);
  if (std::uint64_t* const serial = Find(part, reference)) {
    *serial = added.serial;
    return added;
  }
  const auto free = std::ranges::find(part.few.begin(), part.few.end(),
                                      static_cast<jobject>(nullptr), &LiveInstance::reference);
  if (free != part.few.end()) {
    *free = added;
  } else {
    part.more.emplace(reference, added.serial);
  }
  return added;
}

void LiveReferences::Remove(jobject reference) {
  if (reference == nullptr) {
    return;
  }
  Part& part = PartOf(reference);
  const ShortHold hold(part.lock);
  const auto place =
      std::ranges::find(part.few.begin(), part.few.end(), reference, &LiveInstance::reference);
  if (place != part.few.end()) {
    *place = {};
  } else {
    part.more.erase(reference);
  }
}

LocalRef<jobject> LiveReferences::AcquireIf(JNIEnv* env, jobject reference,
                                            const std::uint64_t* wantedSerial) {
  if (reference == nullptr) {
    return {};
  }
  LocalRef<jobject> acquired;
  {
    Part& part = PartOf(reference);
    const ShortHold hold(part.lock);
    const std::uint64_t* const serial = Find(part, reference);
    if (serial == nullptr || (wantedSerial != nullptr && *serial != *wantedSerial)) {
      return {};
    }
    acquired = LocalRef<jobject>::Adopt(env, env->NewLocalRef(reference));
  }
  if (!acquired) {
    IsJavaExceptionHappened(env, nullptr);
  }
  return acquired;
}

LocalRef<jobject> LiveReferences::Acquire(JNIEnv* env, const LiveInstance& instance) {
  return AcquireIf(env, instance.reference, &instance.serial);
}

LocalRef<jobject> LiveReferences::Acquire(JNIEnv* env, jobject reference) {
  return AcquireIf(env, reference, nullptr);
}

}  // namespace quenlatrix::meta_object::handlers::bean

#include "meta_object/handlers/bean/live_references.h"

#include <algorithm>

namespace quenlatrix::meta_object::handlers::bean {

// References are addresses of words that lie side by side.
LiveReferences::Part& LiveReferences::PartOf(jobject reference) {
  return parts[reinterpret_cast<std::uintptr_t>(reference) / sizeof(void*) % parts.size()];
}

bool LiveReferences::IsAmongFew(const Part& part, jobject reference) {
  return std::any_of(part.few.begin(), part.few.end(),
                     [reference](const auto& place) { return place.load() == reference; });
}

void LiveReferences::Add(jobject reference) {
  if (reference == nullptr) {
    return;
  }
  Part& part = PartOf(reference);
  if (IsAmongFew(part, reference)) {
    return;
  }
  for (std::atomic<jobject>& place : part.few) {
    jobject nobody = nullptr;
    if (place.load() == nullptr && place.compare_exchange_strong(nobody, reference)) {
      return;
    }
  }
  const ShortHold hold(part.lock);
  part.more.insert(reference);
  part.moreCount = part.more.size();
}

// A reference that was added twice may stand in several places.
void LiveReferences::Remove(jobject reference) {
  if (reference == nullptr) {
    return;
  }
  Part& part = PartOf(reference);
  for (std::atomic<jobject>& place : part.few) {
    jobject found = reference;
    if (place.load() == reference) {
      place.compare_exchange_strong(found, nullptr);
    }
  }
  if (part.moreCount != 0) {
    const ShortHold hold(part.lock);
    part.more.erase(reference);
    part.moreCount = part.more.size();
  }
}

bool LiveReferences::Contains(jobject reference) {
  if (reference == nullptr) {
    return false;
  }
  Part& part = PartOf(reference);
  if (IsAmongFew(part, reference)) {
    return true;
  }
  if (part.moreCount == 0) {
    return false;
  }
  const ShortHold hold(part.lock);
  return part.more.count(reference) != 0;
}

}  // namespace quenlatrix::meta_object::handlers::bean

#include "meta_object/handlers/bean/live_references.h"

namespace quenlatrix::meta_object::handlers::bean {

// References are addresses of words that lie side by side.
LiveReferences::Part& LiveReferences::PartOf(jobject reference) {
  return parts[reinterpret_cast<std::uintptr_t>(reference) / sizeof(void*) % parts.size()];
}

void LiveReferences::Add(jobject reference) {
  if (reference != nullptr) {
    Part& part = PartOf(reference);
    const ShortHold hold(part.lock);
    part.references.insert(reference);
  }
}

void LiveReferences::Remove(jobject reference) {
  if (reference != nullptr) {
    Part& part = PartOf(reference);
    const ShortHold hold(part.lock);
    part.references.erase(reference);
  }
}

bool LiveReferences::Contains(jobject reference) {
  Part& part = PartOf(reference);
  const ShortHold hold(part.lock);
  return part.references.count(reference) != 0;
}

}  // namespace quenlatrix::meta_object::handlers::bean

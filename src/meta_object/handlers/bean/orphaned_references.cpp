#include "meta_object/handlers/bean/orphaned_references.h"

#include "meta_object/handlers/bean/java_refs.h"

namespace quenlatrix::meta_object::handlers::bean {

void OrphanedReferences::Add(jobject reference) {
  if (reference != nullptr) {
    const ShortHold hold(lock);
    references.push_back(reference);
    isEmpty = false;
  }
}

void OrphanedReferences::DeleteAll(JNIEnv* env) {
  if (isEmpty) {
    return;
  }
  std::vector<jobject> taken;
  {
    const ShortHold hold(lock);
    taken.swap(references);
    isEmpty = true;
  }
  for (const jobject reference : taken) {
    GlobalRef<jobject>::Adopt(env, reference).Reset();
  }
}

}  // namespace quenlatrix::meta_object::handlers::bean

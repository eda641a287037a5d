#include "meta_object/handlers/bean/arguments.h"

#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_refs.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

// So many local references a native method may always have. Half of them are for what the
// conversions and the call make besides the arguments.
constexpr std::size_t kSureLocalReferences = 16;

}  // namespace

Arguments::Arguments(JNIEnv* env, std::size_t count) : env(env), count(count) {
  if (count > kFew) {
    manyValues.resize(count);
    manyKinds.resize(count);
    values = manyValues.data();
    kinds = manyKinds.data();
  }
}

Arguments::~Arguments() {
  for (std::size_t i = 0; i < count; ++i) {
    if (kinds[i] != Kind::kPrimitive) {
      LocalRef<jobject>::Adopt(env, values[i].l).Reset();
    }
  }
}

bool Arguments::Reserve() {
  if (count <= kSureLocalReferences / 2) {
    return true;
  }
  const bool isReserved =
      env->EnsureLocalCapacity(static_cast<jint>(count + kSureLocalReferences)) == JNI_OK;
  return !IsJavaExceptionHappened(env, nullptr) && isReserved;
}

}  // namespace quenlatrix::meta_object::handlers::bean

#include "meta_object/handlers/bean/kept_lookups.h"

#include <functional>
#include <memory>
#include <utility>

#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_refs.h"

namespace quenlatrix::meta_object::handlers::bean {

KeptLookups::~KeptLookups() {
  for (const std::atomic<const TextClass*>& kept : textClasses) {
    delete kept.load();
  }
}

const TextClass* KeptLookups::FindTextClass(JNIEnv* env, const JavaTextClass& row) {
  std::atomic<const TextClass*>& place = textClasses[row.index];
  if (const TextClass* const kept = place.load(std::memory_order_acquire)) {
    return kept;
  }
  const auto cls = FindJavaClass(env, row.slashName);
  if (!cls) {
    return nullptr;
  }
  auto reference = GlobalRef<jclass>::Make(env, cls.Get());
  if (IsJavaExceptionHappened(env, nullptr) || !reference) {
    return nullptr;
  }
  // An identifier that memory was lacking for must not be kept as one that the class hasn't got.
  const bool isCharacter = row.key == TypeDesc::Key::Char;
  const bool isString = row.key == TypeDesc::Key::String;
  const jmethodID fromText =
      FindJavaMethod(env, cls.Get(), "<init>", isCharacter ? "(C)V" : "(Ljava/lang/String;)V");
  const jmethodID withoutArgument =
      isString && fromText != nullptr ? FindJavaMethod(env, cls.Get(), "<init>", "()V") : nullptr;
  if (fromText == nullptr || (isString && withoutArgument == nullptr)) {
    return nullptr;
  }
  auto made = std::make_unique<TextClass>(TextClass{reference.Get(), fromText, withoutArgument});
  const TextClass* kept = nullptr;
  if (!place.compare_exchange_strong(kept, made.get())) {
    return kept;
  }
  static_cast<void>(reference.Release());
  return made.release();
}

jmethodID KeptLookups::FindToString(JNIEnv* env) {
  jmethodID kept = toString.load(std::memory_order_acquire);
  if (kept == nullptr) {
    if (const auto cls = FindJavaClass(env, "java/lang/Object")) {
      kept = FindJavaMethod(env, cls.Get(), "toString", "()Ljava/lang/String;");
      toString.store(kept, std::memory_order_release);
    }
  }
  return kept;
}

jmethodID KeptLookups::FindPublicConstructor(JNIEnv* env, jclass cls, std::string_view name) {
  const std::size_t index = std::hash<std::string_view>{}(name) % kKeptConstructors;
  {
    const ShortHold hold(constructorsLock);
    const Constructor& kept = constructors[index];
    if (kept.cls != nullptr && env->IsSameObject(kept.cls, cls) == JNI_TRUE) {
      return kept.method;
    }
  }
  const jmethodID method = FindJavaMethod(env, cls, "<init>", "()V");
  if (method == nullptr || !IsPublicConstructor(env, cls, method)) {
    return nullptr;
  }
  KeepConstructor(env, index, cls, method);
  return method;
}

void KeptLookups::KeepConstructor(JNIEnv* env, std::size_t index, jclass cls, jmethodID method) {
  const jweak reference = env->NewWeakGlobalRef(cls);
  if (IsJavaExceptionHappened(env, nullptr) || reference == nullptr) {
    return;
  }
  Constructor dropped{reference, method};
  {
    const ShortHold hold(constructorsLock);
    std::swap(constructors[index], dropped);
  }
  if (dropped.cls != nullptr) {
    env->DeleteWeakGlobalRef(dropped.cls);
  }
}

}  // namespace quenlatrix::meta_object::handlers::bean

#include "meta_object/handlers/bean/kept_lookups.h"

#include <memory>

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

}  // namespace quenlatrix::meta_object::handlers::bean

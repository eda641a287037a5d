#include "meta_object/handlers/bean/java_exception.h"

#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/plugin_state.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

// A toString() that throws in its turn leaves `text` with its prefix; what it threw is dropped.
void DescribeException(JNIEnv* env, jthrowable exception, WideString& text) {
  text.assign(L"Java Exception: ");
  if (const jmethodID toString = keptLookups->FindToString(env)) {
    const auto description =
        LocalRef<jstring>::Adopt(env, env->CallObjectMethod(exception, toString));
    if (!env->ExceptionCheck() && description) {
      AppendJavaText(env, description.Get(), text);
    }
  }
  if (env->ExceptionCheck() != JNI_FALSE) {
    env->ExceptionClear();
  }
}

}  // namespace

bool IsJavaExceptionHappened(JNIEnv* env, WideString* text) {
  if (env == nullptr) {
    return false;
  }
  const auto exception = LocalRef<jthrowable>::Adopt(env, env->ExceptionOccurred());
  if (!exception) {
    return false;
  }
  env->ExceptionClear();
  if (text != nullptr) {
    DescribeException(env, exception.Get(), *text);
  }
  return true;
}

}  // namespace quenlatrix::meta_object::handlers::bean

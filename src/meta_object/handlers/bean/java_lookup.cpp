#include "meta_object/handlers/bean/java_lookup.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "meta_object/handlers/bean/java_exception.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

constexpr jint kObjectFrameCapacity = 8;
constexpr jint kPublicModifier = 1;  // java.lang.reflect.Modifier.PUBLIC

jmethodID Checked(JNIEnv* env, jmethodID method) {
  if (method == nullptr) {
    IsJavaExceptionHappened(env, nullptr);
  }
  return method;
}

// The result of a call that may have thrown: null then, with nothing pending.
template <class T>
LocalRef<T> CheckedResult(JNIEnv* env, jobject result) {
  auto ref = LocalRef<T>::Adopt(env, result);
  if (IsJavaExceptionHappened(env, nullptr)) {
    ref.Reset();
  }
  return ref;
}

}  // namespace

LocalRef<jclass> FindJavaClass(JNIEnv* env, const char* slashName) {
  // Some VMs take the signature form for the class itself, which would be a second name for it.
  std::size_t const length = std::strlen(slashName);
  if (length > 0 && slashName[0] == 'L' && slashName[length - 1] == ';') {
    return {};
  }
  return CheckedResult<jclass>(env, env->FindClass(slashName));
}

jmethodID FindJavaMethod(JNIEnv* env, jclass cls, const char* name, const char* signature) {
  return Checked(env, env->GetMethodID(cls, name, signature));
}

LocalRef<jobjectArray> FindParameterClasses(JNIEnv* env, jobject receiver, jmethodID method) {
  const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(receiver));
  if (!cls) {
    return {};
  }
  const auto reflected =
      CheckedResult<jobject>(env, env->ToReflectedMethod(cls.Get(), method, JNI_FALSE));
  const auto methodClass =
      LocalRef<jclass>::Adopt(env, reflected ? env->GetObjectClass(reflected.Get()) : nullptr);
  const jmethodID getTypes =
      methodClass
          ? FindJavaMethod(env, methodClass.Get(), "getParameterTypes", "()[Ljava/lang/Class;")
          : nullptr;
  return getTypes == nullptr
             ? LocalRef<jobjectArray>()
             : CheckedResult<jobjectArray>(env, env->CallObjectMethod(reflected.Get(), getTypes));
}

LocalRef<jclass> FindElementClass(JNIEnv* env, jobjectArray classes, jsize index) {
  return classes == nullptr
             ? LocalRef<jclass>()
             : CheckedResult<jclass>(env, env->GetObjectArrayElement(classes, index));
}

bool IsPublicConstructor(JNIEnv* env, jclass cls, jmethodID constructor) {
  const auto reflected =
      CheckedResult<jobject>(env, env->ToReflectedMethod(cls, constructor, JNI_FALSE));
  const auto reflectedClass =
      LocalRef<jclass>::Adopt(env, reflected ? env->GetObjectClass(reflected.Get()) : nullptr);
  if (!reflectedClass) {
    return false;
  }
  const jmethodID getModifiers = FindJavaMethod(env, reflectedClass.Get(), "getModifiers", "()I");
  if (getModifiers == nullptr) {
    return false;
  }
  const jint modifiers = env->CallIntMethod(reflected.Get(), getModifiers);
  return !IsJavaExceptionHappened(env, nullptr) && (modifiers & kPublicModifier) != 0;
}

LocalRef<jobject> NewJavaObject(JNIEnv* env, jclass cls, jmethodID constructor,
                                const jvalue* arguments) {
  // A VM may keep a local reference to an object whose constructor threw without handing it out.
  LocalFrame frame(env, kObjectFrameCapacity);
  if (!frame) {
    IsJavaExceptionHappened(env, nullptr);
    return {};
  }
  const jobject made = env->NewObjectA(cls, constructor, arguments);
  const bool hasThrown = IsJavaExceptionHappened(env, nullptr);
  return LocalRef<jobject>::Adopt(env, frame.Pop(hasThrown ? nullptr : made));
}

char* dotsToSlashes(char* name) {
  std::replace(name, name + std::strlen(name), '.', '/');
  return name;
}

}  // namespace quenlatrix::meta_object::handlers::bean

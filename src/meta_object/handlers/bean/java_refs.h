#pragma once

#include <jni.h>

#include <utility>

namespace quenlatrix::meta_object::handlers::bean {

// Every way in which this handler holds a Java reference or a piece of Java text. Each holder keeps
// the environment of the thread that made it and belongs to that thread. None of them looks at or
// clears a Java exception, and none does anything for a null reference.

// A local reference, deleted at the end of the scope.
template <class T>
class LocalRef {
 public:
  LocalRef() = default;
  LocalRef(LocalRef&& other) noexcept : env(other.env), ref(other.Release()) {}
  LocalRef& operator=(LocalRef&& other) noexcept {
    if (this != &other) {
      Reset();
      env = other.env;
      ref = other.Release();
    }
    return *this;
  }
  LocalRef(const LocalRef&) = delete;
  LocalRef& operator=(const LocalRef&) = delete;
  ~LocalRef() { Reset(); }

  // Takes over a local reference that a JNI call returned; null is fine.
  template <class U>
  static LocalRef Adopt(JNIEnv* env, U ref) {
    return LocalRef(env, static_cast<T>(ref));
  }

  // Lends the reference.
  T Get() const { return ref; }
  explicit operator bool() const { return ref != nullptr; }

  // Hands the reference to the caller, who deletes it.
  T Release() { return std::exchange(ref, nullptr); }

  void Reset() {
    if (T const ref = Release()) {
      env->DeleteLocalRef(ref);
    }
  }

 private:
  LocalRef(JNIEnv* env, T ref) : env(env), ref(ref) {}

  JNIEnv* env = nullptr;
  T ref = nullptr;
};

// A global reference, deleted at the end of the scope unless it is handed out.
template <class T>
class GlobalRef {
 public:
  GlobalRef() = default;
  GlobalRef(GlobalRef&& other) noexcept : env(other.env), ref(other.Release()) {}
  GlobalRef& operator=(GlobalRef&& other) noexcept {
    if (this != &other) {
      Reset();
      env = other.env;
      ref = other.Release();
    }
    return *this;
  }
  GlobalRef(const GlobalRef&) = delete;
  GlobalRef& operator=(const GlobalRef&) = delete;
  ~GlobalRef() { Reset(); }

  // Makes a new global reference to what `ref` refers to; null when the VM refuses.
  static GlobalRef Make(JNIEnv* env, T ref) {
    return GlobalRef(env, static_cast<T>(env->NewGlobalRef(ref)));
  }

  // Takes over a global reference.
  static GlobalRef Adopt(JNIEnv* env, T ref) { return GlobalRef(env, ref); }

  // Lends the reference.
  T Get() const { return ref; }
  explicit operator bool() const { return ref != nullptr; }

  // Hands the reference to the caller, who deletes it.
  T Release() { return std::exchange(ref, nullptr); }

  void Reset() {
    if (T const ref = Release()) {
      env->DeleteGlobalRef(ref);
    }
  }

 private:
  GlobalRef(JNIEnv* env, T ref) : env(env), ref(ref) {}

  JNIEnv* env = nullptr;
  T ref = nullptr;
};

// A frame for `capacity` local references: what is made inside it goes at the end of the scope, or
// with Pop. A frame that the VM refused is not popped.
class LocalFrame {
 public:
  LocalFrame(JNIEnv* env, jint capacity)
      : env(env), pushed(env->PushLocalFrame(capacity) == JNI_OK) {}
  LocalFrame(const LocalFrame&) = delete;
  LocalFrame& operator=(const LocalFrame&) = delete;
  ~LocalFrame() {
    if (pushed) {
      env->PopLocalFrame(nullptr);
    }
  }

  explicit operator bool() const { return pushed; }

  // Ends the frame and takes `result`, made inside it, out of it: a new local reference.
  jobject Pop(jobject result) {
    return std::exchange(pushed, false) ? env->PopLocalFrame(result) : nullptr;
  }

 private:
  JNIEnv* env;
  bool pushed;
};

// The modified UTF-8 form of a Java string.
class UtfChars {
 public:
  UtfChars(JNIEnv* env, jstring text) : env(env), text(text) {
    if (text != nullptr) {
      jboolean isCopy = JNI_FALSE;
      chars = env->GetStringUTFChars(text, &isCopy);
    }
  }
  UtfChars(const UtfChars&) = delete;
  UtfChars& operator=(const UtfChars&) = delete;
  ~UtfChars() {
    if (chars != nullptr) {
      env->ReleaseStringUTFChars(text, chars);
    }
  }

  // Null for a null string, or when the VM had no memory for the copy.
  const char* Get() const { return chars; }

 private:
  JNIEnv* env;
  jstring text;
  const char* chars = nullptr;
};

// The elements of an int array, read only: nothing is copied back.
class IntElements {
 public:
  IntElements(JNIEnv* env, jintArray array)
      : env(env), array(array), elements(env->GetIntArrayElements(array, nullptr)) {}
  IntElements(const IntElements&) = delete;
  IntElements& operator=(const IntElements&) = delete;
  ~IntElements() {
    if (elements != nullptr) {
      env->ReleaseIntArrayElements(array, elements, JNI_ABORT);
    }
  }

  // Null when the VM gave none.
  const jint* Get() const { return elements; }

 private:
  JNIEnv* env;
  jintArray array;
  jint* elements;
};

}  // namespace quenlatrix::meta_object::handlers::bean

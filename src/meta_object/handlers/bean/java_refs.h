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
  LocalRef(LocalRef&& other) noexcept : env_(other.env_), ref_(other.Release()) {}
  LocalRef& operator=(LocalRef&& other) noexcept {
    if (this != &other) {
      Reset();
      env_ = other.env_;
      ref_ = other.Release();
    }
    return *this;
  }
  LocalRef(LocalRef const&) = delete;
  LocalRef& operator=(LocalRef const&) = delete;
  ~LocalRef() { Reset(); }

  // Takes over a local reference that a JNI call returned; null is fine.
  template <class U>
  static LocalRef Adopt(JNIEnv* env, U ref) {
    return LocalRef(env, static_cast<T>(ref));
  }

  // Lends the reference.
  T Get() const { return ref_; }
  explicit operator bool() const { return ref_ != nullptr; }

  // Hands the reference to the caller, who deletes it.
  T Release() { return std::exchange(ref_, nullptr); }

  void Reset() {
    if (T const ref = Release()) {
      env_->DeleteLocalRef(ref);
    }
  }

 private:
  LocalRef(JNIEnv* env, T ref) : env_(env), ref_(ref) {}

  JNIEnv* env_ = nullptr;
  T ref_ = nullptr;
};

// A global reference, deleted at the end of the scope unless it is handed out.
template <class T>
class GlobalRef {
 public:
  GlobalRef() = default;
  GlobalRef(GlobalRef&& other) noexcept : env_(other.env_), ref_(other.Release()) {}
  GlobalRef& operator=(GlobalRef&& other) noexcept {
    if (this != &other) {
      Reset();
      env_ = other.env_;
      ref_ = other.Release();
    }
    return *this;
  }
  GlobalRef(GlobalRef const&) = delete;
  GlobalRef& operator=(GlobalRef const&) = delete;
  ~GlobalRef() { Reset(); }

  // Makes a new global reference to what `ref` refers to; null when the VM refuses.
  static GlobalRef Make(JNIEnv* env, T ref) {
    return GlobalRef(env, static_cast<T>(env->NewGlobalRef(ref)));
  }

  // Takes over a global reference.
  static GlobalRef Adopt(JNIEnv* env, T ref) { return GlobalRef(env, ref); }

  // Lends the reference.
  T Get() const { return ref_; }
  explicit operator bool() const { return ref_ != nullptr; }

  // Hands the reference to the caller, who deletes it.
  T Release() { return std::exchange(ref_, nullptr); }

  void Reset() {
    if (T const ref = Release()) {
      env_->DeleteGlobalRef(ref);
    }
  }

 private:
  GlobalRef(JNIEnv* env, T ref) : env_(env), ref_(ref) {}

  JNIEnv* env_ = nullptr;
  T ref_ = nullptr;
};

// A frame for `capacity` local references: what is made inside it goes at the end of the scope, or
// with Pop. A frame that the VM refused is not popped.
class LocalFrame {
 public:
  LocalFrame(JNIEnv* env, jint capacity)
      : env_(env), pushed_(env->PushLocalFrame(capacity) == JNI_OK) {}
  LocalFrame(LocalFrame const&) = delete;
  LocalFrame& operator=(LocalFrame const&) = delete;
  ~LocalFrame() {
    if (pushed_) {
      env_->PopLocalFrame(nullptr);
    }
  }

  explicit operator bool() const { return pushed_; }

  // Ends the frame and takes `result`, made inside it, out of it: a new local reference.
  jobject Pop(jobject result) {
    return std::exchange(pushed_, false) ? env_->PopLocalFrame(result) : nullptr;
  }

 private:
  JNIEnv* env_;
  bool pushed_;
};

// The modified UTF-8 form of a Java string.
class UtfChars {
 public:
  UtfChars(JNIEnv* env, jstring text) : env_(env), text_(text) {
    if (text_ != nullptr) {
      jboolean isCopy = JNI_FALSE;
      chars_ = env_->GetStringUTFChars(text_, &isCopy);
    }
  }
  UtfChars(UtfChars const&) = delete;
  UtfChars& operator=(UtfChars const&) = delete;
  ~UtfChars() {
    if (chars_ != nullptr) {
      env_->ReleaseStringUTFChars(text_, chars_);
    }
  }

  // Null for a null string, or when the VM had no memory for the copy.
  char const* Get() const { return chars_; }

 private:
  JNIEnv* env_;
  jstring text_;
  char const* chars_ = nullptr;
};

// The elements of an int array, read only: nothing is copied back.
class IntElements {
 public:
  IntElements(JNIEnv* env, jintArray array)
      : env_(env), array_(array), elements_(env->GetIntArrayElements(array, nullptr)) {}
  IntElements(IntElements const&) = delete;
  IntElements& operator=(IntElements const&) = delete;
  ~IntElements() {
    if (elements_ != nullptr) {
      env_->ReleaseIntArrayElements(array_, elements_, JNI_ABORT);
    }
  }

  // Null when the VM gave none.
  jint const* Get() const { return elements_; }

 private:
  JNIEnv* env_;
  jintArray array_;
  jint* elements_;
};

}  // namespace quenlatrix::meta_object::handlers::bean

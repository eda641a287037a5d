#pragma once

#include <jni.h>

#include <memory>
#include <type_traits>
#include <typeinfo>

#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"

namespace quenlatrix::meta_object::handlers::bean {

// Lends an array's element as a Value, or null when it is of another class: what the host put into
// an array is looked at before it is cast. An array's elements are nearly always of one class, so
// the full test runs once a class.
template <class Value>
class ElementCast {
 public:
  const Value* operator()(const type::Object* element) {
    if (element == nullptr) {
      return nullptr;
    }
    const std::type_info& type = typeid(*element);
    if (&type != known) {
      if (dynamic_cast<const Value*>(element) == nullptr) {
        return nullptr;
      }
      known = &type;
    }
    return static_cast<const Value*>(element);
  }

 private:
  const std::type_info* known = nullptr;
};

// What a Java array of T takes from an element. Integers go in with their low 32 bits at most, a
// long's too.
template <class T>
T ToElement(const type::Int& value) {
  if constexpr (std::is_same_v<T, jlong>) {
    return static_cast<jint>(value.GetValue());
  } else {
    return static_cast<T>(value.GetValue());
  }
}
template <class T>
T ToElement(const type::Real& value) {
  return static_cast<T>(value.GetValue());
}
template <class T>
T ToElement(const type::Char& value) {
  return static_cast<T>(value.GetValue());
}
template <class T>
T ToElement(const type::Bool& value) {
  return value.GetValue() ? T{1} : T{0};
}

// A new value of an element of a Java array.
template <class Value, class T>
std::unique_ptr<Value> FromElement(T element) {
  if constexpr (std::is_same_v<Value, type::Int>) {
    return std::make_unique<type::Int>(static_cast<long>(element));
  } else if constexpr (std::is_same_v<Value, type::Real>) {
    return std::make_unique<type::Real>(static_cast<double>(element));
  } else if constexpr (std::is_same_v<Value, type::Char>) {
    auto value = std::make_unique<type::Char>();
    value->SetValue(static_cast<wchar_t>(element));
    return value;
  } else {
    auto value = std::make_unique<type::Bool>();
    value->SetValue(element != 0);
    return value;
  }
}

// A new Java array of T, as a local reference, of the array value's elements at the linear indices
// 0 to `count` - 1. Null, with nothing pending, when one of them isn't there or is no Value, or
// when the VM has no memory.
template <class T, class JArray, class Value>
JArray CreateJavaArray(JNIEnv* env, unsigned int count, type::Array* array,
                       void (JNIEnv_::*setRegion)(JArray, jsize, jsize, T const*),
                       JArray (JNIEnv_::*newArray)(jsize)) {
  const auto buffer = std::make_unique_for_overwrite<T[]>(count);
  ElementCast<Value> cast;
  for (unsigned int i = 0; i < count; ++i) {
    const Value* const element = cast(array->GetItemAt(i));
    if (element == nullptr) {
      return nullptr;
    }
    buffer[i] = ToElement<T>(*element);
  }
  auto result = LocalRef<JArray>::Adopt(env, (env->*newArray)(static_cast<jsize>(count)));
  if (result) {
    (env->*setRegion)(result.Get(), 0, static_cast<jsize>(count), buffer.get());
  }
  return IsJavaExceptionHappened(env, nullptr) ? nullptr : result.Release();
}

// Fills the first `count` places of `target` with new values of the elements of a Java array.
// False, with nothing pending, when an argument is null or the VM refuses the copy.
template <class T, class JArray, class Value>
bool CopyJavaArray(JNIEnv* env, JArray array, unsigned int count, type::Array* target,
                   void (JNIEnv_::*getRegion)(JArray, jsize, jsize, T*)) {
  if (env == nullptr || target == nullptr || getRegion == nullptr) {
    return false;
  }
  const auto buffer = std::make_unique_for_overwrite<T[]>(count);
  (env->*getRegion)(array, 0, static_cast<jsize>(count), buffer.get());
  if (IsJavaExceptionHappened(env, nullptr)) {
    return false;
  }
  for (unsigned int i = 0; i < count; ++i) {
    auto element = FromElement<Value>(buffer[i]);
    if (target->SetItemAt(element.get(), i)) {
      static_cast<void>(element.release());
    }
  }
  return true;
}

}  // namespace quenlatrix::meta_object::handlers::bean

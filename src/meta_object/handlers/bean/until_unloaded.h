#pragma once

#include <utility>

namespace quenlatrix::meta_object::handlers::bean {

// Is the library being unloaded, rather than its process ending?
extern bool isUnloading;

// A T of static storage that is destroyed when the library is unloaded, and not when the process
// ends: then its threads may still be at work in here, and the system takes everything back at
// once. Any thread may use it as it may use the T.
template <class T>
class UntilUnloaded {
 public:
  template <class... Arguments>
  explicit UntilUnloaded(Arguments&&... arguments) : value(std::forward<Arguments>(arguments)...) {}
  UntilUnloaded(const UntilUnloaded&) = delete;
  UntilUnloaded& operator=(const UntilUnloaded&) = delete;
  ~UntilUnloaded() {
    if (isUnloading) {
      value.~T();
    }
  }

  T& operator*() { return value; }
  const T& operator*() const { return value; }
  T* operator->() { return &value; }
  const T* operator->() const { return &value; }

 private:
  union {
    T value;
  };
};

}  // namespace quenlatrix::meta_object::handlers::bean

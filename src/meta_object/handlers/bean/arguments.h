#pragma once

#include <jni.h>

#include <array>
#include <cstddef>
#include <vector>

namespace quenlatrix::meta_object::handlers::bean {

// The arguments of one call as the VM takes them, one after the other, and what must happen to each
// afterwards. Zero until they are set. For one thread.
class Arguments {
 public:
  // What an argument is besides its bits.
  enum class Kind : unsigned char {
    kPrimitive,
    kMadeObject,  // a local reference to what a conversion made
    kInstance,    // a local reference to a handler's object
  };

  Arguments(JNIEnv* env, std::size_t count);
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  // Deletes the local references.
  ~Arguments();

  // Makes room for a local reference of each; false when the VM has none.
  bool Reserve();

  jvalue& Value(std::size_t index) { return values[index]; }
  Kind& KindOf(std::size_t index) { return kinds[index]; }

  // Null when there are none.
  jvalue* Get() { return count == 0 ? nullptr : values; }

 private:
  static constexpr std::size_t kFew = 8;

  JNIEnv* env;
  std::size_t count;
  std::array<jvalue, kFew> fewValues{};
  std::array<Kind, kFew> fewKinds{};
  std::vector<jvalue> manyValues;
  std::vector<Kind> manyKinds;
  jvalue* values = fewValues.data();
  Kind* kinds = fewKinds.data();
};

}  // namespace quenlatrix::meta_object::handlers::bean

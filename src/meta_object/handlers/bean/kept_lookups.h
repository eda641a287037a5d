#pragma once

#include <jni.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string_view>

#include "meta_object/handlers/bean/java_types.h"
#include "meta_object/handlers/bean/short_lock.h"

namespace quenlatrix::meta_object::handlers::bean {

// A class whose objects cross as text, with its constructors.
struct TextClass {
  jclass cls;                 // a global reference
  jmethodID fromText;         // takes a string, or a char for java.lang.Character
  jmethodID withoutArgument;  // of java.lang.String; null for all others
};

// The look-ups that are made once a process: classes of the package "java.lang", which only the
// VM's own loaders may define and which are never unloaded, and the identifier of Object.toString,
// which calls each object's own; and the constructors of the classes that beans were made of last,
// each beside a weak reference to its class, which keeps no class from being unloaded. The VM keeps
// these few references when the plug-in is unloaded, as no thread may be attached then. Any thread
// may ask; those that ask first at the same time all look up, and one's answer is kept.
class KeptLookups {
 public:
  KeptLookups() = default;
  KeptLookups(const KeptLookups&) = delete;
  KeptLookups& operator=(const KeptLookups&) = delete;
  ~KeptLookups();

  // Null, with nothing pending, when the VM has no such class or no memory: the next call asks
  // again.
  const TextClass* FindTextClass(JNIEnv* env, const JavaTextClass& row);
  // Null, with nothing pending, when it could not be found.
  jmethodID FindToString(JNIEnv* env);
  // The class's public constructor without arguments; the name, any one of it, only says where to
  // look. Null, with nothing pending, when there is none.
  jmethodID FindPublicConstructor(JNIEnv* env, jclass cls, std::string_view name);

 private:
  static constexpr std::size_t kKeptConstructors = 64;

  struct Constructor {
    jweak cls = nullptr;
    jmethodID method = nullptr;
  };

  // Takes the place of another class's.
  void KeepConstructor(JNIEnv* env, std::size_t index, jclass cls, jmethodID method);

  std::array<std::atomic<const TextClass*>, kTextClasses> textClasses{};
  std::atomic<jmethodID> toString{nullptr};
  ShortLock constructorsLock;
  std::array<Constructor, kKeptConstructors> constructors GUARDED_BY(constructorsLock);
};

}  // namespace quenlatrix::meta_object::handlers::bean

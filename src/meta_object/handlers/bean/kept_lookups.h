#pragma once

#include <jni.h>

#include <array>
#include <atomic>
#include <cstddef>

#include "meta_object/handlers/bean/java_types.h"

namespace quenlatrix::meta_object::handlers::bean {

// A class whose objects cross as text, with its constructors.
struct TextClass {
  jclass cls;                 // a global reference
  jmethodID fromText;         // takes a string, or a char for java.lang.Character
  jmethodID withoutArgument;  // of java.lang.String; null for all others
};

// The look-ups that are made once a process: classes of the package "java.lang", which only the
// VM's own loaders may define and which are never unloaded, and the identifier of Object.toString,
// which calls each object's own. What is kept is at most one global reference a text class; the VM
// keeps these few when the plug-in is unloaded, as no thread may be attached then. Any thread may
// ask; those that ask first at the same time all look up, and one's answer is kept.
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

 private:
  std::array<std::atomic<const TextClass*>, kTextClasses> textClasses{};
  std::atomic<jmethodID> toString{nullptr};
};

}  // namespace quenlatrix::meta_object::handlers::bean

#pragma once

#include <jni.h>

#include <cstddef>
#include <string>
#include <vector>

#include "meta_object/handlers/bean/bean_introspector.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/live_references.h"
#include "text/zu_text.h"

namespace quenlatrix::meta_object::handlers::bean {

// What a walk has collected: global references, which go with it, and their class's names in
// modified UTF-8, one for each run of elements of one class. For one thread.
class WalkedElements {
 public:
  struct Run {
    std::string type;
    std::size_t end;  // one past the run's last element
  };

  explicit WalkedElements(JNIEnv* env) : env(env) {}
  WalkedElements(const WalkedElements&) = delete;
  WalkedElements& operator=(const WalkedElements&) = delete;
  ~WalkedElements();

  // Takes an element over. A new run begins with it where `isOfNewClass`.
  void Add(GlobalRef<jobject> element, const char* type, bool isOfNewClass);
  const std::vector<Run>& Runs() const { return runs; }
  // Hands an element out.
  GlobalRef<jobject> Take(std::size_t index);

 private:
  JNIEnv* env;
  std::vector<jobject> objects;
  std::vector<Run> runs;
};

// One walk over a Java object that has iterator() and size(). Belongs to the thread whose
// environment it keeps. No operation leaves a Java exception pending or a local reference behind.
class JCollection {
 public:
  JCollection() = default;
  JCollection(const JCollection&) = delete;
  JCollection& operator=(const JCollection&) = delete;
  virtual ~JCollection();

  // Keeps which object is the collection, and gets its iterator. False when there is none, it has
  // been released, the Java helper class is missing, or the object isn't a collection.
  bool SetCollection(LiveInstance collection, JNIEnv* env);
  // Gets a fresh iterator; false, without one, when the object is no collection or something threw.
  bool getIterator();
  // The same, from outside.
  bool Reset();
  // Has an iterator() been found?
  bool IsCollection() const;
  // Lends the environment of the walk's thread; null before SetCollection.
  JNIEnv* GetEnv() const { return env; }

  // Appends every remaining element. False when there is no iterator, the collection has been
  // released, an element is null or something threw; what was appended stays. `count` is not used.
  bool Next(int count, WalkedElements& elements);
  // The class name of an object; false, with `type` empty, when it can't be had, or isn't kept for
  // want of memory.
  bool GetObjectType(JNIEnv* env, jobject object, ZuText& type, BeanIntrospector& introspector);
  // Passes over up to `count` elements; none for a count below 1. False without an iterator, or
  // when the collection has been released.
  bool Skip(int count);
  // What the collection says of its size; 0 when it throws. False, with `size` left alone, when the
  // collection has been released.
  bool GetSize(int& size);

  // Lets the iterator go. Always true.
  bool cleanIterator();
  void ResetMethodIDs();
  // Lets everything go. Always true.
  bool CloseCollection();

 private:
  // The collection for the length of an operation; null once it has been released.
  LocalRef<jobject> Acquire();
  bool FindIterator(jobject held);
  bool HasNext(bool& has);

  BeanIntrospector introspector;
  LiveInstance collection;
  jobject iterator = nullptr;
  JNIEnv* env = nullptr;
  jmethodID iteratorMethod = nullptr;
  jmethodID hasNextMethod = nullptr;
  jmethodID nextMethod = nullptr;
  jmethodID sizeMethod = nullptr;
};

}  // namespace quenlatrix::meta_object::handlers::bean

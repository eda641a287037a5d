#pragma once

#include <jni.h>

#include <array>
#include <cstddef>

namespace quenlatrix::meta_object::handlers::bean {

// Name and JNI signature of a method of the Java class "BeanHandler".
struct BeanHandlerMethod {
  const char* name;
  const char* signature;
};

inline constexpr std::size_t kBeanHandlerMethods = 12;

// The constructor and the eleven instance methods, in the order of BeanIntrospector's identifiers.
extern const BeanHandlerMethod BeanHandlerTable[kBeanHandlerMethods];

// The native side of the Java class "BeanHandler", which looks at classes and jars by reflection.
// Owns one Java instance between CreateIntrospector and DestroyIntrospector (the destructor
// releases nothing). Belongs to one thread: every call takes that thread's environment. No call
// leaves a Java exception pending; one that throws, that has no environment or no instance gives
// its failure value. Arrays are made by the caller, with exactly `count` elements, and filled by
// the Java side.
class BeanIntrospector {
 public:
  BeanIntrospector() = default;
  BeanIntrospector(const BeanIntrospector&) = delete;
  BeanIntrospector& operator=(const BeanIntrospector&) = delete;

  // Finds the class and its methods and makes the instance. False without an environment, when an
  // instance exists already, or when the class or one of its methods can't be had.
  bool CreateIntrospector(JNIEnv* env);
  // Releases the instance; false only without an environment.
  bool DestroyIntrospector(JNIEnv* env);
  // Resolves the twelve identifiers; false when one is missing (those before it stay resolved).
  bool LoadVTable(JNIEnv* env, jclass cls);

  // Examines a jar or directory, or the jar registered for that name, and keeps the bean class
  // names found. False when it can't be examined.
  bool enumJavaBeans(JNIEnv* env, const char* path);
  // How many names the last enumJavaBeans found; -1 on failure.
  int getBeanCount(JNIEnv* env);
  // A name by its index from 0, as a local reference; null on failure.
  jstring getBeanName(JNIEnv* env, int index);
  // The index of a name; -1 when it isn't one of them.
  int getBeanIndex(JNIEnv* env, const jstring& name);

  // The number of property rows; 0 on failure.
  int getPropertyCount(JNIEnv* env, jclass cls);
  // Fills each row's property name, type name and accessor bits (1 get, 2 set, 4 is; 8, 16, 32 the
  // same with an index). 0 when nothing was filled.
  int getPropertyInfo(JNIEnv* env, jclass cls, int count, jarray& names, jarray& types,
                      jintArray& accessors);
  // The number of regular methods; 0 on failure.
  int getMethodCount(JNIEnv* env, jclass cls);
  // Fills each method's name, return type name and the number by which the next two calls know it.
  // 0 when nothing was filled.
  int getMethodInfo(JNIEnv* env, jclass cls, int count, jarray& names, jarray& returnTypes,
                    jintArray& methodIndexes);
  // The number of a method's parameters; 0 on failure.
  int getParameterCount(JNIEnv* env, jclass cls, int methodIndex);
  // Fills each parameter's name (empty or null when unknown) and type name. 0 when nothing was
  // filled.
  int getParameterInfo(JNIEnv* env, jclass cls, int methodIndex, int count, jarray& names,
                       jarray& types);
  // The class's name as a local reference; null on failure.
  jstring getClassName(JNIEnv* env, jclass cls);

 private:
  template <class... Arguments>
  int CallInt(JNIEnv* env, std::size_t method, int failure, Arguments... arguments);
  template <class... Arguments>
  jstring CallString(JNIEnv* env, std::size_t method, Arguments... arguments);

  std::array<jmethodID, kBeanHandlerMethods> methods{};
  jobject instance = nullptr;
};

}  // namespace quenlatrix::meta_object::handlers::bean

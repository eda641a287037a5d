#include "meta_object/handlers/bean/bean_introspector.h"

#include <string>

#include "meta_object/handlers/bean/jar_path_set.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/java_text.h"

namespace quenlatrix::meta_object::handlers::bean {

const BeanHandlerMethod BeanHandlerTable[kBeanHandlerMethods] = {
    {"<init>", "()V"},
    {"enumJavaBeans", "(Ljava/lang/String;)Z"},
    {"getBeanCount", "()I"},
    {"getBeanName", "(I)Ljava/lang/String;"},
    {"getBeanIndex", "(Ljava/lang/String;)I"},
    {"getPropertyCount", "(Ljava/lang/Class;)I"},
    {"getPropertyInfo", "(Ljava/lang/Class;I[Ljava/lang/String;[Ljava/lang/String;[I)I"},
    {"getMethodCount", "(Ljava/lang/Class;)I"},
    {"getMethodInfo", "(Ljava/lang/Class;I[Ljava/lang/String;[Ljava/lang/String;[I)I"},
    {"getParameterCount", "(Ljava/lang/Class;I)I"},
    {"getParameterInfo", "(Ljava/lang/Class;II[Ljava/lang/String;[Ljava/lang/String;)I"},
    {"getClassName", "(Ljava/lang/Class;)Ljava/lang/String;"},
};

namespace {

// Positions in the table.
enum Method : std::size_t {
  kConstructor,
  kEnumJavaBeans,
  kGetBeanCount,
  kGetBeanName,
  kGetBeanIndex,
  kGetPropertyCount,
  kGetPropertyInfo,
  kGetMethodCount,
  kGetMethodInfo,
  kGetParameterCount,
  kGetParameterInfo,
  kGetClassName,
};

}  // namespace

bool BeanIntrospector::CreateIntrospector(JNIEnv* env) {
  if (env == nullptr || instance != nullptr) {
    return false;
  }
  const auto cls = FindJavaClass(env, "BeanHandler");
  if (!cls || !LoadVTable(env, cls.Get())) {
    return false;
  }
  const auto object = NewJavaObject(env, cls.Get(), methods[kConstructor], nullptr);
  if (!object) {
    return false;
  }
  auto reference = GlobalRef<jobject>::Make(env, object.Get());
  if (IsJavaExceptionHappened(env, nullptr) || !reference) {
    return false;
  }
  instance = reference.Release();
  return true;
}

bool BeanIntrospector::DestroyIntrospector(JNIEnv* env) {
  if (env == nullptr) {
    return false;
  }
  if (instance != nullptr) {
    env->DeleteGlobalRef(instance);
    instance = nullptr;
  }
  return true;
}

bool BeanIntrospector::LoadVTable(JNIEnv* env, jclass cls) {
  if (env == nullptr || cls == nullptr) {
    return false;
  }
  for (std::size_t i = 0; i < kBeanHandlerMethods; ++i) {
    methods[i] = FindJavaMethod(env, cls, BeanHandlerTable[i].name, BeanHandlerTable[i].signature);
    if (methods[i] == nullptr) {
      return false;
    }
  }
  return true;
}

template <class... Arguments>
int BeanIntrospector::CallInt(JNIEnv* env, std::size_t method, int failure,
                              Arguments... arguments) {
  if (env == nullptr || instance == nullptr) {
    return failure;
  }
  const int result = env->CallIntMethod(instance, methods[method], arguments...);
  return IsJavaExceptionHappened(env, nullptr) ? failure : result;
}

template <class... Arguments>
jstring BeanIntrospector::CallString(JNIEnv* env, std::size_t method, Arguments... arguments) {
  if (env == nullptr || instance == nullptr) {
    return nullptr;
  }
  auto result =
      LocalRef<jstring>::Adopt(env, env->CallObjectMethod(instance, methods[method], arguments...));
  return IsJavaExceptionHappened(env, nullptr) ? nullptr : result.Release();
}

bool BeanIntrospector::enumJavaBeans(JNIEnv* env, const char* path) {
  if (env == nullptr || instance == nullptr || path == nullptr) {
    return false;
  }
  std::string const jarPath = getJarPath(path);
  const auto text = NewJavaText(env, jarPath.empty() ? path : jarPath.c_str());
  if (!text) {
    return false;
  }
  const bool examined =
      env->CallBooleanMethod(instance, methods[kEnumJavaBeans], text.Get()) == JNI_TRUE;
  return !IsJavaExceptionHappened(env, nullptr) && examined;
}

int BeanIntrospector::getBeanCount(JNIEnv* env) { return CallInt(env, kGetBeanCount, -1); }

jstring BeanIntrospector::getBeanName(JNIEnv* env, int index) {
  return CallString(env, kGetBeanName, static_cast<jint>(index));
}

int BeanIntrospector::getBeanIndex(JNIEnv* env, const jstring& name) {
  return CallInt(env, kGetBeanIndex, -1, name);
}

int BeanIntrospector::getPropertyCount(JNIEnv* env, jclass cls) {
  return cls == nullptr ? 0 : CallInt(env, kGetPropertyCount, 0, cls);
}

int BeanIntrospector::getPropertyInfo(JNIEnv* env, jclass cls, int count, jarray& names,
                                      jarray& types, jintArray& accessors) {
  return CallInt(env, kGetPropertyInfo, 0, cls, static_cast<jint>(count), names, types, accessors);
}

int BeanIntrospector::getMethodCount(JNIEnv* env, jclass cls) {
  return cls == nullptr ? 0 : CallInt(env, kGetMethodCount, 0, cls);
}

int BeanIntrospector::getMethodInfo(JNIEnv* env, jclass cls, int count, jarray& names,
                                    jarray& returnTypes, jintArray& methodIndexes) {
  return cls == nullptr ? 0
                        : CallInt(env, kGetMethodInfo, 0, cls, static_cast<jint>(count), names,
                                  returnTypes, methodIndexes);
}

int BeanIntrospector::getParameterCount(JNIEnv* env, jclass cls, int methodIndex) {
  return cls == nullptr ? 0
                        : CallInt(env, kGetParameterCount, 0, cls, static_cast<jint>(methodIndex));
}

int BeanIntrospector::getParameterInfo(JNIEnv* env, jclass cls, int methodIndex, int count,
                                       jarray& names, jarray& types) {
  return cls == nullptr ? 0
                        : CallInt(env, kGetParameterInfo, 0, cls, static_cast<jint>(methodIndex),
                                  static_cast<jint>(count), names, types);
}

jstring BeanIntrospector::getClassName(JNIEnv* env, jclass cls) {
  return cls == nullptr ? nullptr : CallString(env, kGetClassName, cls);
}

}  // namespace quenlatrix::meta_object::handlers::bean

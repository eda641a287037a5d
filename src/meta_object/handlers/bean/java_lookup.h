#pragma once

#include <jni.h>

#include "meta_object/handlers/bean/java_refs.h"

namespace quenlatrix::meta_object::handlers::bean {

// Look-ups that leave nothing pending: a class or method that isn't there gives null, and the
// exception that the VM raised for it is cleared. All text is modified UTF-8.

// The class of that name in slash form ("java/util/List", "[I"); null for "Ljava/util/List;".
LocalRef<jclass> FindJavaClass(JNIEnv* env, const char* slashName);

// The instance method of that name and JNI signature.
jmethodID FindJavaMethod(JNIEnv* env, jclass cls, const char* name, const char* signature);

// The static method of that name and JNI signature.
jmethodID FindJavaStaticMethod(JNIEnv* env, jclass cls, const char* name, const char* signature);

// The class named `dottedName` (Class.getName() form, "[Ljava.util.List;" for arrays) as the class
// loader of `receiver`'s class sees it. The class is not initialised.
LocalRef<jclass> FindJavaClassSeenBy(JNIEnv* env, jobject receiver, const char* dottedName);

// A new object. Null, with nothing pending, when the constructor threw or the VM has no memory.
LocalRef<jobject> NewJavaObject(JNIEnv* env, jclass cls, jmethodID constructor,
                                const jvalue* arguments);

// Replaces every "." of a class name by "/" in place, as FindClass wants it; returns `name`.
char* dotsToSlashes(char* name);

}  // namespace quenlatrix::meta_object::handlers::bean

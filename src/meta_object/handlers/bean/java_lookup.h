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

// The classes of an instance method's parameters, as the class that declares it knows them: a
// loader of a derived class may know others by the same names.
LocalRef<jobjectArray> FindParameterClasses(JNIEnv* env, jobject receiver, jmethodID method);

// The class at that place of such an array; null also for a null array.
LocalRef<jclass> FindElementClass(JNIEnv* env, jobjectArray classes, jsize index);

// Is the constructor public? False, with nothing pending, also when the VM can't tell.
bool IsPublicConstructor(JNIEnv* env, jclass cls, jmethodID constructor);

// A new object. Null, with nothing pending, when the constructor threw or the VM has no memory.
LocalRef<jobject> NewJavaObject(JNIEnv* env, jclass cls, jmethodID constructor,
                                const jvalue* arguments);

// Replaces every "." of a class name by "/" in place, as FindClass wants it; returns `name`.
char* dotsToSlashes(char* name);

}  // namespace quenlatrix::meta_object::handlers::bean

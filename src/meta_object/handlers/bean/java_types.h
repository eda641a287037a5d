#pragma once

#include <jni.h>

#include "meta_object/type/array.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::handlers::bean {

// The Java classes whose objects are made from a value text, and back.
extern const char* const StringType;
extern const char* const BooleanType;
extern const char* const CharacterType;
extern const char* const ByteType;
extern const char* const ShortType;
extern const char* const IntegerType;
extern const char* const LongType;
extern const char* const FloatType;
extern const char* const DoubleType;
extern const char* const DateType;

// The number of every reference type; the primitive types' numbers stand in their rows.
inline constexpr int kReferenceNumber = 0;

// A primitive Java type (or void): everything in which one differs from the other. Rows are
// constant; any thread may use them.
struct JavaPrimitive {
  const wchar_t* name;  // as in Java source
  const wchar_t* code;  // in a JNI signature
  int number;           // the Java type number
  TypeDesc::Key key;    // of values of this type
  // Reads a value text; null for void.
  void (*fromText)(const char* text, jvalue& value);
  // Prints a result, whose unused bytes are zero; null for void.
  void (*toText)(jvalue value, WideString& text);
  // Calls a method with this result; the result's unused bytes are zero.
  jvalue (*call)(JNIEnv* env, jobject object, jmethodID method, const jvalue* args);
  // A new Java array of an array value's first `count` elements, as a local reference; null, with
  // nothing pending, when an element isn't there or is none of this type. Null for void.
  jarray (*toArray)(JNIEnv* env, unsigned int count, type::Array* array);
  // Fills the array value, which has `count` places, from a Java array. Null for void.
  bool (*fromArray)(JNIEnv* env, jarray array, unsigned int count, type::Array* target);
};

// The row of a type name, or of a Java type number; null when there is none.
const JavaPrimitive* FindPrimitive(const wchar_t* name);
const JavaPrimitive* FindPrimitive(int number);

// The Java character of a value text: its first byte, with the sign extended.
jchar FirstCharacter(const char* text);

// A Java class whose objects cross as text: strings, and the wrappers of the primitive types.
struct JavaTextClass {
  const char* name;
  const char* slashName;
  TypeDesc::Key key;
};

// The row of a class name in dotted form; null when its objects cross as references.
const JavaTextClass* FindTextClass(const char* name);

}  // namespace quenlatrix::meta_object::handlers::bean

#pragma once

#include <jni.h>

#include "meta_object/type/array.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::handlers::bean {

// The Java classes whose objects are made from a value text, and back.
extern char const* const StringType;
extern char const* const BooleanType;
extern char const* const CharacterType;
extern char const* const ByteType;
extern char const* const ShortType;
extern char const* const IntegerType;
extern char const* const LongType;
extern char const* const FloatType;
extern char const* const DoubleType;
extern char const* const DateType;

// The number of every reference type; the primitive types' numbers stand in their rows.
inline constexpr int kReferenceNumber = 0;

// A primitive Java type (or void): everything in which one differs from the other. Rows are
// constant; any thread may use them.
struct JavaPrimitive {
  wchar_t const* name;  // as in Java source
  wchar_t const* code;  // in a JNI signature
  int number;           // the Java type number
  TypeDesc::Key key;    // of values of this type
  // Reads a value text; null for void.
  void (*fromText)(char const* text, jvalue& value);
  // Prints a result, whose unused bytes are zero; null for void.
  void (*toText)(jvalue value, WideString& text);
  // Calls a method with this result; the result's unused bytes are zero.
  jvalue (*call)(JNIEnv* env, jobject object, jmethodID method, jvalue const* args);
  // A new Java array of an array value's first `count` elements, as a local reference; null, with
  // nothing pending, when an element isn't there or is none of this type. Null for void.
  jarray (*toArray)(JNIEnv* env, unsigned int count, type::Array* array);
  // Fills the array value, which has `count` places, from a Java array. Null for void.
  bool (*fromArray)(JNIEnv* env, jarray array, unsigned int count, type::Array* target);
};

// The row of a type name, or of a Java type number; null when there is none.
JavaPrimitive const* FindPrimitive(wchar_t const* name);
JavaPrimitive const* FindPrimitive(int number);

// The Java character of a value text: its first byte, with the sign extended.
jchar FirstCharacter(char const* text);

// A Java class whose objects cross as text: strings, and the wrappers of the primitive types.
struct JavaTextClass {
  char const* name;
  char const* slashName;
  TypeDesc::Key key;
};

// The row of a class name in dotted form; null when its objects cross as references.
JavaTextClass const* FindTextClass(char const* name);

}  // namespace quenlatrix::meta_object::handlers::bean

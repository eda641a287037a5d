#pragma once

#include <jni.h>

#include <cstddef>
#include <memory>

#include "meta_object/type/array.h"
#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"

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
  char code;            // in a JNI signature
  int number;           // the Java type number
  // Reads a value text; null for void.
  void (*fromText)(const char* text, jvalue& value);
  // What fromText would read from the value's text, without the text; false, with nothing read, for
  // another class of values than the type's own. Null where there is no such short cut.
  bool (*fromValue)(const type::Object& value, jvalue& out);
  // A new value of a result, whose unused bytes are zero. It is what the value would be had it been
  // read from the result's printed form: a byte is 0 to 255, a real number has six decimals.
  std::unique_ptr<type::Object> (*toValue)(jvalue result);
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
  std::size_t index;  // of the row
};

inline constexpr std::size_t kTextClasses = 10;

// The row of a class name in dotted form; null when its objects cross as references, and for null.
const JavaTextClass* FindTextClass(const wchar_t* name);

}  // namespace quenlatrix::meta_object::handlers::bean

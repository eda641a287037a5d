#include "meta_object/handlers/bean/java_types.h"

#include <cstring>
#include <cwchar>

#include "meta_object/handlers/bean/java_arrays.h"
#include "text/c_numbers.h"

namespace quenlatrix::meta_object::handlers::bean {

const char* const StringType = "java.lang.String";
const char* const BooleanType = "java.lang.Boolean";
const char* const CharacterType = "java.lang.Character";
const char* const ByteType = "java.lang.Byte";
const char* const ShortType = "java.lang.Short";
const char* const IntegerType = "java.lang.Integer";
const char* const LongType = "java.lang.Long";
const char* const FloatType = "java.lang.Float";
const char* const DoubleType = "java.lang.Double";
const char* const DateType = "java.lang.Date";

namespace {

void BooleanFromText(const char* text, jvalue& value) {
  const bool isTrue = std::strcmp(text, "true") == 0 || std::strcmp(text, "True") == 0 ||
                      std::strcmp(text, "TRUE") == 0;
  value.z = isTrue ? JNI_TRUE : JNI_FALSE;
}

void BooleanToText(jvalue value, WideString& text) {
  text.assign(value.z == JNI_TRUE ? L"true" : L"false");
}

// A character that the process's encoding doesn't have gives no text.
void CharToText(jvalue value, WideString& text) {
  const auto c = static_cast<wchar_t>(value.c);
  char encoded[MB_LEN_MAX];
  std::mbstate_t state{};
  if (std::wcrtomb(encoded, c, &state) == static_cast<std::size_t>(-1)) {
    text.assign(L"");
  } else {
    text.assign(&c, 1);
  }
}

void IntegerToText(jlong value, WideString& text) {
  text.assign(quenlatrix::text::PrintInteger(value).c_str());
}

void RealToText(double value, WideString& text) {
  text.assign(quenlatrix::text::PrintReal(value).c_str());
}

// One JNI call function; what the result doesn't fill stays zero.
template <auto callMethod, auto member>
jvalue Call(JNIEnv* env, jobject object, jmethodID method, const jvalue* args) {
  jvalue result;
  result.j = 0;
  result.*member = (env->*callMethod)(object, method, args);
  return result;
}

jvalue CallVoid(JNIEnv* env, jobject object, jmethodID method, const jvalue* args) {
  env->CallVoidMethodA(object, method, args);
  jvalue result;
  result.j = 0;
  return result;
}

template <class T, class JArray, class Value, auto setRegion, auto newArray>
jarray ToArray(JNIEnv* env, unsigned int count, type::Array* array) {
  return CreateJavaArray<T, JArray, Value>(env, count, array, setRegion, newArray);
}

template <class T, class JArray, class Value, auto getRegion>
bool FromArray(JNIEnv* env, jarray array, unsigned int count, type::Array* target) {
  return CopyJavaArray<T, JArray, Value>(env, static_cast<JArray>(array), count, target, getRegion);
}

using quenlatrix::text::ReadInt;
using quenlatrix::text::ReadLong;
using quenlatrix::text::ReadReal;
using Env = JNIEnv_;
using Key = TypeDesc::Key;

const JavaPrimitive kPrimitives[] = {
    {L"int", L"I", 5, Key::Int, [](const char* t, jvalue& v) { v.i = ReadInt(t); },
     [](jvalue v, WideString& t) { IntegerToText(v.i, t); }, Call<&Env::CallIntMethodA, &jvalue::i>,
     ToArray<jint, jintArray, type::Int, &Env::SetIntArrayRegion, &Env::NewIntArray>,
     FromArray<jint, jintArray, type::Int, &Env::GetIntArrayRegion>},
    {L"boolean", L"Z", 1, Key::Bool, BooleanFromText, BooleanToText,
     Call<&Env::CallBooleanMethodA, &jvalue::z>,
     ToArray<jboolean, jbooleanArray, type::Bool, &Env::SetBooleanArrayRegion,
             &Env::NewBooleanArray>,
     FromArray<jboolean, jbooleanArray, type::Bool, &Env::GetBooleanArrayRegion>},
    // A byte prints as 0 to 255.
    {L"byte", L"B", 2, Key::Int,
     [](const char* t, jvalue& v) { v.b = static_cast<jbyte>(ReadInt(t)); },
     [](jvalue v, WideString& t) { IntegerToText(static_cast<unsigned char>(v.b), t); },
     Call<&Env::CallByteMethodA, &jvalue::b>,
     ToArray<jbyte, jbyteArray, type::Int, &Env::SetByteArrayRegion, &Env::NewByteArray>,
     FromArray<jbyte, jbyteArray, type::Int, &Env::GetByteArrayRegion>},
    {L"char", L"C", 3, Key::Char, [](const char* t, jvalue& v) { v.c = FirstCharacter(t); },
     CharToText, Call<&Env::CallCharMethodA, &jvalue::c>,
     ToArray<jchar, jcharArray, type::Char, &Env::SetCharArrayRegion, &Env::NewCharArray>,
     FromArray<jchar, jcharArray, type::Char, &Env::GetCharArrayRegion>},
    {L"short", L"S", 4, Key::Int,
     [](const char* t, jvalue& v) { v.s = static_cast<jshort>(ReadInt(t)); },
     [](jvalue v, WideString& t) { IntegerToText(v.s, t); },
     Call<&Env::CallShortMethodA, &jvalue::s>,
     ToArray<jshort, jshortArray, type::Int, &Env::SetShortArrayRegion, &Env::NewShortArray>,
     FromArray<jshort, jshortArray, type::Int, &Env::GetShortArrayRegion>},
    {L"long", L"J", 6, Key::Int, [](const char* t, jvalue& v) { v.j = ReadLong(t); },
     [](jvalue v, WideString& t) { IntegerToText(v.j, t); },
     Call<&Env::CallLongMethodA, &jvalue::j>,
     ToArray<jlong, jlongArray, type::Int, &Env::SetLongArrayRegion, &Env::NewLongArray>,
     FromArray<jlong, jlongArray, type::Int, &Env::GetLongArrayRegion>},
    {L"float", L"F", 7, Key::Real,
     [](const char* t, jvalue& v) { v.f = static_cast<jfloat>(ReadReal(t)); },
     [](jvalue v, WideString& t) { RealToText(v.f, t); }, Call<&Env::CallFloatMethodA, &jvalue::f>,
     ToArray<jfloat, jfloatArray, type::Real, &Env::SetFloatArrayRegion, &Env::NewFloatArray>,
     FromArray<jfloat, jfloatArray, type::Real, &Env::GetFloatArrayRegion>},
    {L"double", L"D", 8, Key::Real, [](const char* t, jvalue& v) { v.d = ReadReal(t); },
     [](jvalue v, WideString& t) { RealToText(v.d, t); }, Call<&Env::CallDoubleMethodA, &jvalue::d>,
     ToArray<jdouble, jdoubleArray, type::Real, &Env::SetDoubleArrayRegion, &Env::NewDoubleArray>,
     FromArray<jdouble, jdoubleArray, type::Real, &Env::GetDoubleArrayRegion>},
    {L"void", L"V", 9, Key::Void, nullptr, nullptr, CallVoid, nullptr, nullptr},
};

constexpr char kTextClassPackage[] = "java.lang.";

const JavaTextClass kTextClasses[] = {
    {BooleanType, "java/lang/Boolean", Key::Bool},
    {ByteType, "java/lang/Byte", Key::Int},
    {ShortType, "java/lang/Short", Key::Int},
    {IntegerType, "java/lang/Integer", Key::Int},
    {LongType, "java/lang/Long", Key::Int},
    {FloatType, "java/lang/Float", Key::Real},
    {DoubleType, "java/lang/Double", Key::Real},
    {StringType, "java/lang/String", Key::String},
    {DateType, "java/lang/Date", Key::Date},
    {CharacterType, "java/lang/Character", Key::Char},
};

}  // namespace

jchar FirstCharacter(const char* text) {
  // NOLINTNEXTLINE(bugprone-signed-char-misuse): bytes from 0x80 up extend their sign
  return static_cast<jchar>(static_cast<signed char>(*text));
}

const JavaPrimitive* FindPrimitive(const wchar_t* name) {
  if (name == nullptr) {
    return nullptr;
  }
  for (const JavaPrimitive& row : kPrimitives) {
    if (std::wcscmp(row.name, name) == 0) {
      return &row;
    }
  }
  return nullptr;
}

const JavaPrimitive* FindPrimitive(int number) {
  for (const JavaPrimitive& row : kPrimitives) {
    if (row.number == number) {
      return &row;
    }
  }
  return nullptr;
}

const JavaTextClass* FindTextClass(const char* name) {
  if (std::strncmp(name, kTextClassPackage, sizeof kTextClassPackage - 1) != 0) {
    return nullptr;
  }
  for (const JavaTextClass& row : kTextClasses) {
    if (std::strcmp(row.name, name) == 0) {
      return &row;
    }
  }
  return nullptr;
}

}  // namespace quenlatrix::meta_object::handlers::bean

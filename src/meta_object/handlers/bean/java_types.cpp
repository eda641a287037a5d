#include "meta_object/handlers/bean/java_types.h"

#include <array>
#include <climits>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <string_view>
#include <typeinfo>

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

using quenlatrix::text::PrintReal;
using quenlatrix::text::ReadInt;
using quenlatrix::text::ReadLong;
using quenlatrix::text::ReadReal;

void BooleanFromText(const char* text, jvalue& value) {
  const bool isTrue = std::strcmp(text, "true") == 0 || std::strcmp(text, "True") == 0 ||
                      std::strcmp(text, "TRUE") == 0;
  value.z = isTrue ? JNI_TRUE : JNI_FALSE;
}

std::unique_ptr<type::Object> MakeInt(long value) { return std::make_unique<type::Int>(value); }

std::unique_ptr<type::Object> MakeReal(double value) {
  return std::make_unique<type::Real>(ReadReal(PrintReal(value).c_str()));
}

std::unique_ptr<type::Object> MakeBool(jvalue result) {
  auto value = std::make_unique<type::Bool>();
  value->SetValue(result.z == JNI_TRUE);
  return value;
}

// A character that the process's encoding doesn't have has no printed form.
std::unique_ptr<type::Object> MakeChar(jvalue result) {
  const auto c = static_cast<wchar_t>(result.c);
  char encoded[MB_LEN_MAX];
  std::mbstate_t state{};
  auto value = std::make_unique<type::Char>();
  if (std::wcrtomb(encoded, c, &state) != static_cast<std::size_t>(-1)) {
    value->SetValue(c);
  }
  return value;
}

// Is it a Value itself, and of no class derived from it?
template <class Value>
const Value* AsExactly(const type::Object& value) {
  return typeid(value) == typeid(Value) ? static_cast<const Value*>(&value) : nullptr;
}

template <class T, auto member>
bool FromInt(const type::Object& value, jvalue& out) {
  const auto* const whole = AsExactly<type::Int>(value);
  if (whole != nullptr) {
    out.*member = static_cast<T>(whole->GetValue());
  }
  return whole != nullptr;
}

template <class T, auto member>
bool FromReal(const type::Object& value, jvalue& out) {
  const auto* const real = AsExactly<type::Real>(value);
  if (real != nullptr) {
    out.*member = static_cast<T>(ReadReal(PrintReal(real->GetValue()).c_str()));
  }
  return real != nullptr;
}

bool FromBool(const type::Object& value, jvalue& out) {
  const auto* const truth = AsExactly<type::Bool>(value);
  if (truth != nullptr) {
    out.z = truth->GetValue() ? JNI_TRUE : JNI_FALSE;
  }
  return truth != nullptr;
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

using Env = JNIEnv_;
using Key = TypeDesc::Key;

// In the order of the Java type numbers, which begin with 1.
const JavaPrimitive kPrimitives[] = {
    {L"boolean", 'Z', 1, BooleanFromText, FromBool, MakeBool,
     Call<&Env::CallBooleanMethodA, &jvalue::z>,
     ToArray<jboolean, jbooleanArray, type::Bool, &Env::SetBooleanArrayRegion,
             &Env::NewBooleanArray>,
     FromArray<jboolean, jbooleanArray, type::Bool, &Env::GetBooleanArrayRegion>},
    {L"byte", 'B', 2, [](const char* t, jvalue& v) { v.b = static_cast<jbyte>(ReadInt(t)); },
     FromInt<jbyte, &jvalue::b>, [](jvalue v) { return MakeInt(static_cast<unsigned char>(v.b)); },
     Call<&Env::CallByteMethodA, &jvalue::b>,
     ToArray<jbyte, jbyteArray, type::Int, &Env::SetByteArrayRegion, &Env::NewByteArray>,
     FromArray<jbyte, jbyteArray, type::Int, &Env::GetByteArrayRegion>},
    {L"char", 'C', 3, [](const char* t, jvalue& v) { v.c = FirstCharacter(t); }, nullptr, MakeChar,
     Call<&Env::CallCharMethodA, &jvalue::c>,
     ToArray<jchar, jcharArray, type::Char, &Env::SetCharArrayRegion, &Env::NewCharArray>,
     FromArray<jchar, jcharArray, type::Char, &Env::GetCharArrayRegion>},
    {L"short", 'S', 4, [](const char* t, jvalue& v) { v.s = static_cast<jshort>(ReadInt(t)); },
     FromInt<jshort, &jvalue::s>, [](jvalue v) { return MakeInt(v.s); },
     Call<&Env::CallShortMethodA, &jvalue::s>,
     ToArray<jshort, jshortArray, type::Int, &Env::SetShortArrayRegion, &Env::NewShortArray>,
     FromArray<jshort, jshortArray, type::Int, &Env::GetShortArrayRegion>},
    {L"int", 'I', 5, [](const char* t, jvalue& v) { v.i = ReadInt(t); }, FromInt<jint, &jvalue::i>,
     [](jvalue v) { return MakeInt(v.i); }, Call<&Env::CallIntMethodA, &jvalue::i>,
     ToArray<jint, jintArray, type::Int, &Env::SetIntArrayRegion, &Env::NewIntArray>,
     FromArray<jint, jintArray, type::Int, &Env::GetIntArrayRegion>},
    {L"long", 'J', 6, [](const char* t, jvalue& v) { v.j = ReadLong(t); },
     FromInt<jlong, &jvalue::j>, [](jvalue v) { return MakeInt(v.j); },
     Call<&Env::CallLongMethodA, &jvalue::j>,
     ToArray<jlong, jlongArray, type::Int, &Env::SetLongArrayRegion, &Env::NewLongArray>,
     FromArray<jlong, jlongArray, type::Int, &Env::GetLongArrayRegion>},
    {L"float", 'F', 7, [](const char* t, jvalue& v) { v.f = static_cast<jfloat>(ReadReal(t)); },
     FromReal<jfloat, &jvalue::f>, [](jvalue v) { return MakeReal(v.f); },
     Call<&Env::CallFloatMethodA, &jvalue::f>,
     ToArray<jfloat, jfloatArray, type::Real, &Env::SetFloatArrayRegion, &Env::NewFloatArray>,
     FromArray<jfloat, jfloatArray, type::Real, &Env::GetFloatArrayRegion>},
    {L"double", 'D', 8, [](const char* t, jvalue& v) { v.d = ReadReal(t); },
     FromReal<jdouble, &jvalue::d>, [](jvalue v) { return MakeReal(v.d); },
     Call<&Env::CallDoubleMethodA, &jvalue::d>,
     ToArray<jdouble, jdoubleArray, type::Real, &Env::SetDoubleArrayRegion, &Env::NewDoubleArray>,
     FromArray<jdouble, jdoubleArray, type::Real, &Env::GetDoubleArrayRegion>},
    {L"void", 'V', 9, nullptr, nullptr,
     [](jvalue) -> std::unique_ptr<type::Object> { return std::make_unique<type::Void>(); },
     CallVoid, nullptr, nullptr},
};

// Every call asks for each of its types, so a name's row is found by its first letter.
constexpr std::wstring_view kInitials = L"bbcsilfdv";
static_assert(kInitials.size() == std::size(kPrimitives));
constexpr auto kFirstRows = [] {
  std::array<std::size_t, 26> rows{};
  rows.fill(kInitials.size());
  for (std::size_t row = kInitials.size(); row-- > 0;) {
    rows[static_cast<std::size_t>(kInitials[row] - L'a')] = row;
  }
  return rows;
}();

constexpr std::wstring_view kPackage = L"java.lang.";

// The most frequent first.
const JavaTextClass kTextClassRows[] = {
    {StringType, "java/lang/String", Key::String, 0},
    {IntegerType, "java/lang/Integer", Key::Int, 1},
    {LongType, "java/lang/Long", Key::Int, 2},
    {BooleanType, "java/lang/Boolean", Key::Bool, 3},
    {DoubleType, "java/lang/Double", Key::Real, 4},
    {ByteType, "java/lang/Byte", Key::Int, 5},
    {ShortType, "java/lang/Short", Key::Int, 6},
    {FloatType, "java/lang/Float", Key::Real, 7},
    {DateType, "java/lang/Date", Key::Date, 8},
    {CharacterType, "java/lang/Character", Key::Char, 9},
};
static_assert(std::size(kTextClassRows) == kTextClasses);

// Short texts, most of which differ in their first letter: no call pays here.
template <class Character>
bool IsText(const wchar_t* name, const Character* text) {
  for (; *name == static_cast<wchar_t>(*text); ++text, ++name) {
    if (*name == L'\0') {
      return true;
    }
  }
  return false;
}

}  // namespace

jchar FirstCharacter(const char* text) {
  // NOLINTNEXTLINE(bugprone-signed-char-misuse): bytes from 0x80 up extend their sign
  return static_cast<jchar>(static_cast<signed char>(*text));
}

const JavaPrimitive* FindPrimitive(const wchar_t* name) {
  if (name == nullptr) {
    return nullptr;
  }
  const auto letter = static_cast<std::size_t>(*name) - std::size_t{L'a'};
  std::size_t row = letter < kFirstRows.size() ? kFirstRows[letter] : kInitials.size();
  for (; row < kInitials.size() && kInitials[row] == *name; ++row) {
    if (IsText(name, kPrimitives[row].name)) {
      return &kPrimitives[row];
    }
  }
  return nullptr;
}

const JavaPrimitive* FindPrimitive(int number) {
  const auto row = static_cast<std::size_t>(number) - 1;
  return row < std::size(kPrimitives) ? &kPrimitives[row] : nullptr;
}

const JavaTextClass* FindTextClass(const wchar_t* name) {
  if (name == nullptr || std::wcsncmp(name, kPackage.data(), kPackage.size()) != 0) {
    return nullptr;
  }
  const wchar_t* const simpleName = name + kPackage.size();
  for (const JavaTextClass& row : kTextClassRows) {
    if (IsText(simpleName, row.name + kPackage.size())) {
      return &row;
    }
  }
  return nullptr;
}

}  // namespace quenlatrix::meta_object::handlers::bean

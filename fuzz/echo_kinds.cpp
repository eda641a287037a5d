#include "fuzz/echo_kinds.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <regex>
#include <type_traits>

#include "fuzz/require.h"
#include "meta_object/type/scalar_values.h"

namespace {

using quenlatrix::meta_object::TypeDesc;
namespace type = quenlatrix::meta_object::type;
using Key = TypeDesc::Key;

constexpr const char* kScalarEcho = "beans.ScalarEcho";

std::string Print(const char* format, auto value) {
  char text[400];
  Require(std::snprintf(text, sizeof text, format, value) < static_cast<int>(sizeof text));
  return text;
}

long WholeOf(const NarrowForm& text) { return std::strtol(text.bytes.c_str(), nullptr, 10); }

template <class T>
Fate ReadWhole(const NarrowForm& text) {
  return ShowInt(static_cast<T>(WholeOf(text)));
}

template <class T>
Fate ReadReal(const NarrowForm& text) {
  const T value = static_cast<T>(std::strtod(text.bytes.c_str(), nullptr));
  return ShowReal(std::strtod(PrintReal(static_cast<double>(value)).c_str(), nullptr));
}

Fate ReadBool(const NarrowForm& text) {
  return ShowBool(text.bytes == "true" || text.bytes == "True" || text.bytes == "TRUE");
}

Fate ReadChar(const NarrowForm& text) {
  return ShowChar(static_cast<unsigned short>(static_cast<signed char>(text.bytes[0])));
}

Fate ReadText(const NarrowForm& text) {
  return text.isUnicode ? Fate(ShowText(text.bytes)) : std::nullopt;
}

Fate ReadBooleanObject(const NarrowForm& text) {
  static const std::regex kTrue("true", std::regex::icase);
  if (!text.isUnicode) return std::nullopt;
  return ShowBool(std::regex_match(text.bytes, kTrue));
}

// Java takes other scripts' digits, too.
template <class T>
Fate ReadWholeObject(const NarrowForm& text) {
  static const std::regex kWhole("[+-]?[0-9]+");
  if (!text.isUnicode) return std::nullopt;
  if (std::ranges::any_of(text.bytes, [](char c) { return c < 0; })) return kAnything;
  if (!std::regex_match(text.bytes, kWhole)) return std::nullopt;
  errno = 0;
  const long value = WholeOf(text);
  const bool isIn = errno == 0 && value >= std::numeric_limits<T>::min() &&
                    value <= std::numeric_limits<T>::max();
  return isIn ? Fate(ShowInt(value)) : std::nullopt;
}

// Java's other forms of real numbers are its own matter.
template <class T>
Fate ReadRealObject(const NarrowForm& text) {
  static const std::regex kReal("[+-]?[0-9]+(\\.[0-9]*)?([eE][+-]?[0-9]+)?");
  if (!text.isUnicode) return std::nullopt;
  if (!std::regex_match(text.bytes, kReal)) return kAnything;
  return ShowReal(sizeof(T) == sizeof(float) ? std::strtof(text.bytes.c_str(), nullptr)
                                             : std::strtod(text.bytes.c_str(), nullptr));
}

template <class Value, class T>
Fate ReadElement(const type::Object& element) {
  const auto* const value = dynamic_cast<const Value*>(&element);
  if (value == nullptr) return std::nullopt;
  const T taken = static_cast<T>(value->GetValue());
  if constexpr (std::is_same_v<Value, type::Int>) return ShowInt(taken);
  if constexpr (std::is_same_v<Value, type::Real>) return ShowReal(taken);
  if constexpr (std::is_same_v<Value, type::Char>) return ShowChar(taken);
  if constexpr (std::is_same_v<Value, type::Bool>) return ShowBool(taken);
}

constexpr EchoKind kEchoKinds[] = {
    {"boolean", Key::Bool, kScalarEcho, "echoBoolean", 2, ReadBool, ReadElement<type::Bool, bool>},
    {"byte", Key::Int, kScalarEcho, "echoByte", 2, ReadWhole<unsigned char>,
     ReadElement<type::Int, signed char>},
    {"char", Key::Char, kScalarEcho, "echoChar", 2, ReadChar,
     ReadElement<type::Char, unsigned short>},
    {"short", Key::Int, kScalarEcho, "echoShort", 2, ReadWhole<short>,
     ReadElement<type::Int, short>},
    {"int", Key::Int, kScalarEcho, "echoInt", 2, ReadWhole<int>, ReadElement<type::Int, int>},
    {"long", Key::Int, kScalarEcho, "echoLong", 2, ReadWhole<long>, ReadElement<type::Int, int>},
    {"float", Key::Real, kScalarEcho, "echoFloat", 2, ReadReal<float>,
     ReadElement<type::Real, float>},
    {"double", Key::Real, kScalarEcho, "echoDouble", 2, ReadReal<double>,
     ReadElement<type::Real, double>},
    {"java.lang.String", Key::String, kScalarEcho, "echoString", 2, ReadText, nullptr},
    {"java.lang.Boolean", Key::Bool, kScalarEcho, "echo", 0, ReadBooleanObject, nullptr},
    {"java.lang.Byte", Key::Int, kScalarEcho, "echo", 0, ReadWholeObject<signed char>, nullptr},
    {"java.lang.Character", Key::Char, kScalarEcho, "echo", 0, ReadChar, nullptr},
    {"java.lang.Short", Key::Int, kScalarEcho, "echo", 0, ReadWholeObject<short>, nullptr},
    {"java.lang.Integer", Key::Int, kScalarEcho, "echo", 1, ReadWholeObject<int>, nullptr},
    {"java.lang.Long", Key::Int, kScalarEcho, "echo", 0, ReadWholeObject<long>, nullptr},
    {"java.lang.Float", Key::Real, kScalarEcho, "echo", 0, ReadRealObject<float>, nullptr},
    {"java.lang.Double", Key::Real, kScalarEcho, "echo", 0, ReadRealObject<double>, nullptr},
    {"beans.Point", Key::Object, "beans.ObjectReturner", "echo", 1, nullptr, nullptr},
    {"java.lang.Object", Key::Object, "beans.ObjectReturner", "echo", 1, nullptr, nullptr},
};

}  // namespace

std::span<const EchoKind> GetEchoKinds() { return kEchoKinds; }

std::string ShowInt(long value) { return Print("Int %ld", value); }
std::string ShowBool(bool value) { return value ? "Bool true" : "Bool false"; }
std::string ShowChar(long code) { return Print("Char %lx", code); }
std::string ShowReal(double value) {
  return std::isnan(value) ? "Real nan" : Print("Real %a", value);
}
std::string ShowText(const std::string& text) { return "String " + text; }

std::string PrintReal(double value) { return Print("%f", value); }

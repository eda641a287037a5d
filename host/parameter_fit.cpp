#include "host/parameter_fit.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

using Kind = Argument::Kind;

constexpr int kNarrowing = 100;
constexpr int kSupertype = 1000;
constexpr int kBoxing = 2000;
constexpr int kBoxedSupertype = 3000;
constexpr int kCharacterOfText = 4000;
constexpr int kText = 5000;

constexpr const char* kString = "java.lang.String";

struct PrimitiveType {
  const char* name;
  const char* wrapper;
  Kind kind;
  std::int64_t least;  // of whole numbers
  std::int64_t most;
};

template <typename T>
constexpr PrimitiveType WholeNumber(const char* name, const char* wrapper) {
  return {name, wrapper, Kind::Integer, std::numeric_limits<T>::min(),
          std::numeric_limits<T>::max()};
}

// The numbers stand from the narrowest to the widest.
constexpr PrimitiveType kPrimitives[] = {
    WholeNumber<std::int8_t>("byte", "java.lang.Byte"),
    WholeNumber<std::int16_t>("short", "java.lang.Short"),
    WholeNumber<std::int32_t>("int", "java.lang.Integer"),
    WholeNumber<std::int64_t>("long", "java.lang.Long"),
    {"float", "java.lang.Float", Kind::Real, 0, 0},
    {"double", "java.lang.Double", Kind::Real, 0, 0},
    {"char", "java.lang.Character", Kind::Character, 0, 0},
    {"boolean", "java.lang.Boolean", Kind::Bool, 0, 0},
};
constexpr const PrimitiveType* kInt = &kPrimitives[2];
constexpr const PrimitiveType* kLong = &kPrimitives[3];
constexpr const PrimitiveType* kFloat = &kPrimitives[4];
constexpr const PrimitiveType* kDouble = &kPrimitives[5];
constexpr const PrimitiveType* kChar = &kPrimitives[6];
constexpr const PrimitiveType* kBoolean = &kPrimitives[7];

struct BoxSupertype {
  const char* name;
  Kind kind;
  int distance;
};

// What the objects that literals become are besides their own class.
constexpr BoxSupertype kBoxSupertypes[] = {
    {"java.lang.Number", Kind::Integer, 1},
    {"java.lang.Comparable", Kind::Integer, 1},
    {"java.lang.constant.Constable", Kind::Integer, 1},
    {"java.lang.constant.ConstantDesc", Kind::Integer, 1},
    {"java.io.Serializable", Kind::Integer, 2},
    {"java.lang.Object", Kind::Integer, 3},
    {"java.lang.CharSequence", Kind::Text, 1},
    {"java.lang.Comparable", Kind::Text, 1},
    {"java.io.Serializable", Kind::Text, 1},
    {"java.lang.constant.Constable", Kind::Text, 1},
    {"java.lang.constant.ConstantDesc", Kind::Text, 1},
    {"java.lang.Object", Kind::Text, 2},
    {"java.lang.Comparable", Kind::Bool, 1},
    {"java.io.Serializable", Kind::Bool, 1},
    {"java.lang.constant.Constable", Kind::Bool, 1},
    {"java.lang.Object", Kind::Bool, 2},
};

bool IsNumber(Kind kind) { return kind == Kind::Integer || kind == Kind::Real; }

const PrimitiveType* FindPrimitive(const std::string& name) {
  const auto* row = std::find_if(std::begin(kPrimitives), std::end(kPrimitives),
                                 [&](const PrimitiveType& type) { return name == type.name; });
  return row == std::end(kPrimitives) ? nullptr : row;
}

const PrimitiveType* FindWrapped(const std::string& name) {
  const auto* row = std::find_if(std::begin(kPrimitives), std::end(kPrimitives),
                                 [&](const PrimitiveType& type) { return name == type.wrapper; });
  return row == std::end(kPrimitives) ? nullptr : row;
}

std::optional<std::int64_t> WholeValue(const std::string& digits) {
  std::int64_t value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

bool IsWithin(const std::string& digits, const PrimitiveType& type) {
  const std::optional<std::int64_t> value = WholeValue(digits);
  return value && *value >= type.least && *value <= type.most;
}

// The type holds a number near the one written: no overflow, and no zero for what isn't zero. A
// held infinity is no overflow.
bool IsWithinReal(const std::string& digits, const PrimitiveType& type) {
  double value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || stop != end) return false;
  if (&type != kFloat || !std::isfinite(value)) return true;
  return std::isfinite(static_cast<float>(value)) && (static_cast<float>(value) != 0 || value == 0);
}

// The type that a plain value has of itself: a held one as it came, a literal as in Java, except
// that a whole number too long for an int is a long.
const PrimitiveType* OwnType(const Argument& argument) {
  if (const PrimitiveType* held = FindPrimitive(argument.javaType)) return held;
  if (const PrimitiveType* held = FindWrapped(argument.javaType)) return held;
  switch (argument.kind) {
    case Kind::Integer:
      if (IsWithin(argument.text, *kInt)) return kInt;
      return IsWithin(argument.text, *kLong) ? kLong : nullptr;
    case Kind::Real:
      return IsWithinReal(argument.text, *kDouble) ? kDouble : nullptr;
    case Kind::Character:
      return kChar;
    case Kind::Bool:
      return kBoolean;
    default:
      return nullptr;
  }
}

Fit Misfit(const std::string& expected, const Argument& argument) {
  return {Fit::kNone, "expected " + expected + ", found " + Describe(argument)};
}

std::string ExpectedNumber(const PrimitiveType& type) {
  if (type.kind == Kind::Real) return "a number in the range of " + std::string(type.name);
  return "a whole number from " + std::to_string(type.least) + " to " + std::to_string(type.most) +
         " (" + type.name + ")";
}

bool IsNumberOf(const Argument& argument, const PrimitiveType& type) {
  if (type.kind == Kind::Real) return IsNumber(argument.kind) && IsWithinReal(argument.text, type);
  return argument.kind == Kind::Integer && IsWithin(argument.text, type);
}

// A number alone goes out whole, an element of a long array as its low 32 bits only.
Fit FitNumber(const Argument& argument, const PrimitiveType& type, bool inArray) {
  if (!IsNumberOf(argument, type)) return Misfit(ExpectedNumber(type), argument);
  const PrimitiveType* own = OwnType(argument);
  const auto steps = static_cast<int>(&type - (own == nullptr ? kLong : own));
  Fit fit{steps >= 0 ? steps : kNarrowing - steps, {}};
  if (inArray && &type == kLong && !IsWithin(argument.text, *kInt)) {
    fit.why =
        Misfit("a number of 32 bits, which is what an element of a long array carries", argument)
            .why;
  }
  return fit;
}

// One character of text or 'c' for a char: the first byte is what the plug-in passes on, in an
// array the whole 16-bit code.
Fit FitCharacter(const Argument& argument, bool inArray) {
  Fit misfit = Misfit("one character, such as 'c'", argument);
  if (argument.kind != Kind::Character && argument.kind != Kind::Text) return misfit;
  const std::wstring codes = Utf8ToWide(argument.text);
  if (codes.size() > 1) misfit.why += " of " + std::to_string(codes.size()) + " characters";
  if (codes.size() != 1 || codes[0] > 0xFFFF) return misfit;
  Fit fit{argument.kind == Kind::Character ? 0 : kCharacterOfText, {}};
  if (!inArray && (codes[0] < 0x01 || codes[0] > 0x7F)) {
    fit.why =
        Misfit("a character from U+0001 to U+007F, which is what a single char carries", argument)
            .why;
  }
  return fit;
}

// A character is widened to the number of its code, as in Java.
Fit FitCode(const Argument& argument, const PrimitiveType& type) {
  const std::wstring codes = Utf8ToWide(argument.text);
  if (&type < kInt || codes.size() != 1 || codes[0] > 0xFFFF) {
    return Misfit("a number (" + std::string(type.name) + ")", argument);
  }
  return {static_cast<int>(&type - kInt) + 1, {}};
}

Fit FitPrimitive(const Argument& argument, const PrimitiveType& type, bool inArray) {
  if (type.kind == Kind::Bool) {
    return argument.kind == Kind::Bool ? Fit{0, {}} : Misfit("true or false", argument);
  }
  if (type.kind == Kind::Character) return FitCharacter(argument, inArray);
  if (argument.kind == Kind::Character) return FitCode(argument, type);
  return FitNumber(argument, type, inArray);
}

// A wrapped value is made from its text, so its range is the whole type's even in an array; of a
// character only the first byte counts.
Fit FitWrapper(const Argument& argument, const PrimitiveType& type) {
  if (argument.kind == Kind::Character && type.kind != Kind::Character) {
    return Misfit(std::string("an object of class ") + type.wrapper, argument);
  }
  Fit fit = FitPrimitive(argument, type, false);
  if (!fit.IsNone() && argument.kind != Kind::Text) fit.rank += kBoxing;
  return fit;
}

Fit FitText(const Argument& argument) {
  const bool isOwn = argument.kind == Kind::Text;
  if (isOwn || IsNumber(argument.kind) || argument.kind == Kind::Bool)
    return {isOwn ? 0 : kText, {}};
  return Misfit("text", argument);
}

Fit FitBoxed(const Argument& argument, const std::string& className) {
  const Kind kind = IsNumber(argument.kind)            ? Kind::Integer
                    : argument.kind == Kind::Character ? Kind::Bool
                                                       : argument.kind;
  if (!BoxClassOf(argument).empty()) {
    for (const BoxSupertype& row : kBoxSupertypes) {
      if (row.kind != kind || className != row.name) continue;
      return {(kind == Kind::Text ? kSupertype : kBoxedSupertype) + row.distance, {}};
    }
  }
  return Misfit("an object of class " + className + " (@NAME)", argument);
}

Fit FitObject(const Argument& argument, const std::string& className, bool inArray) {
  const Argument* inside = argument.items.empty() ? nullptr : argument.items.data();
  Fit fit = Misfit("an object of class " + className, argument);
  if (className == argument.text) {
    if (!IsPlainType(className)) return {0, {}};
    if (inside == nullptr) return fit;
    return {0, className == kChar->wrapper ? FitCharacter(*inside, false).why : std::string()};
  }
  if (argument.supertypes != nullptr) {
    const auto found = argument.supertypes->find(className);
    if (found != argument.supertypes->end()) return {kSupertype + found->second, {}};
  } else if (className == "java.lang.Object") {
    return {kSupertype, {}};
  }
  const PrimitiveType* primitive = FindPrimitive(className);
  if (primitive == nullptr) return fit;
  fit = FitPrimitive(inside == nullptr ? argument : *inside, *primitive, inArray);
  if (!fit.IsNone()) fit.rank += kBoxing;
  return fit;
}

Fit FitValue(const Argument& argument, const std::string& typeName, bool inArray) {
  if (argument.kind == Kind::Object) return FitObject(argument, typeName, inArray);
  if (argument.kind == Kind::Array) return Misfit("one value (" + typeName + ")", argument);
  if (const PrimitiveType* type = FindPrimitive(typeName)) {
    return FitPrimitive(argument, *type, inArray);
  }
  if (const PrimitiveType* type = FindWrapped(typeName)) return FitWrapper(argument, *type);
  return typeName == kString ? FitText(argument) : FitBoxed(argument, typeName);
}

// The worst of the elements counts.
Fit FitElements(const Argument& array, const std::string& typeName) {
  Fit worst{0, {}};
  for (const Argument& item : array.items) {
    const bool isRow = item.kind == Kind::Array;
    Fit fit = isRow ? FitElements(item, typeName) : FitValue(item, typeName, true);
    if (!fit.why.empty()) {
      const std::string number = std::to_string(&item - array.items.data() + 1);
      fit.why = (isRow ? "row " + number + ", " : "element " + number + ": ") + fit.why;
    }
    if (fit.IsNone()) return fit;
    worst.rank = std::max(worst.rank, fit.rank);
    if (worst.why.empty()) worst.why = std::move(fit.why);
  }
  return worst;
}

const Argument& FirstElement(const Argument& array) {
  const Argument& first = array.items.front();
  return first.kind == Kind::Array ? FirstElement(first) : first;
}

bool IsOfClassOf(const Argument& item, const Argument& first) {
  if (item.kind != Kind::Object || first.kind != Kind::Object) return item.kind == first.kind;
  return item.text == first.text ||
         (item.supertypes != nullptr && item.supertypes->contains(first.text));
}

// The Java array takes the class of its first element, so the others must be of that class too: in
// each row and, because the rows lie in an array themselves, in all of them.
bool HaveOneClass(const Argument& array, const Argument& first) {
  return std::all_of(array.items.begin(), array.items.end(), [&](const Argument& item) {
    if (item.kind != Kind::Array) return IsOfClassOf(item, first);
    return HaveOneClass(item, first) && HaveOneClass(item, item.items.front());
  });
}

const PrimitiveType* Wider(const PrimitiveType* a, const PrimitiveType* b) {
  const bool areNumbers = IsNumber(a->kind) && IsNumber(b->kind);
  if (!areNumbers && a != b) return nullptr;
  return std::max(a, b);
}

// One type for all plain values of an array; null when they have none in common.
const PrimitiveType* CommonType(const Argument& argument) {
  if (argument.kind != Kind::Array) return OwnType(argument);
  const PrimitiveType* common = nullptr;
  for (const Argument& item : argument.items) {
    const PrimitiveType* type = CommonType(item);
    if (type != nullptr && common != nullptr) type = Wider(common, type);
    if (type == nullptr) return nullptr;
    common = type;
  }
  return common;
}

bool AreTexts(const Argument& argument) {
  if (argument.kind != Kind::Array) return argument.kind == Kind::Text;
  return std::all_of(argument.items.begin(), argument.items.end(), AreTexts);
}

bool HoldsObjects(const Argument& argument) {
  if (argument.kind != Kind::Array) return argument.kind == Kind::Object;
  return std::any_of(argument.items.begin(), argument.items.end(), HoldsObjects);
}

std::string Dimensional(int dimensions) {
  return dimensions == 1 ? "one dimension" : std::to_string(dimensions) + " dimensions";
}

Fit FitArray(const Argument& array, const JavaType& type) {
  if (type.dimensions > 2) {
    return {Fit::kNone,
            "an array of more than two dimensions (" + ToSourceForm(type) + ") can't be passed"};
  }
  if (array.kind != Kind::Array || static_cast<int>(Dimensions(array).size()) != type.dimensions) {
    return Misfit("an array of " + Dimensional(type.dimensions) + " (" + ToSourceForm(type) + ")",
                  array);
  }
  Fit fit = FitElements(array, type.name);
  if (!fit.why.empty()) fit.why = "in the array for " + ToSourceForm(type) + ", " + fit.why;
  if (fit.IsNone() || IsPlainType(type.name)) return fit;
  const bool hasOneClass =
      HoldsObjects(array) ? HaveOneClass(array, FirstElement(array)) : !BoxClassOf(array).empty();
  if (hasOneClass) return fit;
  return Misfit("elements of one class (the array becomes one of its first element's class)",
                array);
}

}  // namespace

Argument::Kind PlainKindOf(const std::string& typeName) {
  if (typeName == kString) return Kind::Text;
  const PrimitiveType* type = FindPrimitive(typeName);
  if (type == nullptr) type = FindWrapped(typeName);
  return type == nullptr ? Kind::Null : type->kind;
}

bool IsPlainType(const std::string& typeName) { return PlainKindOf(typeName) != Kind::Null; }

std::string BoxClassOf(const Argument& argument) {
  if (AreTexts(argument)) return kString;
  if (HoldsObjects(argument)) return {};
  const PrimitiveType* type = CommonType(argument);
  return type == nullptr ? std::string() : type->wrapper;
}

Fit FitArgument(const Argument& argument, const JavaType& type) {
  if (type.dimensions > 0) return FitArray(argument, type);
  return FitValue(argument, type.name, false);
}

}  // namespace quenlatrix::host

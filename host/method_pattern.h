#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/statement_place.h"
#include "meta_object/type_desc.h"

namespace quenlatrix::host {

// A Java type as people write it: the name of a primitive or class, and how many times "[]".
struct JavaType {
  std::string name;
  int dimensions = 0;

  friend bool operator==(const JavaType&, const JavaType&) = default;
};

// The Java type that a descriptor of the plug-in stands for.
JavaType JavaTypeOf(const meta_object::TypeDesc& type);

// In source form, such as "int[][]".
std::string ToSourceForm(const JavaType& type);
// The same of a name as Class.getName() gives it, such as "[[I".
std::string ToSourceForm(const std::string& className);

// METHOD of a call: a name, and with "(...)" the parameter types of the one overload that is meant.
struct MethodPattern {
  std::string name;
  std::optional<std::vector<JavaType>> parameterTypes;
  Place place;
};

// Reads METHOD, which begins at byte `at` of its statement. Types are in source form ("int[]",
// "java.lang.String") or in binary form ("[I",
// "[Ljava.lang.String;"), with blanks anywhere but within a name. Throws HostError (Usage) that
// knows the place.
MethodPattern ParseMethodPattern(std::string_view text, std::size_t at = 0);

// How many characters of `line` METHOD takes up: to the first blank, or behind its ")".
std::size_t MethodPatternLength(std::string_view line);

}  // namespace quenlatrix::host

#pragma once

#include <limits>
#include <string>

#include "host/argument.h"
#include "host/method_pattern.h"

namespace quenlatrix::host {

// How well an argument fits a parameter's type: the lower the rank, the better. In this order: the
// exact kind, wider numbers (int, long, float, double), narrower ones, the nearest supertype,
// boxing, one-character text for a character, a number or boolean as text.
struct Fit {
  static constexpr int kNone = std::numeric_limits<int>::max();

  int rank = kNone;
  // What was expected and what found: when it doesn't fit, and when it fits by Java's rules but the
  // plug-in would pass on something else. Such a parameter counts in the choice of a method, so
  // that no worse one is silently called instead; it is refused then.
  std::string why;

  bool IsNone() const { return rank == kNone; }
};

// The argument holds no Reference and is one that RefuseUnpassable lets through.
Fit FitArgument(const Argument& argument, const JavaType& type);

// The class of the object that a literal becomes where an object is expected, such as
// "java.lang.Integer"; of an array, the one class that all its elements can have. Empty when there
// is none.
std::string BoxClassOf(const Argument& argument);

// What a value of such a type is as an argument; Null for every other type.
Argument::Kind PlainKindOf(const std::string& typeName);

// The type's values travel as plain values: primitives, the classes that wrap them, String.
bool IsPlainType(const std::string& typeName);

}  // namespace quenlatrix::host

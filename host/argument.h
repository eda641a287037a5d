#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/class_facts.h"

namespace quenlatrix::meta_object {
class Handler;
}

namespace quenlatrix::host {

// One ARG of a call: what was written (or is held under a name), before it is known which parameter
// it is for. A plain value; threads may read one at once.
struct Argument {
  enum class Kind {
    Null,
    Bool,
    Integer,    // a number without fraction and exponent, of any length
    Real,       // any other number
    Text,       // quoted or a bare word
    Character,  // 'c'
    Array,
    Reference,  // @NAME, not yet looked up
    Object,     // a held object
  };

  Kind kind = Kind::Null;
  // Bool: "true" or "false". Integer, Real: the digits as they were written. Text, Character: the
  // text, UTF-8. Reference: NAME. Object: its run-time class.
  std::string text;
  // Array: the elements. Object of class String or of a class that wraps a primitive: the one plain
  // value inside.
  std::vector<Argument> items;
  // The Java type that a held plain value has; empty for a literal.
  std::string javaType;
  // As it was written, and where in its statement's line.
  std::string source;
  std::size_t at = 0;
  // Object: what holds it (non-owning) and what its class is besides.
  const meta_object::Handler* handler = nullptr;
  std::shared_ptr<const Supertypes> supertypes;
};

// The places of a line where the ARGs stand; blanks within a literal don't end it. What is wrong
// with a literal is ParseArgument's to say.
std::vector<std::string_view> SplitArguments(std::string_view line);

// Reads one ARG: a JSON literal, 'c', @NAME or a bare word, which begins at byte `at` of its
// statement. Throws HostError (Usage) that knows the place when it begins like a literal or a
// reference and is none.
Argument ParseArgument(std::string_view source, std::size_t at = 0);

// Why no parameter of any type can take the argument: null, an empty array, rows of different
// lengths, more than two dimensions, text with a NUL character. Empty when one can.
std::string WhyUnpassable(const Argument& argument);

// The lengths of an array that is passable: one or two. Empty for anything else.
std::vector<int> Dimensions(const Argument& argument);

// The argument as messages name it: `number 5`, `text "abc"`, `array of 2 x 3 numbers`.
std::string Describe(const Argument& argument);

// The name can stand in `new NAME`, `let NAME` and `@NAME`: letters, digits, "_", "-" and
// ".", the first one no digit, "-" or ".".
bool IsHeldName(std::string_view name);

}  // namespace quenlatrix::host

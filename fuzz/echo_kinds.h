#pragma once

#include <optional>
#include <span>
#include <string>

#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"

// The Java types that values cross as, and what the conversions make of each, as texts that can be
// compared. For the fuzzer's thread alone.

// A value text in the process's encoding, UTF-8.
struct NarrowForm {
  std::string bytes;
  // Whether each character is one of Java's.
  bool isUnicode = true;
};

// What becomes of a value; nothing where there is no Java value for it.
using Fate = std::optional<std::string>;

// A Java type that crosses: its name, the key of its values, and who echoes it.
struct EchoKind {
  const char* javaType;
  quenlatrix::meta_object::TypeDesc::Key key;
  const char* scalarBean;
  const char* scalarMethod;
  // Of the arrays that beans.ArrayEcho echoes.
  std::size_t maxDimensions;
  // From the text of a scalar, or of an element that crosses as scalars do.
  Fate (*read)(const NarrowForm& text);
  // Of an element of a primitive array; nothing for another class of values. Else null.
  Fate (*readElement)(const quenlatrix::meta_object::type::Object& element);
};

std::span<const EchoKind> GetEchoKinds();

// Part of an expectation where the rules leave all to Java.
inline constexpr const char* kAnything = "anything";

// Plain values.
std::string ShowInt(long value);
std::string ShowBool(bool value);
std::string ShowChar(long code);
std::string ShowReal(double value);
std::string ShowText(const std::string& text);

// As printf has it in the C locale.
std::string PrintReal(double value);

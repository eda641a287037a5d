#include "host/argument.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include "host/host_error.h"
#include "host/method_pattern.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

using Kind = Argument::Kind;
using nlohmann::json;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kMaxDimensions = 2;
// Deep enough to tell the person what is wrong, not so deep that it exhausts the stack.
constexpr std::size_t kDeepest = 16;

bool IsBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

Argument Make(Kind kind, std::string text) {
  Argument argument;
  argument.kind = kind;
  argument.text = std::move(text);
  return argument;
}

[[noreturn]] void Refuse(const std::string& what, std::size_t place) {
  throw HostError(ExitStatus::Usage,
                  what + "\nto pass text that begins like this, write it as \"text\"",
                  Place{place, 1});
}

// Builds arguments from the parser's events, since a parsed document keeps no digits.
class LiteralReader : public nlohmann::json_sax<json> {
 public:
  bool null() override { return Add(Make(Kind::Null, "null")); }
  bool boolean(bool value) override { return Add(Make(Kind::Bool, value ? "true" : "false")); }
  // Only a number with a minus comes here, so 0 is "-0".
  bool number_integer(number_integer_t value) override {
    return Add(Make(Kind::Integer, value == 0 ? "-0" : std::to_string(value)));
  }
  bool number_unsigned(number_unsigned_t value) override {
    return Add(Make(Kind::Integer, std::to_string(value)));
  }
  // Integers that no 64 bits hold come here too.
  bool number_float(number_float_t, const string_t& digits) override {
    const bool isInteger = digits.find_first_of(".eE") == std::string::npos;
    return Add(Make(isInteger ? Kind::Integer : Kind::Real, digits));
  }
  bool string(string_t& value) override { return Add(Make(Kind::Text, value)); }
  bool binary(binary_t&) override { return false; }
  bool start_array(std::size_t) override {
    if (open.size() == kDeepest) {
      why = "an array has one or two dimensions";
      return false;
    }
    open.push_back(Make(Kind::Array, {}));
    return true;
  }
  bool end_array() override {
    Argument array = std::move(open.back());
    open.pop_back();
    return Add(std::move(array));
  }
  bool start_object(std::size_t) override {
    hasObject = true;
    return true;
  }
  bool key(string_t&) override { return true; }
  bool end_object() override { return true; }
  bool parse_error(std::size_t position, const std::string&,
                   const json::exception& error) override {
    place = position == 0 ? 0 : position - 1;
    overflow = error.id == 406;
    why = error.what();
    // "[json.exception.parse_error.101] parse error at line 1, column 5: what it is"
    const std::size_t colon = why.find(": ");
    why = colon == std::string::npos ? why.substr(why.find("] ") + 2) : why.substr(colon + 2);
    return false;
  }

  Argument result;
  bool hasObject = false;
  bool overflow = false;  // a number beyond a double's range
  std::size_t place = 0;
  std::string why;

 private:
  bool Add(Argument argument) {
    if (open.empty()) {
      result = std::move(argument);
    } else {
      open.back().items.push_back(std::move(argument));
    }
    return true;
  }

  std::vector<Argument> open;
};

// The one character within '...', with the backslash forms that Java has; false when it isn't one.
bool ReadCharacter(std::string_view inside, std::string& character) {
  static constexpr std::string_view kEscapes = "ntrbf0'\"\\";
  static constexpr std::string_view kMeanings("\n\t\r\b\f\0'\"\\", 9);
  if (inside.size() == 2 && inside[0] == '\\') {
    const std::size_t which = kEscapes.find(inside[1]);
    if (which == std::string_view::npos) return false;
    character = std::string(1, kMeanings[which]);
    return true;
  }
  if (inside.size() == 6 && inside.substr(0, 2) == "\\u") {
    unsigned int code = 0;
    for (const char digit : inside.substr(2)) {
      if (std::isxdigit(static_cast<unsigned char>(digit)) == 0) return false;
      const int value = digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
      code = code * 16 + static_cast<unsigned int>(value);
    }
    character = WideToUtf8(std::wstring(1, static_cast<wchar_t>(code)));
    return code < 0xD800 || code > 0xDFFF;
  }
  character = inside;
  return inside != "\\" && inside != "'" && Utf8ToWide(inside).size() == 1;
}

Argument ParseCharacter(std::string_view source) {
  if (source.size() < 2 || source.back() != '\'') {
    Refuse("a character is written 'c'; the closing ' is missing", source.size());
  }
  std::string character;
  if (!ReadCharacter(source.substr(1, source.size() - 2), character)) {
    Refuse(
        "a character is written 'c', with one character (or \\n, \\', \\u0041) between the marks",
        1);
  }
  return Make(Kind::Character, character);
}

Argument ParseReference(std::string_view source) {
  if (!IsHeldName(source.substr(1))) {
    Refuse("@ is followed by the name of a held value (letters, digits, _, -, .)", 1);
  }
  return Make(Kind::Reference, std::string(source.substr(1)));
}

// After the literal that begins at `at`: behind its closing mark, or the end when it has none.
std::size_t SkipLiteral(std::string_view line, std::size_t at) {
  const char first = line[at];
  int depth = 0;
  char quote = 0;
  for (std::size_t i = at; i < line.size(); ++i) {
    const char c = line[i];
    if (quote != 0) {
      if (c == '\\') {
        ++i;
      } else if (c == quote) {
        quote = 0;
      }
    } else if (c == '"' || (c == '\'' && first == '\'')) {
      quote = c;
    } else if (c == '[' || c == '{') {
      ++depth;
    } else if (c == ']' || c == '}') {
      --depth;
    }
    if (quote == 0 && depth <= 0) return i + 1;
  }
  return line.size();
}

std::string Quote(const std::string& text, char mark) { return mark + text + mark; }

const char* PluralOf(Kind kind) {
  switch (kind) {
    case Kind::Integer:
    case Kind::Real:
      return "numbers";
    case Kind::Text:
      return "texts";
    case Kind::Bool:
      return "booleans";
    case Kind::Character:
      return "characters";
    default:
      return "objects";
  }
}

std::string ElementsName(const Argument& array) {
  const Argument& first = array.items.front();
  if (first.kind == Kind::Array) return ElementsName(first);
  const std::string plural = PluralOf(first.kind);
  const bool areOfOneKind =
      std::all_of(array.items.begin(), array.items.end(),
                  [&](const Argument& item) { return plural == PluralOf(item.kind); });
  return areOfOneKind ? plural : "values of several kinds";
}

std::string WhyUneven(const Argument& array) {
  const std::size_t columns = array.items.front().items.size();
  for (std::size_t row = 0; row < array.items.size(); ++row) {
    const Argument& items = array.items[row];
    if (items.kind != Kind::Array) {
      return "an array holds either values or rows, not both; element " + std::to_string(row + 1) +
             " is " + Describe(items);
    }
    if (items.items.size() != columns) {
      return "the rows of an array must have one length; row 1 has " + std::to_string(columns) +
             " elements, row " + std::to_string(row + 1) + " has " +
             std::to_string(items.items.size());
    }
  }
  return {};
}

std::string WhyArrayUnpassable(const Argument& array, std::size_t depth) {
  if (depth > kMaxDimensions) {
    return "an array of more than two dimensions can't be passed; pass its rows one by one";
  }
  if (array.items.empty()) {
    return "an empty array can't be passed: the plug-in has no way to carry one";
  }
  bool hasRows = false;
  for (const Argument& item : array.items) {
    const bool isRow = item.kind == Kind::Array;
    hasRows = hasRows || isRow;
    std::string why = isRow ? WhyArrayUnpassable(item, depth + 1) : WhyUnpassable(item);
    if (!why.empty()) return why;
  }
  return hasRows ? WhyUneven(array) : std::string();
}

// The argument that stands at `source`, its places counted from there.
Argument ParseAtStart(std::string_view source) {
  const char first = source.empty() ? '\0' : source.front();
  if (first == '\'') return ParseCharacter(source);
  if (first == '@') return ParseReference(source);
  LiteralReader reader;
  const bool isJson = json::sax_parse(source.begin(), source.end(), &reader);
  const bool mustBeLiteral = first == '"' || first == '[' || first == '{';
  if (first == '{' && (isJson || reader.hasObject)) {
    Refuse("a JSON object is no value that a parameter takes", 0);
  }
  if (isJson && !reader.hasObject) return std::move(reader.result);
  if (reader.overflow && !mustBeLiteral) return Make(Kind::Real, std::string(source));
  if (mustBeLiteral) {
    Refuse(reader.hasObject ? "a JSON object is no value that an array holds"
                            : "no literal: " + reader.why,
           reader.hasObject ? source.find('{') : reader.place);
  }
  return Make(Kind::Text, std::string(source));
}

}  // namespace

bool IsHeldName(std::string_view name) {
  if (name.empty() || std::string_view("-.0123456789").find(name[0]) != std::string_view::npos) {
    return false;
  }
  return std::all_of(name.begin(), name.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return std::isalnum(byte) != 0 || byte >= 0x80 || c == '_' || c == '-' || c == '.';
  });
}

std::vector<std::string_view> SplitArguments(std::string_view line) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at < line.size();) {
    if (IsBlank(line[at])) {
      ++at;
      continue;
    }
    const bool isLiteral = std::string_view("\"'[{").find(line[at]) != std::string_view::npos;
    std::size_t end = isLiteral ? SkipLiteral(line, at) : at;
    end = std::min(line.find_first_of(kBlanks, end), line.size());
    parts.push_back(line.substr(at, end - at));
    at = end;
  }
  return parts;
}

Argument ParseArgument(std::string_view source, std::size_t at) {
  try {
    Argument argument = ParseAtStart(source);
    argument.source = source;
    argument.at = at;
    return argument;
  } catch (HostError& error) {
    if (error.place) error.place->at += at;
    throw;
  }
}

std::string WhyUnpassable(const Argument& argument) {
  if (argument.kind == Kind::Null) {
    return "null can't be passed: the plug-in has no way to carry it; for text pass \"\"";
  }
  if (argument.kind == Kind::Text && argument.text.find('\0') != std::string::npos) {
    return "text with the character U+0000 can't be passed: it would end there; leave that "
           "character out";
  }
  return argument.kind == Kind::Array ? WhyArrayUnpassable(argument, 1) : std::string();
}

std::vector<int> Dimensions(const Argument& argument) {
  std::vector<int> lengths;
  for (const Argument* at = &argument; at->kind == Kind::Array; at = &at->items.front()) {
    lengths.push_back(static_cast<int>(at->items.size()));
  }
  return lengths;
}

std::string Describe(const Argument& argument) {
  switch (argument.kind) {
    case Kind::Null:
      return "null";
    case Kind::Bool:
      return "boolean " + argument.text;
    case Kind::Integer:
    case Kind::Real:
      return "number " + argument.text;
    case Kind::Text:
      return "text " + Quote(argument.text, '"');
    case Kind::Character:
      return "character " + Quote(argument.text, '\'');
    case Kind::Reference:
      return "@" + argument.text;
    case Kind::Object:
      return "object of class " + ToSourceForm(argument.text);
    case Kind::Array:
      break;
  }
  if (argument.items.empty()) return "empty array";
  std::string lengths;
  for (const int length : Dimensions(argument)) {
    lengths += (lengths.empty() ? "" : " x ") + std::to_string(length);
  }
  return "array of " + lengths + " " + ElementsName(argument);
}

}  // namespace quenlatrix::host

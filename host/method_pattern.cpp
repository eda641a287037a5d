#include "host/method_pattern.h"

#include <algorithm>

#include "host/host_error.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

struct Letter {
  char letter;
  const char* primitive;
};

constexpr Letter kLetters[] = {{'Z', "boolean"}, {'B', "byte"}, {'C', "char"},  {'S', "short"},
                               {'I', "int"},     {'J', "long"}, {'F', "float"}, {'D', "double"}};

// `piece` is what is wrong, a part of METHOD's text.
[[noreturn]] void Refuse(std::string_view text, const std::string& why, std::string_view piece) {
  throw HostError(
      ExitStatus::Usage,
      why +
          "\nMETHOD is a name, such as add, or a name with its parameter types, such as "
          "\"sum(int[], java.lang.String)\"",
      Place{static_cast<std::size_t>(piece.data() - text.data()), piece.size()});
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes "[]" with any blanks off the end; false when there is none.
bool TakeBrackets(std::string_view& type) {
  if (!type.ends_with(']')) return false;
  const std::string_view inside = Trim(type.substr(0, type.size() - 1));
  if (!inside.ends_with('[')) return false;
  type = Trim(inside.substr(0, inside.size() - 1));
  return true;
}

// "Ljava.lang.String;" without its marks; false when it has none.
bool TakeClassMarks(std::string_view& name) {
  if (name.size() < 3 || name.front() != 'L' || name.back() != ';') return false;
  name = name.substr(1, name.size() - 2);
  return true;
}

std::string PrimitiveOf(std::string_view letter) {
  const auto* row = std::find_if(std::begin(kLetters), std::end(kLetters), [&](const Letter& each) {
    return letter.size() == 1 && letter[0] == each.letter;
  });
  return row == std::end(kLetters) ? std::string() : row->primitive;
}

JavaType ParseType(std::string_view whole, std::string_view written) {
  std::string_view type = Trim(written);
  if (type.empty()) Refuse(whole, "a parameter type is missing", written);
  JavaType result;
  while (TakeBrackets(type)) ++result.dimensions;
  const bool isBinary = type.starts_with('[');
  while (type.starts_with('[')) {
    type = Trim(type.substr(1));
    ++result.dimensions;
  }
  const bool isClass = TakeClassMarks(type);
  result.name = isBinary && !isClass ? PrimitiveOf(type) : std::string(type);
  if (result.name.empty() || result.name.find_first_of(" \t\r\n[](),;") != std::string::npos) {
    Refuse(whole, "\"" + std::string(Trim(written)) + "\" is no type", Trim(written));
  }
  std::replace(result.name.begin(), result.name.end(), '/', '.');
  return result;
}

std::vector<JavaType> ParseTypes(std::string_view whole, std::string_view list) {
  std::vector<JavaType> types;
  if (Trim(list).empty()) return types;
  for (;;) {
    const std::size_t comma = list.find(',');
    types.push_back(ParseType(whole, list.substr(0, comma)));
    if (comma == std::string_view::npos) return types;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace

JavaType JavaTypeOf(const meta_object::TypeDesc& type) {
  JavaType result;
  result.name = ToUtf8(type.typeName);
  if (type.arrayInfo) result.dimensions = static_cast<int>(type.arrayInfo->dimensions.size());
  return result;
}

std::string ToSourceForm(const JavaType& type) {
  std::string text = type.name;
  for (int i = 0; i < type.dimensions; ++i) text += "[]";
  return text;
}

std::string ToSourceForm(const std::string& className) {
  return className.starts_with('[') ? ToSourceForm(ParseType(className, className)) : className;
}

namespace {

MethodPattern ParseWhole(std::string_view whole) {
  const std::size_t open = whole.find('(');
  MethodPattern pattern;
  pattern.name = Trim(whole.substr(0, open));
  if (pattern.name.empty()) Refuse(whole, "the name of a method is missing", whole);
  if (pattern.name.find_first_of(" \t\r\n)[],;:") != std::string::npos) {
    Refuse(whole, "\"" + pattern.name + "\" is no method name", Trim(whole.substr(0, open)));
  }
  if (open == std::string_view::npos) return pattern;
  if (!whole.ends_with(')'))
    Refuse(whole, "the closing \")\" is missing", whole.substr(whole.size()));
  pattern.parameterTypes = ParseTypes(whole, whole.substr(open + 1, whole.size() - open - 2));
  return pattern;
}

}  // namespace

MethodPattern ParseMethodPattern(std::string_view text, std::size_t at) {
  const std::string_view whole = Trim(text);
  try {
    MethodPattern pattern = ParseWhole(whole);
    pattern.place = {at, text.size()};
    return pattern;
  } catch (HostError& error) {
    const std::string_view blanks = text.substr(0, text.find(whole));
    if (error.place) error.place->at += at + blanks.size();
    throw;
  }
}

std::size_t MethodPatternLength(std::string_view line) {
  const std::size_t mark = std::min(line.find_first_of(" \t\r\n("), line.size());
  if (mark == line.size() || line[mark] != '(') return mark;
  const std::size_t close = std::min(line.find(')', mark), line.size());
  return std::min(line.find_first_of(kBlanks, close), line.size());
}

}  // namespace quenlatrix::host

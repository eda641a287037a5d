#include "meta_object/handlers/bean/java_signature.h"

#include <algorithm>

#include "text/narrow_text.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

bool HasMeaning(char c) { return c == ';' || c == '[' || c == '(' || c == ')'; }

}  // namespace

// Makes room for `count` characters at the end, which the caller writes.
char* JavaSignature::Grow(std::size_t count) {
  std::size_t const start = length;
  length += count;
  if (length < shortText.size()) {
    return shortText.data() + start;
  }
  if (longText.empty()) {
    longText.assign(shortText.data(), start);
  }
  longText.resize(length);
  return longText.data() + start;
}

void JavaSignature::Append(std::string_view codes) {
  std::copy(codes.begin(), codes.end(), Grow(codes.size()));
}

// In one pass: most names are such.
bool JavaSignature::AppendShortAsciiClass(const wchar_t* name, bool& isClass) {
  char* code = shortText.data() + length;
  const char* const limit = shortText.data() + shortText.size() - 2;
  *code++ = 'L';
  for (; *name != L'\0'; ++name) {
    const wchar_t c = *name;
    if (c < 0 || c >= 0x80 || code >= limit) {
      return false;
    }
    // The small letters stand behind all others.
    if (c <= L'[' && HasMeaning(static_cast<char>(c))) {
      isClass = false;
      return true;
    }
    *code++ = c == L'.' ? '/' : static_cast<char>(c);
  }
  *code++ = ';';
  length = static_cast<std::size_t>(code - shortText.data());
  isClass = true;
  return true;
}

bool JavaSignature::AppendClass(const wchar_t* name) {
  bool isClass = false;
  if (name != nullptr && length + 2 < shortText.size() && AppendShortAsciiClass(name, isClass)) {
    return isClass;
  }
  const NarrowText narrow(name);
  const std::string_view dotted(narrow.Get() == nullptr ? "" : narrow.Get());
  if (std::any_of(dotted.begin(), dotted.end(), HasMeaning)) {
    return false;
  }
  isAscii = isAscii && narrow.IsAscii();
  char* const code = Grow(dotted.size() + 2);
  *code = 'L';
  *std::replace_copy(dotted.begin(), dotted.end(), code + 1, '.', '/') = ';';
  return true;
}

const char* JavaSignature::Get() {
  if (!longText.empty()) {
    return longText.c_str();
  }
  shortText[length] = '\0';
  return shortText.data();
}

}  // namespace quenlatrix::meta_object::handlers::bean

#include "meta_object/handlers/bean/java_signature.h"

#include <algorithm>

namespace quenlatrix::meta_object::handlers::bean {

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

bool JavaSignature::AppendClass(const char* name) {
  const std::string_view dotted(name);
  const auto hasMeaning = [](char c) { return c == ';' || c == '[' || c == '(' || c == ')'; };
  if (std::any_of(dotted.begin(), dotted.end(), hasMeaning)) {
    return false;
  }
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

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "config_file/stanza.h"

namespace quenlatrix::config_file {

namespace {

// The character at the place in `to` that `c` has in `from`; 0 when it has none.
char Translate(char c, const char* from, const char* to) {
  const char* const place = c == '\0' ? nullptr : std::strchr(from, c);
  return place == nullptr ? '\0' : to[place - from];
}

void AppendEscaped(std::string& out, const char* s) {
  for (; *s != '\0'; ++s) {
    const char letter = ConfigFile::Stanza::GetBSEscKey(*s);
    if (letter != '\0') {
      out += '\\';
    }
    out += letter != '\0' ? letter : *s;
  }
}

bool Write(std::FILE* f, const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), f) == text.size();
}

}  // namespace

char ConfigFile::Stanza::GetBSEscValue(char c) { return Translate(c, bsEscKeys, bsEscValues); }

char ConfigFile::Stanza::GetBSEscKey(char c) { return Translate(c, bsEscValues, bsEscKeys); }

int ConfigFile::Stanza::writeBSEscString(std::FILE* f, const char* s) {
  std::string text;
  AppendEscaped(text, s == nullptr ? "" : s);
  return Write(f, text) ? static_cast<int>(text.size()) : -1;
}

void ConfigFile::Stanza::AppendTo(std::string& out) const {
  const MutexLock hold(lock);
  std::vector<const collect::Attribute*> sorted;
  for (const collect::Attribute& attribute : attributes) {
    sorted.push_back(&attribute);
  }
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto* a, const auto* b) { return *a < *b; });
  out += '[';
  AppendEscaped(out, name.GetTextEx());
  out += "]\n";
  for (const collect::Attribute* const attribute : sorted) {
    AppendEscaped(out, attribute->key.GetTextEx());
    out += '=';
    AppendEscaped(out, attribute->value.GetTextEx());
    out += '\n';
  }
  out += '\n';
}

bool ConfigFile::Stanza::saveStanza(std::FILE* f, bool /*flag*/) const {
  std::string text;
  AppendTo(text);
  return Write(f, text);
}

}  // namespace quenlatrix::config_file

#include <algorithm>
#include <cstring>
#include <vector>

#include "config_file/stanza.h"

namespace quenlatrix::config_file {

namespace {

// The character at the place in `to` that `c` has in `from`; 0 when it has none.
char Translate(char c, const char* from, const char* to) {
  const char* const place = c == '\0' ? nullptr : std::strchr(from, c);
  return place == nullptr ? '\0' : to[place - from];
}

bool WriteText(std::FILE* f, const ZuText& text) {
  return ConfigFile::Stanza::writeBSEscString(f, text.GetTextEx()) != -1;
}

bool WritePlain(std::FILE* f, const char* text) { return std::fputs(text, f) != EOF; }

}  // namespace

char ConfigFile::Stanza::GetBSEscValue(char c) { return Translate(c, bsEscKeys, bsEscValues); }

char ConfigFile::Stanza::GetBSEscKey(char c) { return Translate(c, bsEscValues, bsEscKeys); }

int ConfigFile::Stanza::writeBSEscString(std::FILE* f, const char* s) {
  int written = 0;
  for (; s != nullptr && *s != '\0'; ++s) {
    const char letter = GetBSEscKey(*s);
    if (letter != '\0') {
      if (std::fputc('\\', f) == EOF) {
        return -1;
      }
      ++written;
    }
    if (std::fputc(letter != '\0' ? letter : *s, f) == EOF) {
      return -1;
    }
    ++written;
  }
  return written;
}

bool ConfigFile::Stanza::saveStanza(std::FILE* f, bool /*flag*/) const {
  const MutexLock hold(lock);
  std::vector<const collect::Attribute*> sorted;
  for (const collect::Attribute& attribute : attributes) {
    sorted.push_back(&attribute);
  }
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto* a, const auto* b) { return *a < *b; });
  return WritePlain(f, "[") && WriteText(f, name) && WritePlain(f, "]\n") &&
         std::all_of(sorted.begin(), sorted.end(),
                     [f](const collect::Attribute* attribute) {
                       return WriteText(f, attribute->key) && WritePlain(f, "=") &&
                              WriteText(f, attribute->value) && WritePlain(f, "\n");
                     }) &&
         WritePlain(f, "\n");
}

}  // namespace quenlatrix::config_file

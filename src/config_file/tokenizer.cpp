#include "config_file/tokenizer.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "config_file/stanza.h"

namespace quenlatrix::config_file {

namespace {

// What ends a kind of text, and what ends it even after a backslash.
struct Form {
  const char* ends;
  const char* endsAfterBackslash;
  unsigned long longest;
};

constexpr unsigned long kAnyLength = std::numeric_limits<unsigned long>::max();
constexpr Form kName = {"]", "]", kAnyLength};
constexpr Form kWord = {";=[\n", ";=\n", kAnyLength};
constexpr Form kValue = {"\n", "\n", kLongestValue};

// Whether `c` is one of `set`; NUL always is.
bool IsOneOf(int c, const char* set) { return std::strchr(set, c) != nullptr; }

// Reads what follows a backslash and appends what both stand for.
char* ReadEscape(std::FILE* f, const char* ends, char* out) {
  const int next = getc_unlocked(f);
  const char meant =
      next == EOF ? '\0' : ConfigFile::Stanza::GetBSEscValue(static_cast<char>(next));
  if (meant != '\0') {
    *out++ = meant;
    return out;
  }
  *out++ = '\\';
  if (next == EOF) {
    return out;
  }
  if (IsOneOf(next, ends)) {
    ungetc(next, f);
  } else {
    *out++ = static_cast<char>(next);
  }
  return out;
}

// Reads text into `buffer` and gives the character that ended it, which is consumed: one of the
// form's ends, NUL or EOF. A text that is too long ends with its last character.
int ReadText(std::FILE* f, char* buffer, const Form& form) {
  char* out = buffer;
  int c = 0;
  while (static_cast<unsigned long>(out - buffer) < form.longest) {
    c = getc_unlocked(f);
    if (c == EOF || IsOneOf(c, form.ends)) {
      break;
    }
    if (c == '\\') {
      out = ReadEscape(f, form.endsAfterBackslash, out);
    } else {
      *out++ = static_cast<char>(c);
    }
  }
  buffer[std::min(static_cast<unsigned long>(out - buffer), form.longest)] = '\0';
  return c;
}

void SkipLine(std::FILE* f, int c) {
  while (c != '\n' && c != EOF) {
    c = getc_unlocked(f);
  }
}

Token ReadValue(std::FILE* f, char* buffer) {
  const int end = ReadText(f, buffer, kValue);
  SkipLine(f, end);
  return end == '\0' ? Token::Invalid : Token::Value;
}

Token ReadName(std::FILE* f, char* buffer) {
  return ReadText(f, buffer, kName) == '\0' ? Token::Invalid : Token::StanzaName;
}

Token ReadWord(std::FILE* f, char* buffer) {
  const int end = ReadText(f, buffer, kWord);
  if (end == EOF) {
    return Token::EndOfFile;
  }
  ungetc(end, f);
  return end == '\0' ? Token::Invalid : Token::Word;
}

}  // namespace

Token getToken(std::FILE* f, char* buffer, bool valueMode) {
  if (valueMode) {
    return ReadValue(f, buffer);
  }
  int c = getc_unlocked(f);
  if (c == '\n') {
    return Token::EndOfLine;
  }
  if (c == '=') {
    return Token::EqualsSign;
  }
  while (c == ' ' || c == '\t') {
    c = getc_unlocked(f);
  }
  switch (c) {
    case EOF:
      return Token::EndOfFile;
    case ';':
      SkipLine(f, c);
      return Token::EndOfLine;
    case '[':
      return ReadName(f, buffer);
    default:
      ungetc(c, f);
      return ReadWord(f, buffer);
  }
}

}  // namespace quenlatrix::config_file

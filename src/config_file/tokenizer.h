#pragma once

#include <cstdio>

namespace quenlatrix::config_file {

// What getToken found. The values are part of the interface.
enum class Token : int {
  // A name, key or value with a NUL byte, which no text can hold.
  Invalid = 0,
  EndOfFile = 1,
  // A key.
  Word = 2,
  // A comment line counts as one.
  EndOfLine = 3,
  StanzaName = 4,
  Value = 5,
  EqualsSign = 6,
};

// The longest value; the rest of a longer one is skipped.
constexpr unsigned long kLongestValue = 4095;
// What getToken needs of a buffer for a value.
constexpr unsigned long kValueRoom = kLongestValue + 2;

// Reads the next token of a configuration file. In value mode that is always a value: what stands
// up to the end of the line or the file. The text of a word, name or value goes to `buffer`,
// escapes resolved and with a NUL at its end; `buffer` has kValueRoom bytes for a value, and
// otherwise one more than `f` has left to read. A word that the file ends in gives EndOfFile.
//
// Threads: a stream is used by one thread at a time.
Token getToken(std::FILE* f, char* buffer, bool valueMode);

}  // namespace quenlatrix::config_file

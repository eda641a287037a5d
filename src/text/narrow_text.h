#pragma once

#include <array>
#include <cstddef>
#include <memory>

// The narrow form of a wide text for a moment's use: the same bytes that WideString::getCharPtr
// gives, without leaving a copy in the string, and on the stack where the text is short and ASCII.
// For one thread.
class NarrowText {
 public:
  explicit NarrowText(const wchar_t* wide);
  NarrowText(const NarrowText&) = delete;
  NarrowText& operator=(const NarrowText&) = delete;

  // Null when the text is null or has a character that the encoding lacks.
  char* Get() { return narrow; }
  const char* Get() const { return narrow; }
  // Is every character of the text ASCII, and so the narrow form whole? True for null.
  bool IsAscii() const { return isAscii; }

 private:
  std::array<char, 256> shortText;
  std::unique_ptr<char[]> longText;
  char* narrow = nullptr;
  bool isAscii = true;
};

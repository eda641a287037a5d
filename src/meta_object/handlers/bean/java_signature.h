#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quenlatrix::meta_object::handlers::bean {

// A JNI signature while it is put together, in narrow text; on the stack while it is short. For one
// thread.
class JavaSignature {
 public:
  JavaSignature() = default;
  JavaSignature(const JavaSignature&) = delete;
  JavaSignature& operator=(const JavaSignature&) = delete;

  void Append(char code) {
    if (length + 1 < shortText.size()) {
      shortText[length++] = code;
    } else {
      Append(std::string_view(&code, 1));
    }
  }
  void Append(std::string_view codes);
  // Appends the code of a class, its name with "." or "/"; a name that the encoding lacks gives the
  // code of no class. False, with nothing appended, for what is no class's name: a character with a
  // meaning of its own would turn one parameter into several.
  bool AppendClass(const wchar_t* name);

  // NUL-terminated; lent until something is appended.
  const char* Get();
  // Is every byte an ASCII character's?
  bool IsAscii() const { return isAscii; }

 private:
  // True when the name was short ASCII, and so is dealt with: `isClass` then says whether it was
  // appended.
  bool AppendShortAsciiClass(const wchar_t* name, bool& isClass);
  char* Grow(std::size_t count);

  std::array<char, 256> shortText;
  std::string longText;  // the whole text, once it is too long for the other
  std::size_t length = 0;
  bool isAscii = true;
};

}  // namespace quenlatrix::meta_object::handlers::bean

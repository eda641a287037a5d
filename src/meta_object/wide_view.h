#pragma once

#include <algorithm>
#include <string_view>

#include "text/wide_string.h"

namespace quenlatrix::meta_object {

// Lends the text of `text`, empty where it has none; valid until the text changes.
inline std::wstring_view ViewOf(const WideString& text) {
  const wchar_t* characters = text.getWCharPtr();
  return characters == nullptr ? std::wstring_view() : std::wstring_view(characters);
}

// ASCII letters to upper case, whatever the process's locale.
template <class Character>
constexpr Character ToUpperAscii(Character c) {
  return c >= 'a' && c <= 'z' ? static_cast<Character>(c - 'a' + 'A') : c;
}

// Is `text` the word `upperWord`, in any case of its ASCII letters? Not wcsicmp, which looks at the
// low byte of a character alone and asks the locale.
inline bool IsWord(std::wstring_view text, std::wstring_view upperWord) {
  return std::equal(text.begin(), text.end(), upperWord.begin(), upperWord.end(),
                    [](wchar_t given, wchar_t known) { return ToUpperAscii(given) == known; });
}

}  // namespace quenlatrix::meta_object

#pragma once

#include <string_view>

#include "text/wide_string.h"

namespace quenlatrix::meta_object {

// Lends the text of `text`, empty where it has none; valid until the text changes.
inline std::wstring_view ViewOf(const WideString& text) {
  const wchar_t* characters = text.getWCharPtr();
  return characters == nullptr ? std::wstring_view() : std::wstring_view(characters);
}

}  // namespace quenlatrix::meta_object

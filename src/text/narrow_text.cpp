#include "text/narrow_text.h"

#include <cwchar>

#include "text/wide_string.h"

NarrowText::NarrowText(const wchar_t* wide) {
  if (wide == nullptr) {
    return;
  }
  std::size_t const length = std::wcslen(wide);
  if (length < shortText.size()) {
    wchar_t seen = 0;
    for (std::size_t i = 0; i <= length; ++i) {
      seen |= wide[i];
      shortText[i] = static_cast<char>(wide[i]);
    }
    if (seen >= 0 && seen < 0x80) {
      narrow = shortText.data();
      return;
    }
  }
  longText.reset(WideString::empty.allocConvert(wide));
  narrow = longText.get();
  for (const wchar_t* c = wide; *c != L'\0' && isAscii; ++c) {
    isAscii = *c >= 0 && *c < 0x80;
  }
}

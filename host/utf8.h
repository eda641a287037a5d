#pragma once

#include <string>
#include <string_view>

#include "text/wide_string.h"

namespace quenlatrix::host {

// The command line, scripts and documents are UTF-8 whatever the locale. Each function may be
// called by any thread.

// The characters of UTF-8 text; a byte that belongs to none becomes U+FFFD.
std::wstring Utf8ToWide(std::string_view text);

// UTF-8 of a text; what is no character (a surrogate, beyond U+10FFFF) becomes U+FFFD.
std::string WideToUtf8(std::wstring_view text);

// The same between UTF-8 and the library's strings, whose empty text is null.
WideString ToWideString(std::string_view text);
std::string ToUtf8(const WideString& text);

}  // namespace quenlatrix::host

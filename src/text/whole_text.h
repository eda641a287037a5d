#pragma once

#include <string_view>

#include "text/zu_text.h"

// For texts of which nothing may get lost. A text that there is no memory for is by itself cut,
// empty or what it was before, and goes on as if that were all; set here, it throws std::bad_alloc.
// Fixed storage cuts or refuses what is too long for it, as ever.
//
// Threads: as ZuText.
namespace quenlatrix::text {

// As SetEqualTo: empty text clears `to`. One that throws leaves a part in `to`.
void SetWhole(ZuText& to, std::string_view s);
// Null counts as empty.
void SetWhole(ZuText& to, const char* s);
// As assignment. One that throws leaves `to` as it was.
void SetWhole(ZuText& to, const ZuText& from);

}  // namespace quenlatrix::text

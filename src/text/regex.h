#pragma once

#include <boost/cregex.hpp>

#include "text/zu_text.h"

// Regular expressions in POSIX extended syntax, case-sensitive, over NUL-terminated text. A range
// such as [a-z] goes by the collation of the process's locale; ^ and $ stand for the beginning and
// the end of each line. Nothing throws.
//
// Threads: free for all, as long as none changes the process's locale.
namespace quenlatrix::regex {

// Whether `pattern` matches anywhere in `text`. False, too, for a null argument, a pattern that
// doesn't compile, and one that the library gives up on (it backtracks in bounded memory and
// steps). A long count such as a{9999} takes time that is quadratic in the text.
bool RegExMatch(const char* text, const char* pattern);

// What an entry of the library's match arrays says about `text`.
//
// Whether the matched span is `s`, ignoring case; false if either text is null or empty.
bool CompRegExMatch(const char* text, const boost::regmatch_t& m, const char* s);
// Sets `out` to the matched span, the empty text for a group that took no part, and gives the
// span's length; fixed storage cuts the text, not the length. 0, with `out` unchanged, if `text` is
// null or empty or the span isn't within it. `text` may be `out`'s own.
unsigned long CopyRegExMatch(const char* text, const boost::regmatch_t& m, ZuText& out);

}  // namespace quenlatrix::regex

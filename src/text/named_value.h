#pragma once

#include "text/zu_text.h"

// Sets `value` to what `data` gives for `name` and returns it: request text such as "a=1&b=2" with
// `sep` '&', cookie headers with ';'. The value is what stands behind the '=' (spaces before that
// are skipped) up to `sep`, a line break or the end; empty if there is none. `name` is found
// wherever it stands before a '=', in the tail of a longer name as well. NUL ends the data.
//
// `value` may be one of the other two, or a text in fixed storage, which cuts it.
// Threads: free for all; the texts as ZuText says.
ZuText& ScanGetPostCookie(const ZuText& data, const ZuText& name, ZuText& value, char sep);

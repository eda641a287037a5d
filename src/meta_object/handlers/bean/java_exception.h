#pragma once

#include <jni.h>

#include "text/wide_string.h"

namespace quenlatrix::meta_object::handlers::bean {

// The one check for a pending Java exception on the calling thread: true when there was one, which
// is then cleared. `text`, which may be null, receives "Java Exception: " and the exception's own
// toString() text; the prefix alone when that can't be had. Without a pending exception `text` is
// left as it is. A null `env` has no exception.
bool IsJavaExceptionHappened(JNIEnv* env, WideString* text);

}  // namespace quenlatrix::meta_object::handlers::bean

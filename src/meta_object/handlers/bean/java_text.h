#pragma once

#include <jni.h>

#include <array>
#include <string>

#include "meta_object/handlers/bean/java_refs.h"
#include "text/narrow_text.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::handlers::bean {

// Java text to and from ours. JNI speaks modified UTF-8: a character beyond U+FFFF is a pair of
// three-byte surrogates, U+0000 is two bytes. Ours is wide text (one unit a character) with a
// narrow form in the process's multibyte encoding. The policy, for every text that crosses:
// - to Java goes the narrow form, which may be cut (see WideString), re-encoded from the process's
//   encoding to modified UTF-8; what that encoding can't decode goes nowhere (failure);
// - from Java every character arrives whole whatever the process's encoding is, a surrogate pair as
//   one character, a lone surrogate as its own number; the text ends at its first U+0000, which our
//   texts can't hold.

// Is every byte of the text an ASCII character's, and so the text the same in every encoding?
bool IsAscii(const char* text);

// The modified UTF-8 form of a narrow text; an ASCII text is used as it is, without a copy, so the
// text must outlive this object.
class JavaUtf8 {
 public:
  explicit JavaUtf8(const char* narrow);
  // The same for who knows already whether the text is ASCII.
  JavaUtf8(const char* narrow, bool isAscii);
  JavaUtf8(const JavaUtf8&) = delete;
  JavaUtf8& operator=(const JavaUtf8&) = delete;

  // Null when the narrow text is null or can't be decoded.
  const char* Get() const { return text; }

 private:
  std::string encoded;
  const char* text;
};

// A new Java string of a narrow text. Null, with nothing pending, when the text is null, can't be
// decoded or the VM has no memory.
LocalRef<jstring> NewJavaText(JNIEnv* env, const char* narrow);
LocalRef<jstring> NewJavaText(JNIEnv* env, const NarrowText& narrow);

// Appends a Java string to `out`. False, with `out` unchanged, for a null string or when the VM had
// no memory (its exception is then pending).
bool AppendJavaText(JNIEnv* env, jstring text, WideString& out);

// What is short: most names and many values.
inline constexpr jsize kShortJavaText = 128;

// A Java string's text for a moment's use, on the stack where it is short. Empty until it is read.
// For one thread.
class JavaText {
 public:
  JavaText() = default;
  JavaText(const JavaText&) = delete;
  JavaText& operator=(const JavaText&) = delete;

  // As AppendJavaText, in place of what was read before; empty when that fails.
  bool Read(JNIEnv* env, jstring text);
  // Lent until the next Read.
  const wchar_t* Get() const { return wide; }

 private:
  std::array<wchar_t, kShortJavaText + 1> shortText;
  WideString longText;
  const wchar_t* wide = L"";
};

// Appends modified UTF-8 to `out`. Bytes that are none are taken one by one as Latin-1.
void AppendModifiedUtf8(const char* text, WideString& out);

}  // namespace quenlatrix::meta_object::handlers::bean

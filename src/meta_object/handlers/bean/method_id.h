#pragma once

#include "meta_object/handlers/bean/until_unloaded.h"
#include "meta_object/method_type.h"
#include "meta_object/type_desc.h"
#include "text/narrow_text.h"
#include "text/wide_string.h"
#include "text/zu_text.h"

namespace quenlatrix::meta_object::handlers::bean {

// Method identifiers and Java type names. Free functions without state: any thread may call them.
//
// A method identifier has three fields,
//
//   kind ":" name ":" index          as in  Get:getColor:0  or  Invoke:repaint:2
//
// the kind being "Get", "Set" or "Invoke" (read in any letter case), the name that of the Java
// method (without ":"), the index its 0-based position in the class's cached catalogue.

// Separates the fields.
extern const UntilUnloaded<WideString> MethodIdSeparator;

// Replaces `id` with the identifier. Always true.
bool CreateMethodID(WideString& id, const WideString& name, MethodType type, int index);

// Takes an identifier apart: its kind, and its name with the index ("getColor:0") or, when
// `bareName`, without. An identifier without ":" is an ordinary method's whole name. Always true.
bool ParseMethodID(const WideString& id, WideString& name, MethodType& type, bool bareName);

// The narrow form of a name, without its index. Empty when the name is or has no narrow form.
class BareName {
 public:
  explicit BareName(const WideString& nameWithIndex);

  const char* Get() const { return text.Get() == nullptr ? "" : text.Get(); }
  // Is it made of ASCII characters alone, and so whole?
  bool IsAscii() const { return text.IsAscii(); }

 private:
  NarrowText text;
};

// The same as a wide text; false, with `name` empty, when there is none.
bool MethodId2MethodName(const WideString& nameWithIndex, WideString& name);

// The three fields of an identifier as the description operations read them: the entry is found by
// the index alone. False when a field is missing, or when the identifier's narrow form is cut, so
// that its index can't be trusted.
bool ReadMethodIndex(const WideString& id, unsigned long& index);

// Does the text's narrow form hold every character? Where it is cut, it may be another method's
// name.
bool HasWholeNarrowForm(const WideString& text);

// Puts "get" before a Get's name and "set" before a Set's, unless the name begins so in any letter
// case.
void mangleMethodName(WideString& name, MethodType& type);

// The one mapping from a Java type name, in source form ("int", "java.lang.String") or in signature
// form ("[I", "[Ljava.lang.String;"), to a descriptor. Every array dimension has the lower bound 0
// and an unknown element count. Names that are no scalar's are class names; a null name is empty.
TypeDesc GetTypeDesc(const wchar_t* javaTypeName);

// Cuts a wide Java name in place: at `length` characters when that is 1 or more; otherwise its last
// character goes when the name has two or more and that one is no alphanumeric and no "_".
void TrimJavaString(wchar_t* text, int length);

// A new wide copy of a narrow text in `*wide`, which the caller frees with `delete[]`. An empty
// text is true and leaves `*wide` alone; false when nothing could be converted.
bool CharPtrToWideString(const char* text, wchar_t** wide);

// The Java type numbers of the JNI codes of results: two parallel tables, "void" standing for V.
inline constexpr int kJavaTypes = 9;
extern const char* const JavaTypeNames[kJavaTypes];
extern const int JavaTypeNumbers[kJavaTypes];

// The Java type number of a code; 0, a reference, for any other text. Always true.
bool Type2Num(const ZuText& code, int& number);

}  // namespace quenlatrix::meta_object::handlers::bean

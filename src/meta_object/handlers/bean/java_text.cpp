#include "meta_object/handlers/bean/java_text.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "meta_object/handlers/bean/java_exception.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kLastCharacter = 0x10FFFF;

// And above U+0000.
bool IsBelowSurrogates(jchar unit) { return static_cast<jchar>(unit - 1) < 0xD800 - 1; }

void AppendThreeBytes(char32_t unit, std::string& out) {
  out.push_back(static_cast<char>(0xE0 | (unit >> 12)));
  out.push_back(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
  out.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
}

void AppendEncoded(char32_t c, std::string& out) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < kFirstSupplementary) {
    AppendThreeBytes(c, out);
  } else {
    AppendThreeBytes(0xD800 + ((c - kFirstSupplementary) >> 10), out);
    AppendThreeBytes(0xDC00 + ((c - kFirstSupplementary) & 0x3FF), out);
  }
}

// The continuation bits of a byte, or nothing when it continues no character.
bool TakeContinuation(const char* text, char32_t& unit) {
  const auto byte = static_cast<unsigned char>(*text);
  unit = (unit << 6) | (byte & 0x3FU);
  return (byte & 0xC0) == 0x80;
}

// Reads one UTF-16 unit and steps over its bytes.
char32_t TakeUnit(const char*& text) {
  const auto first = static_cast<unsigned char>(*text++);
  if ((first & 0xE0) == 0xC0) {
    char32_t unit = first & 0x1FU;
    if (TakeContinuation(text, unit)) {
      ++text;
      return unit;
    }
  } else if ((first & 0xF0) == 0xE0) {
    char32_t unit = first & 0x0FU;
    if (TakeContinuation(text, unit) && TakeContinuation(text + 1, unit)) {
      text += 2;
      return unit;
    }
  }
  return first;
}

char32_t TakeCharacter(const char*& text) {
  const char32_t high = TakeUnit(text);
  if (high < 0xD800 || high > 0xDBFF || *text == '\0') {
    return high;
  }
  const char* next = text;
  const char32_t low = TakeUnit(next);
  if (low < 0xDC00 || low > 0xDFFF) {
    return high;
  }
  text = next;
  return kFirstSupplementary + ((high - 0xD800) << 10) + (low - 0xDC00);
}

LocalRef<jstring> NewString(JNIEnv* env, const JavaUtf8& text) {
  if (text.Get() == nullptr) {
    return {};
  }
  auto string = LocalRef<jstring>::Adopt(env, env->NewStringUTF(text.Get()));
  if (IsJavaExceptionHappened(env, nullptr)) {
    string.Reset();
  }
  return string;
}

// Takes a short text whose units are a character each as it lies in the string, where the VM needs
// neither memory nor an encoding for it, and ends it with a NUL. False for any other.
bool ReadPlainText(JNIEnv* env, jstring text, jsize length, wchar_t* out) {
  std::array<jchar, kShortJavaText> units;
  if (length > kShortJavaText) {
    return false;
  }
  env->GetStringRegion(text, 0, length, units.data());
  bool isPlain = true;
  for (jsize i = 0; i < length; ++i) {
    const jchar unit = units[static_cast<std::size_t>(i)];
    out[i] = unit;
    isPlain &= IsBelowSurrogates(unit);
  }
  out[length] = L'\0';
  return isPlain;
}

// False, with `out` unchanged, when the VM had no memory for its copy.
bool AppendAnyText(JNIEnv* env, jstring text, WideString& out) {
  const UtfChars chars(env, text);
  if (chars.Get() == nullptr) {
    return false;
  }
  AppendModifiedUtf8(chars.Get(), out);
  return true;
}

}  // namespace

// Without a way out of the loop, so that many bytes are looked at together.
bool IsAscii(const char* text) {
  unsigned char seen = 0;
  for (std::size_t i = 0, length = std::strlen(text); i < length; ++i) {
    seen |= static_cast<unsigned char>(text[i]);
  }
  return seen < 0x80;
}

JavaUtf8::JavaUtf8(const char* narrow)
    : JavaUtf8(narrow, narrow == nullptr || bean::IsAscii(narrow)) {}

JavaUtf8::JavaUtf8(const char* narrow, bool isAscii) : text(narrow) {
  if (isAscii) {
    return;
  }
  text = nullptr;
  std::wstring wide(std::strlen(narrow), L'\0');
  std::size_t const length = std::mbstowcs(wide.data(), narrow, wide.size());
  if (length == static_cast<std::size_t>(-1)) {
    return;
  }
  for (std::size_t i = 0; i < length; ++i) {
    const auto c = static_cast<char32_t>(wide[i]);
    if (c > kLastCharacter) {
      return;
    }
    AppendEncoded(c, encoded);
  }
  text = encoded.c_str();
}

LocalRef<jstring> NewJavaText(JNIEnv* env, const char* narrow) {
  return NewString(env, JavaUtf8(narrow));
}

LocalRef<jstring> NewJavaText(JNIEnv* env, const NarrowText& narrow) {
  return NewString(env, JavaUtf8(narrow.Get(), narrow.Get() == nullptr || narrow.IsAscii()));
}

bool AppendJavaText(JNIEnv* env, jstring text, WideString& out) {
  if (text == nullptr) {
    return false;
  }
  const jsize length = env->GetStringLength(text);
  if (length == 0) {
    return true;
  }
  if (length <= kShortJavaText) {
    // In memory of its own at once.
    auto wide = std::make_unique_for_overwrite<wchar_t[]>(static_cast<std::size_t>(length) + 1);
    if (ReadPlainText(env, text, length, wide.get())) {
      if (out.getWCharPtr() == nullptr) {
        out = WideString::Adopt(std::move(wide));
      } else {
        out.append(wide.get());
      }
      return true;
    }
  }
  return AppendAnyText(env, text, out);
}

bool JavaText::Read(JNIEnv* env, jstring text) {
  wide = L"";
  if (text == nullptr) {
    return false;
  }
  const jsize length = env->GetStringLength(text);
  if (length == 0) {
    return true;
  }
  if (ReadPlainText(env, text, length, shortText.data())) {
    wide = shortText.data();
    return true;
  }
  longText = WideString();
  const bool isRead = AppendAnyText(env, text, longText);
  if (isRead) {
    wide = longText.getWCharPtr();
  }
  return isRead;
}

void AppendModifiedUtf8(const char* text, WideString& out) {
  if (IsAscii(text)) {
    out.append(text);
    return;
  }
  std::wstring wide;
  wide.reserve(std::strlen(text));
  while (*text != '\0') {
    const char32_t c = TakeCharacter(text);
    if (c == 0) {
      break;
    }
    wide.push_back(static_cast<wchar_t>(c));
  }
  out.append(wide.c_str());
}

}  // namespace quenlatrix::meta_object::handlers::bean

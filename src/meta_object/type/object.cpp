#include "meta_object/type/object.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>

namespace quenlatrix::meta_object::type {

namespace {

constexpr wchar_t kVariableTagStart[] = L"<@VARPA";
constexpr char kNameKey[] = "NAME=";
constexpr char kScopeKey[] = "SCOPE=";

// Letters fold as in ASCII whatever the process's locale: tags are script syntax.
template <class Char>
constexpr Char LowerAscii(Char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<Char>(c - 'A' + 'a') : c;
}

bool SameLetter(char a, char b) { return LowerAscii(a) == LowerAscii(b); }

const char* NarrowOrEmpty(const WideString& text) {
  const char* narrow = text.getCharPtr();
  return narrow == nullptr ? "" : narrow;
}

// The value behind `key` in a tag: up to the same quotation mark again, or unquoted up to a blank
// or the tag's end. False, with `value` left alone, when there is no such end.
bool ReadTagValue(const Object& object, const char* tag, const char* key, WideString& value) {
  const char* start = object.stristr(tag, key);
  if (start == nullptr) {
    return false;
  }
  start += std::strlen(key);
  const bool quoted = *start == '\'' || *start == '"';
  const char quote[] = {*start, '\0'};
  if (quoted) {
    ++start;
  }
  const char* end = object.strchrFirstOf(start, quoted ? quote : " >");
  if (end == nullptr) {
    return false;
  }
  value.assign(std::string(start, end).c_str());
  return true;
}

}  // namespace

Object::Object(TypeDesc typeDesc) : typeDesc(std::move(typeDesc)) {}

Object::Object(TypeDesc::Key key) : typeDesc(key, TypeDesc::RefType::ByValue, false) {}

Object::~Object() = default;

void Object::ReleaseItem() {}

const TypeDesc& Object::GetMetaItemType() const { return typeDesc; }

TypeDesc& Object::GetMetaItemType() { return typeDesc; }

bool Object::IsType(TypeDesc::Key key) const { return typeDesc.key == key; }

void Object::GetValueAsString(WideString& text) const { GetDesc(text); }

void Object::SetValueAsString(const WideString& text) { SetDesc(text); }

void Object::GetValueAsText(ZuText& text) const {
  WideString wide;
  GetDesc(wide);
  text = NarrowOrEmpty(wide);
}

void Object::SetValueAsText(const char* text) { SetDesc(WideString(text)); }

void Object::SetParamName(const WideString& name) { paramName = name; }

const WideString& Object::GetParamName() const { return paramName; }

void Object::SetTag(const WideString& newTag) { tag = newTag; }

const WideString& Object::GetTag() const { return tag; }

void Object::SetDirection(ParamDirection newDirection) { direction = newDirection; }

ParamDirection Object::GetDirection() const { return direction; }

bool Object::IsTagged() const { return tag.getWCharPtr() != nullptr; }

bool Object::IsMarloVariable() const {
  const wchar_t* text = tag.getWCharPtr();
  if (text == nullptr) {
    return false;
  }
  // A shorter tag ends in a difference: its terminator.
  for (const wchar_t* start = kVariableTagStart; *start != L'\0'; ++start, ++text) {
    if (LowerAscii(*text) != LowerAscii(*start)) {
      return false;
    }
  }
  return true;
}

bool Object::IsOptional() const { return optional; }

void Object::SetOptional(bool newOptional) { optional = newOptional; }

void Object::SetOptionalNotSpecified(bool notSpecified) { optionalNotSpecified = notSpecified; }

bool Object::IsOptionalNotSpecified() const { return optionalNotSpecified; }

void Object::SetParamEmptyFlag(bool empty) { paramEmpty = empty; }

bool Object::IsParamEmptyFlagSet() const { return paramEmpty; }

bool Object::CanInvoke() const { return invoke; }

void Object::SetInvoke(bool canInvoke) { invoke = canInvoke; }

bool Object::IsVariant() const { return variant; }

void Object::SetVariant(bool isVariant) { variant = isVariant; }

bool Object::GetNameAndScope(WideString& name, WideString& scope) const {
  if (!IsMarloVariable()) {
    return false;
  }
  const char* text = NarrowOrEmpty(tag);
  if (!ReadTagValue(*this, text, kNameKey, name)) {
    return false;
  }
  ReadTagValue(*this, text, kScopeKey, scope);
  return true;
}

bool Object::SetNameAndScope(const WideString& name, const WideString& scope) {
  std::string text = "<@VARPARAM NAME=\"";
  text += NarrowOrEmpty(name);
  text += "\" SCOPE=\"";
  text += NarrowOrEmpty(scope);
  text += "\">";
  SetTag(WideString(text.c_str()));
  return true;
}

const char* Object::stristr(const char* text, const char* pattern) const {
  if (text == nullptr || pattern == nullptr) {
    return nullptr;
  }
  const char* textEnd = text + std::strlen(text);
  const char* patternEnd = pattern + std::strlen(pattern);
  const char* found = std::search(text, textEnd, pattern, patternEnd, SameLetter);
  return found == textEnd && pattern != patternEnd ? nullptr : found;
}

const char* Object::strchrFirstOf(const char* text, const char* set) const {
  return text == nullptr || set == nullptr ? nullptr : std::strpbrk(text, set);
}

void Object::strlower(char* text) const {
  for (; text != nullptr && *text != '\0'; ++text) {
    *text = LowerAscii(*text);
  }
}

}  // namespace quenlatrix::meta_object::type

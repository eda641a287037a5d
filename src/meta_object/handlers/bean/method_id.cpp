#include "meta_object/handlers/bean/method_id.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "text/c_numbers.h"
#include "text/wide_chars.h"

namespace quenlatrix::meta_object::handlers::bean {

const UntilUnloaded<WideString> MethodIdSeparator(L":");

const char* const JavaTypeNames[kJavaTypes] = {"I", "Z", "B", "C", "S", "J", "F", "D", "void"};
const int JavaTypeNumbers[kJavaTypes] = {5, 1, 2, 3, 4, 6, 7, 8, 9};

namespace {

constexpr char kSeparator = ':';
constexpr wchar_t kArrayPrefix[] = L"array of ";

using Key = TypeDesc::Key;

struct JavaTypeRow {
  std::wstring_view name;
  Key key;
};

// After the first row in groups of three: a primitive type's name, its JNI letter, its wrapper.
constexpr JavaTypeRow javaTypeSig[] = {
    {L"void", Key::Void},
    {L"boolean", Key::Bool},
    {L"Z", Key::Bool},
    {L"java.lang.Boolean", Key::Bool},
    {L"int", Key::Int},
    {L"I", Key::Int},
    {L"java.lang.Integer", Key::Int},
    {L"short", Key::Int},
    {L"S", Key::Int},
    {L"java.lang.Short", Key::Int},
    {L"long", Key::Int},
    {L"J", Key::Int},
    {L"java.lang.Long", Key::Int},
    {L"float", Key::Real},
    {L"F", Key::Real},
    {L"java.lang.Float", Key::Real},
    {L"double", Key::Real},
    {L"D", Key::Real},
    {L"java.lang.Double", Key::Real},
    {L"char", Key::Char},
    {L"C", Key::Char},
    {L"java.lang.Character", Key::Char},
    {L"byte", Key::Int},
    {L"B", Key::Int},
    {L"java.lang.Byte", Key::Int},
    {L"java.lang.String", Key::String},
};

// A JNI letter resolves to the primitive type's name before it.
const JavaTypeRow* FindJavaType(std::wstring_view name) {
  for (std::size_t row = 0; row < std::size(javaTypeSig); ++row) {
    if (name == javaTypeSig[row].name) {
      const bool isLetter = row > 0 && (row - 1) % 3 == 1;
      return &javaTypeSig[isLetter ? row - 1 : row];
    }
  }
  return nullptr;
}

bool EndsInNameCharacter(std::wstring_view text) {
  const wchar_t last = text.back();
  const bool isAsciiLetter = (last | 0x20) >= L'a' && (last | 0x20) <= L'z';
  return isAsciiLetter || quenlatrix::text::iswalnum(last) || last == L'_';
}

void Assign(WideString& target, std::wstring_view text) {
  target.assign(text.data(), static_cast<int>(text.size()));
}

const char* Narrow(const WideString& text) {
  const char* const narrow = text.getCharPtr();
  return narrow == nullptr ? "" : narrow;
}

const wchar_t* Wide(const WideString& text) {
  const wchar_t* const wide = text.getWCharPtr();
  return wide == nullptr ? L"" : wide;
}

// ASCII is one byte a character in every encoding.
bool IsWhole(const NarrowText& narrow, const WideString& text) {
  return narrow.IsAscii() || (narrow.Get() != nullptr &&
                              std::mbstowcs(nullptr, narrow.Get(), 0) == std::wcslen(Wide(text)));
}

// Most identifiers are told by their first letter.
MethodType KindOf(const wchar_t* id) {
  const wchar_t first = *id | 0x20;
  if (first != L's' && first != L'g') {
    return MethodType::Invoke;
  }
  const NarrowText narrow(id);
  const char* const kind = narrow.Get() == nullptr ? "" : narrow.Get();
  if (strncasecmp(kind, "set", 3) == 0) {
    return MethodType::Set;
  }
  return strncasecmp(kind, "get", 3) == 0 ? MethodType::Get : MethodType::Invoke;
}

const char* KindPrefix(MethodType type) {
  switch (type) {
    case MethodType::Get:
      return "Get:";
    case MethodType::Set:
      return "Set:";
    default:
      return "Invoke:";
  }
}

}  // namespace

bool CreateMethodID(WideString& id, const WideString& name, MethodType type, int index) {
  id.assign(KindPrefix(type));
  id.append(name.getWCharPtr());
  id.append(MethodIdSeparator->getWCharPtr());
  id.append(quenlatrix::text::PrintInteger(index).c_str());
  return true;
}

bool ParseMethodID(const WideString& id, WideString& name, MethodType& type, bool bareName) {
  type = MethodType::Invoke;
  const wchar_t* const wide = Wide(id);
  const wchar_t* const separator = std::wcschr(wide, L':');
  WideString rest;
  if (separator == nullptr) {
    rest.assign(wide);
  } else {
    rest.assign(separator + 1);
    type = KindOf(wide);
  }
  if (bareName) {
    MethodId2MethodName(rest, name);
  } else {
    name = std::move(rest);
  }
  return true;
}

BareName::BareName(const WideString& nameWithIndex) : text(nameWithIndex.getWCharPtr()) {
  if (char* const index = text.Get() == nullptr ? nullptr : std::strrchr(text.Get(), kSeparator)) {
    *index = '\0';
  }
}

bool MethodId2MethodName(const WideString& nameWithIndex, WideString& name) {
  name.assign(BareName(nameWithIndex).Get());
  return name.getWCharPtr() != nullptr;
}

bool ReadMethodIndex(const WideString& id, unsigned long& index) {
  // The identifier's own narrow copy stays alone: the host's threads may share it.
  const NarrowText narrow(id.getWCharPtr());
  const char* const kind = narrow.Get() == nullptr ? "" : narrow.Get();
  const char* const name = std::strchr(kind, kSeparator);
  if (name == nullptr || name == kind) {
    return false;
  }
  const char* const digits = std::strchr(name + 1, kSeparator);
  if (digits == nullptr || digits == name + 1 || !IsWhole(narrow, id)) {
    return false;
  }
  const char* end = nullptr;
  index = quenlatrix::text::ReadUnsignedLong(digits + 1, &end, 10);
  return end != digits + 1;
}

bool HasWholeNarrowForm(const WideString& text) {
  return IsWhole(NarrowText(text.getWCharPtr()), text);
}

void mangleMethodName(WideString& name, MethodType& type) {
  if (type != MethodType::Get && type != MethodType::Set) {
    return;
  }
  const char* const prefix = type == MethodType::Get ? "get" : "set";
  if (strncasecmp(Narrow(name), prefix, 3) == 0) {
    return;
  }
  WideString mangled(prefix);
  mangled.append(name.getWCharPtr());
  name = std::move(mangled);
}

TypeDesc GetTypeDesc(const wchar_t* javaTypeName) {
  std::wstring_view name = javaTypeName == nullptr ? L"" : javaTypeName;
  std::size_t const dimensions = std::min(name.find_first_not_of(L'['), name.size());
  name.remove_prefix(dimensions);
  if (name.size() >= 2 && name.front() == L'L' && name.back() == L';') {
    name.remove_prefix(1);
  }
  if (name.size() >= 2 && !EndsInNameCharacter(name)) {
    name.remove_suffix(1);
  }

  const JavaTypeRow* const row = FindJavaType(name);
  std::wstring_view const typeName = row == nullptr ? name : row->name;
  TypeDesc desc(row == nullptr ? Key::Object : row->key, TypeDesc::RefType::ByValue,
                dimensions > 0);
  Assign(desc.typeName, typeName);
  if (dimensions == 0) {
    Assign(desc.displayName, typeName);
    return desc;
  }
  std::wstring displayName;
  for (std::size_t i = 0; i < dimensions; ++i) {
    displayName += kArrayPrefix;
    desc.arrayInfo->AddDimensionInfo(0, -1);
  }
  Assign(desc.displayName, displayName.append(typeName));
  return desc;
}

void TrimJavaString(wchar_t* text, int length) {
  if (length >= 1) {
    text[length] = L'\0';
    return;
  }
  std::size_t const actual = std::wcslen(text);
  if (actual >= 2 && !EndsInNameCharacter({text, actual})) {
    text[actual - 1] = L'\0';
  }
}

bool CharPtrToWideString(const char* text, wchar_t** wide) {
  std::size_t const length = std::strlen(text);
  if (length == 0) {
    return true;
  }
  auto copy = std::make_unique<wchar_t[]>(length + 1);
  std::size_t const converted = std::mbstowcs(copy.get(), text, length);
  copy[length] = L'\0';
  *wide = copy.release();
  return converted != 0 && converted != static_cast<std::size_t>(-1);
}

bool Type2Num(const ZuText& code, int& number) {
  number = 0;
  for (int i = 0; i < kJavaTypes; ++i) {
    if (code.Compare(JavaTypeNames[i]) == 0) {
      number = JavaTypeNumbers[i];
      break;
    }
  }
  return true;
}

}  // namespace quenlatrix::meta_object::handlers::bean

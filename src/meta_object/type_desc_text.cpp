#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "meta_object/type_desc.h"
#include "meta_object/wide_view.h"
#include "text/c_numbers.h"

namespace quenlatrix::meta_object {
namespace {

using Key = TypeDesc::Key;
using RefType = TypeDesc::RefType;

constexpr std::size_t kNowhere = std::wstring_view::npos;
constexpr std::wstring_view kNameEnd = L"%%";
constexpr std::wstring_view kByRef = L"^Byref";
constexpr std::wstring_view kArray = L"Array{";
constexpr std::wstring_view kEnum = L"Enum{";
constexpr std::wstring_view kStruct = L"Struct{";
constexpr std::wstring_view kStructMember = L"Struct(";
constexpr std::wstring_view kUnknown = L"Unknown";

struct WordRow {
  Key key;
  std::wstring_view word;
};

constexpr std::array<WordRow, 9> kWords{{
    {Key::Void, L"Void"},
    {Key::Int, L"Int"},
    {Key::Real, L"Real"},
    {Key::String, L"String"},
    {Key::Char, L"Char"},
    {Key::Bool, L"Bool"},
    {Key::Date, L"Date"},
    {Key::Currency, L"Currency"},
    {Key::Object, L"Object"},
}};

std::wstring_view WordOfKey(Key key) {
  for (const WordRow& row : kWords) {
    if (row.key == key) {
      return row.word;
    }
  }
  return kUnknown;
}

Key KeyOfWord(std::wstring_view word) {
  for (const WordRow& row : kWords) {
    if (row.word == word) {
      return row.key;
    }
  }
  return Key::Unknown;
}

// Writing.

void WriteDescriptor(std::wstring& out, const TypeDesc& desc);

void WriteNumber(std::wstring& out, std::int32_t value) {
  const text::PrintedInteger printed = text::PrintInteger(value);
  out.append(printed.c_str(), printed.c_str() + printed.size());
}

void WriteDimensions(std::wstring& out, const TypeDesc::ArrayInfo& info) {
  const wchar_t* separator = L"";
  for (const auto& dimension : info.dimensions) {
    out += separator;
    separator = L":";
    WriteNumber(out, dimension.lowerBound);
    out += L',';
    WriteNumber(out, dimension.elementCount);
  }
}

void WriteItems(std::wstring& out, const TypeDesc::EnumInfo& info) {
  const wchar_t* separator = L"";
  for (const auto& item : info.items) {
    out += separator;
    separator = L",";
    out += ViewOf(item.name);
    out += L'=';
    WriteNumber(out, static_cast<std::int32_t>(item.value));
  }
}

void WriteStructure(std::wstring& out, const TypeDesc::StructInfo& info) {
  out += L'[';
  out += ViewOf(info.structName);
  out += L']';
  const wchar_t* separator = L"";
  for (const auto& member : info.members) {
    if (!member) {
      continue;
    }
    out += separator;
    separator = L"!";
    if (member->key == Key::Struct) {
      out += kStructMember;
      WriteDescriptor(out, *member);
      out += L')';
    } else {
      WriteDescriptor(out, *member);
    }
  }
}

template <typename Info>
void WriteBraced(std::wstring& out, std::wstring_view opening, const std::unique_ptr<Info>& info,
                 void (*write)(std::wstring&, const Info&)) {
  out += opening;
  if (info) {
    write(out, *info);
  }
  out += L'}';
}

void WriteType(std::wstring& out, const TypeDesc& desc) {
  if (desc.arrayInfo) {
    WriteBraced(out, kArray, desc.arrayInfo, WriteDimensions);
  } else if (desc.key == Key::Enum) {
    WriteBraced(out, kEnum, desc.enumInfo, WriteItems);
  } else if (desc.key == Key::Struct) {
    WriteBraced(out, kStruct, desc.structInfo, WriteStructure);
  } else {
    out += WordOfKey(desc.key);
    if (desc.refType == RefType::ByRef) {
      out += kByRef;
    }
  }
}

void WriteDescriptor(std::wstring& out, const TypeDesc& desc) {
  out += ViewOf(desc.displayName);
  out += L',';
  out += ViewOf(desc.typeName);
  out += kNameEnd;
  if (const std::wstring_view detail = ViewOf(desc.detail); !detail.empty()) {
    out += detail;
    out += kNameEnd;
  }
  WriteType(out, desc);
}

// Reading. `nesting` counts the structures around what is read.

// Sets `desc` by the text; false, with nothing changed, when structures are nested too deep.
bool ReadDescriptor(std::wstring_view text, int nesting, TypeDesc& desc);

WideString Copied(std::wstring_view text) {
  WideString copy;
  copy.assign(text.data(), static_cast<int>(text.size()));
  return copy;
}

int ReadNumber(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t c : text) {
    if (c <= 0 || c > 0x7F) {
      break;
    }
    narrow += static_cast<char>(c);
  }
  return text::ReadInt(narrow.c_str());
}

// Cuts the text up to the next `separator`, or all of it, off the front of `rest`; the separator
// goes too. Sets `more` to whether there was one.
std::wstring_view CutItem(std::wstring_view& rest, std::size_t separator, bool& more) {
  more = separator < rest.size();
  const std::wstring_view item = rest.substr(0, separator);
  rest.remove_prefix(more ? separator + 1 : rest.size());
  return item;
}

// Where `wanted` first stands outside all braces and outside all pairs of `opener` and `wanted`.
std::size_t FindOutermost(std::wstring_view text, wchar_t wanted, wchar_t opener) {
  std::size_t braces = 0;
  std::size_t pairs = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const wchar_t c = text[i];
    if (c == L'{') {
      ++braces;
    } else if (c == L'}') {
      braces -= braces > 0 ? 1 : 0;
    } else if (braces > 0) {
      continue;
    } else if (c == wanted) {
      if (pairs == 0) {
        return i;
      }
      --pairs;
    } else if (c == opener) {
      ++pairs;
    }
  }
  return kNowhere;
}

std::size_t FindNextMember(std::wstring_view text) { return FindOutermost(text, L'!', L'\0'); }

TypeDesc::ArrayInfo ReadDimensions(std::wstring_view text) {
  TypeDesc::ArrayInfo info;
  for (bool more = !text.empty(); more;) {
    const std::wstring_view item = CutItem(text, text.find(L':'), more);
    if (const std::size_t comma = item.find(L','); comma != kNowhere) {
      info.AddDimensionInfo(ReadNumber(item.substr(0, comma)), ReadNumber(item.substr(comma + 1)));
    }
  }
  return info;
}

TypeDesc::EnumInfo ReadItems(std::wstring_view text) {
  TypeDesc::EnumInfo info;
  for (bool more = true; more;) {
    const std::wstring_view item = CutItem(text, text.find(L','), more);
    if (const std::size_t equals = item.find(L'='); equals != kNowhere) {
      info.items.push_back({Copied(item.substr(0, equals)), ReadNumber(item.substr(equals + 1))});
    }
  }
  return info;
}

// Null when structures are nested too deep.
std::unique_ptr<TypeDesc> ReadMember(std::wstring_view& rest, int nesting, bool& more) {
  std::unique_ptr<TypeDesc> member;
  std::wstring_view text;
  if (rest.starts_with(kStructMember)) {
    member = std::make_unique<TypeDesc>(Key::Struct, RefType::ByValue, false);
    rest.remove_prefix(kStructMember.size());
    text = CutItem(rest, FindOutermost(rest, L')', L'('), more);
    CutItem(rest, FindNextMember(rest), more);
  } else {
    member = std::make_unique<TypeDesc>();
    text = CutItem(rest, FindNextMember(rest), more);
  }
  return ReadDescriptor(text, nesting, *member) ? std::move(member) : nullptr;
}

enum class StructureText { kWhole, kUnclosed, kTooDeep };

StructureText ReadStructure(std::wstring_view text, int nesting, TypeDesc::StructInfo& info) {
  info.Clear();
  if (text.starts_with(L'[')) {
    text.remove_prefix(1);
    std::size_t end = FindOutermost(text, L']', L'[');
    if (end == kNowhere) {
      end = text.find(L']');
    }
    if (end == kNowhere) {
      return StructureText::kUnclosed;
    }
    info.structName = Copied(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  for (bool more = !text.empty(); more;) {
    info.members.push_back(ReadMember(text, nesting, more));
    if (info.members.back() == nullptr) {
      return StructureText::kTooDeep;
    }
  }
  return StructureText::kWhole;
}

// What stands between an opening word and the last character.
std::wstring_view InnerText(std::wstring_view type, std::wstring_view opening) {
  type.remove_prefix(opening.size());
  type.remove_suffix(type.empty() ? 0 : 1);
  return type;
}

// What a text says of a descriptor. It is read whole before the descriptor changes.
struct Mentioned {
  std::optional<WideString> displayName;
  std::optional<WideString> typeName;
  std::optional<WideString> detail;
  std::optional<Key> key;
  std::optional<RefType> refType;
  std::unique_ptr<TypeDesc::EnumInfo> enumInfo;
  std::unique_ptr<TypeDesc::ArrayInfo> arrayInfo;
  std::unique_ptr<TypeDesc::StructInfo> structInfo;
};

template <typename Part>
void SetMentioned(std::optional<Part>& mentioned, Part& part) {
  if (mentioned) {
    part = std::move(*mentioned);
  }
}

// Information that is there keeps its place: the host may hold it.
template <typename Info>
void SetMentioned(std::unique_ptr<Info>& mentioned, std::unique_ptr<Info>& info) {
  if (mentioned && info) {
    *info = std::move(*mentioned);
  } else if (mentioned) {
    info = std::move(mentioned);
  }
}

void SetMentioned(Mentioned& mentioned, TypeDesc& desc) {
  SetMentioned(mentioned.displayName, desc.displayName);
  SetMentioned(mentioned.typeName, desc.typeName);
  SetMentioned(mentioned.detail, desc.detail);
  SetMentioned(mentioned.key, desc.key);
  SetMentioned(mentioned.refType, desc.refType);
  SetMentioned(mentioned.enumInfo, desc.enumInfo);
  SetMentioned(mentioned.structInfo, desc.structInfo);
  if (mentioned.arrayInfo) {
    desc.arrayInfo = std::move(mentioned.arrayInfo);
  }
}

void ReadWord(std::wstring_view type, Mentioned& read) {
  const std::size_t byRef = type.find(kByRef);
  read.refType = byRef == kNowhere ? RefType::ByValue : RefType::ByRef;
  read.key = KeyOfWord(type.substr(0, byRef));
}

// False when structures are nested too deep.
bool ReadType(std::wstring_view type, int nesting, Mentioned& read) {
  if (type.starts_with(kArray)) {
    read.arrayInfo = std::make_unique<TypeDesc::ArrayInfo>(ReadDimensions(InnerText(type, kArray)));
  } else if (type.starts_with(kEnum)) {
    read.enumInfo = std::make_unique<TypeDesc::EnumInfo>(ReadItems(InnerText(type, kEnum)));
    read.key = Key::Enum;
  } else if (type.starts_with(kStruct)) {
    if (nesting >= TypeDesc::kMaxNesting) {
      return false;
    }
    read.structInfo = std::make_unique<TypeDesc::StructInfo>();
    read.key = Key::Struct;
    return ReadStructure(InnerText(type, kStruct), nesting + 1, *read.structInfo) !=
           StructureText::kTooDeep;
  } else {
    ReadWord(type, read);
  }
  return true;
}

// The "%%" that ends `detail` stands before any brace; those behind one belong to members.
bool ReadDescriptor(std::wstring_view text, int nesting, TypeDesc& desc) {
  Mentioned read;
  if (const std::size_t headEnd = text.find(kNameEnd); headEnd != kNowhere) {
    const std::wstring_view head = text.substr(0, headEnd);
    const std::size_t comma = head.find(L',');
    read.displayName = Copied(head.substr(0, comma));
    if (comma != kNowhere) {
      read.typeName = Copied(head.substr(comma + 1));
    }
    text.remove_prefix(headEnd + kNameEnd.size());
  }
  if (const std::size_t detailEnd = text.find(kNameEnd);
      detailEnd != kNowhere && detailEnd < text.find(L'{')) {
    read.detail = Copied(text.substr(0, detailEnd));
    text.remove_prefix(detailEnd + kNameEnd.size());
  }
  if (!ReadType(text, nesting, read)) {
    return false;
  }
  SetMentioned(read, desc);
  return true;
}

}  // namespace

bool TypeDesc::ArrayInfo::Serialize(WideString& out) const {
  std::wstring text;
  WriteDimensions(text, *this);
  out.append(text.c_str());
  return true;
}

bool TypeDesc::ArrayInfo::Deserialize(const WideString& text) {
  *this = ReadDimensions(ViewOf(text));
  return true;
}

bool TypeDesc::EnumInfo::Serialize(WideString& out) const {
  std::wstring text;
  WriteItems(text, *this);
  out.append(text.c_str());
  return true;
}

bool TypeDesc::EnumInfo::Deserialize(const WideString& text) {
  *this = ReadItems(ViewOf(text));
  return true;
}

bool TypeDesc::StructInfo::Serialize(WideString& out) const {
  std::wstring text;
  WriteStructure(text, *this);
  out.assign(text.c_str());
  return true;
}

bool TypeDesc::StructInfo::Deserialize(const WideString& text) {
  StructInfo read;
  const StructureText found = ReadStructure(ViewOf(text), 1, read);
  if (found != StructureText::kTooDeep) {
    *this = std::move(read);
  }
  return found == StructureText::kWhole;
}

bool TypeDesc::Serialize(WideString& out) const {
  std::wstring text;
  WriteDescriptor(text, *this);
  out.assign(text.c_str());
  return true;
}

bool TypeDesc::Deserialize(const WideString& text) {
  return ReadDescriptor(ViewOf(text), 0, *this);
}

}  // namespace quenlatrix::meta_object

#include "meta_object/type_desc.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "meta_object/wide_view.h"

namespace quenlatrix::meta_object {
namespace {

struct KeywordRow {
  std::wstring_view word;
  TypeDesc::Key key;
};

constexpr std::array<KeywordRow, 10> kKeywords{{
    {L"INT", TypeDesc::Key::Int},
    {L"FLOAT", TypeDesc::Key::Real},
    {L"TEXT", TypeDesc::Key::String},
    {L"BOOL", TypeDesc::Key::Bool},
    {L"CHAR", TypeDesc::Key::Char},
    {L"STRUCTURE", TypeDesc::Key::Struct},
    {L"CURRENCY", TypeDesc::Key::Currency},
    {L"DATE", TypeDesc::Key::Date},
    {L"ENUMERATION", TypeDesc::Key::Enum},
    {L"OBJECT", TypeDesc::Key::Object},
}};
TypeDesc::Key KeyOfKeyword(std::wstring_view keyword) {
  for (const KeywordRow& row : kKeywords) {
    if (IsWord(keyword, row.word)) {
      return row.key;
    }
  }
  return TypeDesc::Key::Unknown;
}

template <typename Info>
void CopyInfo(std::unique_ptr<Info>& target, const std::unique_ptr<Info>& source) {
  if (source) {
    target = std::make_unique<Info>(*source);
  }
}

std::unique_ptr<TypeDesc> CopyOfMember(const std::unique_ptr<TypeDesc>& member) {
  return member ? std::make_unique<TypeDesc>(*member) : nullptr;
}

}  // namespace

bool TypeDesc::ArrayInfo::AddDimensionInfo(int lowerBound, int elementCount) {
  dimensions.push_back({lowerBound, elementCount});
  return true;
}

bool TypeDesc::ArrayInfo::GetDimensionInfo(int index, int& lowerBound, int& elementCount) const {
  if (index < 0 || static_cast<std::size_t>(index) >= dimensions.size()) {
    return false;
  }
  const DimensionInfo& dimension = dimensions[static_cast<std::size_t>(index)];
  lowerBound = dimension.lowerBound;
  elementCount = dimension.elementCount;
  return true;
}

void TypeDesc::ArrayInfo::Clear() { dimensions.clear(); }

bool TypeDesc::EnumInfo::AddEnumItem(const WideString& name, long value) {
  items.push_back({name, value});
  return true;
}

void TypeDesc::EnumInfo::Clear() { items.clear(); }

TypeDesc::StructInfo::StructInfo(const StructInfo& other) : structName(other.structName) {
  members.reserve(other.members.size());
  for (const std::unique_ptr<TypeDesc>& member : other.members) {
    members.push_back(CopyOfMember(member));
  }
}

TypeDesc::StructInfo& TypeDesc::StructInfo::operator=(const StructInfo& other) {
  StructInfo copy(other);
  members.reserve(members.size() + copy.members.size());
  structName = std::move(copy.structName);
  members.insert(members.end(), std::make_move_iterator(copy.members.begin()),
                 std::make_move_iterator(copy.members.end()));
  return *this;
}

void TypeDesc::StructInfo::Clear() {
  members.clear();
  structName = WideString();
}

bool TypeDesc::StructInfo::operator==(const StructInfo& other) const {
  return ViewOf(structName) == ViewOf(other.structName) &&
         std::equal(
             members.begin(), members.end(), other.members.begin(), other.members.end(),
             [](const auto& left, const auto& right) { return left && right && *left == *right; });
}

TypeDesc::TypeDesc(Key key, RefType refType, bool isArray) : key(key), refType(refType) {
  if (key == Key::Enum) {
    enumInfo = std::make_unique<EnumInfo>();
  }
  if (key == Key::Struct) {
    structInfo = std::make_unique<StructInfo>();
  }
  if (isArray) {
    arrayInfo = std::make_unique<ArrayInfo>();
  }
}

TypeDesc::TypeDesc(Key key, WideString displayName, WideString typeName)
    : TypeDesc(key, RefType::ByValue, false) {
  this->displayName = std::move(displayName);
  this->typeName = std::move(typeName);
}

TypeDesc::TypeDesc(const WideString& keyword, RefType refType, bool isArray)
    : TypeDesc(KeyOfKeyword(ViewOf(keyword)), refType, isArray) {}

TypeDesc::TypeDesc(const TypeDesc& other)
    : key(other.enumInfo ? Key::Enum : other.key),
      refType(other.refType),
      displayName(other.displayName),
      typeName(other.typeName),
      detail(other.detail) {
  CopyInfo(enumInfo, other.enumInfo);
  CopyInfo(arrayInfo, other.arrayInfo);
  CopyInfo(structInfo, other.structInfo);
}

TypeDesc::TypeDesc(TypeDesc&& other) noexcept
    : enumInfo(std::move(other.enumInfo)),
      arrayInfo(std::move(other.arrayInfo)),
      structInfo(std::move(other.structInfo)),
      key(std::exchange(other.key, Key::Void)),
      refType(std::exchange(other.refType, RefType::ByValue)),
      displayName(std::move(other.displayName)),
      typeName(std::move(other.typeName)),
      detail(std::move(other.detail)) {}

TypeDesc::~TypeDesc() = default;

// Through a copy, as the source may be a member of this descriptor's own structure.
TypeDesc& TypeDesc::operator=(const TypeDesc& other) {
  if (this != &other) {
    *this = TypeDesc(other);
  }
  return *this;
}

TypeDesc& TypeDesc::operator=(TypeDesc&& other) noexcept {
  if (this != &other) {
    // Goes last: `other` may be one of its members.
    const std::unique_ptr<StructInfo> former = std::exchange(structInfo, nullptr);
    structInfo = std::move(other.structInfo);
    enumInfo = std::move(other.enumInfo);
    arrayInfo = std::move(other.arrayInfo);
    key = std::exchange(other.key, Key::Void);
    refType = std::exchange(other.refType, RefType::ByValue);
    displayName = std::move(other.displayName);
    typeName = std::move(other.typeName);
    detail = std::move(other.detail);
  }
  return *this;
}

void TypeDesc::Clear() { *this = TypeDesc(); }

bool TypeDesc::operator==(const TypeDesc& other) const {
  if (key == Key::Enum && enumInfo && (other.key != Key::Enum || !other.enumInfo)) {
    return false;
  }
  if (arrayInfo && (!other.arrayInfo || *arrayInfo != *other.arrayInfo)) {
    return false;
  }
  if (structInfo) {
    return other.structInfo && *structInfo == *other.structInfo;
  }
  return key == other.key && refType == other.refType && ViewOf(typeName) == ViewOf(other.typeName);
}

}  // namespace quenlatrix::meta_object

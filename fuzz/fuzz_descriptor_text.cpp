#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "meta_object/type_desc.h"
#include "meta_object/wide_view.h"

// Any text reads without harm, and what is written reads back to the same text where no name holds
// a separator. The same bytes also steer the making of a descriptor whose names hold none.
namespace {

using quenlatrix::meta_object::TypeDesc;
using quenlatrix::meta_object::ViewOf;
using Key = TypeDesc::Key;
using RefType = TypeDesc::RefType;

void Require(bool held) {
  if (!held) {
    std::abort();
  }
}

std::wstring Written(const TypeDesc& desc) {
  WideString text;
  Require(desc.Serialize(text));
  return std::wstring(ViewOf(text));
}

std::wstring Rewritten(const std::wstring& text) {
  TypeDesc desc;
  Require(desc.Deserialize(text.c_str()));
  return Written(desc);
}

bool IsClean(const WideString& name) {
  return ViewOf(name).find_first_of(L",%!=(){}[]") == std::wstring_view::npos;
}

// Whether all names are free of separators; looks at the nesting on the way.
bool HasCleanNames(const TypeDesc& desc, int nesting) {
  Require(nesting <= TypeDesc::kMaxNesting);
  bool clean = IsClean(desc.displayName) && IsClean(desc.typeName) && IsClean(desc.detail);
  if (desc.enumInfo) {
    for (const auto& item : desc.enumInfo->items) {
      clean = clean && IsClean(item.name);
    }
  }
  if (desc.structInfo) {
    clean = clean && IsClean(desc.structInfo->structName);
    for (const auto& member : desc.structInfo->members) {
      clean = HasCleanNames(*member, nesting + 1) && clean;
    }
  }
  return clean;
}

void CheckText(const std::string& bytes) {
  const std::wstring text(bytes.begin(), bytes.end());
  TypeDesc desc;
  Require(desc.Deserialize(text.c_str()));
  const std::wstring written = Written(desc);
  Require(Written(TypeDesc(desc)) == written);
  if (HasCleanNames(desc, 0)) {
    Require(Rewritten(written) == written);
  }
  TypeDesc::StructInfo structure;
  structure.Deserialize(text.c_str());
  TypeDesc::ArrayInfo array;
  Require(array.Deserialize(text.c_str()));
  TypeDesc::EnumInfo items;
  Require(items.Deserialize(text.c_str()));
}

WideString MakeName(FuzzedDataProvider& data) {
  std::wstring name;
  for (auto count = data.ConsumeIntegralInRange<int>(0, 3); count > 0; --count) {
    const wchar_t c =
        data.PickValueInArray({L'a', L'.', L'^', L':', L' ', L'\u00e4', L'\U0001f600'});
    name += c;
  }
  return name.c_str();
}

TypeDesc MakeDescriptor(FuzzedDataProvider& data, int nesting) {
  Key key = data.PickValueInArray({Key::Void, Key::Int, Key::Real, Key::String, Key::Char,
                                   Key::Bool, Key::Date, Key::Currency, Key::Struct, Key::Unknown,
                                   Key::Enum, Key::Object});
  if (key == Key::Struct && nesting == TypeDesc::kMaxNesting) {
    key = Key::Object;
  }
  TypeDesc desc(key, data.ConsumeBool() ? RefType::ByRef : RefType::ByValue,
                data.ConsumeIntegralInRange(0, 3) == 0);
  desc.displayName = MakeName(data);
  desc.typeName = MakeName(data);
  desc.detail = MakeName(data);
  for (auto count = data.ConsumeIntegralInRange<int>(0, 3); count > 0; --count) {
    if (desc.arrayInfo) {
      desc.arrayInfo->AddDimensionInfo(data.ConsumeIntegral<int>(), data.ConsumeIntegral<int>());
    }
    if (desc.enumInfo) {
      desc.enumInfo->AddEnumItem(MakeName(data), data.ConsumeIntegral<long>());
    }
    if (desc.structInfo && data.remaining_bytes() > 0) {
      desc.structInfo->structName = MakeName(data);
      desc.structInfo->members.push_back(
          std::make_unique<TypeDesc>(MakeDescriptor(data, nesting + 1)));
    }
  }
  return desc;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  CheckText(std::string(reinterpret_cast<const char*>(bytes), size));
  FuzzedDataProvider data(bytes, size);
  const std::wstring written = Written(MakeDescriptor(data, 0));
  Require(Rewritten(written) == written);
  return 0;
}

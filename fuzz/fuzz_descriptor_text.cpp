#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/random_descriptor.h"
#include "fuzz/require.h"
#include "meta_object/type_desc.h"
#include "meta_object/wide_view.h"

// Any text reads without harm or is refused with the descriptor as it was, and what is written
// reads back to the same text where no name holds a separator. The same bytes also steer the making
// of a descriptor whose names hold none.
namespace {

using quenlatrix::meta_object::TypeDesc;
using quenlatrix::meta_object::ViewOf;

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
  const bool isRead = desc.Deserialize(text.c_str());
  const std::wstring written = Written(desc);
  Require(isRead || written == Written(TypeDesc()));
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  CheckText(std::string(reinterpret_cast<const char*>(bytes), size));
  FuzzedDataProvider data(bytes, size);
  const std::wstring written = Written(MakeDescriptor(data));
  Require(Rewritten(written) == written);
  return 0;
}

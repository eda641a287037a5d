#include "fuzz/random_descriptor.h"

#include <memory>

namespace {

using quenlatrix::meta_object::TypeDesc;
using Key = TypeDesc::Key;
using RefType = TypeDesc::RefType;

WideString MakeName(FuzzedDataProvider& data) {
  std::wstring name;
  for (auto count = data.ConsumeIntegralInRange<int>(0, 3); count > 0; --count) {
    const wchar_t c =
        data.PickValueInArray({L'a', L'.', L'^', L':', L' ', L'\u00e4', L'\U0001f600'});
    name += c;
  }
  return name.c_str();
}

}  // namespace

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

#include "meta_object/type/struct_value.h"

namespace quenlatrix::meta_object::type {

Struct::Struct() : Object(TypeDesc::Key::Struct) {}

Struct::Struct(const Struct& other) : Object(other) {
  members.reserve(other.members.size());
  for (const auto& member : other.members) {
    members.emplace_back(member == nullptr ? nullptr : member->Clone());
  }
}

Struct::~Struct() = default;

Object* Struct::Clone() const { return new Struct(*this); }

void Struct::GetDesc(WideString& text) const { text.assign(L"structure"); }

void Struct::SetDesc(const WideString& /*text*/) {}

}  // namespace quenlatrix::meta_object::type

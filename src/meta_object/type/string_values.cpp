#include "meta_object/type/string_values.h"

namespace quenlatrix::meta_object::type {

String::String() : String(TypeDesc::Key::String) {}

String::String(const TypeDesc& typeDesc) : Object(typeDesc) {}

String::String(TypeDesc::Key key) : Object(key) {}

Object* String::Clone() const { return new String(*this); }

void String::GetDesc(WideString& text) const { text = value; }

void String::SetDesc(const WideString& text) { value = text; }

Date::Date() : String(TypeDesc::Key::Date) {}

Object* Date::Clone() const { return new Date(*this); }

Currency::Currency() : String(TypeDesc::Key::Currency) {}

Object* Currency::Clone() const { return new Currency(*this); }

}  // namespace quenlatrix::meta_object::type

#include "host/value_ptr.h"

#include "meta_object/handler.h"
#include "meta_object/type/array.h"
#include "meta_object/type/struct_value.h"

namespace quenlatrix::host {

namespace type = meta_object::type;

void ReleaseReferences(type::Object& value) {
  if (const auto* array = dynamic_cast<const type::Array*>(&value)) {
    for (int i = 0; i < array->GetItemCount(); ++i) {
      if (type::Object* item = array->GetItemAt(static_cast<unsigned int>(i))) {
        ReleaseReferences(*item);
      }
    }
  } else if (const auto* structure = dynamic_cast<const type::Struct*>(&value)) {
    for (const std::unique_ptr<type::Object>& member : structure->members) {
      if (member != nullptr) {
        ReleaseReferences(*member);
      }
    }
  } else {
    value.ReleaseItem();
  }
}

void ValueRelease::operator()(type::Object* value) const {
  ReleaseReferences(*value);
  if (maker != nullptr) {
    maker->Release(value);
  } else {
    delete value;
  }
}

}  // namespace quenlatrix::host

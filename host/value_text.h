#pragma once

#include <string>
#include <vector>

#include "host/bean_object.h"
#include "host/value_view.h"

namespace quenlatrix::host {

// A value for people: plain values bare, arrays as [1, 2] and [[1, 2], [3, 4]] with their texts in
// quotes, objects as "class: text", null as "null".
std::string ValueText(const meta_object::type::Object* value, const meta_object::TypeDesc& type,
                      const ObjectViewer& view);

}  // namespace quenlatrix::host

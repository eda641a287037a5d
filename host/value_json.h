#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/bean_object.h"
#include "host/value_view.h"

namespace quenlatrix::host {

// Documents keep the order in which their members were added.
using Document = nlohmann::ordered_json;

// TYPE: {"key":"Int","type":"int","display":"array of int","dimensions":[[0,-1]],"ref":"ByValue"}.
Document TypeDocument(const meta_object::TypeDesc& type);

// VALUE, null for null. `type` is what the method declares: what comes back of an array carries no
// names of its own.
Document ValueDocument(const meta_object::type::Object* value, const meta_object::TypeDesc& type,
                       const ObjectViewer& view);

// The document of `describe`.
Document DescriptionDocument(const std::string& className, const ObjectDescription& description,
                             const std::vector<MethodDescription>& methods);

// The document on one line. Text that is no UTF-8 is repaired.
std::string ToLine(const Document& document);

}  // namespace quenlatrix::host

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"

namespace quenlatrix::host {

// What can be shown of an object that a value refers to.
struct ObjectView {
  std::string className;            // its run-time class; empty when that can't be learnt
  std::optional<std::string> text;  // its toString(), where that answers
  std::string heldName;             // the name it is held under, or empty
};

// Looks behind a value of key Object; asks the virtual machine, so it may be slow.
using ObjectViewer = std::function<ObjectView(const meta_object::type::Object& value)>;

// A plain value's text, UTF-8: what it means, not what goes out for it. Characters come whole,
// where their value's own text has one byte.
std::string PlainText(const meta_object::type::Object& value);

}  // namespace quenlatrix::host

#pragma once

#include <string>
#include <vector>

#include "host/bean_object.h"
#include "host/terminal.h"

namespace quenlatrix::host {

// A class as a person reads a bean: its properties with their types and accessors, then its other
// methods, types in Java's source form. Lines.
std::string DescriptionText(const std::string& className, const ObjectDescription& description,
                            const std::vector<MethodDescription>& methods, const TextStyle& style);

}  // namespace quenlatrix::host

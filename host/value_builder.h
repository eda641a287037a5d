#pragma once

#include "host/argument.h"
#include "host/boxes.h"
#include "host/class_facts.h"
#include "host/value_ptr.h"

namespace quenlatrix::host {

// The value that carries an argument to a parameter which it fits (FitArgument). Real numbers go
// out in their own digits, an empty text within an array as the marker that the plug-in knows;
// literals for object parameters are boxed. Throws HostError when one can't be boxed.
ValuePtr BuildValue(const Argument& argument, const ParameterDescription& parameter, Boxes& boxes);

}  // namespace quenlatrix::host

#pragma once

#include <string>
#include <vector>

#include "host/argument.h"
#include "host/class_facts.h"
#include "host/method_pattern.h"

namespace quenlatrix::host {

// The method that METHOD and the arguments mean: of those with the name, and the parameter types if
// METHOD has them, the one whose parameters fit best, that is, at least as well as every other
// one's in each place and better in one. Lent from `methods`. Property accessors go by their
// methods' names. Throws HostError (Failed) that knows the place and lists the candidates, the
// nearest first, when an argument can't be passed, none fits or two fit equally well.
const MethodDescription& ChooseMethod(const std::vector<MethodDescription>& methods,
                                      const std::string& className, const MethodPattern& pattern,
                                      const std::vector<Argument>& arguments);

// A method as METHOD can name it, such as "append(java.lang.String)".
std::string ToSourceForm(const MethodDescription& method);

}  // namespace quenlatrix::host

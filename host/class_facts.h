#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/monitor.h"
#include "meta_object/method_type.h"
#include "meta_object/param_direction.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::host {

struct ParameterDescription {
  WideString name;
  meta_object::ParamDirection direction = meta_object::ParamDirection::In;
  meta_object::TypeDesc type;
};

// One method as the plug-in describes it. An integer parameter that came without a type name is
// called "int" here, a result without one "void": values made to these descriptors go out as such.
// Several threads may read one description, as long as none asks a text for its narrow form or
// searches in it: a WideString does that in place, so make a copy for it.
struct MethodDescription {
  WideString id;
  WideString name;
  meta_object::MethodType kind = meta_object::MethodType::Invoke;
  meta_object::TypeDesc returnType;
  std::vector<ParameterDescription> parameters;
};

// A class's own name (distance 0), superclasses and interfaces. The distance is the longest way up,
// so a type is always nearer than its own supertypes; java.lang.Object is the farthest of all.
using Supertypes = std::map<std::string, int>;

// What the host has learnt about classes by asking the plug-in, kept by class name so that it asks
// once. What is stored stays as it is for this object's life; any thread may use it.
class ClassFacts {
 public:
  // Lends what is stored, or null.
  const std::vector<MethodDescription>* FindMethods(const std::string& className) const;
  const Supertypes* FindSupertypes(const std::string& className) const;
  // Stores unless another thread was quicker, and lends what stands then.
  const std::vector<MethodDescription>& KeepMethods(const std::string& className,
                                                    std::vector<MethodDescription>&& methods);
  const Supertypes& KeepSupertypes(const std::string& className, Supertypes&& supertypes);

 private:
  mutable Monitor monitor;
  std::map<std::string, std::vector<MethodDescription>> methodsOfClass GUARDED_BY(monitor);
  std::map<std::string, Supertypes> supertypesOfClass GUARDED_BY(monitor);
};

}  // namespace quenlatrix::host

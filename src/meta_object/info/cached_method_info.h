#pragma once

#include <vector>

#include "meta_object/method_type.h"
#include "meta_object/param_direction.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::info::cache {

// One parameter of a catalogued method. Not thread-safe.
struct CachedParamInfo {
  CachedParamInfo(WideString name, TypeDesc type, ParamDirection direction);

  // Every field takes part; the types are compared with TypeDesc's own equality.
  bool operator==(const CachedParamInfo& other) const;

  WideString name;
  TypeDesc type;
  ParamDirection direction;
  bool option1 = false;
  bool option2 = false;
};

// One method of the catalogue that introspection leaves in the host's cache. Not thread-safe.
struct CachedMethodInfo {
  using ParamList = std::vector<CachedParamInfo*>;

  CachedMethodInfo() = default;
  // `description` isn't copied, nor are null parameters.
  CachedMethodInfo(const CachedMethodInfo& other);
  CachedMethodInfo(CachedMethodInfo&& other) noexcept;
  ~CachedMethodInfo();
  CachedMethodInfo& operator=(const CachedMethodInfo& other);
  CachedMethodInfo& operator=(CachedMethodInfo&& other) noexcept;

  // Lends the parameter at the 0-based `index`; null when there is none.
  CachedParamInfo* GetParamInfo(int index) const;
  // Back to an entry without texts, result type and parameters.
  void Clear();
  // `description` takes no part. A missing parameter list and an empty one are different.
  bool operator==(const CachedMethodInfo& other) const;

  WideString name;
  WideString altName;  // the name that method identifiers are made of
  WideString description;
  TypeDesc returnType;
  MethodType methodType = MethodType::Invoke;
  ParamList* params = nullptr;  // owned, as its entries are; null when the method has none
};

// The host's record of one introspected class, entries in the order in which they were added. A
// null entry keeps its position. The host owns both the record and the entries.
struct CachedObjectInfo {
  std::vector<CachedMethodInfo*> methods;
};

}  // namespace quenlatrix::meta_object::info::cache

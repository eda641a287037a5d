#pragma once

#include <cstdint>

#include "meta_object/method_type.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::info {

// The answer to a question about one method. Its request mask says which fields were asked for;
// the others hold the values below. Not thread-safe.
class MethodInfo {
 public:
  MethodInfo() = default;
  MethodInfo(const MethodInfo&) = default;
  MethodInfo(MethodInfo&&) noexcept = default;
  virtual ~MethodInfo();
  MethodInfo& operator=(const MethodInfo&) = default;
  MethodInfo& operator=(MethodInfo&&) noexcept = default;

  std::uint64_t reserved = 0;
  std::uint64_t context = 0;                   // the asker's own value, always filled
  WideString methodId;                         // always filled
  WideString name;                             // mask 1
  TypeDesc returnType;                         // mask 2
  MethodType methodType = MethodType::Invoke;  // mask 8
  std::uint32_t paramCount = 0;                // mask 4
  WideString description;                      // mask 16
};

}  // namespace quenlatrix::meta_object::info

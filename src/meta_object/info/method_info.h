#pragma once

#include <cstdint>

#include "meta_object/method_type.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::info {

// The bits of a request mask, and so the fields that may be asked for.
enum MethodField : unsigned long {
  kMethodName = 1,
  kMethodReturnType = 2,
  kMethodParamCount = 4,
  kMethodType = 8,
  kMethodDescription = 16,
};

// The answer to a question about one method. Its request mask says which fields were asked for;
// the others hold the values below. Not thread-safe.
class MethodInfo {
 public:
  MethodInfo() = default;
  MethodInfo(const MethodInfo&) = default;
  MethodInfo(MethodInfo&&) noexcept = default;
  virtual ~MethodInfo();
  // One that throws leaves this record as it was.
  MethodInfo& operator=(const MethodInfo& other) { return *this = MethodInfo(other); }
  MethodInfo& operator=(MethodInfo&&) noexcept = default;

  std::uint64_t reserved = 0;
  std::uint64_t context = 0;                   // the asker's own value, always filled
  WideString methodId;                         // always filled
  WideString name;                             // kMethodName
  TypeDesc returnType;                         // kMethodReturnType
  MethodType methodType = MethodType::Invoke;  // kMethodType
  std::uint32_t paramCount = 0;                // kMethodParamCount
  WideString description;                      // kMethodDescription
};

}  // namespace quenlatrix::meta_object::info

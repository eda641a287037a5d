#pragma once

#include <cstdint>

#include "meta_object/param_direction.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::info {

// The bits of a request mask, and so the fields that may be asked for.
enum ParamField : unsigned long {
  kParamType = 1,
  kParamName = 2,
  kParamDirection = 4,
  kParamOption1 = 8,
  kParamOption2 = 16,
};

// The answer to a question about one parameter of a method. Its request mask says which fields were
// asked for; the others hold the values below. Not thread-safe.
class ParamInfo {
 public:
  ParamInfo() = default;
  ParamInfo(const ParamInfo&) = default;
  ParamInfo(ParamInfo&&) noexcept = default;
  virtual ~ParamInfo();
  // One that throws leaves this record as it was.
  ParamInfo& operator=(const ParamInfo& other) { return *this = ParamInfo(other); }
  ParamInfo& operator=(ParamInfo&&) noexcept = default;

  std::uint64_t reserved = 0;
  std::uint64_t context = 0;                      // the asker's own value, always filled
  WideString methodId;                            // always filled
  std::uint32_t index = 0;                        // 0-based position, always filled
  WideString name;                                // kParamName
  TypeDesc type;                                  // kParamType
  ParamDirection direction = ParamDirection::In;  // kParamDirection
  bool option1 = false;                           // kParamOption1
  bool option2 = false;                           // kParamOption2
};

}  // namespace quenlatrix::meta_object::info

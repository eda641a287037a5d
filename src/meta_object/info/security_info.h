#pragma once

#include <string>

namespace quenlatrix::meta_object::info {

// What the host's security callback is asked about before an object is made. Not thread-safe.
struct SecurityInfo {
  SecurityInfo() = default;
  SecurityInfo(const SecurityInfo&) = default;
  SecurityInfo(SecurityInfo&&) = default;
  virtual ~SecurityInfo() = default;
  // One that throws leaves this record as it was.
  SecurityInfo& operator=(const SecurityInfo& other) { return *this = SecurityInfo(other); }
  SecurityInfo& operator=(SecurityInfo&&) = default;

  std::string firstValue;   // the handler type
  std::string secondValue;  // the class name as the identity has it, "." and "/" mixed at will
};

}  // namespace quenlatrix::meta_object::info

#pragma once

#include <optional>
#include <string>

#include "host/bean_object.h"

namespace quenlatrix::host {

class Host;

// Makes Java objects of literals, with the small bean of the host's own that every policy allows.
// The bean is made when it is first needed. For one thread; gone before its Host is.
class Boxes {
 public:
  explicit Boxes(Host& host) : host(host) {}

  // The object of class `boxClass` (such as "java.lang.Integer") that `text` stands for: the
  // digits, "true" or "false", the text or character. Throws HostError when it can't be made.
  BeanObject Box(const std::string& boxClass, const std::string& text);

 private:
  BeanObject& GetBean();
  const MethodDescription& FindMethod(const std::string& boxClass);

  Host& host;
  std::optional<BeanObject> bean;
};

}  // namespace quenlatrix::host

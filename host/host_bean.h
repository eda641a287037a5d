#pragma once

#include <optional>

#include "host/bean_object.h"
#include "host/monitor.h"

namespace quenlatrix::host {

class Host;

// The bean of the host's own that answers for classes: what a class is, not what its objects say of
// themselves. Made at the first question. Any thread may ask; to be released before the Host frees
// its handlers.
class HostBean {
 public:
  explicit HostBean(Host& host) : host(host) {}
  HostBean(const HostBean&) = delete;
  HostBean& operator=(const HostBean&) = delete;

  // The class of a bean's object; nothing when Java gives no answer.
  std::optional<ClassId> Identify(const BeanObject& object);
  std::optional<Supertypes> FindSupertypes(const BeanObject& object);

  void Release();

 private:
  std::optional<BeanObject> Get();
  ValuePtr Ask(const char* methodId, const BeanObject& object,
               const meta_object::TypeDesc& resultType);

  Host& host;
  Monitor monitor;
  std::optional<BeanObject> bean GUARDED_BY(monitor);
};

}  // namespace quenlatrix::host

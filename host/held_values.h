#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/argument.h"
#include "host/bean_object.h"
#include "host/value_ptr.h"

namespace quenlatrix::meta_object::type {
class Array;
}

namespace quenlatrix::host {

class Host;

// What a name of a script stands for: a bean, or a plain value of the type that its method
// declares.
struct Held {
  std::optional<BeanObject> object;
  ValuePtr value;
  meta_object::TypeDesc type;
};

// The names of a script and what they hold. For one thread; gone before its Host is.
class HeldValues {
 public:
  explicit HeldValues(Host& host) : host(host) {}

  // What the name held before is released.
  void Keep(const std::string& name, Held newHeld);
  // Null when nothing is held under that name.
  Held* Find(const std::string& name);
  // The bean under that name. Throws HostError (Failed) when there is none.
  BeanObject& GetObject(const std::string& name);
  // Lets go; the handler's status, for a plain value the same as for a last reference. Throws
  // HostError (Failed) when nothing is held under that name.
  std::uint32_t Release(const std::string& name);
  // The name that holds this very handler; empty when none does.
  std::string NameOf(const meta_object::Handler* handler) const;

  // The argument itself, or what the name in it stands for, which must stay held while the result
  // is in use. Throws HostError (Failed).
  Argument Resolve(const Argument& argument);

 private:
  Held& Get(const std::string& name);
  Argument OfObject(BeanObject& object);
  Argument OfValue(const meta_object::type::Object* value, const std::string& typeName);
  Argument OfArray(const meta_object::type::Array& array, const std::string& typeName);

  Host& host;
  std::map<std::string, Held> values;
};

}  // namespace quenlatrix::host

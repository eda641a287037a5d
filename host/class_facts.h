#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
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

// A class as Java tells it apart from others.
struct ClassId {
  // Class.getName(), UTF-8.
  std::string name;
  // 0 for the class that the name finds on the class path. Any other class of that name, which
  // another loader has defined, has a number of its own that no other class ever gets.
  std::int64_t number = 0;
};

// What the host has learnt about one class by asking the plug-in, so that it asks once. What is
// stored stays as it is; any thread may use it.
class ClassRecord {
 public:
  ClassRecord(std::string name, std::string identity)
      : name(std::move(name)), identity(std::move(identity)) {}
  ClassRecord(const ClassRecord&) = delete;
  ClassRecord& operator=(const ClassRecord&) = delete;

  const std::string& GetName() const { return name; }
  // The text of the identity under which objects of the class are introspected.
  const std::string& GetIdentity() const { return identity; }

  // What is stored, valid as long as this object; null when nothing is.
  const std::vector<MethodDescription>* FindMethods() const;
  const Supertypes* FindSupertypes() const;
  // Stores unless another thread was quicker; what is stored then.
  const std::vector<MethodDescription>& KeepMethods(std::vector<MethodDescription>&& learnt);
  const Supertypes& KeepSupertypes(Supertypes&& learnt);

 private:
  const std::string name;
  const std::string identity;
  mutable Monitor monitor;
  std::optional<std::vector<MethodDescription>> methods GUARDED_BY(monitor);
  std::optional<Supertypes> supertypes GUARDED_BY(monitor);
};

// The records of the classes of beans. Descriptions of two classes must never be mixed up, or an
// object of an untrusted loader could change what the host believes of a trusted class that has the
// same name. So:
// - The class that a name finds has the identity "JAVABEAN://NAME" and its record for this object's
//   life, as the class lives as long as the VM.
// - Any other class has an identity with an attribute of its own, kIdentityAttribute, and a record
//   that lives as long as an object uses it; `forget` is then called with the identity. A class
//   that was unloaded therefore leaves nothing behind. The attribute's value is never used again,
//   not even for the same class, so a record that just ends and the next one don't meet.
// - Neither keeps a class from being unloaded: the number of a class hangs on the class, in Java.
// A name that would be cut as an identity's text gets the attribute, too, and no other class's
// name. Any thread may call any operation.
class ClassFacts {
 public:
  using Forget = std::function<void(const std::string& identity)>;
  using RecordPtr = std::shared_ptr<ClassRecord>;

  static constexpr const char* kIdentityAttribute = "HostClass";

  // Every record but those of classes that their names find must be gone before this object is.
  explicit ClassFacts(Forget forget) : forget(std::move(forget)) {}
  ClassFacts(const ClassFacts&) = delete;
  ClassFacts& operator=(const ClassFacts&) = delete;

  // Never null.
  RecordPtr Find(const ClassId& id);

 private:
  struct Numbered;

  std::string MakeIdentity(const ClassId& id) REQUIRES(monitor);
  RecordPtr FindNumbered(const ClassId& id) REQUIRES(monitor);
  void Drop(const Numbered& ended);

  const Forget forget;
  Monitor monitor;
  std::map<std::string, RecordPtr, std::less<>> named GUARDED_BY(monitor);
  std::map<std::int64_t, std::weak_ptr<Numbered>> numbered GUARDED_BY(monitor);
  std::uint64_t lastAttribute GUARDED_BY(monitor) = 0;
};

}  // namespace quenlatrix::host

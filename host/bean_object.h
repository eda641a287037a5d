#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/class_facts.h"
#include "host/value_ptr.h"
#include "meta_object/handler.h"
#include "text/wide_string.h"

namespace quenlatrix::host {

class Host;

// How a method call ended. `status` is the handler's (0: done, 7: failed); the other three are what
// the plug-in wrote, and stay 0 and empty when the call failed before it reached Java.
struct CallOutcome {
  std::uint32_t status = 0;
  std::uint32_t statusCode = 0;
  WideString description;
  WideString failureText;
  // Null for a failed call, and for a result that is null or an empty array.
  ValuePtr result;
};

struct ObjectDescription {
  std::uint32_t status = 0;
  WideString description;
  int attributeMethods = 0;
  int regularMethods = 0;
};

struct WalkOutcome {
  std::uint32_t status = 0;
  int size = 0;
  // What was walked before a failure stays. An element that converts to no value is a null item.
  std::vector<ValuePtr> items;
};

// One counted reference on a handler that stands for a Java object, or for one of another handler's
// kind; Java is asked about beans alone. Movable, not copyable; used by one thread at a time, and
// gone before its Host is. Every operation opens and closes what it needs on the calling thread, so
// two threads may use two BeanObjects of one handler. A moved-from or released object is empty and
// good for nothing but assignment and destruction.
class BeanObject {
 public:
  // Takes over one count of a handler whose identity names the object. `className`: of a bean, of
  // the class that the name finds; otherwise the identity's core.
  static BeanObject Adopt(Host& host, meta_object::Handler* handler, const std::string& className);
  // Takes a count of its own on a handler that needs no identity yet; the class is asked for when
  // it is first needed. Nothing when the handler gives no count.
  static std::optional<BeanObject> Share(Host& host, meta_object::Handler* handler);
  // The same object with a count of its own, and what is known of it.
  std::optional<BeanObject> Share() const;
  // The object that a value of key Object (no array) refers to, with a count of its own; nothing
  // when the value is no object or refers to nothing.
  static std::optional<BeanObject> FromValue(Host& host, const meta_object::type::Object& value);

  BeanObject(BeanObject&& other) noexcept;
  BeanObject& operator=(BeanObject&& other) noexcept;
  BeanObject(const BeanObject&) = delete;
  BeanObject& operator=(const BeanObject&) = delete;
  ~BeanObject();

  // Gives the count back and leaves this empty; the handler's status (65504 when it was the last).
  std::uint32_t Release();
  bool IsEmpty() const { return handler == nullptr; }

  // Lends the handler.
  meta_object::Handler* GetHandler() const { return handler; }
  // The object's run-time class (Class.getName(), UTF-8), asked through the plug-in when not known.
  // What is no bean has the identity that it was made of, or its handler's type. Empty when it
  // cannot be learnt.
  const std::string& ClassName();

  // Makes the class's catalogue known to the plug-in and binds the class's identity (see
  // ClassFacts; an object that is no bean keeps its own); done once by the operations that need it.
  // The handler's status (0, 1, 5).
  std::uint32_t Introspect();
  // The methods in the catalogue's order, lent while this object lives; null when introspection
  // failed.
  const std::vector<MethodDescription>* Methods();
  ObjectDescription Describe();
  // The class's supertypes, itself included; null when they cannot be learnt, as of what is no
  // bean.
  std::shared_ptr<const Supertypes> SupertypesOfClass();
  bool IsInstanceOf(const std::string& className);

  // Calls a method of this object's Methods(). The parameters stay the caller's; array parameters
  // hold afterwards what the method left in them.
  CallOutcome Call(const MethodDescription& method, std::vector<ValuePtr>& parameters);
  // The same with a bare identifier ("Invoke:toString:0": only kind and name matter) and a result
  // type, for methods that no catalogue lists.
  CallOutcome Call(const WideString& methodId, const meta_object::TypeDesc& returnType,
                   std::vector<ValuePtr>& parameters);
  // What toString() answers; nothing when it answers null or throws, and for what is no bean.
  std::optional<WideString> ToText();

  // Walks the object as a collection: passes over `skip` elements and delivers the rest. Status 13
  // when it is none.
  WalkOutcome Walk(int skip);
  // Its size as a collection, without walking it; the handler's status (0, 13).
  std::uint32_t CollectionSize(int& size);

 private:
  BeanObject(Host& host, meta_object::Handler* handler, ClassFacts::RecordPtr record,
             bool identified);
  // Learns which class it is; null when that cannot be learnt.
  ClassRecord* LearnClass();
  std::vector<MethodDescription> GatherMethods();
  bool IsBean() const;

  Host* host;
  meta_object::Handler* handler;
  // Null before it is learnt. Of an object that is no bean its own: such a class has no name to be
  // found by.
  ClassFacts::RecordPtr record;
  // Whether the handler's identity names the class.
  bool identified;
  bool introspected = false;
};

}  // namespace quenlatrix::host

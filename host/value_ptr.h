#pragma once

#include <memory>

#include "meta_object/type/blob.h"
#include "meta_object/type/object.h"

namespace quenlatrix::meta_object {
class Handler;
}

namespace quenlatrix::host {

// Ends a value object's life: releases the handlers that it refers to, itself or in its elements
// and members, then gives the value back through `maker`, or deletes it when the host made it.
struct ValueRelease {
  meta_object::Handler* maker = nullptr;
  void operator()(meta_object::type::Object* value) const;
};

// An owned value object. What the plug-in made must be gone before the Host is.
using ValuePtr = std::unique_ptr<meta_object::type::Object, ValueRelease>;

// Releases every handler reference that the value holds, itself or in elements and members.
void ReleaseReferences(meta_object::type::Object& value);

// An object argument: a blob that gives its reference back when it is deleted. An array is emptied
// and filled again by a call, which deletes its elements and would leave a plain blob's count
// behind; so object arguments, elements above all, are made of these.
class ObjectArgument : public meta_object::type::Blob {
 public:
  // Takes a reference of its own on the handler.
  explicit ObjectArgument(const meta_object::Handler* handler) : Blob(handler) {}
  ObjectArgument(const ObjectArgument&) = default;
  ObjectArgument& operator=(const ObjectArgument&) = delete;
  ~ObjectArgument() override { ReleaseItem(); }
  ObjectArgument* Clone() const override { return new ObjectArgument(*this); }
};

}  // namespace quenlatrix::host

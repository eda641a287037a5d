#pragma once

#include "meta_object/handler_status.h"
#include "meta_object/type/object.h"

namespace quenlatrix::meta_object {
class Handler;
}

namespace quenlatrix::meta_object::type {

// A reference to another handler object. A blob that holds a handler has one counted reference on
// it, taken with AddRef. The destructor does not give it back: whoever owns the blob calls
// ReleaseItem first.
class Blob : public Object {
 public:
  Blob();
  // Holds nothing when the handler's AddRef fails, or for null.
  explicit Blob(const Handler* handler);
  // Holds the same handler with a reference of its own.
  Blob(const Blob& other);
  ~Blob() override;

  // Gives the reference back and holds nothing.
  void ReleaseItem() override;
  Object* Clone() const override;
  // The real object's reference as an unsigned decimal number; empty when there is none.
  void GetDesc(WideString& text) const override;
  // Ignored: a number is no reference that can be counted.
  void SetDesc(const WideString& text) override;

  // Gives back what it held and holds `newHandler`, which may be null. When the handler's AddRef
  // fails, the blob holds nothing and the answer is AddRef's.
  HandlerStatus SetValue(const Handler* newHandler);
  // Lent; null when the blob holds nothing.
  Handler* GetValue() const { return handler; }

 private:
  HandlerStatus Hold(const Handler* newHandler);

  Handler* handler = nullptr;
};

}  // namespace quenlatrix::meta_object::type

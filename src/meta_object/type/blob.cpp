#include "meta_object/type/blob.h"

#include <cstdint>
#include <utility>

#include "meta_object/handler.h"
#include "meta_object/type/number_text.h"

namespace quenlatrix::meta_object::type {

Blob::Blob() : Object(TypeDesc::Key::Object) {}

Blob::Blob(const Handler* handler) : Blob() { Hold(handler); }

Blob::Blob(const Blob& other) : Object(other) { Hold(other.handler); }

Blob::~Blob() = default;

void Blob::ReleaseItem() {
  if (handler != nullptr) {
    std::exchange(handler, nullptr)->Release();
  }
}

Object* Blob::Clone() const { return new Blob(*this); }

void Blob::GetDesc(WideString& text) const {
  const void* reference = handler == nullptr ? nullptr : handler->GetObjectRef();
  if (reference == nullptr) {
    text = WideString();
    return;
  }
  AssignNumber(text, quenlatrix::text::PrintUnsigned(reinterpret_cast<std::uintptr_t>(reference)));
}

void Blob::SetDesc(const WideString& /*text*/) {}

HandlerStatus Blob::SetValue(const Handler* newHandler) {
  if (newHandler != handler) {
    ReleaseItem();
    return Hold(newHandler);
  }
  // Given the handler that it holds already, it must not let the last reference go in between.
  Handler* held = handler;
  const HandlerStatus status = Hold(newHandler);
  if (held != nullptr) {
    held->Release();
  }
  return status;
}

HandlerStatus Blob::Hold(const Handler* newHandler) {
  handler = nullptr;
  if (newHandler == nullptr) {
    return handler_status::kSuccess;
  }
  // The count is no part of what a const handler promises to keep.
  auto* counted = const_cast<Handler*>(newHandler);
  const HandlerStatus status = counted->AddRef();
  if (status == handler_status::kSuccess) {
    handler = counted;
  }
  return status;
}

}  // namespace quenlatrix::meta_object::type

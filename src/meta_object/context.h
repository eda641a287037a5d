#pragma once

#include <cstdint>

#include "text/wide_string.h"

namespace quenlatrix::meta_object {

namespace context {

// Data that the host passes to the creation of an object. The host defines it; a handler passes it
// through and never looks inside.
struct CreateObjectContext;

// One method call, from OpenMethodCall to CloseMethodCall. The host owns the record and may keep
// data of its own behind it. Used by one thread at a time.
struct MethodCallContext {
  // The handler's private state of the open call; null when no call is open.
  void* call = nullptr;
};

// One walk over a collection, from OpenCollection to CloseCollection. The host owns the record and
// may keep data of its own behind it. Used by one thread at a time.
struct CollectionContext {
  // The handler's private state of the open walk; null when no walk is open.
  void* walk = nullptr;
};

}  // namespace context

// How a method call went. The host owns the record, the handler fills it. For one thread at a time.
struct MethodInvokeStatus {
  static constexpr std::uint32_t kSucceeded = 1;
  static constexpr std::uint32_t kFailed = 0xFFFF;

  std::uint32_t statusCode = 0;
  WideString description;
  // Filled by a failed call only.
  WideString failureText;
};

}  // namespace quenlatrix::meta_object

#include <memory>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/bean_method_invoke.h"
#include "meta_object/handlers/bean/java_thread.h"
#include "meta_object/no_throw.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

// Runs `operation` on the context's open call; the failure status without one.
template <class Operation>
HandlerStatus OnOpenCall(context::MethodCallContext& context, Operation&& operation) {
  auto* const call = static_cast<CBeanMethodInvoke*>(context.call);
  if (call == nullptr) {
    return handler_status::kCallFailed;
  }
  return NoThrow(handler_status::kCallFailed, [&] { return operation(*call); });
}

}  // namespace

HandlerStatus BeanHandler::OpenMethodCall(context::MethodCallContext& context,
                                          const WideString& methodId) {
  return NoThrow(handler_status::kCallFailed, [&] {
    JavaThread thread;
    thread.StayAttached();
    context.call = new CBeanMethodInvoke(methodId, thread.Get(), Instance(), true);
    return handler_status::kSuccess;
  });
}

HandlerStatus BeanHandler::PrepareMethodCall(context::MethodCallContext& context,
                                             std::list<type::Object*>& params) {
  return OnOpenCall(context,
                    [&](CBeanMethodInvoke& call) { return call.PrepareMethodCall(params); });
}

HandlerStatus BeanHandler::SetReturnDataType(context::MethodCallContext& context,
                                             const TypeDesc& returnType) {
  return OnOpenCall(context,
                    [&](CBeanMethodInvoke& call) { return call.SetReturnDataType(returnType); });
}

HandlerStatus BeanHandler::InvokeMethod(context::MethodCallContext& context,
                                        MethodInvokeStatus& status, type::Object** result) {
  return OnOpenCall(context,
                    [&](CBeanMethodInvoke& call) { return call.InvokeMethod(status, result); });
}

HandlerStatus BeanHandler::CloseMethodCall(context::MethodCallContext& context) {
  delete static_cast<CBeanMethodInvoke*>(context.call);
  context.call = nullptr;
  return DetachNativeThread();
}

}  // namespace quenlatrix::meta_object::handlers::bean

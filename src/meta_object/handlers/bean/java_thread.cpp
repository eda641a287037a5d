#include "meta_object/handlers/bean/java_thread.h"

#include "meta_object/handlers/bean/plugin_state.h"

namespace quenlatrix::meta_object::handlers::bean {

JNIEnv* AttachNativeThread() {
  // Nothing would ever detach a thread whose attach isn't counted.
  if (!TlsJniAttachCount->Set(TlsJniAttachCount->Get() + 1) || _pJavaVM == nullptr) {
    return nullptr;
  }
  void* env = nullptr;
  _pJavaVM->AttachCurrentThread(&env, nullptr);
  return static_cast<JNIEnv*>(env);
}

HandlerStatus DetachNativeThread() {
  const unsigned long count = TlsJniAttachCount->Get();
  if (count == 0) {
    return handler_status::kSuccess;
  }
  TlsJniAttachCount->Set(count - 1);
  if (count == 1 && _pJavaVM != nullptr) {
    _pJavaVM->DetachCurrentThread();
  }
  return handler_status::kSuccess;
}

}  // namespace quenlatrix::meta_object::handlers::bean

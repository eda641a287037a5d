#include "meta_object/entry_points.h"

#include <jni.h>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/no_throw.h"
#include "text/wide_chars.h"

namespace bean = quenlatrix::meta_object::handlers::bean;
using quenlatrix::meta_object::Environment;
using quenlatrix::meta_object::Handler;
using quenlatrix::meta_object::info::HandlerInfo;

extern "C" {

[[gnu::visibility("default")]] void SetEnvironment(Environment* environment) {
  if (_pEnvironment == nullptr) {
    _pEnvironment = environment;
  }
}

[[gnu::visibility("default")]] void SetJavaVM(JavaVM* vm) {
  if (bean::_pJavaVM == nullptr) {
    bean::_pJavaVM = vm;
  }
}

[[gnu::visibility("default")]] bool InitHandler(void* moduleHandle) {
  return quenlatrix::meta_object::NoThrow(false, [moduleHandle] {
    bean::TlsJniAttachCount->Set(0);
    if (_pEnvironment == nullptr || moduleHandle == nullptr || bean::_pJavaVM != nullptr) {
      return false;
    }
    _HandlerInfo->Initialize(moduleHandle);
    return true;
  });
}

[[gnu::visibility("default")]] HandlerInfo* GetHandlerInfo() { return &*_HandlerInfo; }

[[gnu::visibility("default")]] std::uint32_t GetHandlerVersion() {
  return quenlatrix::meta_object::kHandlerVersion;
}

[[gnu::visibility("default")]] Handler* GetHandlerObject() {
  return quenlatrix::meta_object::NoThrow(static_cast<Handler*>(nullptr),
                                          []() -> Handler* { return bean::AllocHandlerObject(); });
}

[[gnu::visibility("default")]] void FreeHandlerObject(Handler* handler) { delete handler; }

[[gnu::visibility("default")]] bool CleanUpHandler() { return true; }

[[gnu::visibility("default")]] int ProcessIdle() { return 1; }

// The plug-in alone carries the plain name: defined by its linker name, so that neither this file
// nor any other calls it instead of the C library's.
[[gnu::visibility("default")]] long ExportedWcstol(const wchar_t* text, wchar_t** end,
                                                   int base) __asm__("wcstol");
[[gnu::visibility("default")]] long ExportedWcstol(const wchar_t* text, wchar_t** end, int base) {
  return quenlatrix::text::wcstol(text, end, base);
}
}

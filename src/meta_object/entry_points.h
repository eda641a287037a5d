#pragma once

#include <cstdint>

#include "meta_object/environment.h"
#include "meta_object/handler.h"
#include "meta_object/info/handler_info.h"

// What the host resolves by name in a loaded plug-in, and every plug-in defines with default
// visibility. The order in which the host calls:
// SetEnvironment, InitHandler, SetJavaVM (all during its single-threaded start-up); then
// GetHandlerInfo and GetHandlerVersion; then any number of GetHandlerObject and FreeHandlerObject,
// from any thread; CleanUpHandler at the end.

// A running Java VM, as jni.h has it; a handler without Java takes it and leaves it alone.
struct JavaVM_;
using JavaVM = JavaVM_;

namespace quenlatrix::meta_object {

inline constexpr std::uint32_t kHandlerVersion = 0x00020000;

}  // namespace quenlatrix::meta_object

extern "C" {

// Takes the host's services, owned by the host and alive as long as the plug-in. Only the first
// non-null pointer counts.
void SetEnvironment(quenlatrix::meta_object::Environment* environment);

// Takes the running VM. Only the first non-null pointer counts.
void SetJavaVM(JavaVM* vm);

// Fills the handler's description from the handle of the plug-in's own image. False, with nothing
// filled, without an environment, for a null handle, or when a VM has already been handed over.
bool InitHandler(void* moduleHandle);

// The handler's description; owned by the plug-in.
quenlatrix::meta_object::info::HandlerInfo* GetHandlerInfo();

// Version of the handler interface: kHandlerVersion.
std::uint32_t GetHandlerVersion();

// A new handler with one reference and no object, registered with the host's collector; null when
// memory is short. Freed with FreeHandlerObject.
quenlatrix::meta_object::Handler* GetHandlerObject();

// Destroys a handler; null is ignored. Its real object went with the last Release, not here.
void FreeHandlerObject(quenlatrix::meta_object::Handler* handler);

// To be called before the plug-in is unloaded. True when it may be.
bool CleanUpHandler();

// Called when the host has nothing to do. 1 where there is nothing to do here either.
int ProcessIdle();
}

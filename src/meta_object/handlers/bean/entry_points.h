#pragma once

#include <jni.h>

#include <cstdint>

#include "meta_object/environment.h"
#include "meta_object/handler.h"
#include "meta_object/info/handler_info.h"

// What the host resolves by name in the loaded plug-in. The order in which it calls:
// SetEnvironment, InitHandler, SetJavaVM (all during its single-threaded start-up); then
// GetHandlerInfo and GetHandlerVersion; then any number of GetHandlerObject and FreeHandlerObject,
// from any thread; CleanUpHandler at the end.

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

// Version of the handler interface: 0x00020000.
std::uint32_t GetHandlerVersion();

// A new handler with one reference and no object, registered with the host's collector; null when
// memory is short. Freed with FreeHandlerObject.
quenlatrix::meta_object::Handler* GetHandlerObject();

// Destroys a handler; null is ignored. Java references are released by the last Release, not here.
void FreeHandlerObject(quenlatrix::meta_object::Handler* handler);

// Nothing to clean up: true.
bool CleanUpHandler();

// Nothing to do when the host is idle: 1.
int ProcessIdle();
}

// What the host calls by name. Nothing else of the plug-in can be seen from outside.
#include "meta_object/entry_points.h"

#include "meta_object/no_throw.h"
#include "plugin.h"
#include "tally_handler.h"

using quenlatrix::meta_object::Environment;
using quenlatrix::meta_object::Handler;
using quenlatrix::meta_object::NoThrow;
using quenlatrix::meta_object::info::HandlerInfo;

Plugin plugin;

extern "C" {

[[gnu::visibility("default")]] void SetEnvironment(Environment* environment) {
  if (plugin.environment == nullptr) {
    plugin.environment = environment;
  }
}

[[gnu::visibility("default")]] void SetJavaVM(JavaVM*) {}  // tallies need none

[[gnu::visibility("default")]] bool InitHandler(void* moduleHandle) {
  return NoThrow(false, [moduleHandle] {
    if (plugin.environment == nullptr || moduleHandle == nullptr) {
      return false;
    }
    plugin.moduleHandle = moduleHandle;
    plugin.info.handlerName.assign("Tally Handler");
    plugin.info.handlerType.assign(tally::kHandlerType);
    plugin.info.description.assign("Counts words.");
    plugin.info.FinishWith(moduleHandle);
    return true;
  });
}

[[gnu::visibility("default")]] HandlerInfo* GetHandlerInfo() { return &plugin.info; }

[[gnu::visibility("default")]] std::uint32_t GetHandlerVersion() {
  return quenlatrix::meta_object::kHandlerVersion;
}

[[gnu::visibility("default")]] Handler* GetHandlerObject() {
  return NoThrow<Handler*>(nullptr, [] {
    auto* handler = new tally::TallyHandler();
    if (plugin.environment != nullptr) {
      plugin.environment->GCRegHandlerObject(handler, plugin.moduleHandle);
    }
    return handler;
  });
}

[[gnu::visibility("default")]] void FreeHandlerObject(Handler* handler) { delete handler; }

[[gnu::visibility("default")]] bool CleanUpHandler() { return true; }

[[gnu::visibility("default")]] int ProcessIdle() { return 1; }
}

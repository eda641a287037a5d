// A handler plug-in without Java: any identity names an object of it. Its error text is the
// attribute "Color" that the registry gives it; when idle it counts the handlers that are left.
// Built with another version, it is one that the host doesn't know.
#include <atomic>

#include "meta_object/entry_points.h"
#include "tests/meta_object/test_handler.h"

namespace {

using namespace quenlatrix::meta_object;

Environment* environment = nullptr;
void* module = nullptr;
info::HandlerInfo description;
std::atomic<int> handlersLeft = 0;

class ProbeHandler : public TestHandler {
 public:
  ProbeHandler() {
    if (const char* color = environment->GetAttribute("Color", "Probe")) errorText.assign(color);
  }
  const info::HandlerInfo* GetHandlerInfo() const override { return &description; }
};

}  // namespace

extern "C" {

[[gnu::visibility("default")]] void SetEnvironment(Environment* given) { environment = given; }
[[gnu::visibility("default")]] void SetJavaVM(JavaVM*) {}
[[gnu::visibility("default")]] bool InitHandler(void* moduleHandle) {
  module = moduleHandle;
  description.handlerType.assign("PROBE");
  return true;
}
[[gnu::visibility("default")]] info::HandlerInfo* GetHandlerInfo() { return &description; }
[[gnu::visibility("default")]] std::uint32_t GetHandlerVersion() { return PLUGIN_VERSION; }
[[gnu::visibility("default")]] Handler* GetHandlerObject() {
  auto* handler = new ProbeHandler;
  ++handlersLeft;
  environment->GCRegHandlerObject(handler, module);
  return handler;
}
[[gnu::visibility("default")]] void FreeHandlerObject(Handler* handler) {
  --handlersLeft;
  delete handler;
}
[[gnu::visibility("default")]] bool CleanUpHandler() { return true; }
[[gnu::visibility("default")]] int ProcessIdle() { return handlersLeft; }
}

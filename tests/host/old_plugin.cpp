// A plug-in with every entry point, but of a version that the host doesn't know.
extern "C" {

[[gnu::visibility("default")]] void SetEnvironment(void*) {}
[[gnu::visibility("default")]] void SetJavaVM(void*) {}
[[gnu::visibility("default")]] bool InitHandler(void*) { return true; }
[[gnu::visibility("default")]] void* GetHandlerInfo() { return nullptr; }
[[gnu::visibility("default")]] unsigned GetHandlerVersion() { return 0x00010000; }
[[gnu::visibility("default")]] void* GetHandlerObject() { return nullptr; }
[[gnu::visibility("default")]] void FreeHandlerObject(void*) {}
[[gnu::visibility("default")]] bool CleanUpHandler() { return true; }
[[gnu::visibility("default")]] int ProcessIdle() { return 1; }
}

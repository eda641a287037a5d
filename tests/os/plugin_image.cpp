// A plug-in with the entry point that the path look-up goes by, and one that opens its event log.
#include "os/event_log.h"

extern "C" [[gnu::visibility("default")]] bool InitHandler(void* module) {
  return module != nullptr;
}

extern "C" [[gnu::visibility("default")]] bool OpenLog(const char* path) {
  return OpenSystemEventLog(path, "unloaded plug-in") &&
         ReportSystemEvent(EVT_INFO, CAT_START, "loaded");
}

#pragma once

#include <memory>
#include <string>

#include "os/event_log.h"

namespace quenlatrix::host {

// Reports an event of the host. The text is data, whatever class names and exceptions brought into
// it: no format, and its control characters become blanks, so that an event is one line. Any thread
// may report.
void ReportEvent(TSysEventType type, TSysEventCategory category, const std::string& text);

// Was the event log's file without room for an event, or not to be written for another reason? Any
// thread may ask.
bool HasLostEvents();

// The event log while a program runs: opened on a file and closed at the end. For one thread.
class EventLogFile {
 public:
  // Null when the file can't be opened for appending; `why` says so and what to do.
  static std::unique_ptr<EventLogFile> Open(const std::string& file, std::string& why);
  ~EventLogFile();
  EventLogFile(const EventLogFile&) = delete;
  EventLogFile& operator=(const EventLogFile&) = delete;

 private:
  EventLogFile() = default;
};

}  // namespace quenlatrix::host

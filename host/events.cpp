#include "host/events.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

namespace quenlatrix::host {

namespace {

std::atomic<bool> hasLostEvents = false;

}  // namespace

void ReportEvent(TSysEventType type, TSysEventCategory category, const std::string& text) {
  std::string line = text;
  std::replace_if(
      line.begin(), line.end(),
      [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
  if (!ReportSystemEvent(type, category, "%s", line.c_str())) {
    hasLostEvents = true;
  }
}

bool HasLostEvents() { return hasLostEvents; }

std::unique_ptr<EventLogFile> EventLogFile::Open(const std::string& file, std::string& why) {
  errno = 0;
  // An empty path would open the log on standard output, which is kept for documents.
  if (file.empty() || !OpenSystemEventLog(file.c_str(), "beanhost")) {
    why = "the event log " + (file.empty() ? "\"\"" : file) + " can't be opened: " +
          (errno == 0 ? "expected the name of a file" : std::strerror(errno)) +
          "; name a file that may be appended to with --event-log";
    return nullptr;
  }
  return std::unique_ptr<EventLogFile>(new EventLogFile);
}

EventLogFile::~EventLogFile() { CloseSystemEventLog(); }

}  // namespace quenlatrix::host

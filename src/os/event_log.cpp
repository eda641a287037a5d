#include "os/event_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <utility>

#include "os/file_lock.h"
#include "os/mutex.h"
#include "os/thread.h"
#include "text/zu_text_local.h"

namespace {

struct EventType {
  TSysEventType type;
  int priority;
  const char* text;
};

constexpr std::array<EventType, 4> kTypes = {{
    {EVT_INFO, LOG_INFO, "INFO"},
    {EVT_WARNING, LOG_WARNING, "WARNING"},
    {EVT_ERROR, LOG_ERR, "ERROR"},
    {EVT_FATAL, LOG_INFO, "FATAL"},
}};
constexpr EventType kUnknownType = {EVT_INFO, LOG_INFO, "UNKNOWN"};

struct EventCategory {
  TSysEventCategory category;
  const char* text;
};

constexpr std::array<EventCategory, 9> kCategories = {{
    {CAT_START, "START"},
    {CAT_RUNTIME, "RUNTIME"},
    {CAT_VERSION, "VERSION"},
    {CAT_EXCEPTION, "EXCEPTION"},
    {CAT_INSTALL, "INSTALL"},
    {CAT_CONFIG, "CONFIG"},
    {CAT_DEBUG, "DEBUG"},
    {CAT_RESOURCE, "RESOURCE"},
    {CAT_STOP, "STOP"},
}};

// A formatted message and the prefixes, however wide their numbers.
constexpr unsigned long kLongestMessage = 10239;
constexpr unsigned long kLineRoom = kLongestMessage + 128;
using EventText = ZuTextLocal<kLineRoom>;

// Keeps the stream open and its descriptor valid for whoever uses it. EvtLogCS can't: it is taken
// after the file's lock, for which the descriptor is needed, and is destroyed by closing. It also
// lets one thread after the other lock the file, as that lock belongs to the process: one thread
// giving it up would take it from the others. Needs no destruction, so that threads which outlive
// the state below may still ask.
class CAPABILITY("mutex") Gate {
 public:
  void Lock() ACQUIRE() { mutex.lock(); }
  bool TryLock() TRY_ACQUIRE(true) { return mutex.try_lock(); }
  void UnLock() RELEASE() { mutex.unlock(); }

 private:
  std::mutex mutex;
};

class SCOPED_CAPABILITY GateLock {
 public:
  explicit GateLock(Gate& gate) ACQUIRE(gate) : gate(gate) { gate.Lock(); }
  ~GateLock() RELEASE() { gate.UnLock(); }
  GateLock(const GateLock&) = delete;
  GateLock& operator=(const GateLock&) = delete;

 private:
  Gate& gate;
};

// A failed call's reason is often what an event is about ("%m"), and its caller's to look at after.
class KeepErrno {
 public:
  KeepErrno() : saved(errno) {}
  ~KeepErrno() { errno = saved; }
  KeepErrno(const KeepErrno&) = delete;
  KeepErrno& operator=(const KeepErrno&) = delete;

 private:
  int saved;
};

// The state, in the order in which it is made.

Gate gate;

// Changed, and its stream used, only with the gate locked; whether there is one may be asked
// without that.
std::atomic<FILE*> EvtLogFile = nullptr;

// Holds a whole line, so that the stream hands each to the system in one write.
std::array<char, kLineRoom> streamBuffer GUARDED_BY(gate);

struct Free {
  void operator()(char* text) const { free(text); }
};

// The name that the system log was opened with: the C library keeps no copy.
Gate identityGate;
std::unique_ptr<char, Free> identity GUARDED_BY(identityGate);

// One thread after the other looks whether the time zone was changed.
Gate timeZoneGate;

StaticMutex EvtLogCS(Mutex::Private);

// Empty while the log goes to standard output.
ZuText EvtLogFileName GUARDED_BY(EvtLogCS);

// Whoever may read the file can lock it, and so hold up all who report: not everybody may.
constexpr mode_t kLogFileMode = S_IRUSR | S_IWUSR | S_IRGRP;

FILE* OpenStream(const char* path) REQUIRES(gate) {
  const int fd = open(path, O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, kLogFileMode);
  FILE* const stream = fd == -1 ? nullptr : fdopen(fd, "a+");
  if (stream != nullptr) {
    setvbuf(stream, streamBuffer.data(), _IOFBF, streamBuffer.size());
  } else if (fd != -1) {
    close(fd);
  }
  return stream;
}

bool CloseStream() REQUIRES(gate, EvtLogCS) {
  const bool ofFile = *EvtLogFileName.GetTextEx() != '\0';
  if (!ofFile || fclose(EvtLogFile) == 0) {
    EvtLogFile = nullptr;
    return true;
  }
  // The stream is gone even so; the log stays open on a new one.
  EvtLogFile = OpenStream(EvtLogFileName.GetTextEx());
  return false;
}

// Leaves neither a stream nor a name behind when the library is unloaded with its log open. A
// thread that is writing, and may be waiting for another process, doesn't hold up the end of its
// own.
struct CloseAtUnload {
  CloseAtUnload() = default;
  CloseAtUnload(const CloseAtUnload&) = delete;
  CloseAtUnload& operator=(const CloseAtUnload&) = delete;
  ~CloseAtUnload() {
    if (gate.TryLock()) {
      FILE* const stream = EvtLogFile.exchange(nullptr);
      if (stream != nullptr && stream != stdout) {
        fclose(stream);
      }
      EvtLogCS.DestroyMutex();
      gate.UnLock();
    }
    const GateLock turn(identityGate);
    if (identity != nullptr) {
      closelog();
    }
  }
} closeAtUnload;

const EventType& FindType(TSysEventType type) {
  for (const EventType& known : kTypes) {
    if (known.type == type) {
      return known;
    }
  }
  return kUnknownType;
}

// Fields that print as 0 if the time can't be told.
std::tm LocalTime() {
  // localtime_r alone need not notice that the time zone was changed.
  {
    const GateLock turn(timeZoneGate);
    tzset();
  }
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  if (localtime_r(&now, &local) == nullptr) {
    local = {};
    local.tm_year = -1900;
    local.tm_mon = -1;
  }
  return local;
}

void FormatPrefix(ZuText& line, TSysEventType type, TSysEventCategory category) {
  const KeepErrno keep;
  const auto number = [](int field) { return static_cast<unsigned int>(field); };
  const std::tm now = LocalTime();
  line.Format("[%5u] %04u-%02u-%02u %02u:%02u:%02u %-10.10s %-8.8s ", GetCurrentProcessID(),
              number(now.tm_year + 1900), number(now.tm_mon + 1), number(now.tm_mday),
              number(now.tm_hour), number(now.tm_min), number(now.tm_sec),
              GetSystemEventCategoryText(category), GetSystemEventTypeText(type));
}

// True also when the log was closed while the line was made.
bool WriteLine(const ZuText& line) {
  const GateLock turn(gate);
  FILE* const stream = EvtLogFile;
  if (stream == nullptr) {
    return true;
  }
  const FileLock fileLock(fileno(stream), true);
  const MutexLock lock(EvtLogCS);
  const bool taken = fwrite(line.GetTextEx(), line.GetUsableDataSize(), 1, stream) == 1;
  // What the buffer took is written only now.
  return fflush(stream) == 0 && taken;
}

[[gnu::format(printf, 3, 0)]] bool ReportToFile(TSysEventType type, TSysEventCategory category,
                                                const char* fmt, va_list args) {
  const KeepErrno keep;
  EventText line;
  FormatPrefix(line, type, category);
  line.VArgAppFormat(fmt, args);
  line += "\n";
  return WriteLine(line);
}

}  // namespace

bool OpenSystemEventLog(const char* path, const char* ident) {
  // Not after the gate, behind which a thread may be waiting for another process.
  if (EvtLogFile != nullptr) {
    return false;
  }
  const GateLock turn(gate);
  if (EvtLogFile != nullptr) {
    return false;
  }
  const MutexLock lock(EvtLogCS);
  if (ident != nullptr) {
    OpenSystemEventLogEx(ident);
  }
  const bool toFile = path != nullptr && *path != '\0';
  EvtLogFileName = toFile ? path : "";
  if (!toFile) {
    EvtLogFile = stdout;
  } else if (strcmp(EvtLogFileName.GetTextEx(), path) == 0) {
    EvtLogFile = OpenStream(path);
  }
  // Else memory has cut the path, which then names another file.
  return EvtLogFile != nullptr;
}

bool CloseSystemEventLog() {
  const GateLock turn(gate);
  if (EvtLogFile == nullptr) {
    return false;
  }
  bool closed = false;
  {
    const MutexLock lock(EvtLogCS);
    CloseSystemEventLogEx();
    closed = CloseStream();
  }
  EvtLogCS.Destroy();
  EvtLogCS.Release();
  return closed;
}

bool ReportSystemEvent(TSysEventType type, TSysEventCategory category, const char* fmt, ...) {
  va_list args;
  bool written = true;
  if (EvtLogFile != nullptr) {
    va_start(args, fmt);
    written = ReportToFile(type, category, fmt, args);
    va_end(args);
  }
  va_start(args, fmt);
  ReportSystemEventEx(type, category, fmt, args);
  va_end(args);
  return written;
}

bool ReportSystemEventEx(TSysEventType type, TSysEventCategory category, const char* fmt,
                         va_list args) {
  const KeepErrno keep;
  EventText message;
  message.Format("%-10.10s %-8.8s ", GetSystemEventCategoryText(category),
                 GetSystemEventTypeText(type));
  message.VArgAppFormat(fmt, args);
  syslog(LOG_DAEMON | FindType(type).priority, "%s", message.GetTextEx());
  return true;
}

bool ReportSystemEvent(TSysEventType /*type*/, TSysEventCategory /*category*/,
                       const ExOSException& /*exception*/) {
  return true;
}

bool OpenSystemEventLogEx(const char* ident) {
  const GateLock turn(identityGate);
  std::unique_ptr<char, Free> name(ident == nullptr ? nullptr : strdup(ident));
  openlog(name.get(), LOG_PID | LOG_NDELAY, LOG_DAEMON);
  setlogmask(LOG_UPTO(LOG_INFO));
  // Only now is the old name out of use.
  identity = std::move(name);
  return true;
}

void CloseSystemEventLogEx() {
  const GateLock turn(identityGate);
  closelog();
  identity.reset();
}

const char* GetSystemEventCategoryText(TSysEventCategory category) {
  for (const EventCategory& known : kCategories) {
    if (known.category == category) {
      return known.text;
    }
  }
  return "UNKNOWN";
}

const char* GetSystemEventTypeText(TSysEventType type) { return FindType(type).text; }

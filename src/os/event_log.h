#pragma once

#include <cstdarg>
#include <string>

// The process's event log. Every event goes to the system log; while the event log is open, it is
// also appended, as one line, to a file (or standard output) that other processes may share:
//
//   [ 4711] 2024-03-05 14:07:09 CONFIG     ERROR    message
//
// that is process, local time, category, severity and the message as it was given, cut at 10239
// characters. A message's own line feeds stay; its continuation lines then carry no prefix.
//
// Threads: any thread may call any function at any time. A process forked while another thread of
// its parent reports must not report itself (a program that it executes may).

// How severe an event is. The values are part of the interface; so are the texts.
enum TSysEventType : int {
  EVT_INFO = 0,
  EVT_WARNING = 1,
  EVT_ERROR = 2,
  // Stands out by its text alone: in the system log it has the priority of an EVT_INFO.
  EVT_FATAL = 3,
};

// What an event is about. The values are part of the interface; so are the texts.
enum TSysEventCategory : int {
  CAT_START = 0,
  CAT_RUNTIME = 1,
  CAT_VERSION = 2,
  CAT_EXCEPTION = 4,
  CAT_INSTALL = 5,
  CAT_CONFIG = 6,
  CAT_DEBUG = 7,
  CAT_RESOURCE = 8,
  CAT_STOP = 9,
};

// What the operating system said about a failed call.
struct ExOSException {
  int errorNumber = 0;
  std::string text;
};

// Opens the event log on the file `path`, which is made when it is missing, or on standard output
// when `path` is null or empty. With `ident`, which is copied, also connects to the system log
// under that name. False when the file can't be opened, and when the log is open already, which
// then changes nothing; it doesn't wait for a thread that reports. The file is made readable for
// its owner and group alone: whoever may read it can lock it, and events wait for that.
bool OpenSystemEventLog(const char* path, const char* ident);

// Closes the event log and the connection to the system log; standard output itself stays open.
// False when the log isn't open, and when closing the file fails: the log then stays open. Waits
// for an event that is being written; those that come after go to the system log alone, until the
// log is opened again.
bool CloseSystemEventLog();

// Reports an event; `fmt` is a printf format, null or empty gives an empty message, and "%m" stands
// for errno, which stays as it is. True unless the event log is open and the line could not be
// written whole; the system log gets the event in any case. Waits while another process has the
// file locked; where a file system knows no locks the line is written all the same.
[[gnu::format(printf, 3, 4)]] bool ReportSystemEvent(TSysEventType type, TSysEventCategory category,
                                                     const char* fmt, ...);

// Reports an event to the system log alone. Always true.
[[gnu::format(printf, 3, 0)]] bool ReportSystemEventEx(TSysEventType type,
                                                       TSysEventCategory category, const char* fmt,
                                                       va_list args);

// Accepts the record and reports nothing. Always true.
bool ReportSystemEvent(TSysEventType type, TSysEventCategory category,
                       const ExOSException& exception);

// Connects to the system log under the name `ident`, which is copied; null stands for the program's
// name. Every priority but debug passes from then on. Always true.
bool OpenSystemEventLogEx(const char* ident);

// Ends the connection to the system log. The next event makes a new one under the program's name.
void CloseSystemEventLogEx();

// The texts that lines carry; "UNKNOWN" for a value that has none. Never null, never to be freed.
const char* GetSystemEventCategoryText(TSysEventCategory category);
const char* GetSystemEventTypeText(TSysEventType type);

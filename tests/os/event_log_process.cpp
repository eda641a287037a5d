// A process of its own for the tests of the event log. What it does for an argument:
//   PATH THREADS COUNT   so many threads report so many events each, to the log at PATH
//   (none)               reports events and shows what arrives at "/dev/log"
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "os/event_log.h"

namespace {

bool systemLogIsReal = false;

int ReportLines(const char* path, int threads, int count) {
  if (!OpenSystemEventLog(path, nullptr)) {
    return 1;
  }
  // Longer than a pipe or a default buffer takes at once.
  const std::string longText(10000, 'x');
  std::atomic<int> failures = 0;
  std::vector<std::thread> reporters;
  for (int thread = 0; thread < threads; thread++) {
    reporters.emplace_back([&, thread] {
      for (int i = 0; i < count; i++) {
        const char* const text = i % 10 == 0 ? longText.c_str() : "";
        failures += !ReportSystemEvent(EVT_INFO, CAT_DEBUG, "%d %d %s.", thread, i, text);
      }
    });
  }
  for (std::thread& reporter : reporters) {
    reporter.join();
  }
  return failures == 0 && CloseSystemEventLog() ? 0 : 1;
}

int ShowSystemLog() {
  systemLogIsReal = true;
  const int log = socket(AF_UNIX, SOCK_DGRAM, 0);
  const sockaddr_un address = {AF_UNIX, "/dev/log"};
  if (bind(log, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    perror("/dev/log");
    return 1;
  }
  char identity[] = "under this name";
  OpenSystemEventLogEx(identity);
  std::memset(identity, '?', std::strlen(identity));
  for (const int type : {0, 1, 2, 3, 77}) {
    ReportSystemEvent(static_cast<TSysEventType>(type), CAT_CONFIG, "100%% of %s", "%s%n");
    char message[1024] = "";
    if (recv(log, message, sizeof message - 1, MSG_DONTWAIT) < 0) {
      perror("nothing came");
    }
    std::printf("%s\n", message);
  }
  return 0;
}

}  // namespace

// Keeps what these processes report out of the machine's own log.
extern "C" void syslog(int priority, const char* format, ...) {
  if (systemLogIsReal) {
    va_list args;
    va_start(args, format);
    vsyslog(priority, format, args);
    va_end(args);
  }
}

int main(int argc, char** argv) {
  return argc == 4 ? ReportLines(argv[1], std::atoi(argv[2]), std::atoi(argv[3])) : ShowSystemLog();
}

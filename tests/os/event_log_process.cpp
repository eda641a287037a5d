// A process of its own for the tests of the event log: reports events and shows what arrives at
// "/dev/log".
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "os/event_log.h"

int main() {
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

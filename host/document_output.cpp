#include "host/document_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace quenlatrix::host {

namespace {

// A standard descriptor that is closed would be that of the next file that somebody opens.
void OccupyStandardDescriptors() {
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(standard, F_GETFD) == -1) {
      // The lowest free one, so this one: those below are taken by now.
      open("/dev/null", O_RDWR);
    }
  }
}

}  // namespace

DocumentOutput::DocumentOutput() {
  std::fflush(stdout);
  descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  OccupyStandardDescriptors();
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

DocumentOutput::~DocumentOutput() {
  if (descriptor >= 0) {
    close(descriptor);
  }
}

bool DocumentOutput::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0) {
      if (errno == EINTR) {
        continue;
      }
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool DocumentOutput::IsTerminal() const { return isatty(descriptor) == 1; }

bool DocumentOutput::MayBeSeen() const {
  struct stat state = {};
  return IsTerminal() || fstat(descriptor, &state) != 0 || S_ISFIFO(state.st_mode) ||
         S_ISSOCK(state.st_mode);
}

}  // namespace quenlatrix::host

#include "host/document_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace quenlatrix::host {

DocumentOutput::DocumentOutput() {
  std::fflush(stdout);
  descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
    // Without a standard error there is nowhere to show it; descriptor 1 must still not be ours,
    // nor free for the next file that somebody opens.
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0 && nowhere != STDOUT_FILENO) {
      dup2(nowhere, STDOUT_FILENO);
      close(nowhere);
    }
  }
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

}  // namespace quenlatrix::host

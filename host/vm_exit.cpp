#include "host/vm_exit.h"

#include <termios.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "host/events.h"
#include "host/host_error.h"

namespace quenlatrix::host {

namespace {

termios terminalAtStart = {};
bool hasTerminal = false;

// In the background a terminal that is set stops the process.
void RestoreTerminal() {
  if (hasTerminal && tcgetpgrp(STDIN_FILENO) == getpgrp()) {
    tcsetattr(STDIN_FILENO, TCSANOW, &terminalAtStart);
  }
}

// No stream: the thread that holds its lock may be one that the VM has stopped.
void WriteError(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void RememberTerminal() { hasTerminal = tcgetattr(STDIN_FILENO, &terminalAtStart) == 0; }

// Documents are unbuffered, so nothing is left to be written. The destructors of what other threads
// still use are not run.
void EndForBean(int status) {
  RestoreTerminal();
  const std::string what = "a bean ended the Java VM (System.exit or Runtime.halt with status " +
                           std::to_string(status) + ")";
  const std::string wipe = isatty(STDERR_FILENO) == 1 ? "\r\033[K" : "";
  WriteError(wipe + "beanhost: " + what +
             "; what was running has no result, and nothing after it is run. Change the bean to "
             "return or to throw instead.\n");
  constexpr int kStatus = static_cast<int>(ExitStatus::Failed);
  ReportEvent(EVT_ERROR, CAT_STOP,
              "beanhost stops with exit status " + std::to_string(kStatus) + ": " + what);
  _exit(kStatus);
}

}  // namespace quenlatrix::host

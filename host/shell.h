#pragma once

#include <string>

#include "host/host_error.h"

namespace quenlatrix::host {

class Host;
class Reporter;

// Reads statements from standard input until it ends or one of them is "quit" or "exit", and runs
// them; a failure ends nothing. At a terminal lines are edited, with history and completion of
// statements, held names, methods and the bean classes below `classPath` (entries with ":" between
// them), and Ctrl-C stops waiting for a statement. Without one it does what `run` does; the status
// is then that of the first failure. When statements that nobody waits for any more still go on at
// the end, this doesn't return but ends the process.
ExitStatus RunShell(Host& host, const std::string& classPath, Reporter& reporter);

}  // namespace quenlatrix::host

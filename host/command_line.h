#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/commands.h"

namespace quenlatrix::host {

// What the words behind the program's name ask for.
struct CommandLine {
  // Null when there is nothing to run: help, the version or a message has been written, and
  // `status` is what to end with.
  const Command* command = nullptr;
  CommandOptions options;
  std::vector<std::string> words;  // behind the command
  ExitStatus status = ExitStatus::Done;
};

// Reads the command line. Writes help and version to standard output, messages about wrong usage to
// standard error; starts nothing.
CommandLine ParseCommandLine(int argc, const char* const* argv);

}  // namespace quenlatrix::host

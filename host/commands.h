#pragma once

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "host/host_error.h"

namespace quenlatrix::host {

class DocumentOutput;

// The options of the command line.
struct CommandOptions {
  std::string classPath;
  std::vector<std::string> javaOptions;
  std::string pluginFile;
  std::vector<std::string> allow;
  std::vector<std::string> deny;
  std::optional<std::string> eventLog;
  bool json = false;
  bool keepGoing = false;
  int skip = 0;
};

// Stands for a command's most words when ARGs are among them.
inline constexpr std::size_t kAnyNumberOfWords = std::numeric_limits<std::size_t>::max();

// A command of the program. Its words are counted and handed over as they are.
struct Command {
  const char* name;
  const char* words;  // as help shows them
  const char* help;
  std::size_t leastWords;
  std::size_t mostWords;
  ExitStatus (*run)(const CommandOptions& options, const std::vector<std::string>& words,
                    DocumentOutput& output);
};

// All commands, in the order in which help lists them.
const std::vector<Command>& Commands();

}  // namespace quenlatrix::host

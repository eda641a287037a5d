#include "host/command_line.h"
#include "host/document_output.h"

int main(int argc, char** argv) {
  using namespace quenlatrix::host;
  const CommandLine line = ParseCommandLine(argc, argv);
  if (line.command == nullptr) return static_cast<int>(line.status);
  DocumentOutput output;
  return static_cast<int>(line.command->run(line.options, line.words, output));
}

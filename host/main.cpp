#include <iostream>

#include "host/command_line.h"
#include "host/document_output.h"
#include "host/events.h"
#include "host/installation_root.h"
#include "host/java_vm.h"

namespace quenlatrix::host {

namespace {

int Run(int argc, char** argv) {
  const CommandLine line = ParseCommandLine(argc, argv);
  if (line.command == nullptr) return static_cast<int>(line.status);
  DocumentOutput output;
  ChooseInstallationRoot();
  std::string why;
  std::unique_ptr<EventLogFile> log;
  if (line.options.eventLog && !(log = EventLogFile::Open(*line.options.eventLog, why))) {
    std::cerr << "beanhost: " << why << std::endl;
    return static_cast<int>(ExitStatus::Usage);
  }
  ReportEvent(EVT_INFO, CAT_START, std::string("beanhost starts: ") + line.command->name);
  ExitStatus status = line.command->run(line.options, line.words, output);
  ReportEvent(EVT_INFO, CAT_STOP,
              "beanhost stops with exit status " + std::to_string(static_cast<int>(status)));
  if (HasLostEvents()) {
    std::cerr << "beanhost: the event log " << *line.options.eventLog
              << " lacks events: expected a file with room for them, found one that can't be "
                 "written; make room or name another one with --event-log"
              << std::endl;
    if (status == ExitStatus::Done) status = ExitStatus::Failed;
  }
  return static_cast<int>(status);
}

}  // namespace

}  // namespace quenlatrix::host

int main(int argc, char** argv) {
  const int status = quenlatrix::host::Run(argc, argv);
  quenlatrix::host::JavaVm::EndProcess(status);
  return status;
}

#include "host/reporter.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "host/bean_script.h"
#include "host/document_output.h"
#include "host/session.h"

namespace quenlatrix::host {

Reporter::Reporter(bool asJson, DocumentOutput& output)
    : asJson(asJson),
      output(output),
      style(TextStyle::For(!asJson && output.IsTerminal())),
      errorStyle(TextStyle::For(isatty(STDERR_FILENO) == 1)) {}

ExitStatus Reporter::Write(const Report& report, const std::string& origin) {
  Put(asJson ? ToLine(report.document) : report.text);
  if (report.status != ExitStatus::Done) {
    WriteError((origin.empty() ? "" : origin + ": ") + report.error);
  }
  return isBroken ? ExitStatus::Failed : report.status;
}

void Reporter::WriteLine(std::string_view line) {
  if (asJson) return;
  Put(IsStatement(line) ? style.Faint("> " + std::string(line)) + "\n" : std::string(line) + "\n");
}

void Reporter::WriteNote(const std::string& text) {
  if (!asJson) return Put(text);
  progress.Hide();
  std::cerr << text << std::flush;
}

void Reporter::WriteError(const std::string& text) {
  progress.Hide();
  std::cerr << errorStyle.Error("beanhost:") << " " << text << std::endl;
}

void Reporter::Put(const std::string& text) {
  if (isBroken || text.empty()) return;
  if (output.MayBeSeen()) progress.Hide();
  if (output.Write(text)) return;
  isBroken = true;
  WriteError(std::string("standard output takes no more: ") + std::strerror(errno));
}

}  // namespace quenlatrix::host

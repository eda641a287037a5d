#pragma once

#include <string>
#include <string_view>

#include "host/host_error.h"
#include "host/progress_line.h"
#include "host/terminal.h"

namespace quenlatrix::host {

class DocumentOutput;
struct Report;

// Writes reports the way that the options ask for: documents or text to standard output, errors to
// standard error. One thread at a time.
class Reporter {
 public:
  Reporter(bool asJson, DocumentOutput& output);

  // The status to end with: that of the report, or Failed when it could not be written. `origin`
  // stands in front of an error, such as "tour.bean:12".
  ExitStatus Write(const Report& report, const std::string& origin = {});
  // A line of a script, shown before what it came to.
  void WriteLine(std::string_view line);
  // What is for the person alone: beside documents it goes to standard error.
  void WriteNote(const std::string& text);
  void WriteError(const std::string& text);
  // Wiped away for whatever is written here.
  ProgressLine& GetProgress() { return progress; }

  bool IsBroken() const { return isBroken; }
  // For what goes to standard output.
  const TextStyle& GetStyle() const { return style; }

 private:
  void Put(const std::string& text);

  bool asJson;
  DocumentOutput& output;
  TextStyle style;
  TextStyle errorStyle;
  ProgressLine progress;
  bool isBroken = false;
};

}  // namespace quenlatrix::host

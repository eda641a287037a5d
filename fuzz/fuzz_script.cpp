#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "fuzz/jvm_host.h"
#include "fuzz/random_script.h"
#include "fuzz/require.h"
#include "host/bean_script.h"
#include "host/held_values.h"
#include "host/session.h"
#include "host/value_json.h"

// Scripts of statements, whole and broken, run as "beanhost run" runs them. Each statement is done
// or fails with a text, what is wrongly written is shown with its place, the documents can be read,
// and a script lets go of all that it held.
namespace {

using quenlatrix::host::ExitStatus;
using quenlatrix::host::Report;

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void CheckReport(std::string_view line, const Report& report) {
  const bool isDone = report.status == ExitStatus::Done;
  Require(isDone || report.status == ExitStatus::Failed || report.status == ExitStatus::Usage);
  Require(report.error.empty() == isDone && report.error.find('\n') != 0);
  Require(report.text.empty() || report.text.back() == '\n');
  const std::string document = quenlatrix::host::ToLine(report.document);
  Require(document.find('\n') == document.size() - 1);
  Require(nlohmann::json::parse(document).contains("error") != isDone);
  if (report.status == ExitStatus::Usage) {
    Require(report.error.find('^') != std::string::npos);
    // A longer one is cut around the place.
    Require(line.size() > 40 || !IsPlain(line) || report.error.find(line) != std::string::npos);
  }
}

void Run(const std::string& text, bool keepGoing) {
  quenlatrix::host::HeldValues names;
  quenlatrix::host::Session session(GetHost(), names);
  ExitStatus first = ExitStatus::Done;
  std::istringstream script(text);
  const auto sink = [&](std::string_view line, const Report* report) {
    Require(keepGoing || first == ExitStatus::Done);
    if (report == nullptr) return;
    CheckReport(line, *report);
    if (first == ExitStatus::Done) first = report->status;
  };
  Require(RunScript(script, keepGoing, session, sink) == first);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool keepGoing = data.ConsumeIntegralInRange(0, 7) > 0;
  // A seed's text stands as it is.
  const std::string text =
      data.ConsumeBool() ? data.ConsumeRemainingBytesAsString() : MakeScript(data);
  RequireNothingLeft([&] { Run(text, keepGoing); });
  return 0;
}

#include "host/shell.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <optional>

#include "host/bean_script.h"
#include "host/class_names.h"
#include "host/host.h"
#include "host/line_editor.h"
#include "host/line_history.h"
#include "host/nearest_names.h"
#include "host/overload_choice.h"
#include "host/reporter.h"
#include "host/statement_completion.h"
#include "host/statement_runner.h"

namespace quenlatrix::host {

namespace {

constexpr const char* kPrompt = "bean> ";

constexpr const char* kOwnHelp =
    "  help                                  shows this\n"
    "  quit, exit, Ctrl-D                    leaves the shell\n";

constexpr const char* kKeysHelp =
    "TAB completes statements, names, classes and methods; Ctrl-R looks back for a line; Ctrl-C\n"
    "throws a line away, or stops waiting for a call.\n";

constexpr const char* kGreeting = "Statements are typed at the prompt; \"help\" lists them.\n";

enum class OwnStatement { None, Help, Quit };

OwnStatement OwnStatementOf(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  const std::size_t last = line.find_last_not_of(" \t\r");
  if (first == std::string_view::npos) return OwnStatement::None;
  const std::string_view word = line.substr(first, last - first + 1);
  if (word == "help") return OwnStatement::Help;
  return word == "quit" || word == "exit" ? OwnStatement::Quit : OwnStatement::None;
}

std::string HelpText() {
  return "Statements:\n" + StatementsHelp() + kOwnHelp + "\n" + ArgumentsHelp();
}

// At a terminal.
class TypedShell {
 public:
  TypedShell(Host& host, const std::string& classPath, Reporter& reporter)
      : reporter(reporter),
        runner(host, names, reporter.GetStyle(), reporter.GetProgress()),
        classes(host.GetVm(), classPath),
        editor(LineEditor::Open(kPrompt, LineHistory::DefaultFile(),
                                [this](std::string_view line) { return Complete(line); })) {}

  bool IsPossible() const { return editor != nullptr; }

  ExitStatus Run() {
    // For the person, even when standard output goes elsewhere.
    std::cerr << kGreeting << std::flush;
    for (std::string line; !reporter.IsBroken();) {
      TellWhatEnded();
      const LineEditor::Outcome outcome = editor->Read(line);
      if (outcome == LineEditor::Outcome::Interrupted) continue;
      const OwnStatement own = OwnStatementOf(line);
      if (outcome == LineEditor::Outcome::EndOfFile || own == OwnStatement::Quit) break;
      if (own == OwnStatement::Help) {
        std::cerr << HelpText() << kKeysHelp << std::flush;
      } else if (IsStatement(line)) {
        RunOne(line);
      }
    }
    const ExitStatus status = reporter.IsBroken() ? ExitStatus::Failed : ExitStatus::Done;
    LeaveWhatGoesOn(status);
    return status;
  }

 private:
  Completion Complete(std::string_view line);
  std::vector<std::string> MethodsOf(const std::string& heldName);
  void RunOne(const std::string& line);
  void TellWhatEnded();
  void LeaveWhatGoesOn(ExitStatus status);

  Reporter& reporter;
  HeldValues names;
  InterruptWatch interrupts;
  StatementRunner runner;
  ClassNames classes;
  std::unique_ptr<LineEditor> editor;
};

Completion TypedShell::Complete(std::string_view line) {
  std::vector<std::string> forms = StatementForms();
  forms.insert(forms.end(), {"help", "quit", "exit"});
  CompletionSource source;
  source.heldNames = [this] { return names.GetNames(); };
  source.classNames = [this] { return classes.Get(); };
  source.methodsOf = [this](const std::string& name) { return MethodsOf(name); };
  return CompleteStatement(line, forms, source);
}

std::vector<std::string> TypedShell::MethodsOf(const std::string& heldName) {
  HeldValues::Loan loan(names);
  Held* held = loan.Find(heldName);
  if (held == nullptr || !held->object) return {};
  std::vector<std::string> methods;
  if (const std::vector<MethodDescription>* described = held->object->Methods()) {
    for (const MethodDescription& method : *described) methods.push_back(ToSourceForm(method));
  }
  return methods;
}

void TypedShell::RunOne(const std::string& line) {
  if (const std::optional<Report> report = runner.Run(line, interrupts)) {
    reporter.Write(*report);
    return;
  }
  // Behind the terminal's own ^C.
  std::cerr << "\n";
  const std::vector<std::string> used = runner.GetNamesOfLastGivenUp();
  std::string text =
      "no longer waiting; the statement goes on by itself, and its result is dropped";
  if (!used.empty()) text += ". Until it ends, what it uses stays held: " + ListOf(used);
  reporter.WriteError(text);
}

void TypedShell::TellWhatEnded() {
  for (const std::string& statement : runner.TakeEnded()) {
    reporter.WriteError("this has ended now: " + statement);
  }
}

// What still runs in the machine can't be ended from here, and uses the host until it does; so the
// process ends under it.
void TypedShell::LeaveWhatGoesOn(ExitStatus status) {
  const std::size_t goingOn = runner.CountGoingOn();
  if (goingOn == 0 && classes.IsComplete()) return;
  if (goingOn > 0) {
    reporter.WriteError("statements that still go on are cut off: " + std::to_string(goingOn));
  }
  editor.reset();
  std::cerr.flush();
  _exit(static_cast<int>(status));
}

// From a file or a pipe.
ExitStatus RunLines(Host& host, Reporter& reporter) {
  HeldValues names;
  Session session(host, names, reporter.GetStyle());
  ExitStatus status = ExitStatus::Done;
  std::size_t number = 0;
  for (std::string line; ReadLine(std::cin, number == 0, line);) {
    ++number;
    const OwnStatement own = OwnStatementOf(line);
    if (own == OwnStatement::Quit) break;
    reporter.WriteLine(line);
    if (own == OwnStatement::Help) {
      reporter.WriteNote(HelpText());
    } else if (IsStatement(line)) {
      reporter.GetProgress().Begin(line, session.GetElements());
      const Report report = RunStatement(line, session);
      reporter.GetProgress().End();
      const ExitStatus ended = reporter.Write(report, "line " + std::to_string(number));
      if (status == ExitStatus::Done) status = ended;
    }
    if (reporter.IsBroken()) break;
  }
  return status == ExitStatus::Done && reporter.IsBroken() ? ExitStatus::Failed : status;
}

}  // namespace

ExitStatus RunShell(Host& host, const std::string& classPath, Reporter& reporter) {
  if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) {
    TypedShell shell(host, classPath, reporter);
    if (shell.IsPossible()) return shell.Run();
  }
  return RunLines(host, reporter);
}

}  // namespace quenlatrix::host

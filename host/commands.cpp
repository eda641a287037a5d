#include "host/commands.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ext/stdio_filebuf.h>
#include <fstream>
#include <istream>
#include <memory>

#include "host/bean_discovery.h"
#include "host/bean_script.h"
#include "host/document_output.h"
#include "host/handlers_listing.h"
#include "host/host.h"
#include "host/reporter.h"
#include "host/shell.h"
#include "host/vm_exit.h"

namespace quenlatrix::host {

namespace {

// Null when there is nothing to run on; what was looked for has been reported then.
std::unique_ptr<Host> StartHost(const CommandOptions& options, Reporter& reporter) {
  Host::Options hostOptions;
  hostOptions.pluginFile = options.pluginFile;
  hostOptions.classPath = options.classPath;
  hostOptions.javaOptions = options.javaOptions;
  hostOptions.allow = options.allow;
  hostOptions.deny = options.deny;
  hostOptions.onVmExit = EndForBean;
  RememberTerminal();
  std::string why;
  std::unique_ptr<Host> host = Host::Start(hostOptions, why);
  if (!host) {
    Report report;
    report.Fail(ExitStatus::NothingToRunOn, why);
    reporter.Write(report);
  }
  return host;
}

// A command's words as a statement, for messages.
class CommandStatement {
 public:
  CommandStatement(const char* command, const std::vector<std::string>& texts) : line(command) {
    for (const std::string& text : texts) {
      words.push_back({text, line.size() + 1});
      line += " " + text;
    }
  }

  const std::string& Line() const { return line; }
  const Word& operator[](std::size_t which) const { return words[which]; }
  std::size_t GetCount() const { return words.size(); }

 private:
  std::string line;
  std::vector<Word> words;
};

// Runs one operation of a session on a host of its own.
template <typename Operation>
ExitStatus RunOnHost(const CommandOptions& options, DocumentOutput& output,
                     const CommandStatement& statement, Operation operation) {
  Reporter reporter(options.json, output);
  const std::unique_ptr<Host> host = StartHost(options, reporter);
  if (!host) return ExitStatus::NothingToRunOn;
  HeldValues names;
  Session session(*host, names, reporter.GetStyle());
  session.SetStatement(statement.Line());
  reporter.GetProgress().Begin(statement.Line(), session.GetElements());
  return reporter.Write(operation(session));
}

ExitStatus RunHandlers(const CommandOptions& options, const std::vector<std::string>& /*words*/,
                       DocumentOutput& output) {
  return Reporter(options.json, output).Write(ListHandlers(options.pluginFile));
}

ExitStatus RunDescribe(const CommandOptions& options, const std::vector<std::string>& words,
                       DocumentOutput& output) {
  const CommandStatement statement("describe", words);
  return RunOnHost(options, output, statement,
                   [&](Session& session) { return session.Describe(statement[0]); });
}

ExitStatus RunCall(const CommandOptions& options, const std::vector<std::string>& words,
                   DocumentOutput& output) {
  const CommandStatement statement("call", words);
  CallRequest request;
  try {
    request.method = ParseMethodPattern(words[1], statement[1].at);
    for (std::size_t i = 2; i < statement.GetCount(); ++i) {
      request.arguments.push_back(ParseArgument(words[i], statement[i].at));
    }
  } catch (const HostError& error) {
    Report report;
    report.Fail(error, statement.Line());
    return Reporter(options.json, output).Write(report);
  }
  return RunOnHost(options, output, statement,
                   [&](Session& session) { return session.CallClass(statement[0], request); });
}

ExitStatus RunWalk(const CommandOptions& options, const std::vector<std::string>& words,
                   DocumentOutput& output) {
  const CommandStatement statement("walk", words);
  return RunOnHost(options, output, statement,
                   [&](Session& session) { return session.WalkClass(statement[0], options.skip); });
}

ExitStatus RunBeans(const CommandOptions& options, const std::vector<std::string>& words,
                    DocumentOutput& output) {
  Reporter reporter(options.json, output);
  const std::unique_ptr<Host> host = StartHost(options, reporter);
  if (!host) return ExitStatus::NothingToRunOn;
  reporter.GetProgress().Begin("looking for beans in " + words[0]);
  const Discovery found = DiscoverBeans(host->GetVm(), words[0]);
  Report report;
  report.document["path"] = words[0];
  report.document["beans"] = found.names;
  for (const std::string& name : found.names) report.text += name + "\n";
  if (!found.isReadable) {
    report.Fail(ExitStatus::Failed,
                words[0] + " can't be read: expected a jar or a directory of classes");
  } else if (found.names.empty()) {
    reporter.WriteError("no bean found in " + words[0]);
  }
  return reporter.Write(report);
}

ExitStatus RunScriptFile(const CommandOptions& options, const std::vector<std::string>& words,
                         DocumentOutput& output) {
  Reporter reporter(options.json, output);
  std::ifstream file;
  if (words[0] != "-") {
    file.open(words[0]);
    // A directory opens but can't be read.
    if (!file || (file.peek() == std::ifstream::traits_type::eof() && file.bad())) {
      Report report;
      report.Fail(ExitStatus::Usage, "the script " + words[0] +
                                         " can't be read: " + std::strerror(errno) +
                                         "; \"-\" stands for standard input");
      return reporter.Write(report);
    }
  }
  const std::unique_ptr<Host> host = StartHost(options, reporter);
  if (!host) return ExitStatus::NothingToRunOn;
  HeldValues names;
  Session session(*host, names, reporter.GetStyle());
  // What standard input has next may take its time.
  const bool mayWait = words[0] == "-";
  const std::string name = mayWait ? "line " : words[0] + ":";
  std::size_t number = 0;
  reporter.GetProgress().Begin(mayWait ? "" : words[0]);
  const auto sink = [&](std::string_view line, const Report* report) {
    if (report == nullptr) {
      reporter.WriteLine(line);
      const std::string origin = name + std::to_string(++number);
      if (!IsStatement(line)) return;
      reporter.GetProgress().Continue(origin + ": " + std::string(line), session.GetElements());
    } else {
      reporter.Write(*report, name + std::to_string(number));
      if (mayWait) reporter.GetProgress().Continue({});
    }
  };
  // Not std::cin, which takes an error for the end.
  __gnu_cxx::stdio_filebuf<char> standardInput(dup(STDIN_FILENO), std::ios::in);
  std::istream script(mayWait ? static_cast<std::streambuf*>(&standardInput) : file.rdbuf());
  ExitStatus status = RunScript(script, options.keepGoing, session, sink);
  if (script.bad()) {
    Report report;
    report.Fail(ExitStatus::Usage,
                (mayWait ? "standard input" : "the script " + words[0]) +
                    " can't be read beyond line " + std::to_string(number) +
                    ": expected text, but reading failed, or the next line takes more memory than "
                    "there is");
    const ExitStatus written = reporter.Write(report);
    if (status == ExitStatus::Done) status = written;
  }
  return status == ExitStatus::Done && reporter.IsBroken() ? ExitStatus::Failed : status;
}

ExitStatus RunShellCommand(const CommandOptions& options, const std::vector<std::string>& /*none*/,
                           DocumentOutput& output) {
  Reporter reporter(options.json, output);
  const std::unique_ptr<Host> host = StartHost(options, reporter);
  if (!host) return ExitStatus::NothingToRunOn;
  return RunShell(*host, options.classPath, reporter);
}

}  // namespace

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"handlers", "", "what handlers.ini offers, what of it is used, and why", 0, 0, RunHandlers},
      {"beans", "JAR|DIR", "the bean classes found there", 1, 1, RunBeans},
      {"describe", "CLASS", "its accessors and methods, as a table", 1, 1, RunDescribe},
      {"call", "CLASS METHOD [ARG]...", "makes a bean, calls one method, prints the result", 2,
       kAnyNumberOfWords, RunCall},
      {"walk", "CLASS [--skip N]", "a collection's elements", 1, 1, RunWalk},
      {"run", "FILE", "a script, one statement a line; \"-\" is standard input", 1, 1,
       RunScriptFile},
      {"shell", "", "the same statements, typed, with history and completion", 0, 0,
       RunShellCommand},
  };
  return commands;
}

}  // namespace quenlatrix::host

#include "host/command_line.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "host/bean_script.h"
#include "host/nearest_names.h"

namespace quenlatrix::host {

namespace {

constexpr const char* kStatuses =
    "CLASS names a Java class; TYPE://DATA in its place, an object of another handler.\n"
    "Exit status: 0 done; 1 the call failed or was refused; 2 wrong usage;\n"
    "3 nothing to run on (no Java VM, no plug-in, no handler).\n";

const Command* FindCommand(const std::string& name) {
  for (const Command& command : Commands()) {
    if (name == command.name) return &command;
  }
  return nullptr;
}

// Shows the words that a command takes, which the parser knows nothing of.
class UsageFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* app, std::string /*name*/) const override {
    const Command* command = FindCommand(app->get_name());
    if (command == nullptr) return "Usage: beanhost [OPTIONS] COMMAND [WORD]...\n";
    return std::string("Usage: beanhost [OPTIONS] ") + command->name +
           (command->mostWords == 0 ? "" : " ") + command->words + "\n";
  }
};

// Options stand before the command; behind it, too, where its words can't be ARGs.
void AddOptions(CLI::App& app, CommandOptions& options) {
  app.add_option("--class-path", options.classPath, "jars and directories, with \":\" between them")
      ->type_name("PATH")
      ->join(':');
  app.add_option("--java-option", options.javaOptions, "an option for the Java VM, such as -Xmx64m")
      ->type_name("OPT")
      ->allow_extra_args(false);
  app.add_option(
         "--plugin", options.pluginFile,
         "the one plug-in; else those of handlers.ini, else the one that came with beanhost")
      ->type_name("FILE");
  app.add_option(
         "--allow", options.allow,
         "makes a list of the classes that are allowed (* and ?); without any, every class is")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
  app.add_option("--deny", options.deny, "classes that are refused, also where --allow matches")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
  app.add_option("--event-log", options.eventLog, "a file that events are appended to")
      ->type_name("FILE");
  app.add_flag("--json", options.json, "one JSON document a command or statement");
  app.add_flag("--keep-going", options.keepGoing, "a script goes on after a statement that fails");
}

// Behind a command with ARGs nothing is an option, since each word may be an ARG; other commands
// have a fixed number of words, and options may stand between and behind them.
void AddCommands(CLI::App& app, CommandLine& line) {
  for (const Command& command : Commands()) {
    const std::string form = command.mostWords == 0 ? "" : std::string(command.words) + ": ";
    CLI::App* sub = app.add_subcommand(command.name, form + command.help);
    if (command.mostWords == kAnyNumberOfWords) {
      sub->prefix_command();
    } else {
      sub->fallthrough();
      sub->add_option("words", line.words)->group("");
    }
  }
  app.get_subcommand("walk")
      ->add_option("--skip", line.options.skip, "elements to pass over first")
      ->type_name("N")
      ->check([](const std::string& text) {
        int count = 0;
        return ReadCount(text, count) ? std::string() : "expected a count from 0 on, found " + text;
      });
  app.get_subcommand("call")->footer(ArgumentsHelp());
  app.get_subcommand("shell")->footer("Statements:\n" + StatementsHelp() +
                                      "  help, quit, exit\n\n" + ArgumentsHelp() +
                                      "Piped input is run as \"run --keep-going\" would.\n");
  app.get_subcommand("run")->footer("Statements:\n" + StatementsHelp() + "\n" + ArgumentsHelp());
}

ExitStatus Refuse(const std::string& what) {
  std::cerr << "beanhost: " << what << "; \"beanhost --help\" shows how it is used" << std::endl;
  return ExitStatus::Usage;
}

// What is wrong with the command and its words; empty when nothing is.
std::string WhyRefused(const CLI::App& app, const CommandLine& line) {
  const std::vector<std::string>& words = line.words;
  const bool takesArguments =
      line.command != nullptr && line.command->mostWords == kAnyNumberOfWords;
  for (const std::string& word : words) {
    if (word.size() > 1 && word[0] == '-') {
      const bool isKnown = takesArguments && app.get_option_no_throw(word) != nullptr;
      return "\"" + word + (isKnown ? "\" has to stand before \"call\"" : "\" is no option");
    }
    if (takesArguments) break;
  }
  if (line.command == nullptr) {
    return words.empty() ? "a command is missing" : "\"" + words[0] + "\" is no command";
  }
  const Command& command = *line.command;
  if (words.size() >= command.leastWords && words.size() <= command.mostWords) return {};
  return "\"" + std::string(command.name) + "\" takes " +
         (command.mostWords == 0 ? "no words" : command.words) + ", found " +
         (words.empty() ? "nothing" : ListOf(words));
}

}  // namespace

CommandLine ParseCommandLine(int argc, const char* const* argv) {
  CLI::App app("Runs Java beans through the Java Bean object handler.", "beanhost");
  CommandLine line;
  app.formatter(std::make_shared<UsageFormatter>());
  AddOptions(app, line.options);
  AddCommands(app, line);
  app.set_version_flag("--version", std::string("beanhost ") + BEANHOST_VERSION);
  app.footer(kStatuses);
  app.allow_extras();
  app.require_subcommand(0, 1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool isForHelp = error.get_exit_code() == 0;
    if (isForHelp) app.exit(error);
    line.status = isForHelp ? ExitStatus::Done : Refuse(error.what());
    return line;
  }
  const std::vector<std::string> rest = app.remaining(true);
  line.words.insert(line.words.end(), rest.begin(), rest.end());
  const std::vector<CLI::App*> found = app.get_subcommands();
  line.command = found.empty() ? nullptr : FindCommand(found.front()->get_name());
  const std::string why = WhyRefused(app, line);
  if (!why.empty()) {
    line.command = nullptr;
    line.status = Refuse(why);
  }
  return line;
}

}  // namespace quenlatrix::host

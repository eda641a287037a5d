#include "host/bean_script.h"

#include <algorithm>
#include <charconv>
#include <istream>

namespace quenlatrix::host {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// What is left of a statement's line while it is read from left to right.
class LineReader {
 public:
  explicit LineReader(std::string_view line) : rest(line) { SkipBlanks(); }

  bool IsAtEnd() const { return rest.empty(); }
  std::string_view Rest() const { return rest; }

  // Takes the next `length` characters and the blanks behind them.
  std::string_view Take(std::size_t length) {
    const std::string_view taken = rest.substr(0, length);
    rest.remove_prefix(taken.size());
    SkipBlanks();
    return taken;
  }
  std::string_view TakeWord() { return Take(rest.find_first_of(kBlanks)); }

 private:
  void SkipBlanks() { rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size())); }

  std::string_view rest;
};

struct Statement {
  const char* keyword;
  const char* form;
  const char* help;
  // Reads the rest of the line and does it.
  Report (*run)(LineReader& line, const Statement& statement, Session& session);
};

[[noreturn]] void RefuseForm(const Statement& statement, const std::string& what) {
  throw HostError(ExitStatus::Usage,
                  what + "; the statement is \"" + std::string(statement.form) + "\"");
}

std::string TakeName(LineReader& line, const Statement& statement) {
  std::string name(line.Take(line.Rest().find_first_of(" \t\r\n=")));
  if (!IsHeldName(name)) {
    RefuseForm(statement, name.empty() ? "a name is missing"
                                       : "\"" + name +
                                             "\" can't be a name (letters, digits, _, -, ., no "
                                             "digit first)");
  }
  return name;
}

std::string TakeLastWord(LineReader& line, const Statement& statement, const char* meaning) {
  std::string word(line.TakeWord());
  if (word.empty()) RefuseForm(statement, std::string(meaning) + " is missing");
  if (!line.IsAtEnd()) RefuseForm(statement, "\"" + std::string(line.Rest()) + "\" is too much");
  return word;
}

CallRequest TakeCall(LineReader& line, const Statement& statement) {
  if (line.IsAtEnd()) RefuseForm(statement, "METHOD is missing");
  CallRequest request;
  request.method = ParseMethodPattern(line.Take(MethodPatternLength(line.Rest())));
  for (const std::string_view argument : SplitArguments(line.Rest())) {
    request.arguments.push_back(ParseArgument(argument));
  }
  return request;
}

Report RunNew(LineReader& line, const Statement& statement, Session& session) {
  const std::string name = TakeName(line, statement);
  return session.New(name, TakeLastWord(line, statement, "CLASS"));
}

Report RunCall(LineReader& line, const Statement& statement, Session& session) {
  const std::string name = TakeName(line, statement);
  return session.CallHeld(name, TakeCall(line, statement));
}

Report RunLet(LineReader& line, const Statement& statement, Session& session) {
  const std::string name = TakeName(line, statement);
  if (!line.Rest().starts_with('=')) RefuseForm(statement, "\"=\" is missing");
  line.Take(1);
  if (line.TakeWord() != "call") RefuseForm(statement, "\"call\" is missing");
  const std::string bean = TakeName(line, statement);
  return session.Let(name, bean, TakeCall(line, statement));
}

Report RunDescribe(LineReader& line, const Statement& statement, Session& session) {
  return session.Describe(TakeLastWord(line, statement, "NAME or CLASS"));
}

Report RunWalk(LineReader& line, const Statement& statement, Session& session) {
  const std::string name = TakeName(line, statement);
  int skip = 0;
  if (!line.IsAtEnd()) {
    if (line.TakeWord() != "skip") RefuseForm(statement, "\"skip\" is missing");
    const std::string count = TakeLastWord(line, statement, "N");
    if (!ReadCount(count, skip)) RefuseForm(statement, "\"" + count + "\" is no count");
  }
  return session.Walk(name, skip);
}

Report RunSize(LineReader& line, const Statement& statement, Session& session) {
  return session.Size(TakeLastWord(line, statement, "NAME"));
}

Report RunRelease(LineReader& line, const Statement& statement, Session& session) {
  return session.Release(TakeLastWord(line, statement, "NAME"));
}

constexpr Statement kStatements[] = {
    {"new", "new NAME CLASS", "makes a bean", RunNew},
    {"call", "call NAME METHOD [ARG]...", "calls a method, shows the result", RunCall},
    {"let", "let NAME = call NAME METHOD [ARG]...", "calls a method, keeps the result", RunLet},
    {"describe", "describe NAME|CLASS", "shows what a bean offers", RunDescribe},
    {"walk", "walk NAME [skip N]", "shows the elements of a collection", RunWalk},
    {"size", "size NAME", "shows how many elements it has", RunSize},
    {"release", "release NAME", "lets go of what the name holds", RunRelease},
};

const Statement& FindStatement(std::string_view keyword) {
  std::string known;
  for (const Statement& statement : kStatements) {
    if (keyword == statement.keyword) return statement;
    known += (known.empty() ? "" : ", ") + std::string(statement.keyword);
  }
  throw HostError(
      ExitStatus::Usage,
      "\"" + std::string(keyword) + "\" is no statement; there are " + known + " and # comment");
}

}  // namespace

bool ReadCount(std::string_view text, int& count) {
  const char* end = text.data() + text.size();
  const std::from_chars_result read = std::from_chars(text.data(), end, count);
  return read.ec == std::errc() && read.ptr == end && count >= 0;
}

std::string StatementsHelp() {
  std::string text;
  for (const Statement& statement : kStatements) {
    std::string form = statement.form;
    form.resize(std::max<std::size_t>(form.size(), 38), ' ');
    text += "  " + form + statement.help + "\n";
  }
  return text + "  # comment\n";
}

bool IsStatement(std::string_view line) {
  const LineReader reader(line);
  return !reader.IsAtEnd() && reader.Rest().front() != '#';
}

Report RunStatement(std::string_view line, Session& session) {
  try {
    LineReader reader(line);
    const Statement& statement = FindStatement(reader.TakeWord());
    return statement.run(reader, statement, session);
  } catch (const HostError& error) {
    Report report;
    report.Fail(error.exitStatus, error.what());
    return report;
  }
}

ExitStatus RunScript(std::istream& script, bool keepGoing, Session& session,
                     const ReportSink& sink) {
  ExitStatus status = ExitStatus::Done;
  for (std::string line; std::getline(script, line);) {
    sink(line, nullptr);
    if (!IsStatement(line)) continue;
    const Report report = RunStatement(line, session);
    sink(line, &report);
    if (report.status == ExitStatus::Done) continue;
    if (status == ExitStatus::Done) status = report.status;
    if (!keepGoing) break;
  }
  return status;
}

}  // namespace quenlatrix::host

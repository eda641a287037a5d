#include "host/bean_script.h"

#include <algorithm>
#include <charconv>
#include <istream>

#include "host/nearest_names.h"

namespace quenlatrix::host {

namespace {

constexpr const char* kArguments =
    "An ARG is a JSON literal (5, 2.5, true, \"text\", [1,2], [[1,2],[3,4]]), a character 'c',\n"
    "@NAME (what a script holds under that name), or a bare word, which is text.\n"
    "METHOD may carry its parameter types to pick an overload: \"sum(int[], long)\".\n";

constexpr std::string_view kBlanks = " \t\r\n";

// What is left of a statement's line while it is read from left to right.
class LineReader {
 public:
  explicit LineReader(std::string_view line) : line(line) { SkipBlanks(); }

  bool IsAtEnd() const { return at == line.size(); }
  std::string_view Rest() const { return line.substr(at); }

  // Takes the next `length` characters and the blanks behind them.
  Word Take(std::size_t length) {
    Word taken{std::string(line.substr(at, length)), at};
    at += taken.text.size();
    SkipBlanks();
    return taken;
  }
  Word TakeWord() { return Take(Rest().find_first_of(kBlanks)); }

  // Of the next word, or of the one that is missing behind the line.
  Place NextPlace() const {
    if (IsAtEnd()) return {line.find_last_not_of(kBlanks) + 2, 1};
    return {at, std::min(Rest().find_first_of(kBlanks), Rest().size())};
  }
  // Of a part of the line.
  std::size_t OffsetOf(std::string_view part) const {
    return static_cast<std::size_t>(part.data() - line.data());
  }

 private:
  void SkipBlanks() { at = std::min(line.find_first_not_of(kBlanks, at), line.size()); }

  std::string_view line;
  std::size_t at = 0;
};

struct Statement {
  const char* keyword;
  const char* form;
  const char* help;
  // Reads the rest of the line and does it.
  Report (*run)(LineReader& line, const Statement& statement, Session& session);
};

[[noreturn]] void RefuseForm(const Statement& statement, const std::string& what, Place place) {
  throw HostError(ExitStatus::Usage,
                  what + "\nthe statement is \"" + std::string(statement.form) + "\"", place);
}

Word TakeName(LineReader& line, const Statement& statement) {
  const Place place = line.NextPlace();
  Word name = line.Take(line.Rest().find_first_of(" \t\r\n="));
  if (name.text.empty()) RefuseForm(statement, "a name is missing", place);
  if (!IsHeldName(name.text)) {
    RefuseForm(statement,
               "\"" + name.text + "\" can't be a name (letters, digits, _, -, ., no digit first)",
               name.GetPlace());
  }
  return name;
}

// Takes `expected` itself: "=", which may touch what follows, or a word.
void TakeSign(LineReader& line, const Statement& statement, std::string_view expected) {
  const Place place = line.NextPlace();
  const std::size_t length = expected == "=" ? 1 : line.Rest().find_first_of(kBlanks);
  if (line.Rest().substr(0, length) == expected) {
    line.Take(expected.size());
  } else {
    RefuseForm(statement, "\"" + std::string(expected) + "\" is missing", place);
  }
}

Word TakeLastWord(LineReader& line, const Statement& statement, const char* meaning) {
  const Place place = line.NextPlace();
  Word word = line.TakeWord();
  if (word.text.empty()) RefuseForm(statement, std::string(meaning) + " is missing", place);
  if (!line.IsAtEnd()) {
    RefuseForm(statement, "\"" + std::string(line.Rest()) + "\" is too much", line.NextPlace());
  }
  return word;
}

CallRequest TakeCall(LineReader& line, const Statement& statement) {
  if (line.IsAtEnd()) RefuseForm(statement, "METHOD is missing", line.NextPlace());
  CallRequest request;
  const Word method = line.Take(MethodPatternLength(line.Rest()));
  request.method = ParseMethodPattern(method.text, method.at);
  for (const std::string_view argument : SplitArguments(line.Rest())) {
    request.arguments.push_back(ParseArgument(argument, line.OffsetOf(argument)));
  }
  return request;
}

Report RunNew(LineReader& line, const Statement& statement, Session& session) {
  const Word name = TakeName(line, statement);
  return session.New(name, TakeLastWord(line, statement, "CLASS"));
}

Report RunCall(LineReader& line, const Statement& statement, Session& session) {
  const Word name = TakeName(line, statement);
  return session.CallHeld(name, TakeCall(line, statement));
}

Report RunLet(LineReader& line, const Statement& statement, Session& session) {
  const Word name = TakeName(line, statement);
  TakeSign(line, statement, "=");
  TakeSign(line, statement, "call");
  const Word bean = TakeName(line, statement);
  return session.Let(name, bean, TakeCall(line, statement));
}

Report RunDescribe(LineReader& line, const Statement& statement, Session& session) {
  return session.Describe(TakeLastWord(line, statement, "NAME or CLASS"));
}

Report RunWalk(LineReader& line, const Statement& statement, Session& session) {
  const Word name = TakeName(line, statement);
  int skip = 0;
  if (!line.IsAtEnd()) {
    TakeSign(line, statement, "skip");
    const Word count = TakeLastWord(line, statement, "N");
    if (!ReadCount(count.text, skip)) {
      RefuseForm(statement, "\"" + count.text + "\" is no count", count.GetPlace());
    }
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

const Statement& FindStatement(const Word& keyword) {
  std::vector<std::string> known;
  for (const Statement& statement : kStatements) {
    if (keyword.text == statement.keyword) return statement;
    known.emplace_back(statement.keyword);
  }
  throw HostError(ExitStatus::Usage,
                  "\"" + keyword.text + "\" is no statement" + DidYouMean(keyword.text, known) +
                      "\nthere are " + ListOf(known) + " and # comment",
                  keyword.GetPlace());
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

std::string ArgumentsHelp() { return kArguments; }

std::vector<std::string> StatementForms() {
  std::vector<std::string> forms;
  for (const Statement& statement : kStatements) forms.emplace_back(statement.form);
  return forms;
}

bool ReadLine(std::istream& script, bool isFirst, std::string& line) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (!std::getline(script, line)) return false;
  if (isFirst && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
  return true;
}

bool IsStatement(std::string_view line) {
  const LineReader reader(line);
  return !reader.IsAtEnd() && reader.Rest().front() != '#';
}

Report RunStatement(std::string_view line, Session& session) {
  session.SetStatement(line);
  try {
    LineReader reader(line);
    const Statement& statement = FindStatement(reader.TakeWord());
    return statement.run(reader, statement, session);
  } catch (const HostError& error) {
    Report report;
    report.Fail(error, line);
    return report;
  }
}

ExitStatus RunScript(std::istream& script, bool keepGoing, Session& session,
                     const ReportSink& sink) {
  ExitStatus status = ExitStatus::Done;
  bool isFirst = true;
  for (std::string line; ReadLine(script, isFirst, line); isFirst = false) {
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

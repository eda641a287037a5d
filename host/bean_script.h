#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "host/session.h"

namespace quenlatrix::host {

// The statements that `run` understands, one a line:
//   new NAME CLASS
//   call NAME METHOD [ARG]...
//   let NAME = call NAME METHOD [ARG]...
//   describe NAME|CLASS
//   walk NAME [skip N]
//   size NAME
//   release NAME
//   # comment

// One line each, for the help.
std::string StatementsHelp();

// What ARG and METHOD may be, for the help.
std::string ArgumentsHelp();

// The statements' forms as above, without the comment.
std::vector<std::string> StatementForms();

// Reads a count of elements, a whole number from 0 on; false for any other text.
bool ReadCount(std::string_view text, int& count);

// Reads the next line of a script; `isFirst` says that it begins the file, and leaves out the byte
// order mark that some editors put there. False at the end.
bool ReadLine(std::istream& script, bool isFirst, std::string& line);

// Whether the line is a statement, and no comment and not empty.
bool IsStatement(std::string_view line);

// Reads the statement and does it. What isn't one is reported with the status Usage, what the
// statement would have needed in its text.
Report RunStatement(std::string_view line, Session& session);

// Receives each line twice: before it is run, with null, and, when it is a statement, with what it
// came to.
using ReportSink = std::function<void(std::string_view line, const Report* report)>;

// Runs the statements of a script. The first that fails ends it, unless `keepGoing`; the status is
// that of the first failure.
ExitStatus RunScript(std::istream& script, bool keepGoing, Session& session,
                     const ReportSink& sink);

}  // namespace quenlatrix::host

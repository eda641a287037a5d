#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quenlatrix::host {

// What may stand in a line from `from` up to the cursor; sorted, each once.
struct Completion {
  std::size_t from = 0;
  std::vector<std::string> candidates;
};

// Lines typed at a terminal, with editing, history and completion. For one thread.
class LineEditor {
 public:
  // Completes the text before the cursor.
  using Completer = std::function<Completion(std::string_view beforeCursor)>;

  enum class Outcome { Line, Interrupted, EndOfFile };

  // Null unless standard input and standard error are a terminal, where the prompt and what is
  // typed are shown. The locale must be set. `historyFile` empty: the history ends with this
  // object.
  static std::unique_ptr<LineEditor> Open(const std::string& prompt, const std::string& historyFile,
                                          Completer completer);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  // Reads a line, UTF-8, without its end; it goes into the history unless it is blank. Ctrl-C
  // throws away what was typed and answers Interrupted; the terminal sends no SIGINT meanwhile.
  Outcome Read(std::string& line);

 private:
  class Terminal;

  explicit LineEditor(std::unique_ptr<Terminal> terminal);

  std::unique_ptr<Terminal> terminal;
};

}  // namespace quenlatrix::host

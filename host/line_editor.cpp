#include "host/line_editor.h"

#include <histedit.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cwchar>

#include "host/line_history.h"
#include "host/terminal.h"

namespace quenlatrix::host {

namespace {

constexpr int kMostRemembered = 1000;
// More candidates than these scroll the line out of sight.
constexpr std::size_t kMostShown = 200;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
struct EndEditing {
  void operator()(EditLine* editor) const { el_end(editor); }
};
struct EndHistory {
  void operator()(History* history) const { history_end(history); }
};

// While it lives, Ctrl-C is a key of the terminal like others.
class PlainInterruptKey {
 public:
  PlainInterruptKey() : isTerminal(tcgetattr(STDIN_FILENO, &before) == 0) {
    termios plain = before;
    plain.c_cc[VINTR] = _POSIX_VDISABLE;
    if (isTerminal) tcsetattr(STDIN_FILENO, TCSADRAIN, &plain);
  }
  ~PlainInterruptKey() {
    if (isTerminal) tcsetattr(STDIN_FILENO, TCSADRAIN, &before);
  }
  PlainInterruptKey(const PlainInterruptKey&) = delete;
  PlainInterruptKey& operator=(const PlainInterruptKey&) = delete;

 private:
  termios before = {};
  bool isTerminal;
};

// As many columns as fit, read downwards.
std::string InColumns(const std::vector<std::string>& names, std::size_t width) {
  const std::size_t shown = std::min(names.size(), kMostShown);
  std::size_t widest = 0;
  for (std::size_t i = 0; i < shown; ++i) widest = std::max(widest, WidthOf(names[i]));
  const std::size_t columns = std::max<std::size_t>(1, width / (widest + 2));
  const std::size_t rows = (shown + columns - 1) / columns;
  std::string text;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t i = row; i < shown; i += rows) {
      const bool isLast = i + rows >= shown;
      text += names[i] + (isLast ? "" : std::string(widest + 2 - WidthOf(names[i]), ' '));
    }
    text += '\n';
  }
  if (shown < names.size()) text += "and " + std::to_string(names.size() - shown) + " more\n";
  return text;
}

std::string CommonStart(const std::vector<std::string>& names) {
  std::string_view common = names.front();
  for (const std::string& name : names) {
    const auto [end, other] = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
    common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
  }
  return std::string(common);
}

}  // namespace

// What libedit knows, which finds its way back here through the editor's client data.
class LineEditor::Terminal {
 public:
  Terminal(std::string prompt, const std::string& historyFile, Completer completer)
      : prompt(std::move(prompt)), completer(std::move(completer)), file(historyFile) {}

  bool Start();
  Outcome Read(std::string& line);

 private:
  static Terminal& Of(EditLine* editor);
  static char* Prompt(EditLine* editor) { return Of(editor).prompt.data(); }
  static unsigned char Complete(EditLine* editor, int) { return Of(editor).InsertCompletion(); }
  static unsigned char Interrupt(EditLine* editor, int);
  unsigned char InsertCompletion();
  void Remember(const std::string& line);

  std::string prompt;
  Completer completer;
  LineHistory file;
  std::unique_ptr<std::FILE, CloseFile> screen;
  std::unique_ptr<History, EndHistory> history;
  std::unique_ptr<EditLine, EndEditing> editor;
  bool wasInterrupted = false;
};

LineEditor::Terminal& LineEditor::Terminal::Of(EditLine* editor) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return *static_cast<Terminal*>(self);
}

bool LineEditor::Terminal::Start() {
  // Standard error itself is unbuffered, a write for every character.
  const int copy = dup(STDERR_FILENO);
  if (copy < 0) return false;
  screen.reset(fdopen(copy, "w"));
  history.reset(history_init());
  if (!screen || !history) return false;
  editor.reset(el_init("beanhost", stdin, screen.get(), screen.get()));
  if (!editor) return false;
  HistEvent event = {};
  ::history(history.get(), &event, H_SETSIZE, kMostRemembered);
  ::history(history.get(), &event, H_SETUNIQUE, 1);
  for (const std::string& line : file.Load(kMostRemembered)) {
    ::history(history.get(), &event, H_ENTER, line.c_str());
  }
  el_set(editor.get(), EL_CLIENTDATA, this);
  el_set(editor.get(), EL_PROMPT, Prompt);
  el_set(editor.get(), EL_EDITOR, "emacs");
  el_set(editor.get(), EL_SIGNAL, 1);
  el_set(editor.get(), EL_HIST, ::history, history.get());
  // The narrow form would make copies of these texts that nobody frees.
  el_wset(editor.get(), EL_ADDFN, L"bean-complete", L"Completes a name", Complete);
  el_wset(editor.get(), EL_ADDFN, L"bean-interrupt", L"Throws the line away", Interrupt);
  el_set(editor.get(), EL_BIND, "^I", "bean-complete", nullptr);
  el_set(editor.get(), EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor.get(), nullptr);
  el_set(editor.get(), EL_BIND, "^C", "bean-interrupt", nullptr);
  return true;
}

unsigned char LineEditor::Terminal::Interrupt(EditLine* editor, int) {
  Terminal& self = Of(editor);
  self.wasInterrupted = true;
  std::fputs("^C\n", self.screen.get());
  return CC_NEWLINE;
}

unsigned char LineEditor::Terminal::InsertCompletion() {
  const LineInfo* line = el_line(editor.get());
  const std::string_view before(line->buffer,
                                static_cast<std::size_t>(line->cursor - line->buffer));
  const Completion completion = completer(before);
  if (completion.candidates.empty()) return CC_REFRESH_BEEP;
  const bool isOne = completion.candidates.size() == 1;
  const std::string start = CommonStart(completion.candidates) + (isOne ? " " : "");
  const std::string_view typed = before.substr(completion.from);
  if (start.size() > typed.size()) {
    el_insertstr(editor.get(), start.c_str() + typed.size());
    return CC_REFRESH;
  }
  std::fputc('\n', screen.get());
  std::fputs(InColumns(completion.candidates, ColumnsOf(fileno(screen.get()))).c_str(),
             screen.get());
  return CC_REDISPLAY;
}

void LineEditor::Terminal::Remember(const std::string& line) {
  if (line.find_first_not_of(" \t") == std::string::npos) return;
  HistEvent event = {};
  const bool isRepeated = ::history(history.get(), &event, H_FIRST) == 0 && line == event.str;
  ::history(history.get(), &event, H_ENTER, line.c_str());
  if (!isRepeated) file.Append(line);
}

LineEditor::Outcome LineEditor::Terminal::Read(std::string& line) {
  wasInterrupted = false;
  int count = 0;
  const char* typed = nullptr;
  bool wasSignal = false;
  {
    const PlainInterruptKey key;
    // The editor itself takes the terminal over only once the prompt is there: a Ctrl-D typed at
    // once would be the terminal's, and lost.
    el_set(editor.get(), EL_PREP_TERM, 1);
    errno = 0;
    typed = el_gets(editor.get(), &count);
    // An interrupt from elsewhere, or of a terminal that was set anew after a stop.
    wasSignal = typed == nullptr && errno == EINTR;
  }
  if (wasSignal) std::fputs("^C\n", screen.get());
  if (wasSignal || wasInterrupted) return Outcome::Interrupted;
  if (typed == nullptr || count <= 0) {
    std::fputc('\n', screen.get());
    std::fflush(screen.get());
    return Outcome::EndOfFile;
  }
  line.assign(typed, static_cast<std::size_t>(count));
  while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
  Remember(line);
  return Outcome::Line;
}

LineEditor::LineEditor(std::unique_ptr<Terminal> terminal) : terminal(std::move(terminal)) {}

LineEditor::~LineEditor() = default;

std::unique_ptr<LineEditor> LineEditor::Open(const std::string& prompt,
                                             const std::string& historyFile, Completer completer) {
  if (isatty(STDIN_FILENO) != 1 || isatty(STDERR_FILENO) != 1) return nullptr;
  auto terminal = std::make_unique<Terminal>(prompt, historyFile, std::move(completer));
  if (!terminal->Start()) return nullptr;
  return std::unique_ptr<LineEditor>(new LineEditor(std::move(terminal)));
}

LineEditor::Outcome LineEditor::Read(std::string& line) { return terminal->Read(line); }

}  // namespace quenlatrix::host

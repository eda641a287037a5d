#include "host/terminal.h"

#include <sys/ioctl.h>

#include <cstdlib>
#include <cwchar>

#include "host/utf8.h"

namespace quenlatrix::host {

std::size_t WidthOf(std::wstring_view characters) {
  std::size_t width = 0;
  for (const wchar_t c : characters) {
    const int columns = wcwidth(c);
    // What the locale can't print takes a column for the mark that is shown in its stead.
    width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
  }
  return width;
}

std::size_t WidthOf(std::string_view utf8) { return WidthOf(Utf8ToWide(utf8)); }

std::size_t ColumnsOf(int descriptor) {
  winsize size = {};
  const bool isKnown = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : 80;
}

TextStyle TextStyle::For(bool isTerminal) {
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  TextStyle style;
  style.hasColours = isTerminal && (refused == nullptr || *refused == '\0') &&
                     terminal != nullptr && std::string_view(terminal) != "dumb";
  return style;
}

std::string TextStyle::Styled(const char* code, const std::string& text) const {
  if (!hasColours || text.empty()) return text;
  return std::string("\033[") + code + "m" + text + "\033[0m";
}

}  // namespace quenlatrix::host

#pragma once

#include <string>
#include <string_view>

namespace quenlatrix::host {

// How many columns of a terminal the characters take.
std::size_t WidthOf(std::wstring_view characters);
std::size_t WidthOf(std::string_view utf8);

// How many columns the terminal behind the descriptor has; 80 when it doesn't say.
std::size_t ColumnsOf(int descriptor);

// Colours for a terminal, or none. A plain value.
class TextStyle {
 public:
  // Without colours.
  TextStyle() = default;
  // With colours if the descriptor is a terminal that has them and NO_COLOR isn't set.
  static TextStyle For(bool isTerminal);

  std::string Heading(const std::string& text) const { return Styled("1", text); }
  std::string Name(const std::string& text) const { return Styled("36", text); }
  std::string Faint(const std::string& text) const { return Styled("2", text); }
  std::string Error(const std::string& text) const { return Styled("31", text); }

 private:
  std::string Styled(const char* code, const std::string& text) const;

  bool hasColours = false;
};

}  // namespace quenlatrix::host

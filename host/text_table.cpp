#include "host/text_table.h"

#include <algorithm>

namespace quenlatrix::host {

std::string TextTable::ToText(const TextStyle& style, std::size_t names) const {
  std::vector<std::size_t> widths(rows.front().size());
  for (const std::vector<std::string>& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
  }
  std::string text;
  for (const std::vector<std::string>& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool isHeading = &row == &rows.front();
      text += isHeading ? style.Heading(row[i]) : i == names ? style.Name(row[i]) : row[i];
      if (i + 1 < row.size()) text += std::string(widths[i] - WidthOf(row[i]) + 2, ' ');
    }
    text += '\n';
  }
  return text;
}

}  // namespace quenlatrix::host

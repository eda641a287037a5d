#pragma once

#include <string>
#include <vector>

#include "host/terminal.h"

namespace quenlatrix::host {

// Rows of text under headings, in columns as wide as their widest cell. A plain value.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> headings) : rows({std::move(headings)}) {}

  // As many cells as there are headings.
  void Add(std::vector<std::string> cells) { rows.push_back(std::move(cells)); }
  bool IsEmpty() const { return rows.size() == 1; }
  // Lines; the cells of column `names` in the colour of names.
  std::string ToText(const TextStyle& style, std::size_t names) const;

 private:
  std::vector<std::vector<std::string>> rows;
};

}  // namespace quenlatrix::host

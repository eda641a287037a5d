#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quenlatrix::host {

// A stretch of a statement's line, counted in bytes. It may stand behind the line's end, where
// something is missing.
struct Place {
  std::size_t at = 0;
  std::size_t length = 1;
};

// A word of a statement and where it stands.
struct Word {
  std::string text;
  std::size_t at = 0;

  Place GetPlace() const { return {at, text.size()}; }
};

// The message with the statement and marks under the place in it behind the message's first line. A
// long statement is cut around the place.
std::string ShowPlace(const std::string& message, std::string_view line, const Place& place);

}  // namespace quenlatrix::host

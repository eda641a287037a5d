#pragma once

#include <string>
#include <vector>

namespace quenlatrix::host {

// The lines that were typed in earlier sessions, in a file of the user's own, one a line. What
// can't be read or written is as if it weren't there. For one thread; several processes may use one
// file.
class LineHistory {
 public:
  // "beanhost/history" below $XDG_STATE_HOME or ~/.local/state; empty when there is neither.
  static std::string DefaultFile();

  // An empty name: nothing is kept.
  explicit LineHistory(std::string file) : file(std::move(file)) {}

  // The last `most` lines, the oldest first. A file that has grown far beyond them is cut.
  std::vector<std::string> Load(std::size_t most) const;
  // Writes the line at once, so that it outlives a crash and sessions side by side keep theirs.
  // Makes the file and its directories when they are missing, for their owner alone.
  void Append(const std::string& line) const;

 private:
  std::string file;
};

}  // namespace quenlatrix::host

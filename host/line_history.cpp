#include "host/line_history.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace quenlatrix::host {

namespace {

namespace fs = std::filesystem;

// The directories that are missing, as the rules for such files want them: for the owner alone.
void MakeDirectories(const fs::path& directory) {
  std::error_code ignored;
  if (directory.empty() || fs::exists(directory, ignored)) return;
  MakeDirectories(directory.parent_path());
  mkdir(directory.c_str(), S_IRWXU);
}

bool WriteAll(int descriptor, const std::string& text) {
  return write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

// Beside the file and then in its place, so that nobody meets half of it.
void Replace(const std::string& file, const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  std::string temporary = file + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) return;
  const bool isWritten = WriteAll(descriptor, text);
  close(descriptor);
  if (!isWritten || std::rename(temporary.c_str(), file.c_str()) != 0) unlink(temporary.c_str());
}

}  // namespace

std::string LineHistory::DefaultFile() {
  const char* state = std::getenv("XDG_STATE_HOME");
  // A relative path there is to be ignored.
  if (state != nullptr && *state == '/') return std::string(state) + "/beanhost/history";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return {};
  return std::string(home) + "/.local/state/beanhost/history";
}

std::vector<std::string> LineHistory::Load(std::size_t most) const {
  std::vector<std::string> lines;
  std::error_code failed;
  if (file.empty() || !fs::is_regular_file(file, failed)) return lines;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  if (lines.size() <= most) return lines;
  const bool isLong = lines.size() > 2 * most;
  lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(most));
  if (isLong) Replace(file, lines);
  return lines;
}

void LineHistory::Append(const std::string& line) const {
  if (file.empty()) return;
  MakeDirectories(fs::path(file).parent_path());
  const int descriptor =
      open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK,
           S_IRUSR | S_IWUSR);
  if (descriptor < 0) return;
  // Nothing else is written to, least of all a pipe, which would wait for its reader.
  struct stat status = {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    WriteAll(descriptor, line + "\n");
  }
  close(descriptor);
}

}  // namespace quenlatrix::host

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "meta_object/handlers/bean/class_path.h"

namespace {

namespace bean = quenlatrix::meta_object::handlers::bean;

constexpr std::size_t kLongestPiece = 2047;

// What the lines of a file add to a class path; what follows a NUL in a line is lost.
std::string Expected(std::string_view lines, std::string classPath) {
  bool separate = classPath.empty() || classPath.back() != ':';
  while (!lines.empty()) {
    std::string_view piece = lines.substr(0, kLongestPiece);
    if (const auto end = piece.find('\n'); end != piece.npos) piece = piece.substr(0, end + 1);
    lines.remove_prefix(piece.size());
    piece = piece.substr(0, piece.find('\0'));
    if (!piece.empty() && piece.back() == '\n') piece.remove_suffix(1);
    if (piece.empty()) continue;
    if (separate) classPath += ':';
    classPath += piece;
    separate = true;
  }
  return classPath;
}

}  // namespace

// The first line is the variable's value, what follows is the file.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view all(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(all.find('\n'), size);
  const std::string variable(all.substr(0, std::min(end, all.find('\0'))));
  const std::string_view lines = all.substr(std::min(end + 1, size));
  const int fd = memfd_create("class_path", MFD_CLOEXEC);
  Require(fd != -1 && write(fd, lines.data(), lines.size()) == static_cast<ssize_t>(lines.size()));
  const std::string file = "/proc/self/fd/" + std::to_string(fd);
  Require(setenv("CLASSPATH", variable.c_str(), 1) == 0);
  std::string classPath = "before";
  const std::string expected = Expected(lines, variable.empty() ? classPath : variable);
  Require(bean::GetClassPath(file, classPath));
  Require(classPath == expected);
  close(fd);
  return 0;
}

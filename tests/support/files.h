#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

// The bytes of a file; none when it can't be read.
inline std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// A file of a test's own, removed with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string_view bytes = "") : path(testing::TempDir() + "test_XXXXXX") {
    close(mkstemp(path.data()));
    Write(bytes);
  }
  ~TemporaryFile() { unlink(path.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void Write(std::string_view bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
  std::string Read() const { return ReadFile(path); }

  std::string path;
};

// A directory of a test's own, removed with the object and all that is in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory() : path(mkdtemp((testing::TempDir() + "test_XXXXXX").data())) {}
  ~TemporaryDirectory() { std::filesystem::remove_all(path); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path path;
};

#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "config_file/config_file.h"

// A file of a test's own, removed with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string_view bytes = "")
      : path(testing::TempDir() + "config_file_XXXXXX") {
    close(mkstemp(path.data()));
    Write(bytes);
  }
  ~TemporaryFile() { unlink(path.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void Write(std::string_view bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
  std::string Read() const {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  std::string path;
};

// All that is in memory, as it would be written.
inline std::string DumpOf(const quenlatrix::config_file::ConfigFile& file) {
  testing::internal::CaptureStderr();
  file.dump();
  return testing::internal::GetCapturedStderr();
}

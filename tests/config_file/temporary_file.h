#pragma once

#include <gtest/gtest.h>

#include <string>

#include "config_file/config_file.h"
#include "tests/support/files.h"

// All that is in memory, as it would be written.
inline std::string DumpOf(const quenlatrix::config_file::ConfigFile& file) {
  testing::internal::CaptureStderr();
  file.dump();
  return testing::internal::GetCapturedStderr();
}

#include "host/companion_files.h"

#include <system_error>

namespace quenlatrix::host {

std::filesystem::path ProgramDirectory() {
  std::error_code failed;
  return std::filesystem::read_symlink("/proc/self/exe", failed).parent_path();
}

std::filesystem::path FindCompanion(const std::string& name) {
  const std::filesystem::path program = ProgramDirectory();
  for (const char* way : {"", QUENLATRIX_PLUGIN_FROM_BIN, QUENLATRIX_JARS_FROM_BIN}) {
    std::filesystem::path file = (program / way / name).lexically_normal();
    std::error_code ignored;
    if (std::filesystem::exists(file, ignored)) {
      return file;
    }
  }
  return program / name;
}

}  // namespace quenlatrix::host

#include "host/installation_root.h"

#include <climits>
#include <cstdlib>
#include <filesystem>

#include "config_file/config_file.h"
#include "host/companion_files.h"
#include "meta_object/handler_registry.h"

namespace quenlatrix::host {

namespace fs = std::filesystem;
using meta_object::Handler;

namespace {

constexpr const char* kRootVariable = "QUENLATRIX_PATH";
constexpr const char* kRootsFromProgram[] = {"..", QUENLATRIX_ROOT_FROM_BIN};

std::string RootFromProgram(const char* way) {
  return (ProgramDirectory() / way).lexically_normal().string();
}

std::string RegistryIn(const std::string& root) {
  return (fs::path(root) / "Configuration" / Handler::Enum().GetRegistryName()).string();
}

}  // namespace

void ChooseInstallationRoot() {
  const Handler::Enum registry;
  if (std::getenv(kRootVariable) != nullptr || registry.IsRegistryAvailable()) {
    return;
  }
  for (const char* way : kRootsFromProgram) {
    setenv(kRootVariable, RootFromProgram(way).c_str(), 1);
    if (registry.IsRegistryAvailable()) {
      return;
    }
  }
  unsetenv(kRootVariable);
}

bool IsInstallationRootTooLong() {
  ZuText ignored;
  return !config_file::ConfigFile::buildConfigPath("", ignored);
}

std::string InstallationRoot() {
  char directory[PATH_MAX];
  if (!config_file::ConfigFile::getPlatformConfigPath(directory, sizeof directory)) {
    return {};
  }
  // Behind the root comes "/Configuration/".
  return fs::path(directory).parent_path().parent_path().string();
}

std::vector<std::string> PlacesOfRegistry() {
  std::vector<std::string> places = {RegistryIn(InstallationRoot())};
  if (std::getenv(kRootVariable) == nullptr) {
    for (const char* way : kRootsFromProgram) {
      places.push_back(RegistryIn(RootFromProgram(way)));
    }
  }
  return places;
}

}  // namespace quenlatrix::host

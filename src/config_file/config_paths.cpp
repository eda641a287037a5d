#include "config_file/config_paths.h"

#include <pwd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "config_file/config_file.h"

namespace quenlatrix::config_file {

namespace {

constexpr char kRootVariable[] = "QUENLATRIX_PATH";
constexpr char kUser[] = "quenlatrix";
constexpr char kDefaultRoot[] = "/Applications/Quenlatrix Server 7";
constexpr std::string_view kDirectory = "/Configuration/";

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

OpenFile OpenStartUpFile(const char* home) {
  OpenFile file(std::fopen((std::string(home) + "/.profile").c_str(), "re"));
  if (file == nullptr) {
    file.reset(std::fopen((std::string(home) + "/.cshrc").c_str(), "re"));
  }
  return file;
}

// False when neither the environment nor the user's start-up file names a root.
bool FindRoot(ZuText& root) {
  if (const char* const set = std::getenv(kRootVariable); set != nullptr) {
    root = set;
    return true;
  }
  std::array<char, 16384> room;
  passwd entry = {};
  passwd* user = nullptr;
  return getpwnam_r(kUser, &entry, room.data(), room.size(), &user) == 0 && user != nullptr &&
         ReadRootFromStartUpFile(user->pw_dir, root);
}

// The configuration directory, of less than N bytes; empty when there is none.
template <int N>
ZuText ConfigDirectory() {
  std::array<char, N> directory = {};
  return ConfigFile::getPlatformConfigPath(directory.data(), N) ? directory.data() : "";
}

}  // namespace

bool ReadRootFromStartUpFile(const char* home, ZuText& root) {
  const OpenFile file = OpenStartUpFile(home);
  std::array<char, 4096> line;
  while (file != nullptr && std::fgets(line.data(), line.size(), file.get()) != nullptr) {
    const char* const name = std::strstr(line.data(), kRootVariable);
    if (name == nullptr) {
      continue;
    }
    // The name and one character, "=" or a blank; there may be no more than the name.
    std::string_view rest = name;
    rest.remove_prefix(std::min(sizeof kRootVariable, rest.size()));
    if (!rest.empty() && rest.back() == '\n') {
      rest.remove_suffix(1);
    }
    root = ZuText(rest.data(), rest.size());
    return true;
  }
  return false;
}

bool ConfigFile::getPlatformConfigPath(char* out, int size) {
  ZuText root;
  if (!FindRoot(root)) {
    root = kDefaultRoot;
  } else {
    const unsigned long length = root.GetSize();
    if (length > 0 && root.GetText()[length - 1] == '/') {
      root.SetUsableDataSize(length - 1);
    }
    if (static_cast<long>(root.GetSize() + kDirectory.size()) >= long{size} - 2) {
      return false;
    }
  }
  char* const end = std::copy_n(root.GetTextEx(), root.GetSize(), out);
  *std::copy(kDirectory.begin(), kDirectory.end(), end) = '\0';
  return true;
}

bool ConfigFile::buildConfigPath(const char* name, ZuText& out) {
  ZuText directory = ConfigDirectory<255>();
  if (directory.GetSize() == 0) {
    return false;
  }
  // `name` may lie in `out`.
  directory += name;
  return out.SetEqualTo(directory) == directory.GetDataSize();
}

ZuText ConfigFile::buildConfigPath(const ZuText& name) {
  ZuText path = ConfigDirectory<1024>();
  if (path.GetSize() > 0) {
    path += name;
  }
  return path;
}

ZuText ConfigFile::buildPath(const ZuText& dir) {
  ZuText path = ConfigDirectory<255>();
  path.ReplaceOccurrence("Configuration", dir, 1, true);
  return path;
}

ZuText ConfigFile::buildMiscFilesPath(const ZuText& name) {
  ZuText path = ConfigDirectory<255>();
  if (path.GetSize() > 0) {
    path.ReplaceOccurrence("configuration", "MiscFiles", 1, false);
    path += name;
  }
  return path;
}

}  // namespace quenlatrix::config_file

#include "config_file/config_paths.h"

#include <pwd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "config_file/config_file.h"
#include "text/whole_text.h"

namespace quenlatrix::config_file {

namespace {

using text::SetWhole;

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
    SetWhole(root, set);
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
  ZuText path;
  if (ConfigFile::getPlatformConfigPath(directory.data(), N)) {
    SetWhole(path, directory.data());
  }
  return path;
}

// The directory with `by` in place of its `name`, which is in it; empty when there is none.
ZuText Sibling(const char* name, const ZuText& by, bool caseSensitive) {
  ZuText path = ConfigDirectory<255>();
  if (path.GetSize() > 0) {
    ZuText find;
    SetWhole(find, name);
    const unsigned long length = path.GetSize() - find.GetSize() + by.GetSize();
    path.ReplaceOccurrence(find, by, 1, caseSensitive);
    if (path.GetSize() != length) {
      throw std::bad_alloc();
    }
  }
  return path;
}

ZuText Joined(const ZuText& directory, const char* name) {
  ZuText path;
  SetWhole(path, std::string(directory.GetTextEx()) + (name == nullptr ? "" : name));
  return path;
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
    SetWhole(root, rest);
    return true;
  }
  return false;
}

bool ConfigFile::getPlatformConfigPath(char* out, int size) {
  ZuText root;
  if (!FindRoot(root)) {
    SetWhole(root, kDefaultRoot);
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
  const ZuText directory = ConfigDirectory<255>();
  if (directory.GetSize() == 0) {
    return false;
  }
  // `name` may lie in `out`.
  const ZuText path = Joined(directory, name);
  return out.SetEqualTo(path) == path.GetDataSize();
}

ZuText ConfigFile::buildConfigPath(const ZuText& name) {
  const ZuText directory = ConfigDirectory<1024>();
  return directory.GetSize() > 0 ? Joined(directory, name.GetTextEx()) : ZuText();
}

ZuText ConfigFile::buildPath(const ZuText& dir) { return Sibling("Configuration", dir, true); }

ZuText ConfigFile::buildMiscFilesPath(const ZuText& name) {
  ZuText miscFiles;
  SetWhole(miscFiles, "MiscFiles");
  const ZuText directory = Sibling("configuration", miscFiles, false);
  return directory.GetSize() > 0 ? Joined(directory, name.GetTextEx()) : ZuText();
}

}  // namespace quenlatrix::config_file

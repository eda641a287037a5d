#include "os/module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace {

struct Unload {
  void operator()(void* handle) const { dlclose(handle); }
};
using Image = std::unique_ptr<void, Unload>;

Image Load(const char* file) { return Image(dlopen(file, RTLD_NOW | RTLD_GLOBAL)); }

// The path of the image, as text; "untouched" when none was written.
std::string PathOf(void* module, unsigned long size, unsigned long& length) {
  char buffer[4096] = "untouched";
  length = GetModuleFileName(module, buffer, size);
  return buffer;
}

TEST(ModuleFileName, IsTheWholePathHoweverThePluginWasLoaded) {
  const std::filesystem::path path = OS_TEST_PLUGIN;
  std::filesystem::current_path(path.parent_path());
  for (const std::string& name : {path.string(), "./" + path.filename().string()}) {
    const Image plugin = Load(name.c_str());
    ASSERT_NE(plugin, nullptr) << dlerror();
    unsigned long length = 0;
    const std::string found = PathOf(plugin.get(), 4096, length);
    EXPECT_EQ(std::filesystem::path(found).lexically_normal(), path) << name;
    EXPECT_EQ(length, found.size());
    EXPECT_EQ(PathOf(plugin.get(), found.size() + 1, length), found);
    EXPECT_EQ(PathOf(plugin.get(), found.size(), length), "untouched") << "no room for its end";
    EXPECT_EQ(length, 0u);
  }
}

TEST(ModuleFileName, IsNotFoundForWhatIsNoLoadedPlugin) {
  // Loaded for all, so that the program's own handle finds its entry point.
  Image plugin = Load(OS_TEST_PLUGIN);
  const Image program(dlopen(nullptr, RTLD_NOW));
  ASSERT_NE(dlsym(program.get(), "InitHandler"), nullptr);
  const auto memory = std::make_unique<char[]>(4096);
  std::memset(memory.get(), 0x5A, 4096);
  const std::pair<const char*, void*> cases[] = {
      {"null", nullptr},
      {"the next image", RTLD_NEXT},
      {"an address of nothing", reinterpret_cast<void*>(0x10)},
      {"memory", memory.get()},
      {"an address inside the image", dlsym(plugin.get(), "InitHandler")},
      {"an image that only sees the entry point", program.get()},
  };
  unsigned long length = 1;
  for (const auto& [what, handle] : cases) {
    EXPECT_EQ(PathOf(handle, 4096, length), "untouched") << what;
    EXPECT_EQ(length, 0u) << what;
  }
  void* const unloaded = plugin.get();
  plugin.reset();
  EXPECT_EQ(PathOf(unloaded, 4096, length), "untouched");
}

TEST(LoadString, CutsWhatDoesNotFit) {
  const std::tuple<int, int, std::string> cases[] = {
      {7, 7, std::string("abcdef\0", 7)},
      {6, 6, std::string("abcde\0", 6)},
      {1, 1, std::string("\0", 1)},
      {0, 0, ""},
      {-3, -3, ""},
  };
  for (const auto& [size, result, written] : cases) {
    char buffer[100];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(LoadString(nullptr, "abcdef", buffer, size), result) << size;
    EXPECT_EQ(std::string(buffer, written.size()), written) << size;
    EXPECT_EQ(buffer[written.size()], '#') << size;
  }
}

}  // namespace

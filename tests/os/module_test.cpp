#include "os/module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

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

TEST(ModuleFileName, IsThePathOfTheLoadedPlugin) {
  const std::string path = OS_TEST_PLUGIN;
  const Image plugin = Load(OS_TEST_PLUGIN);
  ASSERT_NE(plugin, nullptr) << dlerror();
  unsigned long length = 0;
  EXPECT_EQ(PathOf(plugin.get(), path.size() + 1, length), path);
  EXPECT_EQ(length, path.size());
  EXPECT_EQ(PathOf(plugin.get(), path.size(), length), "untouched");
  EXPECT_EQ(length, 0u);
}

TEST(ModuleFileName, IsAbsoluteForAPluginLoadedByARelativePath) {
  const std::filesystem::path path = OS_TEST_PLUGIN;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(path.parent_path());
  const Image plugin = Load(("./" + path.filename().string()).c_str());
  ASSERT_NE(plugin, nullptr) << dlerror();
  unsigned long length = 0;
  const std::filesystem::path found = PathOf(plugin.get(), 4096, length);
  std::filesystem::current_path(before);
  EXPECT_TRUE(found.is_absolute()) << found;
  EXPECT_TRUE(std::filesystem::equivalent(found, path)) << found;
  EXPECT_EQ(length, found.native().size());
}

TEST(ModuleFileName, IsNotFoundForWhatIsNoLoadedPlugin) {
  // Loaded for all, so that the program's own handle finds its entry point.
  Image plugin = Load(OS_TEST_PLUGIN);
  const Image program(dlopen(nullptr, RTLD_NOW));
  ASSERT_NE(dlsym(program.get(), "InitHandler"), nullptr);
  const auto memory = std::make_unique<char[]>(4096);
  std::memset(memory.get(), 0x5A, 4096);
  const struct {
    const char* what;
    void* handle;
  } cases[] = {
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
  const struct {
    int size;
    int result;
    std::string written;
  } cases[] = {
      {100, 7, std::string("abcdef\0", 7)},
      {7, 7, std::string("abcdef\0", 7)},
      {6, 6, std::string("abcde\0", 6)},
      {4, 4, std::string("abc\0", 4)},
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

#include "meta_object/handlers/bean/class_path.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>

#include "meta_object/handlers/bean/jar_path_set.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "tests/support/files.h"
#include "tests/support/no_descriptors.h"

namespace quenlatrix::meta_object::handlers::bean {
namespace {

namespace fs = std::filesystem;

// In a directory of its own, where the file is looked for while there is no plug-in.
class ClassPathTest : public testing::Test {
 protected:
  ClassPathTest() { fs::current_path(directory); }
  ~ClassPathTest() override {
    fs::current_path(before);
    cleanJarPath();
  }

  static void SetVariable(const char* value) {
    value == nullptr ? unsetenv("CLASSPATH") : setenv("CLASSPATH", value, 1);
  }
  static void WriteFile(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }

  const fs::path before = fs::current_path();
  const TemporaryDirectory own;
  const fs::path& directory = own.path;
};

// What GetClassPath makes of a text that was there before.
std::string ClassPathAfter(std::string text) {
  const bool isThere = GetClassPath(text);
  return (isThere ? "true " : "false ") + text;
}

TEST_F(ClassPathTest, TheVariableIsFollowedByTheLinesOfTheFile) {
  const std::string full(2047, 'x');
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {nullptr, "/b\n", "false before"},
      {"", "", "true before"},
      {"", "/b\n", "true before:/b"},
      {"/a", "", "true /a"},
      {"/a", "\n\n/b\n\n\n/c\n", "true /a:/b:/c"},
      {"/a", "/b\r\n\r\n", "true /a:/b\r:\r"},
      {"/a", " /b \n# /c\n/d:\n/e", "true /a: /b :# /c:/d::/e"},
      {"/a", full + "\n/b", "true /a:" + full + ":/b"},
      {"/a", full, "true /a:" + full},
      {"/a", full + "y\n/b", "true /a:" + full + ":y:/b"},
      {"/a", full + full + std::string(906, 'z'),
       "true /a:" + full + ":" + full + ":" + std::string(906, 'z')},
      {"/a", std::string("/b\0/c\n\0\n/d", 10), "true /a:/b:/d"},
  };
  for (const auto& [variable, file, answer] : cases) {
    SetVariable(variable);
    WriteFile(ClassPathFile, file);
    EXPECT_EQ(ClassPathAfter("before"), answer) << file;
  }
  SetVariable("");
  WriteFile(ClassPathFile, "/b\n");
  EXPECT_EQ(ClassPathAfter(""), "true :/b");
  fs::remove(ClassPathFile);
  EXPECT_EQ(ClassPathAfter(""), "false ");
}

TEST_F(ClassPathTest, AFileThatCannotBeReadAddsNothing) {
  SetVariable("/a");
  EXPECT_EQ(ClassPathAfter(""), "true /a") << "there is none";
  fs::create_symlink(ClassPathFile, ClassPathFile);
  EXPECT_EQ(ClassPathAfter(""), "true /a") << "a link to itself";
  fs::remove(ClassPathFile);
  fs::create_directory(ClassPathFile);
  EXPECT_EQ(ClassPathAfter(""), "true /a") << "a directory";
  fs::remove(ClassPathFile);
  WriteFile(ClassPathFile, "/b");
  EXPECT_EQ(ClassPathAfter(""), "true /a:/b") << "read anew each time";
}

TEST_F(ClassPathTest, WithoutTheFilesLockThereIsNone) {
  SetVariable("/a");
  WriteFile(ClassPathFile, "/b");
  UGuard* const guard = &*_mutexClassPathFile;
  std::destroy_at(guard);
  {
    const NoDescriptors none;
    std::construct_at(guard, Mutex::Shared);
  }
  EXPECT_EQ(ClassPathAfter(""), "false /a");
  std::destroy_at(guard);
  std::construct_at(guard, Mutex::Shared);
  EXPECT_EQ(ClassPathAfter(""), "true /a:/b");
}

TEST_F(ClassPathTest, MarkedJarsAreLookedForInTheWholeText) {
  const std::tuple<std::vector<std::pair<const char*, bool>>, const char*, bool> cases[] = {
      {{}, nullptr, false},
      {{{"/b/y.jar", true}}, nullptr, true},
      {{{"/a", true}, {"/b/y.jar", true}}, "/a:/b/y.jar", false},
      {{{"/a", true}, {"/b/y.jar", true}}, "/a:/b/y.jar.old", false},
      {{{"/b/y.jar", true}}, "/b/y.ja", true},
      {{{"/from/file.jar", true}}, "/a", false},
      {{{"/a", true}, {"/c", true}}, "/a", true},
  };
  WriteFile(ClassPathFile, "/from/file.jar\n");
  for (const auto& [jars, variable, isMissing] : cases) {
    cleanJarPath();
    for (const auto& [jarPath, isMarked] : jars) {
      JarPathBean bean;
      bean.jarPath = jarPath;
      bean.beanName = std::string("Of") + jarPath;
      bean.marked = isMarked;
      _JarPathBeanSet->Add(bean);
    }
    SetVariable(variable);
    EXPECT_EQ(NotFoundPathInClassPath(), isMissing)
        << (jars.empty() ? "none" : jars.back().first) << (variable == nullptr ? "" : variable);
  }
}

// The name is made once a process, so a process of its own looks for it.
TEST_F(ClassPathTest, TheFileLiesBesideThePlugin) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto sayFileNameAndClassPath = [this] {
    const fs::path plugin = directory / "plugin.so";
    fs::copy_file(PLUGIN_FILE, plugin);
    WriteFile(directory / ClassPathFile, "/beside");
    fs::create_directory("elsewhere");
    fs::current_path("elsewhere");
    WriteFile(ClassPathFile, "/in/the/working/directory");
    _HandlerInfo->moduleHandle = dlopen(plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
    std::string name;
    std::string classPath = "/a";
    const bool isKnown = GetClassPathFileName(name) && name == directory / ClassPathFile;
    getPathFromFile(classPath);
    fs::current_path(before);
    fs::remove_all(directory);
    std::fprintf(stderr, "%s%s\n", isKnown ? "" : name.c_str(), classPath.c_str());
    std::exit(0);
  };
  EXPECT_EXIT(sayFileNameAndClassPath(), testing::ExitedWithCode(0), "^/a:/beside\n$");
}

}  // namespace
}  // namespace quenlatrix::meta_object::handlers::bean

#include "config_file/config_paths.h"

#include <gmock/gmock.h>
#include <pwd.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "config_file/config_file.h"
#include "tests/support/files.h"
#include "text/zu_text_local.h"

namespace {

using quenlatrix::config_file::ConfigFile;
using quenlatrix::config_file::ReadRootFromStartUpFile;

TEST(ConfigPaths, AreBuiltFromTheRootThatTheEnvironmentNames) {
  for (const char* const root : {"/opt/x/", "/opt/x"}) {
    setenv("QUENLATRIX_PATH", root, 1);
    ZuText path;
    EXPECT_TRUE(ConfigFile::buildConfigPath("handlers.ini", path));
    EXPECT_STREQ(path.GetTextEx(), "/opt/x/Configuration/handlers.ini");
    EXPECT_STREQ(ConfigFile::buildConfigPath(ZuText("handlers.ini")).GetTextEx(), path.GetTextEx());
    EXPECT_STREQ(ConfigFile::buildPath("Logs").GetTextEx(), "/opt/x/Logs/");
    EXPECT_STREQ(ConfigFile::buildMiscFilesPath("f.txt").GetTextEx(), "/opt/x/MiscFiles/f.txt");
  }
  ZuTextLocal<31> noRoom("as it was");
  EXPECT_FALSE(ConfigFile::buildConfigPath("handlers.ini", noRoom));
  EXPECT_STREQ(noRoom.GetTextEx(), "as it was");
  setenv("QUENLATRIX_PATH", "", 1);
  EXPECT_STREQ(ConfigFile::buildConfigPath(ZuText("f")).GetTextEx(), "/Configuration/f");
}

TEST(ConfigPaths, FailForARootThatIsTooLong) {
  for (const auto& [length, fits] : {std::pair(237, true), {238, false}, {240, false}}) {
    setenv("QUENLATRIX_PATH", std::string(static_cast<std::size_t>(length), 'r').c_str(), 1);
    char out[255] = "as it was";
    EXPECT_EQ(ConfigFile::getPlatformConfigPath(out, sizeof out), fits);
    EXPECT_EQ(std::string(out) == "as it was", !fits);
    ZuText path("as it was");
    EXPECT_EQ(ConfigFile::buildConfigPath("f", path), fits);
    EXPECT_EQ(path == "as it was", !fits);
    EXPECT_EQ(ConfigFile::buildPath("Logs").GetSize() > 0, fits);
    EXPECT_EQ(ConfigFile::buildMiscFilesPath("f").GetSize() > 0, fits);
    EXPECT_GT(ConfigFile::buildConfigPath(ZuText("f")).GetSize(), 0u);
  }
}

TEST(ConfigPaths, FallBackToTheDefaultRoot) {
  unsetenv("QUENLATRIX_PATH");
  if (getpwnam("quenlatrix") != nullptr) {
    GTEST_SKIP() << "this machine has the server's user, whose start-up file may name a root";
  }
  EXPECT_STREQ(ConfigFile::buildConfigPath(ZuText("handlers.ini")).GetTextEx(),
               "/Applications/Quenlatrix Server 7/Configuration/handlers.ini");
}

TEST(ConfigPaths, RootIsReadFromTheUsersStartUpFile) {
  const TemporaryDirectory directory;
  const std::string home = directory.path;
  ZuText root("as it was");
  EXPECT_FALSE(ReadRootFromStartUpFile(home.c_str(), root));
  const std::string longLine(4095, 'x');
  const std::pair<std::string, const char*> cases[] = {
      {"a=b\nexport QUENLATRIX_PATH=/srv/q\nQUENLATRIX_PATH=/later\n", "/srv/q"},
      {"setenv QUENLATRIX_PATH \"/srv/q\" ", "\"/srv/q\" "},
      {longLine + "\nQUENLATRIX_PATH=/srv/q/", "/srv/q/"},
      {"QUENLATRIX_PATH", ""},
      {"QUENLATRIX_PATH\n", ""},
      {"PATH=/srv/q\n", "as it was"},
  };
  for (const auto& [text, expected] : cases) {
    // One is looked into if the other can't be opened.
    for (const char* const name : {"/.cshrc", "/.profile"}) {
      std::ofstream(home + name) << text;
      root = "as it was";
      EXPECT_EQ(ReadRootFromStartUpFile(home.c_str(), root), expected != cases[5].second);
      EXPECT_STREQ(root.GetTextEx(), expected);
      std::filesystem::remove(home + name);
    }
  }
}

}  // namespace

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config_file/config_file.h"
#include "config_file/stanza.h"
#include "os/event_log.h"
#include "tests/config_file/temporary_file.h"

namespace {

using quenlatrix::collect::Attribute;
using quenlatrix::config_file::ConfigFile;
using Stanza = ConfigFile::Stanza;

constexpr char kStored[] = "[D]\na=\nb=\n\n[a]\nk=1\n\n[b]\nk=1\nx=1\n\n";

// Somebody who read the file, changed it in memory and writes it after somebody else did.
class ConfigFileWriting : public testing::Test {
 protected:
  ConfigFileWriting() {
    EXPECT_TRUE(file.parseConfigFile());
    file.removeStanza("a");
    file.changeValue("b", "k", "2");
    file.getStanza("b")->removeKey("x");
    auto added = std::make_unique<Stanza>("c");
    added->addValue("k", "2");
    file.addStanza(added.release(), true);
  }

  TemporaryFile stored{kStored};
  ConfigFile file{stored.path.c_str(), "D"};
  const std::string inMemory = "[D]\nb=\nc=\n\n[b]\nk=2\n\n[c]\nk=2\n\n";
};

TEST_F(ConfigFileWriting, ReplacesTheFileOrMergesIntoIt) {
  EXPECT_TRUE(file.writeFile(true, false));
  EXPECT_EQ(stored.Read(), "[D]\na=\nb=\nc=\n\n[a]\nk=1\n\n[b]\nk=2\nx=1\n\n[c]\nk=2\n\n");
  EXPECT_EQ(DumpOf(file), inMemory);
  EXPECT_TRUE(file.writeFile(false, false));
  EXPECT_EQ(stored.Read(), inMemory);
}

TEST_F(ConfigFileWriting, WritesAtOnceWhatWasRemovedOrChanged) {
  EXPECT_TRUE(file.removeStanzaWithWrite("C"));
  EXPECT_FALSE(file.findStanza("c"));
  EXPECT_EQ(stored.Read(), "[D]\na=\nb=\n\n[a]\nk=1\n\n[b]\nk=2\nx=1\n\n");
  stored.Write(kStored);
  EXPECT_TRUE(file.changeStanzaWithWrite("B", false));
  EXPECT_EQ(stored.Read(), "[D]\na=\nb=\n\n[a]\nk=1\n\n[b]\nk=2\n\n");
  file.addStanza(new Stanza("e"), true);
  EXPECT_TRUE(file.changeStanzaWithWrite("e", false));
  EXPECT_EQ(stored.Read(), "[D]\na=\nb=\ne=\n\n[a]\nk=1\n\n[b]\nk=2\n\n[e]\n\n");
  // Rewritten when the file alone has the stanza, left alone when nobody has.
  stored.Write("; a note\n[a]\n");
  EXPECT_TRUE(file.changeStanzaWithWrite("nobody's", false));
  EXPECT_EQ(stored.Read(), "; a note\n[a]\n");
  EXPECT_TRUE(file.changeStanzaWithWrite("a", false));
  EXPECT_EQ(stored.Read(), "[a]\n\n");
  // A file without a directory gets the one that lists the stanza.
  EXPECT_TRUE(file.changeStanzaWithWrite("e", false));
  EXPECT_EQ(stored.Read(), "[a]\n\n[D]\nb=\ne=\n\n[e]\n\n");
}

TEST_F(ConfigFileWriting, ChangesNeitherFileNorMemoryWhenItFails) {
  for (const char* const bytes : {"", "[D]\nc=\n\n[a] \n", "[c]\n"}) {
    SCOPED_TRACE(bytes);
    stored.Write(bytes);
    EXPECT_FALSE(file.writeFile(true, false));
    EXPECT_FALSE(file.removeStanzaWithWrite("c"));
    EXPECT_EQ(file.changeStanzaWithWrite("nobody's", false), bytes[0] == '[' && bytes[1] == 'c');
    EXPECT_EQ(stored.Read(), bytes);
    EXPECT_EQ(DumpOf(file), inMemory);
  }
  std::filesystem::remove(stored.path);
  EXPECT_FALSE(file.writeFile(true, false) || file.removeStanzaWithWrite("c") ||
               file.changeStanzaWithWrite("c", false) || file.parseConfigFile());
  EXPECT_FALSE(std::filesystem::exists(stored.path));
  EXPECT_EQ(DumpOf(file), inMemory);
  EXPECT_TRUE(file.writeFile(false, false));
  EXPECT_EQ(stored.Read(), inMemory);
}

TEST_F(ConfigFileWriting, ThatIsCutShortIsNoSuccess) {
  signal(SIGXFSZ, SIG_IGN);
  const rlimit limit = {16, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_FALSE(file.writeFile(false, false));
  EXPECT_EQ(stored.Read(), inMemory.substr(0, 16));
  stored.Write("[D]\na=\n");
  EXPECT_FALSE(file.removeStanzaWithWrite("c"));
  EXPECT_FALSE(file.findStanza("c"));
  EXPECT_LE(stored.Read().size(), 16u);
}

// A file is written in its place: that takes no right in its directory.
TEST(ConfigFileRights, DecideWhatCanBeReadAndWritten) {
  const struct {
    const char* name;
    mode_t rights;
    bool isRead;
    bool isWritten;
  } cases[] = {{"/file", 0666, true, true},
               {"/file", 0444, true, false},
               {"/file", 0000, false, false},
               {"/missing", 0666, false, false},
               {"", 0666, false, false}};
  const TemporaryDirectory folder;
  const std::string stored = folder.path / "file";
  std::ofstream(stored) << "[D]\n\n";
  chmod(folder.path.c_str(), 0555);
  // Nothing is forbidden to root.
  const uid_t self = geteuid();
  const uid_t other = self == 0 ? 65534 : self;
  for (const auto& test : cases) {
    chmod(stored.c_str(), test.rights);
    if (seteuid(other) != 0) GTEST_SKIP() << "this root can't be anybody else";
    ConfigFile file((folder.path.string() + test.name).c_str(), "D");
    EXPECT_EQ(file.parseConfigFile(), test.isRead) << test.name;
    file.createDirectoryStanza();
    const int written = file.writeFile(true, false) + file.removeStanzaWithWrite("a") +
                        file.changeStanzaWithWrite("D", false) + file.writeFile(false, false);
    EXPECT_EQ(written, test.isWritten ? 4 : 0) << test.name;
    EXPECT_EQ(seteuid(self), 0);
  }
  EXPECT_FALSE(std::filesystem::exists(folder.path / "missing"));
  chmod(folder.path.c_str(), 0700);
}

TEST(ConfigFileEvents, SayWhatFailed) {
  const TemporaryFile log;
  const TemporaryFile empty;
  const TemporaryFile large("[a]\nk=v\n;" + std::string(131073 - 9, 'x'));
  ASSERT_TRUE(OpenSystemEventLog(log.path.c_str(), nullptr));
  for (const std::string& path : {std::string("/none/x"), empty.path, large.path}) {
    EXPECT_FALSE(ConfigFile(path.c_str(), "D").parseConfigFile());
  }
  ConfigFile none("/none/x", "D");
  EXPECT_FALSE(none.writeFile(false, false) || none.writeFile(true, false));
  EXPECT_EQ(none.getModificationDate(), 0);
  EXPECT_FALSE(ConfigFile("/dev/full", "D").writeFile(false, false));
  CloseSystemEventLog();
  const std::string opened = "[No such file or directory] could not open file /none/x";
  std::vector<std::string> said;
  for (const std::string& line : LinesOf(log.Read())) {
    constexpr char kKind[] = "CONFIG     ERROR    ";
    said.push_back(line.substr(line.find(kKind) + sizeof kKind - 1));
  }
  EXPECT_THAT(said, testing::ElementsAre(
                        opened, "Invalid size (0) of the file " + empty.path,
                        "Invalid size (131073) of the file " + large.path, opened, opened, opened,
                        "[Invalid argument] could not change size of the file /dev/full"));
}

TEST_F(ConfigFileWriting, RefusesWhatCouldNotBeReadAgainBeforeItTouchesTheFile) {
  const std::string tooLong(255, 'n');
  const struct {
    std::string name;
    std::string key;
    std::string value;
  } cases[] = {{"a]b", "k", "v"},   {"a];b", "k", "v"},
               {tooLong, "k", "v"}, {"n", ";k", "v"},
               {"n", "k;", "v"},    {"n", "[k", "v"},
               {"n", "k[", "v"},    {"n", "", "v"},
               {"n", tooLong, "v"}, {"n", "k", std::string(131072, 'v')}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name + "|" + test.key);
    auto stanza = std::make_unique<Stanza>(test.name.c_str());
    stanza->addValue(test.key.c_str(), test.value.c_str());
    file.addStanza(stanza.release(), true);
    EXPECT_FALSE(file.writeFile(false, false));
    EXPECT_FALSE(file.writeFile(true, false));
    EXPECT_FALSE(file.changeStanzaWithWrite(test.name.c_str(), false));
    EXPECT_EQ(stored.Read(), kStored);
    file.removeStanza(test.name.c_str());
  }
  ConfigFile fresh((stored.path + ".new").c_str(), "D");
  fresh.addStanza(new Stanza("]"), false);
  EXPECT_FALSE(fresh.writeFile(false, false));
  EXPECT_FALSE(std::filesystem::exists(stored.path + ".new"));
}

// What is copied for each time that a stanza is listed would be a gigabyte here.
TEST(ConfigFileMerging, CopiesAStanzaOnceHoweverOftenItIsListed) {
  ConfigFile theirs("", "D");
  ConfigFile ours("", "D");
  theirs.createDirectoryStanza();
  ours.createDirectoryStanza();
  for (int i = 0; i < 3000; ++i) theirs.getStanza("D")->addValue(i % 2 == 0 ? "D" : "s", "");
  auto listed = std::make_unique<Stanza>("s");
  for (const char* const value : {"1", "2"}) listed->addValue("k", value);
  theirs.addStanza(listed.release(), false);
  rusage before = {};
  rusage after = {};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_TRUE(ours.mergeConfigFiles(theirs));
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 50000) << "kilobytes";
  ZuText value;
  EXPECT_TRUE(ours.getStanza("s")->getValue("k", 2, value));
  EXPECT_STREQ(value.GetTextEx(), "2");
  EXPECT_TRUE(ours.getStanza("s")->getValue("k", value));
  EXPECT_STREQ(value.GetTextEx(), "1") << "merged once";
}

// Every byte that may stand there, in texts as long as they may be.
TEST(ConfigFileRoundTrip, WhatTheFormCarriesIsReadAsItWasWritten) {
  std::string name;
  std::string key;
  std::string value;
  for (int byte = 1; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    if (c != ']') name += c;
    if (std::string_view(";=[").find(c) == std::string_view::npos) key += c;
    value += c;
  }
  key += R"(\n)";
  value.append(4095 - value.size(), '\\');
  const TemporaryFile stored;
  ConfigFile written(stored.path.c_str(), "D");
  auto stanza = std::make_unique<Stanza>(name.c_str());
  stanza->addValue(key.c_str(), value.c_str());
  written.addStanza(stanza.release(), false);
  ConfigFile file(stored.path.c_str(), "D");
  ASSERT_TRUE(written.writeFile(false, false) && file.parseConfigFile());
  const Stanza* const read = file.getStanza(name.c_str());
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->getStanzaName().GetTextEx(), name);
  Attribute found;
  ASSERT_TRUE(read->getAttributeIndex(0, found));
  EXPECT_EQ(found.key.GetTextEx(), key);
  EXPECT_EQ(found.value.GetTextEx(), value);
}

}  // namespace

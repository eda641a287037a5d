#include "config_file/config_file.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "config_file/stanza.h"
#include "tests/config_file/temporary_file.h"

namespace {

using quenlatrix::config_file::ConfigFile;
using Stanza = ConfigFile::Stanza;

constexpr char kStored[] = "[Dir]\nFoo=\ngone=\nBar=\n\n[bar]\nk=1\n\n[Foo]\nk=2\n\n[extra]\n\n";

class ConfigFileTest : public testing::Test {
 protected:
  ConfigFileTest() { EXPECT_TRUE(file.parseConfigFile()); }

  const TemporaryFile stored{kStored};
  ConfigFile file{stored.path.c_str(), "dir"};
};

TEST_F(ConfigFileTest, StanzasAreCountedAndWalkedByTheDirectory) {
  EXPECT_EQ(file.getNumberOfStanzas(), 3u);
  EXPECT_EQ(file.getStanzaAtIndex(0), file.getStanza("FOO"));
  EXPECT_EQ(file.getStanzaAtIndex(1), nullptr);
  EXPECT_EQ(file.getStanzaAtIndex(3), nullptr);
  EXPECT_TRUE(file.findStanza("extra"));
  ZuText name;
  std::string walked;
  for (bool more = file.getFirstStanza(name); more; more = file.getNextStanza(name)) {
    walked += std::string(name.GetTextEx()) + " ";
  }
  EXPECT_EQ(walked, "Foo gone Bar ");
  EXPECT_STREQ(name.GetTextEx(), "");
  EXPECT_TRUE(file.getNextStanza(name));
  EXPECT_STREQ(name.GetTextEx(), "gone");
  file.removeStanza("dir");
  EXPECT_FALSE(file.getNextStanza(name) || file.getFirstStanza(name));
  EXPECT_FALSE(file.changeValue("none", "k", "3") || file.getValue("none", "k", name = "before"));
  EXPECT_STREQ(name.GetTextEx(), "");
  EXPECT_EQ(file.getNumberOfStanzas(), 0u);
}

TEST_F(ConfigFileTest, StanzasAreAddedListedAndRemoved) {
  auto* const added = new Stanza("New");
  EXPECT_TRUE(file.addStanza(added, true));
  EXPECT_FALSE(file.addStanza(added, true));
  EXPECT_FALSE(file.addStanza(nullptr, true));
  EXPECT_TRUE(file.addStanza(new Stanza("new"), true));
  EXPECT_TRUE(file.addStanza(new Stanza("quiet"), false));
  EXPECT_EQ(file.getNumberOfStanzas(), 4u);
  EXPECT_EQ(file.getStanzaAtIndex(3), added);
  EXPECT_TRUE(file.removeStanza("FOO"));
  EXPECT_FALSE(file.removeStanza("FOO"));
  EXPECT_FALSE(file.getStanza("dir")->findValue("Foo"));
  file.removeAllStanzas();
  EXPECT_TRUE(file.createDirectoryStanza() && file.createDirectoryStanza());
  EXPECT_EQ(DumpOf(file), "[dir]\n\n");
}

TEST_F(ConfigFileTest, IsNotCopied) {
  const ConfigFile copy(file);
  EXPECT_EQ(copy.GetParseTimestamp(), file.GetParseTimestamp());
  EXPECT_NE(copy.GetParseTimestamp(), 0);
  EXPECT_EQ(copy.getModificationDate(), 0);
  EXPECT_EQ(DumpOf(copy), "");
  const std::string before = DumpOf(file);
  file = copy;
  EXPECT_EQ(DumpOf(file), before);
  EXPECT_EQ(DumpOf(ConfigFile(nullptr, "dir")), "");
}

TEST_F(ConfigFileTest, MergesWhatTheOtherLists) {
  ConfigFile other("", "dir");
  EXPECT_FALSE(file.mergeConfigFiles(other) || other.mergeConfigFiles(file));
  other.createDirectoryStanza();
  for (const char* const name : {"New", "FOO"}) {
    auto added = std::make_unique<Stanza>(name);
    added->addValue("K", "other's");
    other.addStanza(added.release(), true);
  }
  other.addStanza(new Stanza("unlisted"), false);
  EXPECT_TRUE(file.mergeConfigFiles(other));
  const std::string merged =
      "[Dir]\nBar=\nFoo=\ngone=\nNew=\n\n[bar]\nk=1\n\n[Foo]\nk=other's\n\n[extra]\n\n"
      "[New]\nK=other's\n\n";
  EXPECT_EQ(DumpOf(file), merged);
  EXPECT_TRUE(file.mergeConfigFiles(file));
  EXPECT_EQ(DumpOf(file), merged);
}

}  // namespace

#include <gmock/gmock.h>

#include <utility>

#include "config_file/config_file.h"
#include "config_file/stanza.h"
#include "tests/config_file/temporary_file.h"

namespace {

using namespace std::string_literals;
using quenlatrix::config_file::ConfigFile;

const std::string kAs254(254, 'a');
const std::string kAs255(255, 'a');

TEST(ConfigFileReading, ReadsWhatTheFormAllowsAndKeepsWhatStandsBeforeAFault) {
  const struct {
    std::string bytes;
    bool valid;
    std::string read;
  } cases[] = {
      {"[a]\nx=1\nx=2\n\n[b]\ny=\\n\n", true, "[a]\nx=1\nx=2\n\n[b]\ny=\\n\n\n"},
      {"\n; note\n \t; note\n\t [a] ;note]\n;note\n\n[b];\n", true, "[a]\n\n[b]\n\n"},
      {"[a]\n \tk = v \n", true, "[a]\nk = v \n\n"},
      // Where a stanza ends.
      {"[a]\nx=1\n;note\n[b]\n;note\n", true, "[a]\nx=1\n\n[b]\n\n"},
      {"[a]\n[b]\n", false, ""},
      {"[a]\n\nx=1\n", false, "[a]\n\n"},
      {"[a]\nx=1\n;\ny=1\n", false, "[a]\nx=1\n\n"},
      {"[a]\n\n   \n", false, "[a]\n\n"},
      {"[a]x=1\n", false, ""},
      // The end of the file.
      {"\n", true, ""},
      {"junk", true, ""},
      {"junk\n", false, ""},
      {"[a]\n\n  ", true, "[a]\n\n"},
      {"[a]", false, ""},
      {"[a];note", true, "[a]\n\n"},
      {"[a]\nk", true, "[a]\n\n"},
      {"[a]\nk=v", true, "[a]\nk=v\n\n"},
      {"[a]\nk=v\\", true, "[a]\nk=v\\\\\n\n"},
      // Keys and values.
      {"[a]\n=v\n", false, ""},
      {"[a]\n =v\n", true, "[a]\n=v\n\n"},
      {"[a]\nk\n", false, ""},
      {"[a]\nk;=v\n", false, ""},
      {"[a]\nk[=v\n", false, ""},
      {"[a]\nk= ;[]=v\t\n", true, "[a]\nk= ;[]=v\t\n\n"},
      {"[a]\nk\r=v\r\n", true, "[a]\nk\\r=v\\r\n\n"},
      {"[a\nb[;=]\n", true, "[a\\nb[;=]\n\n"},
      // Escapes.
      {"[\\r\\n\\\\\\x\\]\n", true, "[\\r\\n\\\\\\\\x\\\\]\n\n"},
      {"[a]\n\\r\\n\\\\\\x\\=\\r\\n\\\\\\x\\;\\\n", true,
       "[a]\n\\r\\n\\\\\\\\x\\\\=\\r\\n\\\\\\\\x\\\\;\\\\\n\n"},
      {"[a]\nk\\;=v\n", false, ""},
      {"[a]\nk\\\n", false, ""},
      // NUL bytes.
      {"; \0\n[a]\n"s, true, "[a]\n\n"},
      {"[a\\\0]\n"s, false, ""},
      {"[a]\nk\0=v\n"s, false, ""},
      {"[a]\nk=v\0\n"s, false, ""},
      {"\0"s, false, ""},
      // Lengths.
      {"[" + kAs254 + "]\n" + kAs254 + "=\n", true, "[" + kAs254 + "]\n" + kAs254 + "=\n\n"},
      {"[" + kAs255 + "]\n", false, ""},
      {"[a]\n" + kAs255 + "=\n", false, ""},
      {"[a]\nk=v\n;" + std::string(131072 - 9, 'x'), true, "[a]\nk=v\n\n"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.bytes);
    const TemporaryFile stored(test.bytes);
    ConfigFile file(stored.path.c_str(), "Directory");
    EXPECT_EQ(file.parseConfigFile(), test.valid);
    EXPECT_EQ(DumpOf(file), test.read);
  }
}

TEST(ConfigFileReading, CutsAValueAt4095BytesAndGoesOnWithTheNextLine) {
  const std::string v4094(4094, 'v');
  const std::string v4095(4095, 'v');
  const std::pair<std::string, std::string> cases[] = {{v4094, v4094},
                                                       {v4095, v4095},
                                                       {v4095 + "v", v4095},
                                                       {v4095 + v4095, v4095},
                                                       {v4094 + "\\n", v4094 + "\n"},
                                                       {v4094 + "\\x", v4094 + "\\"},
                                                       {v4094 + "\\", v4094 + "\\"},
                                                       {v4095 + "\\n", v4095},
                                                       {v4095 + "\\", v4095}};
  for (const auto& [written, read] : cases) {
    SCOPED_TRACE(written.substr(4094));
    const TemporaryFile stored("[a]\nk=" + written + "\nnext=1\n");
    ConfigFile file(stored.path.c_str(), "");
    EXPECT_TRUE(file.parseConfigFile());
    ZuText value;
    EXPECT_TRUE(file.getValue("a", "k", value));
    EXPECT_EQ(value.GetTextEx(), read);
    EXPECT_TRUE(file.getValue("a", "next", value));
    EXPECT_STREQ(value.GetTextEx(), "1");
  }
}

// What a writer leaves that was killed or found the disk full.
TEST(ConfigFileBeginning, IsReadUnlessItEndsInTheNameOfAStanza) {
  const std::string whole = "[D]\na=1\n\n[bb]\nkk=12\n";
  std::string read;
  const TemporaryFile stored;
  for (std::size_t size = 1; size <= whole.size(); ++size) {
    stored.Write(whole.substr(0, size));
    read += ConfigFile(stored.path.c_str(), "D").parseConfigFile() ? whole[size - 1] : '!';
  }
  EXPECT_EQ(read, "!!!\na=1\n\n!!!!\nkk=12\n");
}

}  // namespace

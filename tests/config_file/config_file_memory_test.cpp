#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "config_file/stanza.h"
#include "tests/config_file/temporary_file.h"
#include "tests/support/refused_allocations.h"

namespace {

using quenlatrix::config_file::ConfigFile;

TEST(ConfigFileMemory, ThatRunsOutCostsNeitherTheFileNorAValue) {
  constexpr char kStored[] = "[D]\na=\nb=\n\n[a]\nk=1\n\n[b]\nlist=x:y\nx=1\ny=2\n\n";
  using Write = bool (*)(ConfigFile&);
  constexpr Write kWrites[] = {
      [](ConfigFile& file) { return file.writeFile(true, false); },
      [](ConfigFile& file) { return file.writeFile(false, false); },
      [](ConfigFile& file) { return file.removeStanzaWithWrite("a"); },
      [](ConfigFile& file) { return file.changeStanzaWithWrite("b", false); },
      [](ConfigFile& file) {
        return file.parseConfigFile() && file.getStanzaAtIndex(1)->removeAttributeList("list") &&
               file.writeFile(false, false);
      }};
  for (const Write write : kWrites) {
    std::string whole;
    bool isRefused = true;
    for (int n = -1; isRefused; ++n) {
      const TemporaryFile stored(kStored);
      ConfigFile file(stored.path.c_str(), "D");
      file.createDirectoryStanza();
      auto changed = std::make_unique<ConfigFile::Stanza>("b");
      changed->addValue("key", "value");
      file.addStanza(changed.release(), true);
      bool isDone = false;
      isRefused = quenlatrix::test::RunsOutOfMemory(n, [&] { isDone = write(file); });
      if (n < 0) whole = stored.Read();
      EXPECT_EQ(stored.Read(), isDone ? whole : kStored) << "allocation " << n;
    }
    EXPECT_NE(whole, kStored);
  }
}

}  // namespace

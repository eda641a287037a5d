#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>

#include "config_file/stanza.h"
#include "tests/config_file/temporary_file.h"

namespace {

// How many allocations are granted before one is refused; none is while this is negative.
int granted = -1;

bool IsRefused() { return granted >= 0 && granted-- == 0; }

}  // namespace

// The linker has what this program and its libraries allocate go through these.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" void* __real_realloc(void* old, std::size_t size);
extern "C" void* __real__Znwm(std::size_t size);

extern "C" void* __wrap_realloc(void* old, std::size_t size) {
  return IsRefused() ? nullptr : __real_realloc(old, size);
}

extern "C" void* __wrap__Znwm(std::size_t size) {
  return IsRefused() ? throw std::bad_alloc() : __real__Znwm(size);
}
// NOLINTEND(bugprone-reserved-identifier)

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
      granted = n;
      try {
        isDone = write(file);
      } catch (const std::bad_alloc&) {
      }
      isRefused = granted < 0;
      granted = -1;
      if (n < 0) whole = stored.Read();
      EXPECT_EQ(stored.Read(), isDone ? whole : kStored) << "allocation " << n;
    }
    EXPECT_NE(whole, kStored);
  }
}

}  // namespace

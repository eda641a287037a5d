#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "config_file/config_file.h"
#include "config_file/stanza.h"
#include "tests/config_file/temporary_file.h"

namespace {

using quenlatrix::config_file::ConfigFile;
using Stanza = ConfigFile::Stanza;
using Clock = std::chrono::steady_clock;

std::chrono::milliseconds Duration() {
  return std::chrono::milliseconds(std::getenv("QUENLATRIX_LONG_TESTS") != nullptr ? 12000 : 1500);
}

using Work = std::function<bool(int worker)>;

// Both give how many of the workers, each its own process or thread, answered true.
int RunInProcesses(int count, const Work& work) {
  std::vector<pid_t> children;
  for (int worker = 0; worker < count; ++worker) {
    children.push_back(fork());
    if (children.back() == 0) {
      alarm(120);
      _exit(work(worker) ? 0 : 1);
    }
  }
  int succeeded = 0;
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    succeeded += status == 0 ? 1 : 0;
  }
  return succeeded;
}

int RunInThreads(int count, const Work& work) {
  alarm(120);
  std::atomic<int> succeeded = 0;
  std::vector<std::thread> threads;
  for (int worker = 0; worker < count; ++worker) {
    threads.emplace_back([&, worker] { succeeded += work(worker) ? 1 : 0; });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  return succeeded;
}

class ConfigFileSharing : public testing::TestWithParam<int (*)(int, const Work&)> {
 protected:
  int Run(int count, const Work& work) const { return GetParam()(count, work); }
};

std::string NameOf(const testing::TestParamInfo<int (*)(int, const Work&)>& test) {
  return test.index == 0 ? "Processes" : "Threads";
}

INSTANTIATE_TEST_SUITE_P(Between, ConfigFileSharing, testing::Values(RunInProcesses, RunInThreads),
                         NameOf);

// A version: each stanza holds its number, the directory says how many there are.
void FillVersion(ConfigFile& file, int version) {
  const std::string number = std::to_string(version);
  file.removeAllStanzas();
  file.createDirectoryStanza();
  for (int i = version % 2 == 0 ? 2 : 400; i > 0; --i) {
    auto stanza = std::make_unique<Stanza>(("stanza" + std::to_string(i)).c_str());
    stanza->addValue("version", number.c_str());
    stanza->addValue("filler", std::string(100, 'x').c_str());
    file.addStanza(stanza.release(), true);
  }
}

bool IsWholeVersion(ConfigFile& file) {
  if (!file.parseConfigFile()) {
    return false;
  }
  ZuText version;
  ZuText other;
  if (!file.getValue("stanza1", "version", version)) {
    return false;
  }
  const unsigned long count = version.GetTextAsULong() % 2 == 0 ? 2 : 400;
  for (unsigned long i = 0; i < count; ++i) {
    Stanza* const stanza = file.getStanzaAtIndex(i);
    if (stanza == nullptr || !stanza->getValue("version", other) || other != version) {
      return false;
    }
  }
  return file.getNumberOfStanzas() == count;
}

TEST_P(ConfigFileSharing, ReadersSeeWholeVersionsOnly) {
  constexpr int kFewest = 20;
  const TemporaryFile stored;
  ConfigFile first(stored.path.c_str(), "Directory");
  FillVersion(first, 0);
  ASSERT_TRUE(first.writeFile(false, false));
  const Clock::time_point end = Clock::now() + Duration();
  const auto write = [&] {
    ConfigFile file(stored.path.c_str(), "Directory");
    int version = 0;
    while (Clock::now() < end || version < kFewest) {
      FillVersion(file, ++version);
      if (!file.writeFile(false, false) || file.getModificationDate() == 0) {
        return false;
      }
    }
    return true;
  };
  const auto read = [&] {
    ConfigFile file(stored.path.c_str(), "Directory");
    int reads = 0;
    for (; Clock::now() < end || reads < kFewest; ++reads) {
      if (!IsWholeVersion(file)) {
        return false;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  };
  EXPECT_EQ(Run(4, [&](int worker) { return worker == 0 ? write() : read(); }), 4);
}

TEST_P(ConfigFileSharing, NoChangeOfAnyWorkerIsLost) {
  constexpr int kRounds = 30;
  const TemporaryFile stored("[Directory]\n\n[common]\n\n");
  const auto work = [&stored](int worker) {
    const std::string own = "worker" + std::to_string(worker);
    bool done = true;
    for (int round = 0; round < kRounds && done; ++round) {
      const std::string name = own + "." + std::to_string(round);
      ConfigFile file(stored.path.c_str(), "Directory");
      file.createDirectoryStanza();
      auto merged = std::make_unique<Stanza>("merged");
      merged->addValue(name.c_str(), "x");
      file.addStanza(merged.release(), true);
      file.addStanza(new Stanza(("kept" + name).c_str()), true);
      file.addStanza(new Stanza(("gone" + name).c_str()), true);
      done = file.writeFile(true, false) && file.changeValue(("kept" + name).c_str(), "k", "v") &&
             file.changeStanzaWithWrite(("kept" + name).c_str(), false) &&
             file.removeStanzaWithWrite(("gone" + name).c_str());
    }
    return done;
  };
  ASSERT_EQ(Run(4, work), 4);
  ConfigFile file(stored.path.c_str(), "Directory");
  ASSERT_TRUE(file.parseConfigFile());
  EXPECT_EQ(file.getStanza("merged")->getNumberOfAttributes(), 4ul * kRounds);
  EXPECT_EQ(file.getNumberOfStanzas(), 4ul * kRounds + 1);
  ZuText name;
  int kept = 0;
  for (bool more = file.getFirstStanza(name); more; more = file.getNextStanza(name)) {
    ZuText value;
    kept += file.getValue(name, "k", value) && value == "v" ? 1 : 0;
  }
  EXPECT_EQ(kept, 4 * kRounds);
}

class ConfigFileThreads : public testing::Test {
 protected:
  ConfigFileThreads() {
    EXPECT_TRUE(files[0].parseConfigFile() && files[1].parseConfigFile());
    for (Stanza& stanza : stanzas) {
      stanza.addValue("k", "v");
    }
  }

  const TemporaryFile stored{"[D]\na=\n\n[a]\nk=v\n\n"};
  ConfigFile files[2] = {{stored.path.c_str(), "D"}, {stored.path.c_str(), "D"}};
  Stanza stanzas[2] = {Stanza("s"), Stanza("S")};
  const Clock::time_point end = Clock::now() + Duration() / 3;
};

TEST_F(ConfigFileThreads, MergeObjectsIntoEachOtherWithoutDeadlock) {
  const auto work = [&](int worker) {
    ConfigFile& file = files[worker % 2];
    ConfigFile& otherFile = files[1 - worker % 2];
    Stanza& stanza = stanzas[worker % 2];
    Stanza& otherStanza = stanzas[1 - worker % 2];
    bool done = true;
    while (Clock::now() < end && done) {
      done = file.mergeConfigFiles(otherFile) && stanza.mergeStanza(otherStanza) &&
             stanza.getNumberOfAttributes() == 1;
      stanza.copyAttributeList(otherStanza);
      stanza = otherStanza;
      done = done && stanza == otherStanza;
    }
    return done;
  };
  EXPECT_EQ(RunInThreads(2, work), 2);
}

TEST_F(ConfigFileThreads, ShareAnObjectWithItsFile) {
  const auto work = [&](int worker) {
    ConfigFile& file = files[worker % 2];
    bool done = true;
    ZuText out;
    while (Clock::now() < end && done) {
      done = file.writeFile(true, false) && file.changeStanzaWithWrite("a", false) &&
             file.parseConfigFile() && file.getValue("a", "k", out) && out == "v" &&
             file.getModificationDate() != 0 && file.GetParseTimestamp() != 0 &&
             file.getNumberOfStanzas() == 1;
    }
    return done;
  };
  EXPECT_EQ(RunInThreads(4, work), 4);
}

TEST(ConfigFileProcesses, WithThreadsWaitForFilesInManyWaysAtOnce) {
  // Two processes whose threads hold one file and wait for the other: no deadlock, though the
  // system takes it for one.
  const TemporaryFile files[] = {TemporaryFile("[D]\n\n"), TemporaryFile("[D]\n\n")};
  const Clock::time_point end = Clock::now() + Duration() / 2;
  const auto work = [&](int) {
    return RunInThreads(2, [&](int worker) {
             bool done = true;
             for (int i = worker; Clock::now() < end && done; ++i) {
               ConfigFile file(files[i % 2].path.c_str(), "D");
               done = file.parseConfigFile() && file.writeFile(true, false);
             }
             return done;
           }) == 2;
  };
  EXPECT_EQ(RunInProcesses(2, work), 2);
}

}  // namespace

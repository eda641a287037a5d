#include <fcntl.h>
#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "config_file/config_file.h"
#include "config_file/stanza.h"
#include "os/file_lock.h"
#include "tests/config_file/temporary_file.h"
#include "tests/support/workers.h"

namespace {

using quenlatrix::config_file::ConfigFile;
using Stanza = ConfigFile::Stanza;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

using Work = std::function<bool(int worker)>;

// Both expect that all of the workers, each its own process or thread, answer true.
void RunInProcesses(int count, const Work& work) {
  std::vector<pid_t> children;
  for (int worker = 0; worker < count; ++worker) {
    children.push_back(StartProcess([&work, worker] { return work(worker); }));
  }
  for (const pid_t child : children) EXPECT_TRUE(Succeeded(child));
}

void RunInOwnThreads(int count, const Work& work) {
  RunInThreads(count, [&work](int worker) { EXPECT_TRUE(work(worker)); });
}

int CountOf(int version) { return version % 2 == 0 ? 2 : 1000; }

bool WriteVersion(ConfigFile& file, int version) {
  auto stanza = std::make_unique<Stanza>("data");
  for (int i = 0; i < CountOf(version); ++i) {
    stanza->addValue("version", std::to_string(version).c_str());
  }
  file.removeAllStanzas();
  return file.addStanza(stanza.release(), false) && file.writeFile(false, false);
}

// Of the first and the last line, and of what is between.
bool IsWholeVersion(ConfigFile& file) {
  ZuText first;
  ZuText last;
  if (!file.parseConfigFile() || !file.getValue("data", "version", first)) {
    return false;
  }
  const int count = CountOf(static_cast<int>(first.GetTextAsULong()));
  const Stanza& stanza = *file.getStanza("data");
  return stanza.getNumberOfAttributes() == static_cast<unsigned long>(count) &&
         stanza.getAttributeValue(stanza.getNumberOfAttributes() - 1, last) && first == last;
}

TEST(ConfigFileSharing, ReadersInProcessesAndThreadsSeeWholeVersionsOnly) {
  constexpr int kFewest = 20;
  const TemporaryFile stored;
  ConfigFile initial(stored.path.c_str(), "Directory");
  ASSERT_TRUE(WriteVersion(initial, 0));
  for (const auto& run : {RunInProcesses, RunInOwnThreads}) {
    const Clock::time_point end = EndAfter(1000ms);
    run(4, [&](int worker) {
      ConfigFile file(stored.path.c_str(), "Directory");
      bool done = true;
      for (int round = 1; done && (Clock::now() < end || round <= kFewest); ++round) {
        if (worker == 0) {
          done = WriteVersion(file, round) && file.getModificationDate() != 0;
        } else {
          done = IsWholeVersion(file);
          // Readers without a pause would leave a writer no gap.
          std::this_thread::sleep_for(1ms);
        }
      }
      return done;
    });
  }
}

// A version as it is written, or where that breaks off.
bool IsBeginningOfAVersion(const std::string& bytes) {
  const std::string start = "[data]\nversion=";
  if (bytes.size() <= start.size()) return start.starts_with(bytes);
  const int version = std::stoi(bytes.substr(start.size()));
  std::string whole = "[data]\n";
  for (int i = 0; i < CountOf(version); ++i) whole += "version=" + std::to_string(version) + "\n";
  return (whole + "\n").starts_with(bytes);
}

TEST(ConfigFileSharing, AKilledWriterLeavesABeginningOfItsVersionAndNoLock) {
  const TemporaryFile stored;
  ConfigFile file(stored.path.c_str(), "Directory");
  const Clock::time_point end = EndAfter(1000ms);
  const pid_t reader = StartProcess([&] {
    std::string read;
    while (Clock::now() < end && IsBeginningOfAVersion(read.substr(0, read.rfind("\n\n")))) {
      if (file.parseConfigFile()) read = DumpOf(file);
    }
    return Clock::now() >= end;
  });
  std::mt19937 random(1);
  int cut = 0;
  for (int round = 0; !HasFailure() && (Clock::now() < end || cut == 0); ++round) {
    const pid_t writer = StartProcess([&] {
      for (int version = round; WriteVersion(file, version);) ++version;
      return false;
    });
    Kill(writer, std::chrono::microseconds(random() % 5000));
    const std::string bytes = stored.Read();
    EXPECT_TRUE(IsBeginningOfAVersion(bytes)) << bytes;
    cut += !bytes.ends_with("\n\n");
    EXPECT_TRUE(WriteVersion(file, round) && IsWholeVersion(file));
  }
  EXPECT_TRUE(Succeeded(reader));
  std::cout << cut << " killed while they wrote\n";
}

TEST(ConfigFileSharing, ALockIsWaitedForAsLongAsItsHolderHasIt) {
  const TemporaryFile stored("[D]\n\n");
  const int fd = open(stored.path.c_str(), O_RDWR);
  std::optional<FileLock> lock(std::in_place, fd, true);
  const pid_t waiting = StartProcess([&stored] {
    ConfigFile file(stored.path.c_str(), "D");
    return file.parseConfigFile() && file.writeFile(true, false);
  });
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(waitpid(waiting, nullptr, WNOHANG), 0);
  lock.reset();
  EXPECT_TRUE(Succeeded(waiting));
  close(fd);
}

TEST(ConfigFileSharing, NoChangeOfProcessesOrThreadsIsLost) {
  constexpr int kRounds = 30;
  for (const auto& run : {RunInProcesses, RunInOwnThreads}) {
    const TemporaryFile stored("[Directory]\n\n");
    run(4, [&stored](int worker) {
      bool done = true;
      for (int round = 0; round < kRounds && done; ++round) {
        const std::string own = std::to_string(worker) + "." + std::to_string(round);
        const std::string kept = "kept" + own;
        const std::string gone = "gone" + own;
        ConfigFile file(stored.path.c_str(), "Directory");
        file.createDirectoryStanza();
        for (const char* const name : {"merged", kept.c_str(), gone.c_str()}) {
          auto stanza = std::make_unique<Stanza>(name);
          stanza->addValue(own.c_str(), "x");
          file.addStanza(stanza.release(), true);
        }
        done = file.writeFile(true, false) &&
               file.changeValue(kept.c_str(), own.c_str(), "changed") &&
               file.changeStanzaWithWrite(kept.c_str(), false) &&
               file.removeStanzaWithWrite(gone.c_str());
      }
      return done;
    });
    ConfigFile file(stored.path.c_str(), "Directory");
    ASSERT_TRUE(file.parseConfigFile());
    EXPECT_EQ(file.getStanza("merged")->getNumberOfAttributes(), 4ul * kRounds);
    EXPECT_EQ(file.getNumberOfStanzas(), 4ul * kRounds + 1);
    ZuText value;
    for (unsigned long i = 0; i < file.getNumberOfStanzas(); ++i) {
      const Stanza& stanza = *file.getStanzaAtIndex(i);
      EXPECT_TRUE(stanza.isStanzaName("merged") ||
                  (stanza.getAttributeValue(0, value) && value == "changed"));
    }
  }
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
  const Clock::time_point end = EndAfter(500ms);
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
  RunInOwnThreads(2, work);
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
  RunInOwnThreads(4, work);
}

// No deadlock, though the system takes it for one: each process has a thread that holds a file
// which a thread of the other waits for.
TEST(ConfigFileSharing, ThreadsOfTwoProcessesHoldOneFileAndWaitForAnother) {
  const TemporaryFile files[] = {TemporaryFile("[D]\n\n"), TemporaryFile("[D]\n\n")};
  const Clock::time_point end = EndAfter(500ms);
  RunInProcesses(2, [&](int) {
    RunInOwnThreads(2, [&](int worker) {
      bool done = true;
      for (int i = worker; Clock::now() < end && done; ++i) {
        ConfigFile file(files[i % 2].path.c_str(), "D");
        done = file.parseConfigFile() && file.writeFile(true, false);
      }
      return done;
    });
    return !testing::Test::HasFailure();
  });
}

}  // namespace

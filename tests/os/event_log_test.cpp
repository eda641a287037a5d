#include "os/event_log.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "os/file_lock.h"
#include "tests/support/files.h"
#include "tests/support/workers.h"

using testing::_;
using testing::Each;
using testing::EndsWith;
using testing::MatchesRegex;
using testing::Pair;
using testing::SizeIs;

namespace {

// What the event log hands to the system log.
thread_local std::pair<int, std::string> handed;

constexpr char kPrefix[] = "\\[ *[0-9]+\\] [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} ";

// The descriptor that the log has open on `path`, -1 if there is none.
int DescriptorOf(const std::string& path) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry, gone) == path) {
      return std::atoi(entry.path().filename().c_str());
    }
  }
  return -1;
}

class EventLogTest : public testing::Test {
 protected:
  ~EventLogTest() override { CloseSystemEventLog(); }

  const TemporaryFile log;
  const std::string& path = log.path;
};

TEST_F(EventLogTest, ALineTellsProcessLocalTimeCategoryTypeAndMessage) {
  for (const char* zone : {"UTC0", "AAA-13:30"}) {
    setenv("TZ", zone, 1);
    ASSERT_TRUE(OpenSystemEventLog(path.c_str(), nullptr));
    EXPECT_TRUE(ReportSystemEvent(EVT_ERROR, CAT_CONFIG, "%s:\n\t%c", "100%s", '%'));
    EXPECT_TRUE(CloseSystemEventLog());
    const std::string line = log.Read();
    EXPECT_THAT(line, MatchesRegex(std::string(kPrefix) + "CONFIG     ERROR    100%s:\n\t%\n"));
    char process[16];
    snprintf(process, sizeof process, "[%5d] ", getpid());
    EXPECT_EQ(line.find(process), 0u) << line;
    std::tm local = {};
    strptime(line.c_str() + line.find(' ', line.find(']')), " %Y-%m-%d %H:%M:%S", &local);
    EXPECT_NEAR(static_cast<double>(mktime(&local)), static_cast<double>(time(nullptr)), 10)
        << line;
    std::filesystem::resize_file(path, 0);
  }
}

TEST_F(EventLogTest, TypesAndCategoriesHaveTheirTextsAndPriorities) {
  const std::map<int, std::pair<std::string, int>> types = {
      {0, {"INFO", 30}}, {1, {"WARNING", 28}}, {2, {"ERROR", 27}}, {3, {"FATAL", 30}}};
  const std::map<int, std::string> categories = {{0, "START"},     {1, "RUNTIME"},  {2, "VERSION"},
                                                 {4, "EXCEPTION"}, {5, "INSTALL"},  {6, "CONFIG"},
                                                 {7, "DEBUG"},     {8, "RESOURCE"}, {9, "STOP"}};
  for (int i = -1; i < 12; i++) {
    const auto [typeText, priority] =
        types.contains(i) ? types.at(i) : std::pair<std::string, int>("UNKNOWN", 30);
    const std::string category = categories.contains(i) ? categories.at(i) : "UNKNOWN";
    EXPECT_EQ(GetSystemEventTypeText(TSysEventType(i)), typeText);
    EXPECT_EQ(GetSystemEventCategoryText(TSysEventCategory(i)), category);
    char expected[64];
    snprintf(expected, sizeof expected, "%-10s %-8s %d%%", category.c_str(), typeText.c_str(), i);
    EXPECT_TRUE(ReportSystemEvent(TSysEventType(i), TSysEventCategory(i), "%d%%", i));
    EXPECT_EQ(handed, std::pair(priority, std::string(expected)));
  }
  handed = {};
  EXPECT_TRUE(ReportSystemEvent(EVT_ERROR, CAT_STOP, ExOSException{ENOENT, "text"}));
  EXPECT_EQ(handed.second, "");
}

TEST_F(EventLogTest, OnlyAnOpenLogIsWrittenAndItIsOpenOnce) {
  EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_START, "before"));
  EXPECT_FALSE(CloseSystemEventLog());
  EXPECT_FALSE(OpenSystemEventLog((path + "/no folder").c_str(), nullptr));
  EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_START, "not opened"));
  EXPECT_THAT(handed.second, EndsWith("not opened"));
  for (const char* text : {"first", "second"}) {
    ASSERT_TRUE(OpenSystemEventLog(path.c_str(), "name"));
    EXPECT_FALSE(OpenSystemEventLog((path + "2").c_str(), nullptr));
    EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_START, "%s", text));
    EXPECT_TRUE(CloseSystemEventLog());
    EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_START, "closed"));
  }
  const std::string line = std::string(kPrefix) + "START      INFO     ";
  EXPECT_THAT(log.Read(), MatchesRegex(line + "first\n" + line + "second\n"));
  EXPECT_FALSE(std::filesystem::exists(path + "2"));
}

TEST_F(EventLogTest, ItsFileIsNotReadableForAll) {
  const std::string made = path + ".made";
  const mode_t before = umask(0);
  ASSERT_TRUE(OpenSystemEventLog(made.c_str(), nullptr));
  umask(before);
  struct stat status = {};
  EXPECT_EQ(stat(made.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  std::filesystem::remove(made);
}

TEST_F(EventLogTest, AMessageIsCutAt10239Characters) {
  ASSERT_TRUE(OpenSystemEventLog(path.c_str(), nullptr));
  EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_DEBUG, "%s", std::string(20000, 'x').c_str()));
  const std::string message = " INFO     " + std::string(10239, 'x');
  EXPECT_THAT(log.Read(), EndsWith(message + "\n"));
  EXPECT_THAT(handed.second, EndsWith(message));
}

TEST_F(EventLogTest, WithoutAPathLinesGoToStandardOutputWhichStaysOpen) {
  testing::internal::CaptureStdout();
  for (const char* none : {"", static_cast<const char*>(nullptr)}) {
    ASSERT_TRUE(OpenSystemEventLog(none, nullptr));
    EXPECT_TRUE(ReportSystemEvent(EVT_FATAL, CAT_STOP, "event"));
    EXPECT_TRUE(CloseSystemEventLog());
    EXPECT_EQ(std::puts("after"), std::char_traits<char>::length("after") + 1);
  }
  const std::string line = std::string(kPrefix) + "STOP       FATAL    event\nafter\n";
  EXPECT_THAT(testing::internal::GetCapturedStdout(), MatchesRegex(line + line));
}

TEST_F(EventLogTest, AFailedWriteIsReportedAndChangesNeitherErrnoNorTheSystemLog) {
  ASSERT_TRUE(OpenSystemEventLog("/dev/full", nullptr));
  errno = ENOENT;
  EXPECT_FALSE(ReportSystemEvent(EVT_INFO, CAT_DEBUG, "no room: %m"));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_THAT(handed.second, EndsWith("no room: No such file or directory"));
}

TEST_F(EventLogTest, ALineThatFindsNoRoomIsLeftCutAndTheNextFollowsIt) {
  signal(SIGXFSZ, SIG_IGN);
  ASSERT_TRUE(OpenSystemEventLog(path.c_str(), nullptr));
  for (const rlim_t room : {rlim_t{40}, RLIM_INFINITY}) {
    const rlimit limit = {room, RLIM_INFINITY};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(ReportSystemEvent(EVT_INFO, CAT_START, "event"), room == RLIM_INFINITY);
  }
  EXPECT_THAT(log.Read().substr(40), MatchesRegex(kPrefix + std::string(".* event\n")));
}

TEST_F(EventLogTest, AFailedCloseLeavesTheLogOpen) {
  ASSERT_TRUE(OpenSystemEventLog(path.c_str(), nullptr));
  close(DescriptorOf(path));
  EXPECT_FALSE(CloseSystemEventLog());
  EXPECT_FALSE(OpenSystemEventLog(path.c_str(), nullptr));
  EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_DEBUG, "still open"));
  EXPECT_THAT(log.Read(), EndsWith(" still open\n"));
  EXPECT_TRUE(CloseSystemEventLog());
}

TEST_F(EventLogTest, UnloadingTheLibraryClosesItsLog) {
  void* const plugin = dlopen(OS_TEST_PLUGIN, RTLD_NOW);
  ASSERT_NE(plugin, nullptr) << dlerror();
  ASSERT_TRUE(reinterpret_cast<bool (*)(const char*)>(dlsym(plugin, "OpenLog"))(path.c_str()));
  EXPECT_NE(DescriptorOf(path), -1);
  dlclose(plugin);
  EXPECT_EQ(dlopen(OS_TEST_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr);
  EXPECT_EQ(DescriptorOf(path), -1);
}

TEST_F(EventLogTest, AReportWaitsForTheFilesLockWhateverSignalsCome) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t other = StartProcess([&] {
    const int fd = open(path.c_str(), O_RDWR | O_APPEND);
    const FileLock lock(fd, true);
    const bool told = lock.IsHeld() && write(ends[1], "x", 1) == 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    return told && write(fd, "other\n", 6) == 6;
  });
  close(ends[1]);
  char sign = 0;
  ASSERT_EQ(read(ends[0], &sign, 1), 1);
  close(ends[0]);
  struct sigaction interrupt = {};
  interrupt.sa_handler = [](int) {};
  sigaction(SIGUSR1, &interrupt, nullptr);
  ASSERT_TRUE(OpenSystemEventLog(path.c_str(), nullptr));
  std::atomic<bool> done = false;
  std::thread reporter([&] {
    EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_DEBUG, "waited"));
    done = true;
  });
  int openedMeanwhile = 0;
  while (!done) {
    pthread_kill(reporter.native_handle(), SIGUSR1);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_FALSE(OpenSystemEventLog(path.c_str(), nullptr));
    ++openedMeanwhile;
  }
  EXPECT_GT(openedMeanwhile, 5) << "opening an open log waits for nobody";
  reporter.join();
  EXPECT_TRUE(Succeeded(other));
  EXPECT_THAT(log.Read(), MatchesRegex("other\n.*waited\n"));
}

TEST_F(EventLogTest, ThreadsReportWhileAnotherOpensAndCloses) {
  constexpr int kRounds = 100;
  std::atomic<bool> done = false;
  std::jthread reporters([&done] {
    RunInThreads(4, [&done](int) {
      while (!done) EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_DEBUG, "other"));
    });
  });
  for (int i = 0; i < kRounds; i++) {
    EXPECT_TRUE(OpenSystemEventLog(path.c_str(), "name"));
    EXPECT_TRUE(ReportSystemEvent(EVT_INFO, CAT_DEBUG, "own"));
    EXPECT_TRUE(CloseSystemEventLog());
  }
  done = true;
  reporters.join();
  int own = 0;
  for (const std::string& line : LinesOf(log.Read())) {
    ASSERT_THAT(line, MatchesRegex(std::string(kPrefix) + "DEBUG      INFO     (own|other)"));
    own += line.ends_with("own");
  }
  EXPECT_EQ(own, kRounds);
}

// Some are longer than a pipe or a default buffer takes at once.
bool ReportLines(const std::string& path) {
  const std::string longText(10000, 'x');
  std::atomic<int> failures = OpenSystemEventLog(path.c_str(), nullptr) ? 0 : 1;
  RunInThreads(4, [&](int thread) {
    for (int i = 0; i < 1000; i++) {
      const char* const text = i % 10 == 0 ? longText.c_str() : "";
      failures += !ReportSystemEvent(EVT_INFO, CAT_DEBUG, "%d %d %s.", thread, i, text);
    }
  });
  return failures == 0 && CloseSystemEventLog();
}

// Expects a whole line of these; process, thread and number of it.
std::array<int, 3> ExpectWhole(const std::string& line) {
  int process = 0, thread = 0, number = 0, text = 0;
  EXPECT_EQ(std::sscanf(line.c_str(), "[%d] %*10c %*8c DEBUG      INFO     %d %d %n", &process,
                        &thread, &number, &text),
            3)
      << line;
  EXPECT_EQ(line.substr(text), std::string(number % 10 == 0 ? 10000 : 0, 'x') + ".");
  return {process, thread, number};
}

TEST_F(EventLogTest, LinesOfManyProcessesStayWholeAndAKilledOneCutsItsLastAlone) {
  constexpr int kKilled = 10;
  const auto end = EndAfter(std::chrono::milliseconds(500));
  do {
    std::filesystem::resize_file(path, 0);
    const auto start = [this] { return StartProcess([this] { return ReportLines(path); }); };
    std::vector<pid_t> others(3);
    for (pid_t& other : others) other = start();
    for (int i = 0; i < kKilled; ++i) Kill(start(), std::chrono::milliseconds(2 + i));
    for (const pid_t other : others) EXPECT_TRUE(Succeeded(other));
    std::string text = log.Read();
    text.resize(text.rfind('\n') + 1);
    int cut = 0;
    // By process and thread, the number of its next line.
    std::map<std::pair<int, int>, int> next;
    // A cut line has the next one behind it.
    for (const std::string& line : LinesOf(text)) {
      const std::size_t begin = line.rfind('[');
      cut += begin != 0;
      const auto [process, thread, number] = ExpectWhole(line.substr(begin));
      if (std::ranges::count(others, process) == 0) continue;
      ASSERT_EQ(number, next[std::pair(process, thread)]++);
    }
    EXPECT_LE(cut, kKilled);
    EXPECT_THAT(next, SizeIs(12));
    EXPECT_THAT(next, Each(Pair(_, 1000)));
    std::cout << cut << " lines cut by " << kKilled << " killed\n";
  } while (!HasFailure() && std::chrono::steady_clock::now() < end);
}

TEST_F(EventLogTest, TheSystemLogReceivesPriorityNameAndText) {
  const std::string alone =
      "unshare --user --map-root-user --mount sh -c 'mount -t tmpfs none /dev";
  if (std::system((alone + "' 2>&1").c_str()) != 0) {
    GTEST_SKIP() << "no namespace with a /dev of its own can be made here; what is handed to "
                    "syslog was looked at in the other tests";
  }
  ASSERT_EQ(std::system((alone + " && exec " EVENT_LOG_PROCESS "' > " + path).c_str()), 0);
  std::ifstream received(path);
  for (const auto& [priority, type] :
       std::vector<std::pair<std::string, std::string>>{{"30", "INFO    "},
                                                        {"28", "WARNING "},
                                                        {"27", "ERROR   "},
                                                        {"30", "FATAL   "},
                                                        {"30", "UNKNOWN "}}) {
    std::string message;
    std::getline(received, message);
    EXPECT_THAT(message, MatchesRegex("<" + priority +
                                      ">[A-Z][a-z]{2} [ 0-9]{2} [0-9:]{8} under "
                                      "this name\\[[0-9]+\\]: CONFIG     " +
                                      type + " 100% of %s%n"));
  }
}

}  // namespace

// Stands before the C library's, for this program: tests don't belong into the machine's own log.
extern "C" void syslog(int priority, const char* format, ...) {
  char message[20480];
  va_list args;
  va_start(args, format);
  vsnprintf(message, sizeof message, format, args);
  va_end(args);
  handed = {priority, message};
}

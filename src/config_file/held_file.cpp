#include "config_file/held_file.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <set>

#include "os/event_log.h"

namespace quenlatrix::config_file {

namespace {

// Who waits for a turn waits for a condition, so this isn't a Mutex. It guards `takenFiles`.
std::mutex turns;
std::condition_variable turnGivenBack;
// By device and node: a file may have many paths.
std::set<std::pair<dev_t, ino_t>> takenFiles;

struct Mode {
  int flags;
  const char* stream;
  bool exclusive;
};

// By Access. None truncates: another process may still be reading.
constexpr Mode kModes[] = {
    {O_RDONLY, "r", false}, {O_RDWR, "r+", true}, {O_WRONLY | O_CREAT, "w", true}};

constexpr mode_t kReadAndWriteByAll = 0666;

}  // namespace

FileTurn::FileTurn(const struct stat& file) : file(file.st_dev, file.st_ino) {
  std::unique_lock<std::mutex> hold(turns);
  turnGivenBack.wait(hold, [this] { return takenFiles.count(this->file) == 0; });
  takenFiles.insert(this->file);
}

FileTurn::~FileTurn() {
  const std::lock_guard<std::mutex> hold(turns);
  takenFiles.erase(file);
  turnGivenBack.notify_all();
}

HeldFile::HeldFile(const char* path, Access access) : path(path) {
  const Mode& mode = kModes[static_cast<int>(access)];
  const int fd = open(path, mode.flags | O_CLOEXEC, kReadAndWriteByAll);
  if (fd != -1) {
    stream.reset(fdopen(fd, mode.stream));
  }
  if (stream != nullptr) {
    Take(mode.exclusive);
  } else {
    Fail("[%s] could not open file %s");
    if (fd != -1) {
      close(fd);
    }
  }
}

HeldFile::~HeldFile() {
  // What could not be written must not be once the lock is given back.
  if (stream != nullptr && ferror(stream.get()) != 0) {
    __fpurge(stream.get());
  }
}

void HeldFile::Take(bool exclusive) {
  struct stat status = {};
  if (GetFileStatusInfo(Path(), Descriptor(), status) == -1) {
    Fail("[%s] cannot retrieve file status data for %s");
    return;
  }
  turn.emplace(status);
  lock.emplace(Descriptor(), exclusive);
  if (!lock->IsHeld()) {
    Fail("[%s] could not lock file %s");
  }
}

void HeldFile::Fail(const char* format) {
  failure = format;
  error = errno;
}

void HeldFile::ReportFailure() const {
  ReportSystemEvent(EVT_ERROR, CAT_CONFIG, failure, strerror(error), Path());
}

bool HeldFile::Report(const char* format) const {
  ReportSystemEvent(EVT_ERROR, CAT_CONFIG, format, strerror(errno), Path());
  return false;
}

}  // namespace quenlatrix::config_file

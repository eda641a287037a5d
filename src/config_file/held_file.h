#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

#include "os/file_lock.h"
#include "text/zu_text.h"

namespace quenlatrix::config_file {

// This process's turn at a file: while it lasts, no other thread has one at the same file, under
// whatever path. Waits for it. A thread that has one must not ask for another.
//
// The operating system's lock can't do this: it keeps no thread of this process out, and is lost
// when any of them closes the file.
class FileTurn {
 public:
  explicit FileTurn(const struct stat& file);
  ~FileTurn();
  FileTurn(const FileTurn&) = delete;
  FileTurn& operator=(const FileTurn&) = delete;

 private:
  std::pair<dev_t, ino_t> file;
};

// A file, open and held for a scope: nobody else changes it, and nobody else reads it while it is
// held for a change. That goes for the threads of this process and for the processes that lock it.
// Waits until it is granted. For one thread, which must hold no ConfigFile's and no stanza's lock.
class HeldFile {
 public:
  enum class Access {
    // For reading, beside readers in other processes.
    Read,
    // For reading and writing; the content stays.
    Change,
    // For writing; made when it is missing, otherwise the content stays.
    Replace,
  };

  HeldFile(const char* path, Access access);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  bool IsOpen() const { return stream != nullptr; }
  // When false, the file can't be used; ReportFailure says why.
  bool IsHeld() const { return failure == nullptr; }
  void ReportFailure() const;

  // Reports what went wrong with this file just now, as errno has it; `format` takes two texts: the
  // system's and the path. Always false.
  bool Report(const char* format) const;

  // Lent; at the file's beginning when it was opened.
  std::FILE* Stream() const { return stream.get(); }
  int Descriptor() const { return fileno(stream.get()); }
  const char* Path() const { return path.GetTextEx(); }

 private:
  struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };

  void Take(bool exclusive);
  void Fail(const char* format);

  ZuText path;
  // What ReportFailure says: the format and errno; null while there is no failure.
  const char* failure = nullptr;
  int error = 0;
  // In the order in which they are taken.
  std::optional<FileTurn> turn;
  std::unique_ptr<std::FILE, CloseStream> stream;
  std::optional<FileLock> lock;
};

}  // namespace quenlatrix::config_file

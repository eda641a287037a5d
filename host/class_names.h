#pragma once

#include <jni.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "host/monitor.h"

namespace quenlatrix::host {

// The bean classes in jars and directories, looked for on a thread of its own. Any thread may ask.
class ClassNames {
 public:
  // `classPath`: entries with ":" between them.
  ClassNames(JavaVM* machine, const std::string& classPath);
  // Waits for the entry that is being looked through.
  ~ClassNames();
  ClassNames(const ClassNames&) = delete;
  ClassNames& operator=(const ClassNames&) = delete;

  // What has been found so far; waits a moment for the rest.
  std::vector<std::string> Get();
  bool IsComplete() const { return isComplete; }

 private:
  void Look(JavaVM* machine, const std::vector<std::string>& entries);

  Monitor monitor;
  std::vector<std::string> names GUARDED_BY(monitor);
  std::atomic<bool> isComplete = false;
  std::atomic<bool> isClosing = false;
  std::thread thread;
};

}  // namespace quenlatrix::host

#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>

#include "host/monitor.h"

namespace quenlatrix::host {

// How many elements something long has done so far.
using ElementCount = std::shared_ptr<const std::atomic<std::size_t>>;

// What goes on, shown in one line on standard error when it takes longer than a second, and wiped
// away when it has ended: "walk list, 120000 elements (3 s)". Nothing where standard error is no
// terminal. Any thread may call its operations.
class ProgressLine {
 public:
  ProgressLine();
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // What goes on from now on; its second begins.
  void Begin(const std::string& what, ElementCount elements = nullptr);
  // How far that has come, in its stead: the second goes on.
  void Continue(const std::string& what, ElementCount elements = nullptr);
  void End();
  // Wipes the line away, because something else is to be written; it comes back at its next turn.
  void Hide();

 private:
  using Clock = std::chrono::steady_clock;

  void Tick();
  void Show() REQUIRES(monitor);
  void Wipe() REQUIRES(monitor);

  const bool isOn;
  Monitor monitor;
  std::string what GUARDED_BY(monitor);
  ElementCount elements GUARDED_BY(monitor);
  Clock::time_point begin GUARDED_BY(monitor);
  bool isShown GUARDED_BY(monitor) = false;
  bool isClosing GUARDED_BY(monitor) = false;
  std::thread ticker;
};

}  // namespace quenlatrix::host

#include "host/progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "host/terminal.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

constexpr auto kSilence = std::chrono::seconds(1);
constexpr auto kTurn = std::chrono::milliseconds(250);

// What fits into one line of the terminal, which would scroll otherwise.
std::string CutToLine(const std::string& text) {
  std::wstring characters = Utf8ToWide(text);
  while (!characters.empty() && WidthOf(characters) >= ColumnsOf(STDERR_FILENO)) {
    characters.pop_back();
  }
  return WideToUtf8(characters);
}

}  // namespace

ProgressLine::ProgressLine() : isOn(isatty(STDERR_FILENO) == 1) {
  if (isOn) ticker = std::thread([this] { Tick(); });
}

ProgressLine::~ProgressLine() {
  End();
  {
    const MonitorLock lock(monitor);
    isClosing = true;
    monitor.NotifyAll();
  }
  if (ticker.joinable()) ticker.join();
}

void ProgressLine::Begin(const std::string& newWhat, ElementCount newElements) {
  Continue(newWhat, std::move(newElements));
  const MonitorLock lock(monitor);
  Wipe();
  begin = Clock::now();
}

void ProgressLine::Continue(const std::string& newWhat, ElementCount newElements) {
  if (!isOn) return;
  const MonitorLock lock(monitor);
  what = newWhat;
  elements = std::move(newElements);
}

void ProgressLine::End() { Begin({}); }

void ProgressLine::Hide() {
  const MonitorLock lock(monitor);
  Wipe();
}

void ProgressLine::Tick() {
  const MonitorLock lock(monitor);
  while (!isClosing) {
    monitor.WaitFor(kTurn);
    if (what.empty()) {
      Wipe();
    } else if (Clock::now() - begin >= kSilence) {
      Show();
    }
  }
}

void ProgressLine::Show() {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin);
  std::string text = what;
  if (elements && *elements > 0) text += ", " + std::to_string(*elements) + " elements";
  text = CutToLine(text + " (" + std::to_string(seconds.count()) + " s)");
  std::fprintf(stderr, "\r\033[K%s", text.c_str());
  isShown = true;
}

void ProgressLine::Wipe() {
  if (isShown) std::fputs("\r\033[K", stderr);
  isShown = false;
}

}  // namespace quenlatrix::host

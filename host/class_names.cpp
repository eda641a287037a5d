#include "host/class_names.h"

#include <sstream>

#include "host/bean_discovery.h"

namespace quenlatrix::host {

namespace {

// So long a person hardly notices.
constexpr auto kMoment = std::chrono::milliseconds(300);

}  // namespace

ClassNames::ClassNames(JavaVM* machine, const std::string& classPath) {
  std::vector<std::string> entries;
  std::istringstream stream(classPath);
  for (std::string entry; std::getline(stream, entry, ':');) {
    if (!entry.empty()) entries.push_back(entry);
  }
  thread = std::thread([this, machine, entries] { Look(machine, entries); });
}

ClassNames::~ClassNames() {
  isClosing = true;
  thread.join();
}

void ClassNames::Look(JavaVM* machine, const std::vector<std::string>& entries) {
  for (const std::string& entry : entries) {
    if (isClosing) break;
    const Discovery found = DiscoverBeans(machine, entry);
    const MonitorLock lock(monitor);
    names.insert(names.end(), found.names.begin(), found.names.end());
  }
  const MonitorLock lock(monitor);
  isComplete = true;
  monitor.NotifyAll();
}

std::vector<std::string> ClassNames::Get() {
  const MonitorLock lock(monitor);
  if (!isComplete) monitor.WaitFor(kMoment);
  return names;
}

}  // namespace quenlatrix::host

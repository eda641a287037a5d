#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/held_values.h"
#include "host/interrupt.h"
#include "host/session.h"

namespace quenlatrix::host {

// Runs statements one after another, each on a thread and a session of its own, so that who waits
// for one can stop waiting: it then goes on by itself, and its names stay held until it ends. For
// one thread. Its Host and the names must outlive it.
class StatementRunner {
 public:
  StatementRunner(Host& host, HeldValues& names, const TextStyle& style, ProgressLine& progress);
  // Waits for the statements that still go on.
  ~StatementRunner();
  StatementRunner(const StatementRunner&) = delete;
  StatementRunner& operator=(const StatementRunner&) = delete;

  // What the statement came to; nothing when an interrupt ended the wait. What it comes to
  // then is dropped, and no name is changed by it.
  std::optional<Report> Run(const std::string& statement, InterruptWatch& interrupts);
  // The names that the statement which was given up last uses.
  std::vector<std::string> GetNamesOfLastGivenUp() const;
  // The statements among those that were given up that have ended since this was asked last.
  std::vector<std::string> TakeEnded();
  // How many of those still go on.
  std::size_t CountGoingOn();

 private:
  class Job;

  Host& host;
  HeldValues& names;
  const TextStyle style;
  ProgressLine& progress;
  std::list<std::unique_ptr<Job>> givenUp;
};

}  // namespace quenlatrix::host

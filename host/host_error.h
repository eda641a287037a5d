#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "host/statement_place.h"

namespace quenlatrix::host {

// What a run of beanhost ends with.
enum class ExitStatus : int {
  Done = 0,
  Failed = 1,          // a call was refused or failed
  Usage = 2,           // an unknown command, option or statement
  NothingToRunOn = 3,  // no Java VM, no plug-in, no handler
};

// Why a command or statement can't go on, in words for the person who typed it: what was expected,
// what was found, what to do next. Copyable, as exceptions are.
class HostError : public std::runtime_error {
 public:
  HostError(ExitStatus status, const std::string& text)
      : std::runtime_error(text), exitStatus(status) {}
  HostError(ExitStatus status, const std::string& text, const Place& place)
      : std::runtime_error(text), exitStatus(status), place(place) {}

  ExitStatus exitStatus;
  // Where in the statement the reason stands, when it stands somewhere.
  std::optional<Place> place;
};

}  // namespace quenlatrix::host

#pragma once

namespace quenlatrix::host {

// Remembers how the terminal is set now, before anything changes it. For the start of the program.
void RememberTerminal();

// Ends the process for a bean that ends the VM, which would otherwise pass for success: restores
// the terminal, says on standard error and in the event log what happened, and exits with status 1.
// For JavaVm::Options::onExit.
[[noreturn]] void EndForBean(int status);

}  // namespace quenlatrix::host

#pragma once

#include "host/argument.h"
#include "host/held_values.h"

namespace quenlatrix::host {

class Host;

// The argument itself, or what the name in it stands for, which the loan must keep while the result
// is in use. It asks the virtual machine, so it may be slow. Throws HostError (Failed).
Argument Resolve(Host& host, const Argument& argument, HeldValues::Loan& loan);

}  // namespace quenlatrix::host

#pragma once

#include <string>

#include "host/session.h"

namespace quenlatrix::host {

// What "handlers.ini" offers, and of each entry whether a host would use it, and why. Loads the
// enabled plug-ins to see, and starts no virtual machine. `pluginFile`: the one that overrules the
// registry, or empty. Fails (NothingToRunOn) when there is no registry, when it offers nothing, and
// when that file doesn't serve.
Report ListHandlers(const std::string& pluginFile);

}  // namespace quenlatrix::host

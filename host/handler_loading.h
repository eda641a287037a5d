#pragma once

#include <memory>
#include <string>
#include <vector>

#include "meta_object/handler_registry.h"

namespace quenlatrix::meta_object {
class Environment;
}

namespace quenlatrix::host {

class HandlerSet;

// A stanza of the registry and what became of it.
struct RegisteredHandler {
  std::unique_ptr<meta_object::Handler::EnumInfo> info;
  bool isUsed = false;
  std::string why;  // it is used or not: a clause without a full stop
};

// Reads "handlers.ini"; empty when it isn't there, can't be read or names no handler. The switched-
// off ones, which the registry reports as events, have their `why` already.
std::vector<RegisteredHandler> ReadRegistry();

// Loads what a host is to serve: `pluginFile` alone when it is given, otherwise the enabled ones of
// the registry, each with its attributes in the environment, and where there is no registry the
// plug-in that came with the program. Sets the verdicts; an enabled handler that doesn't serve is
// an event and passed over. False when nothing serves; `why` says what was looked for, where, and
// what to do.
bool LoadHandlers(const std::string& pluginFile, std::vector<RegisteredHandler>& registered,
                  meta_object::Environment& environment, HandlerSet& handlers, std::string& why);

}  // namespace quenlatrix::host

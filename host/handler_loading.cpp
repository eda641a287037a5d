#include "host/handler_loading.h"

#include <filesystem>
#include <utility>

#include "host/events.h"
#include "host/handler_set.h"
#include "host/installation_root.h"
#include "meta_object/environment.h"

namespace quenlatrix::host {

namespace fs = std::filesystem;
using meta_object::Handler;

namespace {

bool LoadFile(const std::string& file, HandlerSet& handlers, std::string& why) {
  if (handlers.Add(file, why) != nullptr) {
    return true;
  }
  why = "the plug-in doesn't serve: " + why +
        ". Use the plug-in that came with this host, or name its file with --plugin.";
  return false;
}

void LoadOne(RegisteredHandler& handler, HandlerSet& handlers) {
  const std::string path = handler.info->serverPath.GetTextEx();
  if (path.empty()) {
    handler.why = "its stanza has no ServerPath, the file of its plug-in";
    return;
  }
  // A full path replaces the root.
  const PluginLibrary* plugin =
      handlers.Add((fs::path(InstallationRoot()) / path).lexically_normal().string(), handler.why);
  handler.isUsed = plugin != nullptr;
  if (handler.isUsed) {
    handler.why = "serves " + plugin->GetType() + " from " + plugin->GetFile();
  }
}

void LoadEnabled(std::vector<RegisteredHandler>& registered, meta_object::Environment& environment,
                 HandlerSet& handlers) {
  for (RegisteredHandler& handler : registered) {
    if (!handler.info->loadHandler) {
      continue;
    }
    const std::size_t attributesBefore = environment.attributes.size();
    for (const auto& attribute : handler.info->attributes) {
      environment.attributes.push_back(std::make_unique<Handler::Attribute>(*attribute));
    }
    LoadOne(handler, handlers);
    if (!handler.isUsed) {
      environment.attributes.resize(attributesBefore);
      ReportEvent(EVT_ERROR, CAT_CONFIG,
                  std::string(handler.info->handlerName.GetTextEx()) +
                      " Handler: not loaded: " + handler.why);
    }
  }
}

std::string WhyNoneServes(const std::vector<RegisteredHandler>& registered) {
  const std::string file = PlacesOfRegistry().front();
  if (registered.empty()) {
    return file +
           " offers no handler: expected a stanza [Handlers] whose keys name the handlers' own "
           "stanzas, in a file that can be read. Correct it, or name a plug-in with --plugin.";
  }
  std::string why = "no handler of " + file + " can be used:";
  for (const RegisteredHandler& handler : registered) {
    why += std::string("\n  ") + handler.info->handlerName.GetTextEx() + ": " + handler.why;
  }
  return why;
}

}  // namespace

std::vector<RegisteredHandler> ReadRegistry() {
  std::vector<RegisteredHandler> registered;
  Handler::Enum registry;
  if (!registry.IsRegistryAvailable()) {
    return registered;
  }
  for (const Handler::EnumInfo* entry = registry.GetFirst(false); entry != nullptr;
       entry = registry.GetNext()) {
    RegisteredHandler handler;
    handler.info.reset(entry->CloneHandlerInfo());
    if (!entry->loadHandler) {
      handler.why = "disabled by LoadHandler; LoadHandler=1 in its stanza enables it";
    }
    registered.push_back(std::move(handler));
  }
  return registered;
}

bool LoadHandlers(const std::string& pluginFile, std::vector<RegisteredHandler>& registered,
                  meta_object::Environment& environment, HandlerSet& handlers, std::string& why) {
  if (!pluginFile.empty()) {
    for (RegisteredHandler& handler : registered) {
      if (handler.info->loadHandler) {
        handler.why = "overruled by --plugin " + pluginFile;
      }
    }
    return LoadFile(pluginFile, handlers, why);
  }
  if (!Handler::Enum().IsRegistryAvailable()) {
    return LoadFile(PluginLibrary::DefaultFile(), handlers, why);
  }
  LoadEnabled(registered, environment, handlers);
  if (handlers.IsEmpty()) {
    why = WhyNoneServes(registered);
  }
  return !handlers.IsEmpty();
}

}  // namespace quenlatrix::host

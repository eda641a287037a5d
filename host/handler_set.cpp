#include "host/handler_set.h"

#include <algorithm>
#include <utility>

#include "host/events.h"
#include "meta_object/handler.h"

namespace quenlatrix::host {

namespace {

template <class Plugins, class Matches>
PluginLibrary* FindFirst(const Plugins& plugins, Matches matches) {
  const auto found = std::find_if(plugins.begin(), plugins.end(),
                                  [&](const auto& plugin) { return matches(*plugin); });
  return found == plugins.end() ? nullptr : found->get();
}

std::string WhyServedAlready(const PluginLibrary& plugin) {
  return "the handler type " + plugin.GetType() + " is served already, by " + plugin.GetFile();
}

}  // namespace

HandlerSet::~HandlerSet() {
  while (!plugins.empty()) {
    plugins.pop_back();
  }
}

const PluginLibrary* HandlerSet::Add(const std::string& file, std::string& why) {
  std::unique_ptr<PluginLibrary> plugin = PluginLibrary::Load(file, why);
  if (plugin == nullptr) {
    return nullptr;
  }
  // The same image once more must not be initialised, nor cleaned up, under the first one's feet.
  if (const PluginLibrary* first = FindByModule(plugin->GetModule())) {
    why = WhyServedAlready(*first);
    return nullptr;
  }
  if (!plugin->Initialise(&environment, why)) {
    return nullptr;
  }
  if (const PluginLibrary* first = FindByType(plugin->GetType())) {
    why = WhyServedAlready(*first);
    return nullptr;
  }
  plugins.push_back(std::move(plugin));
  return plugins.back().get();
}

bool HandlerSet::Start(JavaVM* machine, std::string& why) {
  bool makesAny = false;
  for (const std::unique_ptr<PluginLibrary>& plugin : plugins) {
    plugin->SetVm(machine);
    if (plugin->MakeReceiver(why)) {
      makesAny = true;
    } else {
      ReportEvent(EVT_ERROR, CAT_START, "handler " + plugin->GetType() + " is of no use: " + why);
    }
  }
  return makesAny;
}

PluginLibrary* HandlerSet::FindByType(std::string_view type) const {
  return FindFirst(plugins, [&](const PluginLibrary& plugin) { return plugin.GetType() == type; });
}

PluginLibrary* HandlerSet::FindByModule(const void* module) const {
  return FindFirst(plugins,
                   [&](const PluginLibrary& plugin) { return plugin.GetModule() == module; });
}

PluginLibrary* HandlerSet::FindMaker(const meta_object::Handler& handler) const {
  const meta_object::info::HandlerInfo* info = handler.GetHandlerInfo();
  return FindFirst(plugins, [&](const PluginLibrary& plugin) { return plugin.GetInfo() == info; });
}

PluginLibrary* HandlerSet::GetDefault() const {
  PluginLibrary* bean = FindByType(kBeanType);
  return bean != nullptr || plugins.empty() ? bean : plugins.front().get();
}

std::string HandlerSet::DescribeTypes() const {
  std::string types;
  for (const std::unique_ptr<PluginLibrary>& plugin : plugins) {
    types += (types.empty() ? "" : ", ") + plugin->GetType();
  }
  return types;
}

}  // namespace quenlatrix::host

#include "host/handlers_listing.h"

#include "host/handler_loading.h"
#include "host/handler_set.h"
#include "host/installation_root.h"
#include "meta_object/environment.h"

namespace quenlatrix::host {

namespace {

using meta_object::Handler;

Document EntryDocument(const RegisteredHandler& handler) {
  const Handler::EnumInfo& info = *handler.info;
  Document attributes = Document::object();
  for (const auto& attribute : info.attributes) {
    // Of several with one key the first counts, as in a look-up.
    attributes.emplace(attribute->key.GetTextEx(), attribute->value.GetTextEx());
  }
  return {{"name", info.handlerName.GetTextEx()},
          {"shortName", info.shortName.GetTextEx()},
          {"description", info.description.GetTextEx()},
          {"serverPath", info.serverPath.GetTextEx()},
          {"load", info.loadHandler},
          {"supportsScanning", info.supportsScanning},
          {"attributes", std::move(attributes)},
          {"used", handler.isUsed},
          {"why", handler.why}};
}

std::string EntryText(const RegisteredHandler& handler) {
  const std::string shortName = handler.info->shortName.GetTextEx();
  const std::string description = handler.info->description.GetTextEx();
  return std::string(handler.info->handlerName.GetTextEx()) +
         (shortName.empty() ? "" : " (" + shortName + ")") +
         (description.empty() ? "" : ": " + description) + "\n" +
         (handler.isUsed ? "  used: " : "  not used: ") + handler.why + "\n";
}

std::string WhyThereIsNone() {
  std::string why;
  if (IsInstallationRootTooLong()) {
    why = "the installation root is too long to look for handlers.ini there: expected at most " +
          std::to_string(kLongestInstallationRoot) + " characters.\n";
  } else {
    why = "there is no handlers.ini; looked for\n";
    for (const std::string& place : PlacesOfRegistry()) {
      why += "  " + place + "\n";
    }
  }
  return why +
         "Set QUENLATRIX_PATH to the directory that holds Configuration/handlers.ini. Until then "
         "beanhost uses " +
         PluginLibrary::DefaultFile() + ", or the file that --plugin names.";
}

}  // namespace

Report ListHandlers(const std::string& pluginFile) {
  Report report;
  report.document["handlers"] = Document::array();
  if (!Handler::Enum().IsRegistryAvailable()) {
    report.Fail(ExitStatus::NothingToRunOn, WhyThereIsNone());
    return report;
  }
  meta_object::Environment environment;
  HandlerSet handlers(environment);
  std::vector<RegisteredHandler> registered = ReadRegistry();
  std::string why;
  const bool isServed = LoadHandlers(pluginFile, registered, environment, handlers, why);
  report.text = PlacesOfRegistry().front() + "\n";
  for (const RegisteredHandler& handler : registered) {
    report.document["handlers"].push_back(EntryDocument(handler));
    report.text += EntryText(handler);
  }
  if (!isServed) {
    report.Fail(ExitStatus::NothingToRunOn, why);
  } else if (!pluginFile.empty()) {
    report.text += "--plugin " + pluginFile + "\n  used: serves " + handlers.DescribeTypes() + "\n";
  }
  return report;
}

}  // namespace quenlatrix::host

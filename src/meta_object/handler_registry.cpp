#include "meta_object/handler_registry.h"

#include <unistd.h>

#include <cstring>
#include <string_view>

#include "os/event_log.h"
#include "text/whole_text.h"

namespace quenlatrix::meta_object {

using config_file::ConfigFile;
using text::SetWhole;
using Stanza = ConfigFile::Stanza;

namespace {

constexpr const char* kRegistryName = "handlers.ini";
constexpr const char* kDirectoryName = "Handlers";
constexpr const char* kLoadKey = "LoadHandler";
constexpr const char* kScanningKey = "SupportsScanning";

struct TextKey {
  const char* key;
  ZuText Handler::EnumInfo::*text;
};
constexpr TextKey kTextKeys[] = {
    {"ServerPath", &Handler::EnumInfo::serverPath},
    {"ShortName", &Handler::EnumInfo::shortName},
    {"Description", &Handler::EnumInfo::description},
};

void ReadSwitch(Stanza& stanza, Handler::EnumInfo& entry) {
  entry.loadHandler = IsStanzaValueTrue(&stanza, kLoadKey);
  if (!entry.loadHandler) {
    const char* name = entry.handlerName.GetTextEx();
    ReportSystemEvent(EVT_INFO, CAT_START, "%s Handler: LoadHandler in handlers.ini is set to 0",
                      name);
    ReportSystemEvent(EVT_INFO, CAT_START, "%s Handler: Administratively Disabled", name);
  }
}

void ReadAttribute(Stanza& stanza, const collect::Attribute& attribute, Handler::EnumInfo& entry) {
  const std::string_view key = attribute.key.GetTextEx();
  for (const TextKey& row : kTextKeys) {
    if (key == row.key) {
      SetWhole(entry.*row.text, attribute.value);
      return;
    }
  }
  if (key == kScanningKey) {
    entry.supportsScanning = IsStanzaValueTrue(&stanza, kScanningKey);
  } else if (key == kLoadKey) {
    ReadSwitch(stanza, entry);
  } else {
    entry.AddHandlerAttribute(entry.handlerName.GetTextEx(), attribute.key.GetTextEx(),
                              attribute.value.GetTextEx());
  }
}

std::unique_ptr<Handler::EnumInfo> ReadEntry(Stanza& stanza) {
  auto entry = std::make_unique<Handler::EnumInfo>();
  SetWhole(entry->handlerName, stanza.getStanzaName());
  const unsigned long count = stanza.getNumberOfAttributes();
  for (unsigned long i = 0; i < count; ++i) {
    collect::Attribute attribute;
    stanza.getAttributeIndex(i, attribute);
    ReadAttribute(stanza, attribute, *entry);
  }
  return entry;
}

}  // namespace

void Handler::EnumInfo::AddHandlerAttribute(const char* handlerName, const char* key,
                                            const char* value) {
  if (key != nullptr && value != nullptr) {
    auto added = std::make_unique<Attribute>(ZuText(), ZuText(), ZuText());
    SetWhole(added->handlerName, handlerName);
    SetWhole(added->key, key);
    SetWhole(added->value, value);
    attributes.push_back(std::move(added));
  }
}

const char* Handler::EnumInfo::GetHandlerAttrbiute(const char* key) const {
  if (key == nullptr || *key == '\0') {
    return nullptr;
  }
  for (const std::unique_ptr<Attribute>& attribute : attributes) {
    if (attribute != nullptr && std::strcmp(attribute->key.GetTextEx(), key) == 0) {
      return attribute->value.GetTextEx();
    }
  }
  return nullptr;
}

Handler::EnumInfo* Handler::EnumInfo::CloneHandlerInfo() const {
  auto clone = std::make_unique<EnumInfo>();
  SetWhole(clone->shortName, shortName);
  SetWhole(clone->handlerName, handlerName);
  SetWhole(clone->description, description);
  SetWhole(clone->serverPath, serverPath);
  clone->supportsScanning = supportsScanning;
  clone->loadHandler = loadHandler;
  for (const std::unique_ptr<Attribute>& attribute : attributes) {
    if (attribute != nullptr) {
      clone->AddHandlerAttribute(attribute->handlerName.GetTextEx(), attribute->key.GetTextEx(),
                                 attribute->value.GetTextEx());
    }
  }
  return clone.release();
}

void Handler::EnumInfo::ClearHandlerInfo() {
  for (std::unique_ptr<Attribute>& attribute : attributes) {
    attribute.reset();
  }
}

Handler::Enum::Enum() : position(entries.end()) {}

Handler::Enum::~Enum() = default;

Handler::EnumInfo* Handler::Enum::GetFirst(bool /*unused*/) {
  if (entries.empty() && (!LoadRegistryEntries() || entries.empty())) {
    return nullptr;
  }
  position = entries.begin();
  return position->get();
}

Handler::EnumInfo* Handler::Enum::GetNext() {
  if (position == entries.end() || ++position == entries.end()) {
    return nullptr;
  }
  return position->get();
}

bool Handler::Enum::IsRegistryAvailable() const {
  ZuText path;
  return ConfigFile::buildConfigPath(GetRegistryName(), path) &&
         access(path.GetTextEx(), F_OK) == 0;
}

const char* Handler::Enum::GetRegistryName() const { return kRegistryName; }

bool Handler::Enum::LoadRegistryEntries() {
  ResetObjectHandlerEnum();
  configFile.reset();
  ZuText path;
  if (!ConfigFile::buildConfigPath(GetRegistryName(), path)) {
    return false;
  }
  Entries read;
  configFile = std::make_unique<ConfigFile>(path.GetTextEx(), kDirectoryName);
  if (!configFile->parseConfigFile()) {
    return true;
  }
  ZuText name;
  for (bool more = configFile->getFirstStanza(name); more; more = configFile->getNextStanza(name)) {
    if (Stanza* stanza = configFile->getStanza(name)) {
      read.push_back(ReadEntry(*stanza));
    }
  }
  entries.swap(read);
  return true;
}

void Handler::Enum::ResetObjectHandlerEnum() {
  entries.clear();
  position = entries.end();
}

bool IsStanzaValueTrue(Stanza* stanza, const char* key) {
  ZuText value;
  if (stanza == nullptr || key == nullptr || !stanza->getValue(key, value)) {
    return false;
  }
  const std::string_view text = value.GetTextEx();
  return text.empty() || std::string_view("1TtYy").find(text.front()) != std::string_view::npos;
}

}  // namespace quenlatrix::meta_object

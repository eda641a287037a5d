#include "host/plugin_library.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/companion_files.h"
#include "meta_object/info/handler_info.h"

namespace quenlatrix::host {

namespace {

constexpr const char* kFileName = "javabean_handler.so";

template <class Function>
bool ResolveEntry(void* handle, const char* name, Function*& function, std::string& why) {
  function = reinterpret_cast<Function*>(dlsym(handle, name));
  if (function == nullptr) {
    why += (why.empty() ? "" : ", ") + std::string(name);
  }
  return function != nullptr;
}

}  // namespace

std::string PluginLibrary::DefaultFile() { return FindCompanion(kFileName).string(); }

PluginLibrary::PluginLibrary(void* handle, std::string file)
    : handle(handle), file(std::move(file)) {}

std::unique_ptr<PluginLibrary> PluginLibrary::Load(const std::string& file, std::string& why) {
  // A name without a slash would be looked for in the library path, not in the current directory.
  std::error_code failed;
  const std::string path = std::filesystem::absolute(file, failed).string();
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    why = "it cannot be loaded: " + std::string(dlerror());
    return nullptr;
  }
  std::unique_ptr<PluginLibrary> plugin(new PluginLibrary(handle, path));
  if (!plugin->Resolve(why)) {
    return nullptr;
  }
  const std::uint32_t version = plugin->entries.getHandlerVersion();
  if (version != kVersion) {
    char text[64];
    std::snprintf(text, sizeof text, "version 0x%08X, this host needs 0x%08X", version, kVersion);
    why = path + " has " + text;
    return nullptr;
  }
  return plugin;
}

bool PluginLibrary::Resolve(std::string& why) {
  std::string missing;
  ResolveEntry(handle, "SetEnvironment", entries.setEnvironment, missing);
  ResolveEntry(handle, "SetJavaVM", entries.setJavaVM, missing);
  ResolveEntry(handle, "InitHandler", entries.initHandler, missing);
  ResolveEntry(handle, "GetHandlerInfo", entries.getHandlerInfo, missing);
  ResolveEntry(handle, "GetHandlerVersion", entries.getHandlerVersion, missing);
  ResolveEntry(handle, "GetHandlerObject", entries.getHandlerObject, missing);
  ResolveEntry(handle, "FreeHandlerObject", entries.freeHandlerObject, missing);
  ResolveEntry(handle, "CleanUpHandler", entries.cleanUpHandler, missing);
  ResolveEntry(handle, "ProcessIdle", entries.processIdle, missing);
  if (!missing.empty()) {
    why = file + " is no handler plug-in: it lacks " + missing;
    return false;
  }
  return true;
}

PluginLibrary::~PluginLibrary() {
  if (initialised) {
    entries.cleanUpHandler();
  }
  dlclose(handle);
}

bool PluginLibrary::Initialise(meta_object::Environment* environment, std::string& why) {
  entries.setEnvironment(environment);
  initialised = entries.initHandler(handle);
  if (!initialised) {
    why = file + " refuses to be initialised (InitHandler answered false)";
    return false;
  }
  const meta_object::info::HandlerInfo* info = GetInfo();
  const char* named = info == nullptr ? nullptr : info->GetHandlerType();
  type = named == nullptr ? "" : named;
  if (type.empty()) {
    why = file + " doesn't say which type of handler it serves";
  }
  return !type.empty();
}

void PluginLibrary::SetVm(JavaVM* machine) { entries.setJavaVM(machine); }

bool PluginLibrary::MakeReceiver(std::string& why) {
  receiver = MakeHandler();
  if (receiver == nullptr) {
    why = file + " makes no handler objects";
  }
  return receiver != nullptr;
}

meta_object::Handler* PluginLibrary::MakeHandler() { return entries.getHandlerObject(); }

void PluginLibrary::FreeHandler(meta_object::Handler* handler) {
  entries.freeHandlerObject(handler);
}

const meta_object::info::HandlerInfo* PluginLibrary::GetInfo() const {
  return entries.getHandlerInfo();
}

}  // namespace quenlatrix::host

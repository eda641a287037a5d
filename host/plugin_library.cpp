#include "host/plugin_library.h"

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/companion_files.h"

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

std::unique_ptr<PluginLibrary> PluginLibrary::Load(const std::string& givenFile, std::string& why) {
  // A name without a slash would be looked for in the library path, not in the current directory.
  std::error_code failed;
  const std::string path =
      std::filesystem::absolute(givenFile.empty() ? DefaultFile() : givenFile, failed).string();
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    why = "the plug-in cannot be loaded: " + std::string(dlerror()) +
          ". Build it, or name its file with --plugin.";
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
    why = "the plug-in " + path + " has " + text + ". Use the plug-in that came with this host.";
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
    why = file + " is no handler plug-in: it lacks " + missing +
          ". Name the plug-in's own file with --plugin.";
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
    why = "the plug-in " + file + " refuses to be initialised (InitHandler answered false).";
  }
  return initialised;
}

void PluginLibrary::SetVm(JavaVM* machine) { entries.setJavaVM(machine); }

meta_object::Handler* PluginLibrary::MakeHandler() { return entries.getHandlerObject(); }

void PluginLibrary::FreeHandler(meta_object::Handler* handler) {
  entries.freeHandlerObject(handler);
}

const meta_object::info::HandlerInfo* PluginLibrary::GetInfo() const {
  return entries.getHandlerInfo();
}

}  // namespace quenlatrix::host

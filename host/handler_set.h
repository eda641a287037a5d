#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/plugin_library.h"

namespace quenlatrix::host {

// The plug-ins that a host has loaded, one a handler type. Adding and starting belong to the
// single-threaded start; afterwards nothing changes and any thread may look plug-ins up.
class HandlerSet {
 public:
  // The handler that knows Java: bare class names are its own.
  static constexpr const char* kBeanType = "JAVABEAN";

  // The environment is handed to every plug-in and must outlive this object.
  explicit HandlerSet(meta_object::Environment& environment) : environment(environment) {}
  // Every handler that the plug-ins made must have been freed.
  ~HandlerSet();
  HandlerSet(const HandlerSet&) = delete;
  HandlerSet& operator=(const HandlerSet&) = delete;

  // Loads a plug-in and initialises it; lends it. Null when it doesn't serve, or when what it
  // serves is served already: the first of a type stays. `why` as for PluginLibrary::Load.
  const PluginLibrary* Add(const std::string& file, std::string& why);
  // Hands the machine to every plug-in and has each make its receiver. One that can't is an event;
  // false when none can, `why` then holds the last one's reason.
  bool Start(JavaVM* machine, std::string& why);

  // Each lends a plug-in, or null. Types are compared exactly.
  PluginLibrary* FindByType(std::string_view type) const;
  PluginLibrary* FindByModule(const void* module) const;
  PluginLibrary* FindMaker(const meta_object::Handler& handler) const;
  // The one that a bare class name goes to: the bean handler's, otherwise the first.
  PluginLibrary* GetDefault() const;

  bool IsEmpty() const { return plugins.empty(); }
  // The types served, in the order of loading, with ", " between them.
  std::string DescribeTypes() const;

 private:
  meta_object::Environment& environment;
  std::vector<std::unique_ptr<PluginLibrary>> plugins;
};

}  // namespace quenlatrix::host

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/bean_object.h"
#include "host/class_facts.h"
#include "host/collector.h"
#include "host/introspection_cache.h"
#include "host/java_vm.h"
#include "host/plugin_library.h"
#include "host/security_policy.h"
#include "meta_object/environment.h"

namespace quenlatrix::host {

// Everything that an application server has around the plug-in: the virtual machine, the loaded
// plug-in, and the services that it calls back for. One a process. Start and destruction are
// single-threaded; between them any thread may create and use beans. Every BeanObject and every
// value from the plug-in must be gone before the Host is.
class Host {
 public:
  // The class in beanhost.jar that boxes literals; every policy allows it.
  static constexpr const char* kBoxingBean = "BeanHostBoxes";

  struct Options {
    // The plug-in's file; empty: the javabean_handler.so that came with the program.
    std::string pluginFile;
    // See JavaVm::Options::home.
    std::string javaHome;
    // Entries separated by ":", as the "java" command takes them; empty for none. They come behind
    // the plug-in's own class path (CLASSPATH and "beanpaths.ini" beside it), the jars of the
    // plug-in and of the host behind these.
    std::string classPath;
    std::vector<std::string> javaOptions;
    // See SecurityPolicy.
    std::vector<std::string> allow;
    std::vector<std::string> deny;
  };

  struct Creation {
    std::optional<BeanObject> object;
    // The handler's status: 0, 1 (no class name), 3 (not made), 14 (refused).
    std::uint32_t status = 0;
    // What went wrong and what to do, for a message; empty on success.
    std::string text;
  };

  // Loads the plug-in, starts the virtual machine and brings the two together. Null on failure;
  // `why` says what was looked for, where, and what to do.
  static std::unique_ptr<Host> Start(const Options& options, std::string& why);
  // Frees every handler, unloads the plug-in and leaves the virtual machine.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Makes a bean by its class's no-argument constructor. Class names take "." or "/".
  Creation Create(const std::string& className);
  // Frees the handlers that nobody holds any more; how many.
  std::size_t Collect() { return collector.Collect(); }

  JavaVM* GetVm() const { return machine->Get(); }
  const JavaVm& GetJavaVm() const { return *machine; }
  const PluginLibrary& GetPlugin() const { return *plugin; }
  Collector& GetCollector() { return collector; }
  IntrospectionCache& GetCache() { return cache; }
  ClassFacts& GetFacts() { return facts; }
  // The handler through which values and records of the plug-in are given back when the one that
  // made them may be gone. It stands for no object and lives as long as the host.
  meta_object::Handler* GetReceiver() const { return receiver; }

  // The identity text of a bean of that class.
  std::string MakeIdentity(const std::string& className) const;

 private:
  explicit Host(const Options& options);
  bool StartVm(const Options& options, std::string& why);
  std::string DescribeFailure(const std::string& className, std::uint32_t status) const;

  // In the order in which they depend on each other: handlers go before the plug-in that made
  // them, and that before the services that it calls.
  SecurityPolicy policy;
  IntrospectionCache cache;
  ClassFacts facts;
  meta_object::Environment environment;
  std::unique_ptr<JavaVm> machine;
  std::unique_ptr<PluginLibrary> plugin;
  Collector collector;
  std::string handlerType;
  std::string classPath;
  meta_object::Handler* receiver = nullptr;
};

}  // namespace quenlatrix::host

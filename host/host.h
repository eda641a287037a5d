#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/bean_object.h"
#include "host/class_facts.h"
#include "host/collector.h"
#include "host/handler_set.h"
#include "host/host_bean.h"
#include "host/introspection_cache.h"
#include "host/java_vm.h"
#include "host/security_policy.h"
#include "meta_object/environment.h"
#include "meta_object/identity.h"

namespace quenlatrix::host {

// Everything that an application server has around its handler plug-ins: the virtual machine, the
// loaded plug-ins, and the services that they call back for. One a process. Start and destruction
// are single-threaded; between them any thread may create and use objects. Every BeanObject and
// every value from a plug-in must be gone before the Host is.
class Host {
 public:
  // The class in beanhost.jar that boxes literals and tells classes apart; every policy allows it.
  static constexpr const char* kBoxingBean = "BeanHostBoxes";

  struct Options {
    // The one plug-in's file; empty: those of "handlers.ini" (see handler_loading.h).
    std::string pluginFile;
    // See JavaVm::Options::home.
    std::string javaHome;
    // Entries separated by ":", as the "java" command takes them; empty for none. First on the
    // class path are the jars of the bean plug-in and of the host, whose classes no other jar may
    // take the place of; then what the bean plug-in reads (CLASSPATH and "beanpaths.ini" beside
    // it); then these.
    std::string classPath;
    std::vector<std::string> javaOptions;
    // See JavaVm::Options::onExit.
    void (*onVmExit)(int status) = nullptr;
    // See SecurityPolicy.
    std::vector<std::string> allow;
    std::vector<std::string> deny;
  };

  struct Creation {
    std::optional<BeanObject> object;
    // The handler's status: 0, 1 (no identity), 3 (not made), 14 (refused).
    std::uint32_t status = 0;
    // What went wrong and what to do, for a message; empty on success.
    std::string text;
  };

  // Loads the plug-ins, starts the virtual machine and brings them together. Null on failure, which
  // is an event too; `why` says what was looked for, where, and what to do.
  static std::unique_ptr<Host> Start(const Options& options, std::string& why);
  // Frees every handler, unloads the plug-ins and leaves the virtual machine.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Makes an object: of an identity "TYPE://data" by the handler of that type, of a class name by
  // the bean handler (the first one where that isn't loaded). Beans are made by their class's
  // no-argument constructor; their class names take "." or "/".
  Creation Create(const std::string& classOrIdentity);
  // Frees the handlers that nobody holds any more; how many.
  std::size_t Collect() { return collector.Collect(); }

  JavaVM* GetVm() const { return machine->Get(); }
  const JavaVm& GetJavaVm() const { return *machine; }
  const HandlerSet& GetHandlers() const { return handlers; }
  Collector& GetCollector() { return collector; }
  IntrospectionCache& GetCache() { return cache; }
  // Of classes of beans alone.
  ClassFacts& GetFacts() { return facts; }
  HostBean& GetOwnBean() { return ownBean; }

  // Called by the plug-ins; a handler of no loaded module is left alone.
  void Register(meta_object::Handler* handler, const void* ownerModule);
  // See PluginLibrary::GetReceiver; null for a handler of no loaded plug-in.
  meta_object::Handler* GetReceiver(const meta_object::Handler& handler) const;
  // Whether Java can be asked about the handler's object.
  bool IsBean(const meta_object::Handler& handler) const;

  // The identity text of a bean of that class.
  static std::string MakeIdentity(const std::string& className);

 private:
  explicit Host(const Options& options);
  bool TryStart(const Options& options, std::string& why);
  bool StartVm(const Options& options, std::string& why);
  // The plug-in that makes what is asked for, and the identity to make; null, and why, when none
  // does.
  PluginLibrary* Choose(const std::string& classOrIdentity, meta_object::Identity& identity,
                        std::string& why) const;
  std::string DescribeFailure(const meta_object::Identity& identity, std::uint32_t status) const;

  // In the order in which they depend on each other: handlers go before the plug-ins that made
  // them, and those before the services that they call.
  SecurityPolicy policy;
  IntrospectionCache cache;
  ClassFacts facts;
  meta_object::Environment environment;
  std::unique_ptr<JavaVm> machine;
  HandlerSet handlers;
  Collector collector;
  HostBean ownBean;
  std::string classPath;
};

}  // namespace quenlatrix::host

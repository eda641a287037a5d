#include "host/host.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "host/companion_files.h"
#include "host/events.h"
#include "host/handler_loading.h"
#include "meta_object/handlers/bean/class_path.h"
#include "meta_object/identity.h"
#include "meta_object/no_throw.h"

namespace quenlatrix::host {

namespace fs = std::filesystem;
namespace cache = meta_object::info::cache;
using meta_object::Handler;
using meta_object::Identity;
using meta_object::NoThrow;

namespace {

constexpr const char* kPluginJar = "javabean_handler.jar";
constexpr const char* kHostJar = "beanhost.jar";

Host& HostOf(void* hostContext) { return *static_cast<Host*>(hostContext); }

bool OpenIntrospect(void* context, const Identity& identity, bool& mustIntrospect) {
  return NoThrow(false, [&] { return HostOf(context).GetCache().Open(identity, mustIntrospect); });
}

bool IntrospectDone(void* context, const Identity& identity, bool succeeded) {
  return NoThrow(false, [&] { return HostOf(context).GetCache().Done(identity, succeeded); });
}

bool CloseIntrospect(void* context, const Identity& identity) {
  return NoThrow(false, [&] { return HostOf(context).GetCache().Close(identity); });
}

bool AddMethodInfo(void* context, const Identity& identity, const cache::CachedMethodInfo& method) {
  return NoThrow(false, [&] { return HostOf(context).GetCache().Add(identity, method); });
}

const cache::CachedMethodInfo* GetMethodInfo(void* context, const Identity& identity,
                                             const char* methodId) {
  return NoThrow<const cache::CachedMethodInfo*>(
      nullptr, [&] { return HostOf(context).GetCache().GetMethod(identity, methodId); });
}

const cache::CachedObjectInfo* GetObjectInfo(void* context, const Identity& identity) {
  return NoThrow<const cache::CachedObjectInfo*>(
      nullptr, [&] { return HostOf(context).GetCache().GetObject(identity); });
}

void RegisterHandler(void* context, Handler* handler, const void* ownerModule) {
  NoThrow([&] { HostOf(context).Register(handler, ownerModule); });
}

bool CheckSecurity(meta_object::info::SecurityInfo* record) {
  return NoThrow(false, [&] { return SecurityPolicy::Check(record); });
}

std::vector<std::string> SplitPath(std::string_view path) {
  std::vector<std::string> entries;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(':'), path.size());
    if (end > 0) {
      entries.emplace_back(path.substr(0, end));
    }
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return entries;
}

// As the bean plug-in has it, and what the options add.
std::string ClassPathOf(const Host::Options& options, const PluginLibrary* bean) {
  std::string classPath;
  if (bean != nullptr) {
    namespace handler = meta_object::handlers::bean;
    handler::GetClassPath(
        (fs::path(bean->GetFile()).parent_path() / handler::ClassPathFile).string(), classPath);
  }
  if (!classPath.empty() && !options.classPath.empty()) {
    classPath += ':';
  }
  return classPath + options.classPath;
}

// A jar beside the bean plug-in or among what came with the program; empty when it is at neither
// place.
std::string FindJar(const std::string& name, const PluginLibrary& bean) {
  const fs::path places[] = {fs::path(bean.GetFile()).parent_path() / name, FindCompanion(name)};
  for (const fs::path& jar : places) {
    if (access(jar.c_str(), R_OK) == 0) return jar.string();
  }
  return {};
}

// Puts the Java sides of the bean plug-in and of this host on the class path; false, and why, when
// one is missing: another jar could then take its classes' place.
bool AddOwnJars(const PluginLibrary& bean, std::vector<std::string>& classPath, std::string& why) {
  for (const char* name : {kPluginJar, kHostJar}) {
    const std::string jar = FindJar(name, bean);
    if (jar.empty()) {
      why = std::string(name) + " lies neither beside " + bean.GetFile() +
            " nor with this program, or can't be read. Put it there, or build it.";
    } else if (jar.find(':') != std::string::npos) {
      why = jar +
            " can't stand on a class path, where \":\" separates entries. Install it in a "
            "directory without \":\" in its name.";
    } else {
      classPath.push_back(jar);
      continue;
    }
    return false;
  }
  return true;
}

}  // namespace

Host::Host(const Options& options)
    : policy(options.allow, options.deny, kBoxingBean),
      facts([this](const std::string& identity) { cache.Forget(identity); }),
      handlers(environment),
      collector([this](Handler* handler, const void* owner) {
        handlers.FindByModule(owner)->FreeHandler(handler);
      }),
      ownBean(*this) {
  environment.hostContext = this;
  environment.cacheOpenIntrospect = OpenIntrospect;
  environment.cacheIntrospectDone = IntrospectDone;
  environment.cacheCloseIntrospect = CloseIntrospect;
  environment.cacheAddMethodInfo = AddMethodInfo;
  environment.cacheGetMethodInfo = GetMethodInfo;
  environment.cacheGetObjectInfo = GetObjectInfo;
  environment.gcRegHandlerObject = RegisterHandler;
  environment.checkSecurity = CheckSecurity;
}

std::unique_ptr<Host> Host::Start(const Options& options, std::string& why) {
  std::unique_ptr<Host> host(new Host(options));
  if (!host->TryStart(options, why)) {
    ReportEvent(EVT_FATAL, CAT_START, "beanhost has nothing to run on: " + why);
    return nullptr;
  }
  ReportEvent(EVT_INFO, CAT_START,
              "beanhost serves " + host->handlers.DescribeTypes() + " on the Java VM " +
                  host->machine->GetLibraryFile());
  return host;
}

bool Host::TryStart(const Options& options, std::string& why) {
  std::vector<RegisteredHandler> registered;
  if (options.pluginFile.empty()) {
    registered = ReadRegistry();
  }
  if (!LoadHandlers(options.pluginFile, registered, environment, handlers, why)) {
    return false;
  }
  SecurityPolicy::Install(&policy);
  return StartVm(options, why) && handlers.Start(machine->Get(), why);
}

bool Host::StartVm(const Options& options, std::string& why) {
  const PluginLibrary* bean = handlers.FindByType(HandlerSet::kBeanType);
  JavaVm::Options vmOptions;
  vmOptions.home = options.javaHome;
  classPath = ClassPathOf(options, bean);
  if (bean != nullptr && !AddOwnJars(*bean, vmOptions.classPath, why)) {
    return false;
  }
  for (std::string& entry : SplitPath(classPath)) {
    vmOptions.classPath.push_back(std::move(entry));
  }
  // Signals are the program's own affair: without this the machine takes SIGINT for itself.
  vmOptions.options = {"-Xrs"};
  vmOptions.options.insert(vmOptions.options.end(), options.javaOptions.begin(),
                           options.javaOptions.end());
  vmOptions.onExit = options.onVmExit;
  machine = JavaVm::Start(vmOptions, why);
  return machine != nullptr;
}

Host::~Host() {
  ownBean.Release();
  collector.ReleaseAll();
  SecurityPolicy::Install(nullptr);
}

void Host::Register(Handler* handler, const void* ownerModule) {
  if (handlers.FindByModule(ownerModule) == nullptr) {
    ReportEvent(EVT_WARNING, CAT_RUNTIME,
                "a handler of no loaded plug-in was registered; it is never freed");
    return;
  }
  collector.Register(handler, ownerModule);
}

Handler* Host::GetReceiver(const Handler& handler) const {
  const PluginLibrary* maker = handlers.FindMaker(handler);
  return maker == nullptr ? nullptr : maker->GetReceiver();
}

bool Host::IsBean(const Handler& handler) const {
  const PluginLibrary* maker = handlers.FindMaker(handler);
  return maker != nullptr && maker->GetType() == HandlerSet::kBeanType;
}

std::string Host::MakeIdentity(const std::string& className) {
  return std::string(HandlerSet::kBeanType) + "://" + className;
}

}  // namespace quenlatrix::host

#include "host/host.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/companion_files.h"
#include "meta_object/handlers/bean/class_path.h"
#include "meta_object/identity.h"
#include "meta_object/info/handler_info.h"
#include "meta_object/no_throw.h"

namespace quenlatrix::host {

namespace fs = std::filesystem;
namespace cache = meta_object::info::cache;
namespace status = meta_object::handler_status;
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

// One process has one plug-in, so every handler is its own, whatever module the call names.
void RegisterHandler(void* context, Handler* handler, const void* /*ownerModule*/) {
  NoThrow([&] { HostOf(context).GetCollector().Register(handler); });
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

// As the plug-in has it, and what the options add.
std::string ClassPathOf(const Host::Options& options, const std::string& pluginFile) {
  namespace bean = meta_object::handlers::bean;
  std::string classPath;
  bean::GetClassPath((fs::path(pluginFile).parent_path() / bean::ClassPathFile).string(),
                     classPath);
  if (!classPath.empty() && !options.classPath.empty()) {
    classPath += ':';
  }
  return classPath + options.classPath;
}

// A jar beside the plug-in or among what came with the program; empty when it is at neither place.
std::string FindJar(const std::string& name, const std::string& pluginFile) {
  for (const fs::path& jar : {fs::path(pluginFile).parent_path() / name, FindCompanion(name)}) {
    std::error_code ignored;
    if (fs::exists(jar, ignored)) {
      return jar.string();
    }
  }
  return {};
}

}  // namespace

Host::Host(const Options& options)
    : policy(options.allow, options.deny, kBoxingBean),
      collector([this](Handler* handler) { plugin->FreeHandler(handler); }) {
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
  host->plugin = PluginLibrary::Load(options.pluginFile, why);
  if (host->plugin == nullptr || !host->plugin->Initialise(&host->environment, why)) {
    return nullptr;
  }
  const char* type = host->plugin->GetInfo()->GetHandlerType();
  host->handlerType = type == nullptr ? "" : type;
  SecurityPolicy::Install(&host->policy);
  if (!host->StartVm(options, why)) {
    return nullptr;
  }
  host->plugin->SetVm(host->machine->Get());
  host->receiver = host->plugin->MakeHandler();
  if (host->receiver == nullptr) {
    why = "the plug-in " + host->plugin->GetFile() + " makes no handler objects.";
    return nullptr;
  }
  return host;
}

bool Host::StartVm(const Options& options, std::string& why) {
  JavaVm::Options vmOptions;
  vmOptions.home = options.javaHome;
  classPath = ClassPathOf(options, plugin->GetFile());
  vmOptions.classPath = SplitPath(classPath);
  const std::string pluginJar = FindJar(kPluginJar, plugin->GetFile());
  if (pluginJar.empty()) {
    why = std::string("the plug-in's Java side, ") + kPluginJar + ", lies neither beside " +
          plugin->GetFile() + " nor beside this program. Put it there, or build it.";
    return false;
  }
  vmOptions.classPath.push_back(pluginJar);
  if (const std::string hostJar = FindJar(kHostJar, plugin->GetFile()); !hostJar.empty()) {
    vmOptions.classPath.push_back(hostJar);
  }
  // Signals are the program's own affair: without this the machine takes SIGINT for itself.
  vmOptions.options = {"-Xrs"};
  vmOptions.options.insert(vmOptions.options.end(), options.javaOptions.begin(),
                           options.javaOptions.end());
  machine = JavaVm::Start(vmOptions, why);
  return machine != nullptr;
}

Host::~Host() {
  if (plugin != nullptr) {
    collector.ReleaseAll();
  }
  SecurityPolicy::Install(nullptr);
}

std::string Host::MakeIdentity(const std::string& className) const {
  return handlerType + "://" + className;
}

std::string Host::DescribeFailure(const std::string& className, std::uint32_t answer) const {
  if (answer == status::kRefused) {
    return "class " + className + " is refused: " + policy.WhyRefused(className) +
           ". Change --allow and --deny if it is to be used.";
  }
  return "no object of class " + className + " could be made (status " + std::to_string(answer) +
         "): the class isn't on the class path, is abstract, has no constructor without arguments, "
         "or that constructor threw. Class path: " +
         (classPath.empty() ? "none given, name one with --class-path." : classPath);
}

Host::Creation Host::Create(const std::string& className) {
  std::string name = className;
  std::replace(name.begin(), name.end(), '/', '.');
  Creation creation;
  // The parts' own check: a name with "?" or "=" in it would be cut there and mean another class.
  const Identity identity(handlerType.c_str(), name.c_str());
  if (!identity.IsValid()) {
    creation.status = status::kInvalidIdentity;
    creation.text =
        "\"" + className + "\" is no class name. Expected one such as shop.cart.Widget.";
    return creation;
  }
  Handler* handler = plugin->MakeHandler();
  if (handler == nullptr) {
    creation.status = status::kObjectNotMade;
    creation.text = "the plug-in made no handler object: there is not enough memory.";
    return creation;
  }
  const bool withdrawn = collector.Withdraw(handler);
  creation.status = handler->CreateObject(identity.identity.c_str(), nullptr);
  if (withdrawn) {
    collector.Register(handler);
  }
  if (creation.status == status::kSuccess) {
    creation.object = BeanObject::Adopt(*this, handler, name);
  } else {
    creation.text = DescribeFailure(name, creation.status);
    handler->Release();
  }
  return creation;
}

}  // namespace quenlatrix::host

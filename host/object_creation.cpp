// How a Host makes an object of what a person wrote: a class name or an identity.
#include <algorithm>

#include "host/events.h"
#include "host/host.h"

namespace quenlatrix::host {

namespace status = meta_object::handler_status;
using meta_object::Handler;
using meta_object::Identity;

namespace {

bool IsOfBean(const Identity& identity) { return identity.handler == HandlerSet::kBeanType; }

// "/" in a class name is read as ".".
void DotClassName(Identity& identity) {
  std::string name = identity.handlerData;
  std::replace(name.begin(), name.end(), '/', '.');
  identity.SetHandlerData(name);
}

}  // namespace

std::string Host::DescribeFailure(const Identity& identity, std::uint32_t answer) const {
  if (answer == status::kRefused) {
    const std::string reason = policy.WhyRefused(identity.handlerData);
    return (IsOfBean(identity) ? "class " + identity.handlerData : identity.identity) +
           " is refused: " +
           (reason.empty() ? "its handler says so"
                           : reason + ". Change --allow and --deny if it is to be used.");
  }
  const std::string code = " could be made (status " + std::to_string(answer) + ")";
  if (!IsOfBean(identity)) {
    return "no object " + identity.identity + code + "; see what its handler, " +
           handlers.FindByType(identity.handler)->GetFile() + ", expects behind \"://\".";
  }
  return "no object of class " + identity.handlerData + code +
         ": the class isn't on the class path, is abstract, has no constructor without arguments, "
         "or that constructor threw. Class path: " +
         (classPath.empty() ? "none given, name one with --class-path." : classPath);
}

PluginLibrary* Host::Choose(const std::string& classOrIdentity, Identity& identity,
                            std::string& why) const {
  identity.SetIdentity(classOrIdentity);
  const bool isBare = identity.handler.empty();
  PluginLibrary* plugin = isBare ? handlers.GetDefault() : handlers.FindByType(identity.handler);
  if (isBare) {
    // The parts' own check: a name with "?" or "=" in it would be cut there and mean another class.
    identity = Identity(plugin->GetType().c_str(), classOrIdentity.c_str());
  }
  if (plugin == nullptr || !identity.IsValid()) {
    why = "\"" + classOrIdentity + "\" is no " +
          (isBare ? "class name. Expected one such as shop.cart.Widget."
                  : "object's identity. Expected TYPE://DATA, where TYPE is one of " +
                        handlers.DescribeTypes() + "; \"beanhost handlers\" shows what there is.");
    return nullptr;
  }
  if (IsOfBean(identity)) {
    DotClassName(identity);
    // The host's own means to tell classes apart; what is made is always the one that the name
    // finds.
    while (identity.RemoveAttribute(ClassFacts::kIdentityAttribute)) {
    }
  }
  return plugin;
}

Host::Creation Host::Create(const std::string& classOrIdentity) {
  Creation creation;
  Identity identity;
  PluginLibrary* plugin = Choose(classOrIdentity, identity, creation.text);
  if (plugin == nullptr) {
    creation.status = status::kInvalidIdentity;
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
    collector.Register(handler, plugin->GetModule());
  }
  if (creation.status == status::kSuccess) {
    creation.object = BeanObject::Adopt(*this, handler,
                                        IsOfBean(identity) ? identity.handlerData : identity.core);
  } else {
    creation.text = DescribeFailure(identity, creation.status);
    ReportEvent(EVT_WARNING, CAT_RUNTIME, creation.text);
    handler->Release();
  }
  return creation;
}

}  // namespace quenlatrix::host

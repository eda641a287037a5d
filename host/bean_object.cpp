#include "host/bean_object.h"

#include <list>
#include <utility>

#include "host/events.h"
#include "host/host.h"
#include "host/utf8.h"
#include "meta_object/type/blob.h"

namespace quenlatrix::host {

namespace type = meta_object::type;
using meta_object::Handler;
using meta_object::HandlerStatus;
using meta_object::TypeDesc;
namespace status = meta_object::handler_status;

namespace {

// A method call from its opening to its closing, on one thread. Closing undoes the attachment that
// opening made, so it happens whatever opening answered.
class OpenCall {
 public:
  OpenCall(Handler& handler, const WideString& methodId)
      : handler(handler), opened(handler.OpenMethodCall(context, methodId)) {}
  ~OpenCall() { handler.CloseMethodCall(context); }
  OpenCall(const OpenCall&) = delete;
  OpenCall& operator=(const OpenCall&) = delete;

  HandlerStatus Invoke(std::list<type::Object*>& parameters, const TypeDesc& returnType,
                       meta_object::MethodInvokeStatus& invokeStatus, type::Object*& result) {
    HandlerStatus answer = opened;
    if (answer == status::kSuccess) {
      answer = handler.PrepareMethodCall(context, parameters);
    }
    if (answer == status::kSuccess) {
      answer = handler.SetReturnDataType(context, returnType);
    }
    if (answer == status::kSuccess) {
      answer = handler.InvokeMethod(context, invokeStatus, &result);
    }
    return answer;
  }

 private:
  Handler& handler;
  meta_object::context::MethodCallContext context;
  HandlerStatus opened;
};

// A walk, closed only when it was opened: a failed opening leaves nothing behind.
class OpenWalk {
 public:
  explicit OpenWalk(Handler& handler) : handler(handler), opened(handler.OpenCollection(context)) {}
  ~OpenWalk() {
    if (opened == status::kSuccess) {
      handler.CloseCollection(context);
    }
  }
  OpenWalk(const OpenWalk&) = delete;
  OpenWalk& operator=(const OpenWalk&) = delete;

  HandlerStatus GetStatus() const { return opened; }
  meta_object::context::CollectionContext& GetContext() { return context; }

 private:
  Handler& handler;
  meta_object::context::CollectionContext context;
  HandlerStatus opened;
};

ValuePtr TakeOver(const Host& host, const Handler& maker, type::Object* value) {
  return ValuePtr(value, ValueRelease{host.GetReceiver(maker)});
}

}  // namespace

BeanObject::BeanObject(Host& host, Handler* handler, ClassFacts::RecordPtr record, bool identified)
    : host(&host), handler(handler), record(std::move(record)), identified(identified) {}

BeanObject BeanObject::Adopt(Host& host, Handler* handler, const std::string& className) {
  ClassFacts::RecordPtr record = host.IsBean(*handler)
                                     ? host.GetFacts().Find({className, 0})
                                     : std::make_shared<ClassRecord>(className, std::string());
  return BeanObject(host, handler, std::move(record), true);
}

std::optional<BeanObject> BeanObject::Share(Host& host, Handler* handler) {
  if (handler == nullptr || handler->AddRef() != status::kSuccess) {
    return std::nullopt;
  }
  return BeanObject(host, handler, nullptr, false);
}

std::optional<BeanObject> BeanObject::Share() const {
  std::optional<BeanObject> shared = Share(*host, handler);
  if (shared) {
    shared->record = record;
    shared->identified = identified;
    shared->introspected = introspected;
  }
  return shared;
}

std::optional<BeanObject> BeanObject::FromValue(Host& host, const type::Object& value) {
  const auto* blob = dynamic_cast<const type::Blob*>(&value);
  return blob == nullptr ? std::nullopt : Share(host, blob->GetValue());
}

BeanObject::BeanObject(BeanObject&& other) noexcept
    : host(other.host),
      handler(std::exchange(other.handler, nullptr)),
      record(std::move(other.record)),
      identified(other.identified),
      introspected(other.introspected) {}

BeanObject& BeanObject::operator=(BeanObject&& other) noexcept {
  if (this != &other) {
    Release();
    host = other.host;
    handler = std::exchange(other.handler, nullptr);
    record = std::move(other.record);
    identified = other.identified;
    introspected = other.introspected;
  }
  return *this;
}

BeanObject::~BeanObject() { Release(); }

bool BeanObject::IsBean() const { return host->IsBean(*handler); }

HandlerStatus BeanObject::Release() {
  Handler* held = std::exchange(handler, nullptr);
  return held == nullptr ? status::kReleasedTwice : held->Release();
}

CallOutcome BeanObject::Call(const MethodDescription& method, std::vector<ValuePtr>& parameters) {
  // A copy, because the plug-in makes the text's narrow form and others may read it just now.
  CallOutcome outcome = Call(WideString(method.id.getWCharPtr()), method.returnType, parameters);
  if (outcome.status != status::kSuccess) {
    const std::string failure = ToUtf8(outcome.failureText);
    ReportEvent(EVT_ERROR, failure.empty() ? CAT_RUNTIME : CAT_EXCEPTION,
                ClassName() + "." + ToUtf8(method.name) + " failed with status " +
                    std::to_string(outcome.status) + (failure.empty() ? "" : ": " + failure));
  }
  return outcome;
}

CallOutcome BeanObject::Call(const WideString& methodId, const TypeDesc& returnType,
                             std::vector<ValuePtr>& parameters) {
  std::list<type::Object*> lent;
  for (const ValuePtr& parameter : parameters) {
    lent.push_back(parameter.get());
  }
  CallOutcome outcome;
  meta_object::MethodInvokeStatus invokeStatus;
  type::Object* result = nullptr;
  {
    OpenCall call(*handler, methodId);
    outcome.status = call.Invoke(lent, returnType, invokeStatus, result);
  }
  outcome.result = TakeOver(*host, *handler, result);
  outcome.statusCode = invokeStatus.statusCode;
  outcome.description = std::move(invokeStatus.description);
  outcome.failureText = std::move(invokeStatus.failureText);
  return outcome;
}

WalkOutcome BeanObject::Walk(int skip) {
  WalkOutcome outcome;
  OpenWalk walk(*handler);
  outcome.status = walk.GetStatus();
  if (outcome.status == status::kSuccess) {
    outcome.status = handler->GetCollectionSize(walk.GetContext(), outcome.size);
  }
  if (outcome.status == status::kSuccess) {
    outcome.status = handler->SkipItems(walk.GetContext(), skip);
  }
  if (outcome.status == status::kSuccess) {
    std::list<type::Object*> items;
    outcome.status = handler->GetNextItems(walk.GetContext(), -1, items, nullptr);
    for (type::Object* item : items) {
      outcome.items.push_back(TakeOver(*host, *handler, item));
    }
  }
  return outcome;
}

HandlerStatus BeanObject::CollectionSize(int& size) {
  OpenWalk walk(*handler);
  return walk.GetStatus() == status::kSuccess ? handler->GetCollectionSize(walk.GetContext(), size)
                                              : walk.GetStatus();
}

}  // namespace quenlatrix::host

#include "catalogue_handler.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/info/security_info.h"
#include "meta_object/no_throw.h"
#include "meta_object/type/string_values.h"
#include "plugin.h"

namespace catalogue {

namespace context = meta_object::context;
namespace info = meta_object::info;
namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using meta_object::NoThrow;
using meta_object::TypeDesc;

namespace {

// What a host's context holds between opening and closing.
struct OpenCall {
  std::size_t method;
  Arguments arguments;
};

struct OpenWalk {
  std::vector<Value> elements;
  std::size_t position = 0;
};

}  // namespace

std::wstring TextOf(const type::Object* value) {
  WideString text;
  // Of a text its very own, not the form in which it is passed on to Java.
  if (const auto* string = dynamic_cast<const type::String*>(value)) {
    text = string->GetValue();
  } else if (value != nullptr) {
    value->GetValueAsString(text);
  }
  return text.getWCharPtr() == nullptr ? std::wstring() : std::wstring(text.getWCharPtr());
}

bool CatalogueHandler::IsHandlerAvailable(const char*) const { return true; }

HandlerStatus CatalogueHandler::CreateObjectImp(const char* identity,
                                                context::CreateObjectContext*) {
  return NoThrow(status::kObjectNotMade, [&] {
    SetIdentity(identity);
    const meta_object::Identity named(identity);
    if (!named.IsValid()) {
      return status::kInvalidIdentity;
    }
    info::SecurityInfo security;
    security.firstValue = plugin.info.GetHandlerType();
    security.secondValue = named.handlerData;
    if (plugin.environment != nullptr && plugin.environment->checkSecurity != nullptr &&
        !plugin.environment->checkSecurity(&security)) {
      return status::kRefused;
    }
    return MakeObject(named.handlerData) ? status::kSuccess : status::kObjectNotMade;
  });
}

HandlerStatus CatalogueHandler::ReleaseObjectImp() {
  DropObject();
  SetIdentity(nullptr);
  return status::kLastReferenceReleased;
}

const info::HandlerInfo* CatalogueHandler::GetHandlerInfo() const { return &plugin.info; }

HandlerStatus CatalogueHandler::OpenMethodCall(context::MethodCallContext& context,
                                               const WideString& methodId) {
  return NoThrow(status::kCallFailed, [&] {
    const Method* method = Find(methodId);
    if (method == nullptr) {
      return status::kCallFailed;
    }
    context.call = new OpenCall{static_cast<std::size_t>(method - methods.data()), {}};
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::PrepareMethodCall(context::MethodCallContext& context,
                                                  std::list<type::Object*>& params) {
  auto* const call = static_cast<OpenCall*>(context.call);
  if (call == nullptr) {
    return status::kCallFailed;
  }
  return NoThrow(status::kCallFailed, [&] {
    call->arguments.assign(params.begin(), params.end());
    return status::kSuccess;
  });
}

// The catalogue says what a method gives.
HandlerStatus CatalogueHandler::SetReturnDataType(context::MethodCallContext&, const TypeDesc&) {
  return status::kSuccess;
}

HandlerStatus CatalogueHandler::InvokeMethod(context::MethodCallContext& context,
                                             meta_object::MethodInvokeStatus& invokeStatus,
                                             type::Object** result) {
  auto* const call = static_cast<OpenCall*>(context.call);
  if (call == nullptr) {
    return status::kCallFailed;
  }
  return NoThrow(status::kCallFailed, [&] {
    try {
      if (call->arguments.size() != methods[call->method].parameters.size()) {
        throw std::invalid_argument("another number of arguments than the method has parameters");
      }
      Value made = Call(call->method, call->arguments);
      invokeStatus.statusCode = meta_object::MethodInvokeStatus::kSucceeded;
      invokeStatus.description.assign(L"Method call successful");
      if (result != nullptr) {
        *result = made.release();
      }
      return status::kSuccess;
    } catch (const std::exception& error) {
      invokeStatus.statusCode = meta_object::MethodInvokeStatus::kFailed;
      invokeStatus.failureText.assign(error.what());
      return status::kCallFailed;
    }
  });
}

HandlerStatus CatalogueHandler::CloseMethodCall(context::MethodCallContext& context) {
  delete static_cast<OpenCall*>(std::exchange(context.call, nullptr));
  return status::kSuccess;
}

HandlerStatus CatalogueHandler::OpenCollection(context::CollectionContext& context) {
  if (context.walk != nullptr) {
    return status::kSuccess;
  }
  return NoThrow(status::kNoCollection, [&] {
    auto walk = std::make_unique<OpenWalk>();
    if (!GatherElements(walk->elements)) {
      return status::kNoCollection;
    }
    context.walk = walk.release();
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::ResetCollection(context::CollectionContext& context) {
  auto* const walk = static_cast<OpenWalk*>(context.walk);
  if (walk == nullptr) {
    return status::kNoCollection;
  }
  return NoThrow(status::kNoCollection, [&] {
    *walk = {};
    return GatherElements(walk->elements) ? status::kSuccess : status::kNoCollection;
  });
}

// A negative count asks for all that are left.
HandlerStatus CatalogueHandler::GetNextItems(context::CollectionContext& context, int count,
                                             std::list<type::Object*>& items, int* delivered) {
  if (delivered != nullptr) {
    *delivered = 0;
  }
  auto* const walk = static_cast<OpenWalk*>(context.walk);
  if (walk == nullptr) {
    return status::kNoCollection;
  }
  return NoThrow(status::kNoCollection, [&] {
    for (int taken = 0; taken != count && walk->position < walk->elements.size(); ++taken) {
      items.push_back(walk->elements[walk->position].get());
      items.back()->SetInvoke(true);
      static_cast<void>(walk->elements[walk->position++].release());
      if (delivered != nullptr) {
        ++*delivered;
      }
    }
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::SkipItems(context::CollectionContext& context, int count) {
  auto* const walk = static_cast<OpenWalk*>(context.walk);
  if (walk == nullptr) {
    return status::kNoCollection;
  }
  const std::size_t left = walk->elements.size() - walk->position;
  walk->position += std::min(left, static_cast<std::size_t>(std::max(count, 0)));
  return status::kSuccess;
}

HandlerStatus CatalogueHandler::GetCollectionSize(context::CollectionContext& context, int& size) {
  const auto* const walk = static_cast<const OpenWalk*>(context.walk);
  if (walk == nullptr) {
    return status::kNoCollection;
  }
  size = static_cast<int>(walk->elements.size());
  return status::kSuccess;
}

HandlerStatus CatalogueHandler::CloseCollection(context::CollectionContext& context) {
  if (context.walk == nullptr) {
    return status::kNoCollection;
  }
  delete static_cast<OpenWalk*>(std::exchange(context.walk, nullptr));
  return status::kSuccess;
}

void CatalogueHandler::Release(std::list<WideString>* ids) { delete ids; }
void CatalogueHandler::Release(std::list<info::MethodInfo*>* methodInfos) { delete methodInfos; }
void CatalogueHandler::Release(std::list<type::Object*>* values) { delete values; }
void CatalogueHandler::Release(std::list<info::ParamInfo*>* paramInfos) { delete paramInfos; }
void CatalogueHandler::Release(info::MethodInfo* methodInfo) { delete methodInfo; }
void CatalogueHandler::Release(type::Object* value) { delete value; }
void CatalogueHandler::Release(info::ParamInfo* paramInfo) { delete paramInfo; }
void CatalogueHandler::Release(info::ObjectInfo* objectInfo) { delete objectInfo; }

}  // namespace catalogue

#include <algorithm>
#include <utility>

#include "catalogue_handler.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/no_throw.h"
#include "plugin.h"

// The host's questions, answered from the catalogue.

namespace catalogue {

namespace info = meta_object::info;
namespace status = meta_object::handler_status;
using meta_object::NoThrow;
using meta_object::TypeDesc;

namespace {

TypeDesc Named(TypeDesc::Key key, const wchar_t* name) { return TypeDesc(key, name, name); }

}  // namespace

TypeDesc VoidType() { return Named(TypeDesc::Key::Void, L"void"); }
TypeDesc IntType() { return Named(TypeDesc::Key::Int, L"int"); }
TypeDesc TextType() { return Named(TypeDesc::Key::String, L"java.lang.String"); }

TypeDesc TextArrayType() {
  TypeDesc desc(TypeDesc::Key::String, TypeDesc::RefType::ByValue, true);
  desc.arrayInfo->AddDimensionInfo(0, -1);
  desc.displayName.assign(L"array of java.lang.String");
  desc.typeName.assign(L"java.lang.String");
  return desc;
}

const Method* CatalogueHandler::Find(const WideString& methodId) const {
  const auto found = std::find_if(methods.begin(), methods.end(), [&](const Method& method) {
    return methodId.compare(method.name, 0) == 0;
  });
  return found == methods.end() ? nullptr : &*found;
}

// The catalogue is always known, so there is nothing to open.
HandlerStatus CatalogueHandler::OpenIntrospect(const char*) { return status::kSuccess; }
HandlerStatus CatalogueHandler::CloseIntrospect() { return status::kSuccess; }

HandlerStatus CatalogueHandler::GetMethodIDs(std::list<WideString>*& ids) {
  return NoThrow(status::kIntrospectionFailed, [&] {
    auto list = std::make_unique<std::list<WideString>>();
    for (const Method& method : methods) {
      list->emplace_back(method.name);
    }
    ids = list.release();
    return status::kSuccess;
  });
}

std::uint32_t CatalogueHandler::GetMethodCount() {
  return static_cast<std::uint32_t>(methods.size());
}

HandlerStatus CatalogueHandler::GetMethodInfo(const WideString& methodId, unsigned long requestMask,
                                              info::MethodInfo*& methodInfo,
                                              unsigned long context) {
  return NoThrow(status::kIntrospectionFailed, [&] {
    const Method* method = Find(methodId);
    if (method == nullptr) {
      return status::kIntrospectionFailed;
    }
    auto record = std::make_unique<info::MethodInfo>();
    record->context = context;
    record->methodId = methodId;
    if ((requestMask & info::kMethodName) != 0) {
      record->name.assign(method->name);
    }
    if ((requestMask & info::kMethodReturnType) != 0) {
      record->returnType = method->returnType;
    }
    if ((requestMask & info::kMethodParamCount) != 0) {
      record->paramCount = static_cast<std::uint32_t>(method->parameters.size());
    }
    methodInfo = record.release();
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::GetParamInfo(const WideString& methodId, unsigned int paramIndex,
                                             unsigned long requestMask, info::ParamInfo*& paramInfo,
                                             unsigned long context) {
  return NoThrow(status::kIntrospectionFailed, [&] {
    const Method* method = Find(methodId);
    if (method == nullptr || paramIndex >= method->parameters.size()) {
      return status::kIntrospectionFailed;
    }
    auto record = std::make_unique<info::ParamInfo>();
    record->context = context;
    record->methodId = methodId;
    record->index = paramIndex;
    if ((requestMask & info::kParamName) != 0) {
      record->name.assign(method->parameters[paramIndex].name);
    }
    if ((requestMask & info::kParamType) != 0) {
      record->type = method->parameters[paramIndex].type;
    }
    paramInfo = record.release();
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::GetObjectInfo(info::ObjectInfo*& objectInfo, const char*,
                                              bool withDetails) {
  return NoThrow(status::kIntrospectionFailed, [&] {
    auto record = std::make_unique<info::ObjectInfo>();
    record->description = plugin.info.description;
    if (withDetails) {
      const std::wstring count = std::to_wstring(methods.size());
      auto property =
          std::make_unique<meta_object::Property>(L"Regular Methods", count.c_str(), true);
      record->properties.push_back(property.get());
      static_cast<void>(property.release());
    }
    objectInfo = record.release();
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::ParseMethodID(const WideString& methodId, WideString& methodName,
                                              meta_object::MethodType& methodType, bool) const {
  return NoThrow(status::kIntrospectionFailed, [&] {
    methodName = methodId;
    methodType = meta_object::MethodType::Invoke;
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::BuildMethodID(WideString& methodId, const WideString& methodName,
                                              meta_object::MethodType&, std::list<TypeDesc*>*,
                                              bool) {
  return NoThrow(status::kNoClassDescription, [&] {
    if (Find(methodName) == nullptr) {
      return status::kNoClassDescription;
    }
    methodId = methodName;
    return status::kSuccess;
  });
}

HandlerStatus CatalogueHandler::BuildNativeType(WideString& metaType, WideString& nativeType,
                                                bool) const {
  return NoThrow(status::kUnknownTypeKeyword, [&] {
    nativeType = metaType;
    return status::kSuccess;
  });
}

}  // namespace catalogue

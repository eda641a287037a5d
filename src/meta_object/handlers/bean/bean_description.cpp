#include <memory>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/no_throw.h"
#include "meta_object/wide_view.h"
#include "os/module.h"
#include "text/c_numbers.h"
#include "text/zu_text_local.h"

// The host's questions about a class, answered from its cache without Java.

namespace quenlatrix::meta_object::handlers::bean {

namespace {

using info::cache::CachedMethodInfo;
using info::cache::CachedObjectInfo;
using info::cache::CachedParamInfo;

constexpr int kDescriptionFormatSize = 100;
constexpr int kDescriptionSize = 10240;  // what formatting makes at most
constexpr std::uint32_t kObjectInfoKind = 1;

std::size_t ParamCount(const CachedMethodInfo& method) {
  return method.params == nullptr ? 0 : method.params->size();
}

std::unique_ptr<Property> CountProperty(const wchar_t* name, int count) {
  return std::make_unique<Property>(WideString(name), WideString(text::PrintInteger(count).c_str()),
                                    true);
}

void AddProperty(info::ObjectInfo& info, std::unique_ptr<Property> property) {
  info.properties.push_back(property.get());
  static_cast<void>(property.release());
}

void AddMethodCounts(const CachedObjectInfo& cls, info::ObjectInfo& info) {
  int accessors = 0;
  int regular = 0;
  for (const CachedMethodInfo* method : cls.methods) {
    if (method == nullptr) {
      continue;
    }
    if (method->methodType == MethodType::Get || method->methodType == MethodType::Set) {
      ++accessors;
    } else if (method->methodType == MethodType::Invoke) {
      ++regular;
    }
  }
  AddProperty(info, CountProperty(L"Attribute Methods", accessors));
  AddProperty(info, CountProperty(L"Regular Methods", regular));
}

}  // namespace

const CachedObjectInfo* BeanHandler::CachedClass() {
  return _pEnvironment == nullptr ? nullptr : _pEnvironment->CacheGetObjectInfo(*GetIdentity());
}

const CachedMethodInfo* BeanHandler::GetMethodCacheEntry(const WideString& methodId) {
  unsigned long index = 0;
  if (!ReadMethodIndex(methodId, index)) {
    return nullptr;
  }
  const CachedObjectInfo* const cls = CachedClass();
  return cls == nullptr || index >= cls->methods.size() ? nullptr : cls->methods[index];
}

HandlerStatus BeanHandler::GetMethodIDs(std::list<WideString>*& ids) {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    CachedObjectInfo const* const cls = CachedClass();
    if (cls == nullptr || cls->methods.empty()) {
      return handler_status::kIntrospectionFailed;
    }
    auto list = std::make_unique<std::list<WideString>>();
    int index = 0;
    for (CachedMethodInfo const* method : cls->methods) {
      if (method != nullptr) {
        WideString id;
        if (CreateMethodID(id, method->name, method->methodType, index)) {
          list->push_back(std::move(id));
        }
      }
      ++index;
    }
    ids = list.release();
    return handler_status::kSuccess;
  });
}

std::uint32_t BeanHandler::GetMethodCount() {
  return NoThrow(std::uint32_t{0}, [this] {
    CachedObjectInfo const* const cls = CachedClass();
    return cls == nullptr ? 0 : static_cast<std::uint32_t>(cls->methods.size());
  });
}

HandlerStatus BeanHandler::GetMethodInfo(const WideString& methodId, unsigned long requestMask,
                                         info::MethodInfo*& methodInfo, unsigned long context) {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    CachedMethodInfo const* const method = GetMethodCacheEntry(methodId);
    if (method == nullptr) {
      return handler_status::kIntrospectionFailed;
    }
    auto info = std::make_unique<info::MethodInfo>();
    info->context = context;
    info->methodId = methodId;
    if ((requestMask & info::kMethodName) != 0) {
      info->name = method->name;
    }
    if ((requestMask & info::kMethodReturnType) != 0) {
      info->returnType = method->returnType;
    }
    if ((requestMask & info::kMethodParamCount) != 0) {
      info->paramCount = static_cast<std::uint32_t>(ParamCount(*method));
    }
    if ((requestMask & info::kMethodType) != 0) {
      info->methodType = method->methodType;
    }
    if ((requestMask & info::kMethodDescription) != 0) {
      info->description = method->description;
    }
    methodInfo = info.release();
    return handler_status::kSuccess;
  });
}

HandlerStatus BeanHandler::GetParamInfo(const WideString& methodId, unsigned int paramIndex,
                                        unsigned long requestMask, info::ParamInfo*& paramInfo,
                                        unsigned long context) {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    CachedMethodInfo const* const method = GetMethodCacheEntry(methodId);
    if (method == nullptr) {
      return handler_status::kIntrospectionFailed;
    }
    if (paramIndex >= ParamCount(*method)) {
      return handler_status::kInvalidIdentity;
    }
    CachedParamInfo const* const param = method->GetParamInfo(static_cast<int>(paramIndex));
    if (param == nullptr) {
      return handler_status::kIntrospectionFailed;
    }
    auto info = std::make_unique<info::ParamInfo>();
    info->context = context;
    info->methodId = methodId;
    info->index = paramIndex;
    if ((requestMask & info::kParamType) != 0) {
      info->type = param->type;
    }
    if ((requestMask & info::kParamName) != 0) {
      info->name = param->name;
    }
    if ((requestMask & info::kParamDirection) != 0) {
      info->direction = param->direction;
    }
    if ((requestMask & info::kParamOption1) != 0) {
      info->option1 = param->option1;
    }
    if ((requestMask & info::kParamOption2) != 0) {
      info->option2 = param->option2;
    }
    paramInfo = info.release();
    return handler_status::kSuccess;
  });
}

HandlerStatus BeanHandler::GetObjectInfo(info::ObjectInfo*& objectInfo, const char* identity,
                                         bool withDetails) {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    auto info = std::make_unique<info::ObjectInfo>();
    Identity const parsed(identity != nullptr ? identity : GetIdentity()->identity.c_str());
    char format[kDescriptionFormatSize] = "";
    LoadString(_HandlerInfo->moduleHandle, "%s in CLASSPATH environment", format, sizeof format);
    // On the stack: a text on the heap keeps quiet when it gets no memory.
    ZuTextLocal<kDescriptionSize> description;
    description.Format(format, parsed.handlerData.c_str());
    info->description.assign(description.GetTextEx());
    info->infoKind = kObjectInfoKind;
    info->flagA = true;
    CachedObjectInfo const* const cls = withDetails ? CachedClass() : nullptr;
    if (cls != nullptr) {
      AddMethodCounts(*cls, *info);
    }
    objectInfo = info.release();
    return withDetails && cls == nullptr ? handler_status::kIntrospectionFailed
                                         : handler_status::kSuccess;
  });
}

HandlerStatus BeanHandler::ParseMethodID(const WideString& methodId, WideString& methodName,
                                         MethodType& methodType, bool) const {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    bean::ParseMethodID(methodId, methodName, methodType, true);
    return handler_status::kSuccess;
  });
}

namespace {

// Do the method's parameters take the given types? Those that the given types don't reach must be
// optional.
bool Matches(const CachedMethodInfo& method, const std::list<TypeDesc*>& paramTypes) {
  if (method.params == nullptr) {
    return paramTypes.empty();
  }
  auto given = paramTypes.begin();
  for (const CachedParamInfo* param : *method.params) {
    if (given == paramTypes.end()) {
      if (param == nullptr || !param->option1) {
        return false;
      }
    } else {
      if (param == nullptr || *given == nullptr || !(param->type == **given)) {
        return false;
      }
      ++given;
    }
  }
  return given == paramTypes.end();
}

}  // namespace

HandlerStatus BeanHandler::BuildMethodID(WideString& methodId, const WideString& methodName,
                                         MethodType& methodType, std::list<TypeDesc*>* paramTypes,
                                         bool) {
  return NoThrow(handler_status::kNoClassDescription, [&] {
    CachedObjectInfo const* const cls = CachedClass();
    if (cls == nullptr) {
      return handler_status::kNoClassDescription;
    }
    WideString name(methodName);
    mangleMethodName(name, methodType);
    std::list<TypeDesc*> const none;
    std::list<TypeDesc*> const& given = paramTypes == nullptr ? none : *paramTypes;
    int index = -1;
    for (CachedMethodInfo const* method : cls->methods) {
      ++index;
      if (method == nullptr || method->altName.compare(name.getWCharPtr(), 0) != 0) {
        continue;
      }
      bool const isMatch = Matches(*method, given);
      // Without types the last method of that name stands in for a parameterless one.
      if (isMatch || given.empty()) {
        CreateMethodID(methodId, name, method->methodType, index);
      }
      if (isMatch) {
        break;
      }
    }
    return handler_status::kSuccess;
  });
}

HandlerStatus BeanHandler::BuildNativeType(WideString& metaType, WideString& nativeType,
                                           bool) const {
  struct Keyword {
    const wchar_t* name;
    const wchar_t* nativeType;  // null: the keyword as it was written
  };
  static constexpr Keyword kKeywords[] = {
      {L"INT", nullptr},    {L"FLOAT", nullptr},    {L"TEXT", L"java.lang.String"},
      {L"BOOL", nullptr},   {L"CHAR", nullptr},     {L"STRUCTURE", nullptr},
      {L"DATE", nullptr},   {L"CURRENCY", nullptr}, {L"ENUMERATION", nullptr},
      {L"OBJECT", nullptr},
  };
  return NoThrow(handler_status::kUnknownTypeKeyword, [&] {
    for (Keyword const& keyword : kKeywords) {
      if (IsWord(ViewOf(metaType), keyword.name)) {
        if (keyword.nativeType == nullptr) {
          nativeType = metaType;
        } else {
          nativeType.assign(keyword.nativeType);
        }
        return handler_status::kSuccess;
      }
    }
    return handler_status::kUnknownTypeKeyword;
  });
}

}  // namespace quenlatrix::meta_object::handlers::bean

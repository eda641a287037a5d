#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/bean_introspector.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_thread.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/no_throw.h"
#include "meta_object/wide_view.h"
#include "os/module.h"
#include "text/c_numbers.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

using info::cache::CachedMethodInfo;
using info::cache::CachedParamInfo;

constexpr jint kFrameCapacity = 32;
constexpr int kPrefixSize = 15;
constexpr int kIndexNameSize = 10;
constexpr int kAccessorNameSize = 128;

// How an accessor bit turns into a method; in the order in which a property's methods are listed.
struct AccessorKind {
  int bit;
  char const* prefix;
  MethodType methodType;
  bool isIndexed;
};

constexpr AccessorKind kAccessorKinds[] = {
    {1, "get", MethodType::Get, false}, {2, "set", MethodType::Set, false},
    {4, "is", MethodType::Get, false},  {8, "get", MethodType::Get, true},
    {16, "set", MethodType::Set, true}, {32, "is", MethodType::Get, true},
};

AccessorKind const* FindAccessorKind(int bit) {
  for (AccessorKind const& kind : kAccessorKinds) {
    if (kind.bit == bit) {
      return &kind;
    }
  }
  return nullptr;
}

// Prefix and property name with its first letter in upper case.
std::string AccessorName(char const* prefixId, WideString const& propertyName) {
  char prefix[kPrefixSize] = "";
  LoadString(_HandlerInfo.moduleHandle, prefixId, prefix, sizeof prefix);
  char const* property = propertyName.getCharPtr();
  if (property == nullptr) {
    property = "";
  }
  char name[kAccessorNameSize] = "";
  std::snprintf(name, sizeof name, "%s%c%s", prefix, ToUpperAscii(*property),
                *property == '\0' ? "" : property + 1);
  return name;
}

void AddParam(CachedMethodInfo& method, WideString const& name, TypeDesc const& type,
              ParamDirection direction) {
  if (method.params == nullptr) {
    method.params = new CachedMethodInfo::ParamList;
  }
  auto param = std::make_unique<CachedParamInfo>(name, type, direction);
  method.params->push_back(param.get());
  static_cast<void>(param.release());
}

ParamDirection DirectionOf(TypeDesc const& type) {
  bool const comesBack = type.key == TypeDesc::Key::Object || type.arrayInfo != nullptr ||
                         type.refType == TypeDesc::RefType::ByRef;
  return comesBack ? ParamDirection::InOut : ParamDirection::In;
}

LocalRef<jobjectArray> NewStringArray(JNIEnv* env, jint count, jclass stringClass) {
  auto array = LocalRef<jobjectArray>::Adopt(env, env->NewObjectArray(count, stringClass, nullptr));
  if (IsJavaExceptionHappened(env, nullptr)) {
    array.Reset();
  }
  return array;
}

LocalRef<jintArray> NewIntArray(JNIEnv* env, jint count) {
  auto array = LocalRef<jintArray>::Adopt(env, env->NewIntArray(count));
  if (IsJavaExceptionHappened(env, nullptr)) {
    array.Reset();
  }
  return array;
}

// Reads a name that the Java side put into an array; a null element is an empty name. False when an
// exception was pending, which is then cleared.
bool ReadName(JNIEnv* env, jobjectArray names, jint index, WideString& name) {
  name.assign(L"");
  auto const text = LocalRef<jstring>::Adopt(env, env->GetObjectArrayElement(names, index));
  if (IsJavaExceptionHappened(env, nullptr)) {
    return false;
  }
  if (!text) {
    return true;
  }
  jint const length = env->GetStringLength(text.Get());
  WideString whole;
  AppendJavaText(env, text.Get(), whole);
  if (IsJavaExceptionHappened(env, nullptr)) {
    return false;
  }
  if (wchar_t const* const characters = whole.getWCharPtr()) {
    std::wstring buffer(static_cast<std::size_t>(length) + 1, L'\0');
    std::wcsncpy(buffer.data(), characters, static_cast<std::size_t>(length));
    TrimJavaString(buffer.data(), length);
    name.assign(buffer.c_str());
  }
  return true;
}

// Reads the parameters of regular methods of one class.
struct ParamReader {
  JNIEnv* env;
  BeanIntrospector& introspector;
  jclass cls;
  jclass stringClass;

  // Appends the parameters to `method`; false when one can't be had.
  bool ReadParams(BeanHandler const& handler, jint methodIndex, CachedMethodInfo& method) const {
    jint const count = introspector.getParameterCount(env, cls, methodIndex);
    auto const names = NewStringArray(env, count, stringClass);
    auto const types = NewStringArray(env, count, stringClass);
    if (!names || !types) {
      return false;
    }
    jarray namesOut = names.Get();
    jarray typesOut = types.Get();
    if (introspector.getParameterInfo(env, cls, methodIndex, count, namesOut, typesOut) == 0) {
      return true;
    }
    WideString given;
    WideString name;
    WideString typeName;
    for (jint i = 0; i < count; ++i) {
      if (!ReadName(env, names.Get(), i, given) || !ReadName(env, types.Get(), i, typeName)) {
        return false;
      }
      handler.GetParamName(i + 1, given.getWCharPtr(), name);
      TypeDesc const type = GetTypeDesc(typeName.getWCharPtr());
      AddParam(method, name, type, DirectionOf(type));
    }
    return true;
  }
};

wchar_t const* Wide(WideString const& text) {
  wchar_t const* const wide = text.getWCharPtr();
  return wide == nullptr ? L"" : wide;
}

}  // namespace

HandlerStatus BeanHandler::OpenIntrospect(const char* identity) {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    JavaThread thread;
    thread.StayAttached();
    if (!thread) {
      return handler_status::kIntrospectionFailed;
    }
    if (identity != nullptr) {
      objectIdentity.SetIdentity(identity);
    }
    if (!objectIdentity.IsValid()) {
      return handler_status::kInvalidIdentity;
    }
    bool mustIntrospect = false;
    if (_pEnvironment == nullptr ||
        !_pEnvironment->CacheOpenIntrospect(objectIdentity, mustIntrospect)) {
      return handler_status::kIntrospectionFailed;
    }
    if (!mustIntrospect) {
      return handler_status::kSuccess;
    }
    HandlerStatus const status = NoThrow(handler_status::kIntrospectionFailed, [&] {
      return InitIntrospectionCache(thread.Get(), objectIdentity.handlerData.c_str());
    });
    bool const isDone =
        _pEnvironment->CacheIntrospectDone(objectIdentity, status == handler_status::kSuccess);
    return isDone ? status : handler_status::kIntrospectionFailed;
  });
}

HandlerStatus BeanHandler::CloseIntrospect() {
  NoThrow([this] {
    if (_pEnvironment != nullptr) {
      _pEnvironment->CacheCloseIntrospect(objectIdentity);
    }
  });
  DetachNativeThread();
  return handler_status::kSuccess;
}

HandlerStatus BeanHandler::InitIntrospectionCache(JNIEnv* env, const char*) {
  BeanIntrospector introspector;
  if (!introspector.CreateIntrospector(env)) {
    return handler_status::kIntrospectionFailed;
  }
  bool const isLoaded = NoThrow(
      false, [&] { return LoadAccessors(env, introspector) && LoadMethods(env, introspector); });
  if (!isLoaded) {
    bean::IsJavaExceptionHappened(env, nullptr);
  }
  introspector.DestroyIntrospector(env);
  return isLoaded ? handler_status::kSuccess : handler_status::kIntrospectionFailed;
}

bool BeanHandler::LoadAccessors(JNIEnv* env, BeanIntrospector& introspector) {
  jint const count = introspector.getPropertyCount(env, classRef);
  auto const stringClass = FindJavaClass(env, "java/lang/String");
  if (!stringClass) {
    return false;
  }
  LocalFrame const frame(env, kFrameCapacity);
  if (!frame) {
    return false;
  }
  auto const names = NewStringArray(env, count, stringClass.Get());
  auto const types = NewStringArray(env, count, stringClass.Get());
  auto const accessors = NewIntArray(env, count);
  if (!names || !types || !accessors) {
    return false;
  }
  jarray namesOut = names.Get();
  jarray typesOut = types.Get();
  jintArray accessorsOut = accessors.Get();
  if (introspector.getPropertyInfo(env, classRef, count, namesOut, typesOut, accessorsOut) == 0) {
    return true;
  }
  IntElements const bits(env, accessors.Get());
  if (IsJavaExceptionHappened(env) || bits.Get() == nullptr) {
    return true;
  }
  WideString name;
  WideString type;
  for (jint i = 0; i < count; ++i) {
    if (!ReadName(env, names.Get(), i, name) || !ReadName(env, types.Get(), i, type)) {
      return false;
    }
    for (AccessorKind const& kind : kAccessorKinds) {
      if ((bits.Get()[i] & kind.bit) != 0) {
        AddAccessorMethod(kind.bit, Wide(name), Wide(type));
      }
    }
  }
  return true;
}

bool BeanHandler::AddAccessorMethod(int kind, const wchar_t* propertyName,
                                    const wchar_t* propertyType) {
  AccessorKind const* const accessor = FindAccessorKind(kind);
  if (accessor == nullptr) {
    return true;
  }
  WideString const property(propertyName);
  TypeDesc const type = GetTypeDesc(propertyType);
  CachedMethodInfo method;
  method.name.assign(AccessorName(accessor->prefix, property).c_str());
  method.altName = method.name;
  method.methodType = accessor->methodType;
  if (accessor->isIndexed) {
    char indexName[kIndexNameSize] = "";
    LoadString(_HandlerInfo.moduleHandle, "index", indexName, sizeof indexName);
    AddParam(method, WideString(indexName),
             TypeDesc(TypeDesc::Key::Int, TypeDesc::RefType::ByValue, false), ParamDirection::In);
  }
  if (accessor->methodType == MethodType::Set) {
    AddParam(method, property, type, ParamDirection::In);
  } else {
    method.returnType = type;
  }
  if (_pEnvironment != nullptr) {
    _pEnvironment->CacheAddMethodInfo(objectIdentity, method);
  }
  return true;
}

bool BeanHandler::LoadMethods(JNIEnv* env, BeanIntrospector& introspector) {
  jint const count = introspector.getMethodCount(env, classRef);
  auto const stringClass = FindJavaClass(env, "java/lang/String");
  if (!stringClass) {
    return false;
  }
  LocalFrame const frame(env, kFrameCapacity);
  if (!frame) {
    return false;
  }
  auto const names = NewStringArray(env, count, stringClass.Get());
  auto const returnTypes = NewStringArray(env, count, stringClass.Get());
  auto const methodIndexes = NewIntArray(env, count);
  if (!names || !returnTypes || !methodIndexes) {
    return false;
  }
  jarray namesOut = names.Get();
  jarray returnTypesOut = returnTypes.Get();
  jintArray indexesOut = methodIndexes.Get();
  if (introspector.getMethodInfo(env, classRef, count, namesOut, returnTypesOut, indexesOut) == 0) {
    return true;
  }
  IntElements const indexes(env, methodIndexes.Get());
  if (bean::IsJavaExceptionHappened(env, nullptr) || indexes.Get() == nullptr) {
    return count == 0;
  }
  for (jint i = 0; i < count; ++i) {
    CachedMethodInfo method;
    WideString returnType;
    if (!ReadName(env, names.Get(), i, method.name) ||
        !ReadName(env, returnTypes.Get(), i, returnType)) {
      return false;
    }
    method.altName = method.name;
    method.returnType = GetTypeDesc(returnType.getWCharPtr());
    ParamReader const reader{env, introspector, classRef, stringClass.Get()};
    if (!reader.ReadParams(*this, indexes.Get()[i], method)) {
      return false;
    }
    if (_pEnvironment != nullptr) {
      _pEnvironment->CacheAddMethodInfo(objectIdentity, method);
    }
  }
  return true;
}

void BeanHandler::GetParamName(int number, const wchar_t* given, WideString& out) const {
  if (given != nullptr && *given != L'\0') {
    out.assign(given);
    return;
  }
  char prefix[kPrefixSize] = "";
  LoadString(_HandlerInfo.moduleHandle, "param", prefix, sizeof prefix);
  out.assign(prefix);
  out.append(text::PrintInteger(number).c_str());
}

}  // namespace quenlatrix::meta_object::handlers::bean

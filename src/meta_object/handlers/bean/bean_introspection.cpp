#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

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

namespace quenlatrix::meta_object::handlers::bean {

namespace {

using info::cache::CachedMethodInfo;
using info::cache::CachedParamInfo;

constexpr jint kFrameCapacity = 32;
constexpr int kPrefixSize = 15;
constexpr int kLongestNumber = 11;
constexpr int kIndexNameSize = 10;
constexpr int kAccessorNameSize = 128;

// How an accessor bit turns into a method; in the order in which a property's methods are listed.
struct AccessorKind {
  int bit;
  const char* prefix;
  MethodType methodType;
  bool isIndexed;
};

constexpr AccessorKind kAccessorKinds[] = {
    {1, "get", MethodType::Get, false}, {2, "set", MethodType::Set, false},
    {4, "is", MethodType::Get, false},  {8, "get", MethodType::Get, true},
    {16, "set", MethodType::Set, true}, {32, "is", MethodType::Get, true},
};

const AccessorKind* FindAccessorKind(int bit) {
  for (const AccessorKind& kind : kAccessorKinds) {
    if (kind.bit == bit) {
      return &kind;
    }
  }
  return nullptr;
}

// Prefix and property name with its first letter in upper case.
std::string AccessorName(const char* prefixId, const WideString& propertyName) {
  char prefix[kPrefixSize] = "";
  LoadString(_HandlerInfo->moduleHandle, prefixId, prefix, sizeof prefix);
  const char* property = propertyName.getCharPtr();
  if (property == nullptr) {
    property = "";
  }
  char name[kAccessorNameSize] = "";
  std::snprintf(name, sizeof name, "%s%c%s", prefix, ToUpperAscii(*property),
                *property == '\0' ? "" : property + 1);
  return name;
}

void AddParam(CachedMethodInfo& method, WideString name, TypeDesc type, ParamDirection direction) {
  if (method.params == nullptr) {
    method.params = new CachedMethodInfo::ParamList;
  }
  auto param = std::make_unique<CachedParamInfo>(std::move(name), std::move(type), direction);
  method.params->push_back(param.get());
  static_cast<void>(param.release());
}

ParamDirection DirectionOf(const TypeDesc& type) {
  const bool comesBack = type.key == TypeDesc::Key::Object || type.arrayInfo != nullptr ||
                         type.refType == TypeDesc::RefType::ByRef;
  return comesBack ? ParamDirection::InOut : ParamDirection::In;
}

LocalRef<jobjectArray> NewStringArray(JNIEnv* env, jint count, jclass stringClass) {
  auto array = LocalRef<jobjectArray>::Adopt(env, env->NewObjectArray(count, stringClass, nullptr));
  if (!array) {
    IsJavaExceptionHappened(env, nullptr);
  }
  return array;
}

LocalRef<jintArray> NewIntArray(JNIEnv* env, jint count) {
  auto array = LocalRef<jintArray>::Adopt(env, env->NewIntArray(count));
  if (!array) {
    IsJavaExceptionHappened(env, nullptr);
  }
  return array;
}

// What one question to the Java side fills: two names and a number for each entry. Lent for the
// length of the answer.
struct Rows {
  jclass stringClass;
  jarray names;
  jarray types;
  jintArray numbers;
};

// Makes the rows of `count` entries in a frame of their own and gives the answer of `read`; false
// when they can't be made.
template <class Read>
bool WithRows(JNIEnv* env, jint count, Read&& read) {
  const auto stringClass = FindJavaClass(env, "java/lang/String");
  if (!stringClass) {
    return false;
  }
  const LocalFrame frame(env, kFrameCapacity);
  if (!frame) {
    return false;
  }
  const auto names = NewStringArray(env, count, stringClass.Get());
  const auto types = NewStringArray(env, count, stringClass.Get());
  const auto numbers = NewIntArray(env, count);
  return names && types && numbers &&
         read(Rows{stringClass.Get(), names.Get(), types.Get(), numbers.Get()});
}

// Reads a name that the Java side put into an array; a null element is an empty name. False when it
// can't be had; an exception is cleared. Each step tells a failure by its result, so the VM is
// asked about an exception only then.
bool ReadName(JNIEnv* env, jarray names, jint index, JavaText& name) {
  const auto text = LocalRef<jstring>::Adopt(
      env, env->GetObjectArrayElement(static_cast<jobjectArray>(names), index));
  if (name.Read(env, text.Get())) {
    return true;
  }
  // A VM may lack the memory for a text without throwing.
  return !IsJavaExceptionHappened(env, nullptr) && !text;
}

// Reads the parameters of regular methods of one class.
struct ParamReader {
  JNIEnv* env;
  BeanIntrospector& introspector;
  jclass cls;
  jclass stringClass;

  // Appends the parameters to `method`; false when one can't be had.
  bool ReadParams(const BeanHandler& handler, jint methodIndex, CachedMethodInfo& method) const {
    const jint count = introspector.getParameterCount(env, cls, methodIndex);
    const auto names = NewStringArray(env, count, stringClass);
    const auto types = NewStringArray(env, count, stringClass);
    if (!names || !types) {
      return false;
    }
    jarray namesOut = names.Get();
    jarray typesOut = types.Get();
    if (introspector.getParameterInfo(env, cls, methodIndex, count, namesOut, typesOut) == 0) {
      return true;
    }
    if (count > 0) {
      method.params = new CachedMethodInfo::ParamList;
      method.params->reserve(static_cast<std::size_t>(count));
    }
    JavaText given;
    JavaText typeName;
    for (jint i = 0; i < count; ++i) {
      if (!ReadName(env, names.Get(), i, given) || !ReadName(env, types.Get(), i, typeName)) {
        return false;
      }
      WideString name;
      handler.GetParamName(i + 1, given.Get(), name);
      TypeDesc type = GetTypeDesc(typeName.Get());
      const ParamDirection direction = DirectionOf(type);
      AddParam(method, std::move(name), std::move(type), direction);
    }
    return true;
  }
};

}  // namespace

HandlerStatus BeanHandler::OpenIntrospect(const char* identity) {
  return NoThrow(handler_status::kIntrospectionFailed, [&] {
    JavaThread thread;
    thread.StayAttached();
    if (!thread) {
      return handler_status::kIntrospectionFailed;
    }
    const LiveInstance bound = Instance();
    if (identity != nullptr) {
      SetIdentity(identity);
    }
    const auto described = GetIdentity();
    if (!described->IsValid()) {
      return handler_status::kInvalidIdentity;
    }
    bool mustIntrospect = false;
    if (_pEnvironment == nullptr ||
        !_pEnvironment->CacheOpenIntrospect(*described, mustIntrospect)) {
      return handler_status::kIntrospectionFailed;
    }
    if (!mustIntrospect) {
      return handler_status::kSuccess;
    }
    HandlerStatus const status = NoThrow(handler_status::kIntrospectionFailed, [&] {
      return InitIntrospectionCache(thread.Get(), *described, bound);
    });
    bool const isDone =
        _pEnvironment->CacheIntrospectDone(*described, status == handler_status::kSuccess);
    return isDone ? status : handler_status::kIntrospectionFailed;
  });
}

HandlerStatus BeanHandler::CloseIntrospect() {
  NoThrow([this] {
    if (_pEnvironment != nullptr) {
      _pEnvironment->CacheCloseIntrospect(*GetIdentity());
    }
  });
  DetachNativeThread();
  return handler_status::kSuccess;
}

HandlerStatus BeanHandler::InitIntrospectionCache(JNIEnv* env, const Identity& identity,
                                                  const LiveInstance& bound) {
  const auto instance = liveReferences->Acquire(env, bound);
  const auto cls =
      LocalRef<jclass>::Adopt(env, instance ? env->GetObjectClass(instance.Get()) : nullptr);
  // Without an object there are no members to describe; an object that is gone is another matter.
  if (bound.reference != nullptr && !cls) {
    return handler_status::kIntrospectionFailed;
  }
  const DescribedClass described{cls.Get(), identity};
  BeanIntrospector introspector;
  if (!introspector.CreateIntrospector(env)) {
    return handler_status::kIntrospectionFailed;
  }
  const bool isLoaded = NoThrow(false, [&] {
    return LoadAccessors(env, introspector, described) && LoadMethods(env, introspector, described);
  });
  if (!isLoaded) {
    bean::IsJavaExceptionHappened(env, nullptr);
  }
  introspector.DestroyIntrospector(env);
  return isLoaded ? handler_status::kSuccess : handler_status::kIntrospectionFailed;
}

bool BeanHandler::LoadAccessors(JNIEnv* env, BeanIntrospector& introspector,
                                const DescribedClass& described) {
  const jint count = introspector.getPropertyCount(env, described.cls);
  return count >= 0 && WithRows(env, count, [&](Rows rows) {
           if (introspector.getPropertyInfo(env, described.cls, count, rows.names, rows.types,
                                            rows.numbers) == 0) {
             return true;
           }
           const IntElements bits(env, rows.numbers);
           if (IsJavaExceptionHappened(env) || bits.Get() == nullptr) {
             return true;
           }
           JavaText name;
           JavaText type;
           for (jint i = 0; i < count; ++i) {
             if (!ReadName(env, rows.names, i, name) || !ReadName(env, rows.types, i, type)) {
               return false;
             }
             for (const AccessorKind& kind : kAccessorKinds) {
               if ((bits.Get()[i] & kind.bit) != 0) {
                 AddAccessorMethod(kind.bit, name.Get(), type.Get(), described.identity);
               }
             }
           }
           return true;
         });
}

bool BeanHandler::AddAccessorMethod(int kind, const wchar_t* propertyName,
                                    const wchar_t* propertyType, const Identity& identity) {
  const AccessorKind* const accessor = FindAccessorKind(kind);
  if (accessor == nullptr) {
    return true;
  }
  const WideString property(propertyName);
  const TypeDesc type = GetTypeDesc(propertyType);
  CachedMethodInfo method;
  method.name.assign(AccessorName(accessor->prefix, property).c_str());
  method.altName = method.name;
  method.methodType = accessor->methodType;
  if (accessor->isIndexed) {
    char indexName[kIndexNameSize] = "";
    LoadString(_HandlerInfo->moduleHandle, "index", indexName, sizeof indexName);
    AddParam(method, WideString(indexName),
             TypeDesc(TypeDesc::Key::Int, TypeDesc::RefType::ByValue, false), ParamDirection::In);
  }
  if (accessor->methodType == MethodType::Set) {
    AddParam(method, property, type, ParamDirection::In);
  } else {
    method.returnType = type;
  }
  if (_pEnvironment != nullptr) {
    _pEnvironment->CacheAddMethodInfo(identity, method);
  }
  return true;
}

bool BeanHandler::LoadMethods(JNIEnv* env, BeanIntrospector& introspector,
                              const DescribedClass& described) {
  const jint count = introspector.getMethodCount(env, described.cls);
  return count >= 0 && WithRows(env, count, [&](Rows rows) {
           if (introspector.getMethodInfo(env, described.cls, count, rows.names, rows.types,
                                          rows.numbers) == 0) {
             return true;
           }
           const IntElements indexes(env, rows.numbers);
           if (IsJavaExceptionHappened(env) || (indexes.Get() == nullptr && count > 0)) {
             return false;
           }
           const ParamReader reader{env, introspector, described.cls, rows.stringClass};
           JavaText name;
           JavaText returnType;
           for (jint i = 0; i < count; ++i) {
             CachedMethodInfo method;
             if (!ReadName(env, rows.names, i, name) || !ReadName(env, rows.types, i, returnType)) {
               return false;
             }
             method.name.assign(name.Get());
             // It could be counted and never asked for.
             if (!HasWholeNarrowForm(method.name)) {
               continue;
             }
             method.altName = method.name;
             method.returnType = GetTypeDesc(returnType.Get());
             if (!reader.ReadParams(*this, indexes.Get()[i], method)) {
               return false;
             }
             if (_pEnvironment != nullptr) {
               _pEnvironment->CacheAddMethodInfo(described.identity, method);
             }
           }
           return true;
         });
}

void BeanHandler::GetParamName(int number, const wchar_t* given, WideString& out) const {
  if (given != nullptr && *given != L'\0') {
    out.assign(given);
    return;
  }
  char name[kPrefixSize + kLongestNumber] = "";
  LoadString(_HandlerInfo->moduleHandle, "param", name, kPrefixSize);
  *std::to_chars(name + std::strlen(name), std::end(name) - 1, number).ptr = '\0';
  out.assign(name);
}

}  // namespace quenlatrix::meta_object::handlers::bean

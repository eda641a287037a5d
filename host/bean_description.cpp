// What a BeanObject knows of its class, all of it asked through the plug-in.
#include <algorithm>
#include <cwchar>
#include <list>
#include <memory>
#include <utility>

#include "host/bean_object.h"
#include "host/host.h"
#include "host/utf8.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/type/array.h"

namespace quenlatrix::host {

namespace info = meta_object::info;
namespace type = meta_object::type;
using meta_object::Handler;
using meta_object::HandlerStatus;
using meta_object::TypeDesc;
namespace status = meta_object::handler_status;

namespace {

constexpr const char* kObjectClass = "java.lang.Object";
// Every field of a description record.
constexpr unsigned long kEverything = 0x1F;

// A record or list of a handler, given back to it at the end.
struct GiveBack {
  Handler* handler;
  template <class Given>
  void operator()(Given* given) const {
    handler->Release(given);
  }
};
template <class Given>
using GivenPtr = std::unique_ptr<Given, GiveBack>;

// Calls a parameterless method that no catalogue needs to list; null when that gives nothing.
ValuePtr CallPlain(BeanObject& object, const char* methodId, TypeDesc::Key key,
                   const char* resultClass, bool isArray = false) {
  TypeDesc returnType(key, TypeDesc::RefType::ByValue, isArray);
  returnType.typeName.assign(resultClass);
  if (isArray) {
    returnType.arrayInfo->AddDimensionInfo(0, -1);
  }
  std::vector<ValuePtr> none;
  return object.Call(WideString(methodId), returnType, none).result;
}

std::optional<WideString> CallForText(BeanObject& object, const char* methodId) {
  const ValuePtr value = CallPlain(object, methodId, TypeDesc::Key::String, "java.lang.String");
  if (value == nullptr) {
    return std::nullopt;
  }
  WideString text;
  value->GetValueAsString(text);
  return text;
}

std::string Utf8(const WideString& text) {
  return text.getWCharPtr() == nullptr ? std::string() : WideToUtf8(text.getWCharPtr());
}

std::string NameOfClass(BeanObject& javaClass) {
  return Utf8(CallForText(javaClass, "Invoke:getName:0").value_or(WideString()));
}

// The java.lang.Class objects that a value refers to, itself or in its elements.
std::vector<BeanObject> ClassesIn(Host& host, const type::Object* value) {
  std::vector<BeanObject> classes;
  const auto add = [&](const type::Object& item) {
    if (std::optional<BeanObject> javaClass = BeanObject::FromValue(host, item)) {
      classes.push_back(std::move(*javaClass));
    }
  };
  if (const auto* array = dynamic_cast<const type::Array*>(value)) {
    for (int i = 0; i < array->GetItemCount(); ++i) {
      if (const type::Object* item = array->GetItemAt(static_cast<unsigned int>(i))) {
        add(*item);
      }
    }
  } else if (value != nullptr) {
    add(*value);
  }
  return classes;
}

std::vector<BeanObject> DirectSupertypes(Host& host, BeanObject& javaClass) {
  const ValuePtr superclass =
      CallPlain(javaClass, "Invoke:getSuperclass:0", TypeDesc::Key::Object, "java.lang.Class");
  const ValuePtr interfaces = CallPlain(javaClass, "Invoke:getInterfaces:0", TypeDesc::Key::Object,
                                        "java.lang.Class", true);
  std::vector<BeanObject> supertypes = ClassesIn(host, interfaces.get());
  for (BeanObject& found : ClassesIn(host, superclass.get())) {
    supertypes.push_back(std::move(found));
  }
  return supertypes;
}

const Supertypes* LearnSupertypes(Host& host, BeanObject& javaClass) {
  const std::string name = NameOfClass(javaClass);
  if (name.empty()) {
    return nullptr;
  }
  if (const Supertypes* known = host.GetFacts().FindSupertypes(name)) {
    return known;
  }
  Supertypes distances = {{name, 0}};
  int farthest = 0;
  for (BeanObject& direct : DirectSupertypes(host, javaClass)) {
    const Supertypes* above = LearnSupertypes(host, direct);
    if (above == nullptr) {
      return nullptr;
    }
    for (const auto& [super, distance] : *above) {
      distances[super] = std::max(distances[super], distance + 1);
      farthest = std::max(farthest, distances[super]);
    }
  }
  const auto object = distances.find(kObjectClass);
  if (object != distances.end() && name != kObjectClass) {
    object->second = farthest + 1;
  }
  return &host.GetFacts().KeepSupertypes(name, std::move(distances));
}

void NameWhenNameless(TypeDesc& desc, TypeDesc::Key key, const char* name) {
  if (desc.key == key && desc.typeName.getWCharPtr() == nullptr) {
    desc.typeName.assign(name);
    desc.displayName.assign(name);
  }
}

void GatherParameters(Handler* handler, const WideString& id, unsigned int count,
                      std::vector<ParameterDescription>& parameters) {
  for (unsigned int i = 0; i < count; ++i) {
    info::ParamInfo* record = nullptr;
    if (handler->GetParamInfo(id, i, kEverything, record, 0) != status::kSuccess ||
        record == nullptr) {
      continue;
    }
    const GivenPtr<info::ParamInfo> given(record, GiveBack{handler});
    ParameterDescription parameter{given->name, given->direction, given->type};
    NameWhenNameless(parameter.type, TypeDesc::Key::Int, "int");
    parameters.push_back(std::move(parameter));
  }
}

}  // namespace

const std::string& BeanObject::ClassName() {
  if (className.empty() && !IsBean()) {
    const PluginLibrary* maker = host->GetHandlers().FindMaker(*handler);
    className = maker == nullptr ? "" : maker->GetType();
  } else if (className.empty()) {
    const ValuePtr javaClass =
        CallPlain(*this, "Invoke:getClass:0", TypeDesc::Key::Object, "java.lang.Class");
    for (BeanObject& found : ClassesIn(*host, javaClass.get())) {
      className = NameOfClass(found);
    }
  }
  return className;
}

HandlerStatus BeanObject::Introspect() {
  if (introspected) {
    return status::kSuccess;
  }
  if (ClassName().empty()) {
    return status::kIntrospectionFailed;
  }
  // A text would set the identity anew, also under a thread that reads it.
  const std::string identity = Host::MakeIdentity(className);
  const bool ownIdentity = identified || !IsBean();
  const HandlerStatus answer = handler->OpenIntrospect(ownIdentity ? nullptr : identity.c_str());
  handler->CloseIntrospect();
  introspected = answer == status::kSuccess;
  identified = identified || introspected;
  return answer;
}

std::vector<MethodDescription> BeanObject::GatherMethods() {
  std::vector<MethodDescription> methods;
  std::list<WideString>* ids = nullptr;
  if (handler->GetMethodIDs(ids) != status::kSuccess || ids == nullptr) {
    return methods;  // a class without methods has no list
  }
  const GivenPtr<std::list<WideString>> givenIds(ids, GiveBack{handler});
  for (const WideString& id : *givenIds) {
    info::MethodInfo* record = nullptr;
    if (handler->GetMethodInfo(id, kEverything, record, 0) != status::kSuccess ||
        record == nullptr) {
      continue;
    }
    const GivenPtr<info::MethodInfo> given(record, GiveBack{handler});
    MethodDescription method{id, given->name, given->methodType, given->returnType, {}};
    NameWhenNameless(method.returnType, TypeDesc::Key::Void, "void");
    GatherParameters(handler, id, given->paramCount, method.parameters);
    if (method.parameters.size() == given->paramCount) {
      methods.push_back(std::move(method));
    }
  }
  return methods;
}

const std::vector<MethodDescription>* BeanObject::Methods() {
  if (!IsBean()) {
    if (ownMethods == nullptr && Introspect() == status::kSuccess) {
      ownMethods = std::make_shared<const std::vector<MethodDescription>>(GatherMethods());
    }
    return ownMethods.get();
  }
  if (const auto* known = host->GetFacts().FindMethods(ClassName())) {
    return known;
  }
  if (Introspect() != status::kSuccess) {
    return nullptr;
  }
  return &host->GetFacts().KeepMethods(className, GatherMethods());
}

ObjectDescription BeanObject::Describe() {
  ObjectDescription description;
  description.status = Introspect();
  if (description.status != status::kSuccess) {
    return description;
  }
  info::ObjectInfo* record = nullptr;
  description.status = handler->GetObjectInfo(record, nullptr, true);
  if (record == nullptr) {
    return description;
  }
  const GivenPtr<info::ObjectInfo> given(record, GiveBack{handler});
  description.description = given->description;
  for (const meta_object::Property* property : given->properties) {
    if (property == nullptr || property->value.getWCharPtr() == nullptr) {
      continue;
    }
    const int count = static_cast<int>(std::wcstol(property->value.getWCharPtr(), nullptr, 10));
    if (property->name.compare(L"Attribute Methods", 0) == 0) {
      description.attributeMethods = count;
    } else if (property->name.compare(L"Regular Methods", 0) == 0) {
      description.regularMethods = count;
    }
  }
  return description;
}

const Supertypes* BeanObject::SupertypesOfClass() {
  if (!IsBean()) {
    return nullptr;
  }
  if (const Supertypes* known = host->GetFacts().FindSupertypes(ClassName())) {
    return known;
  }
  const ValuePtr value =
      CallPlain(*this, "Invoke:getClass:0", TypeDesc::Key::Object, "java.lang.Class");
  std::vector<BeanObject> classes = ClassesIn(*host, value.get());
  return classes.empty() ? nullptr : LearnSupertypes(*host, classes.front());
}

bool BeanObject::IsInstanceOf(const std::string& typeName) {
  const Supertypes* supertypes = SupertypesOfClass();
  return supertypes != nullptr && supertypes->contains(typeName);
}

std::optional<WideString> BeanObject::ToText() {
  return IsBean() ? CallForText(*this, "Invoke:toString:0") : std::nullopt;
}

}  // namespace quenlatrix::host

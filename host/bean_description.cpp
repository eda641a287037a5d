// What a BeanObject knows of its class, all of it asked through the plug-in.
#include <cwchar>
#include <list>
#include <memory>
#include <utility>

#include "host/bean_object.h"
#include "host/host.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"

namespace quenlatrix::host {

namespace info = meta_object::info;
using meta_object::Handler;
using meta_object::HandlerStatus;
using meta_object::TypeDesc;
namespace status = meta_object::handler_status;

namespace {

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

ClassRecord* BeanObject::LearnClass() {
  if (record == nullptr && !IsBean()) {
    const PluginLibrary* maker = host->GetHandlers().FindMaker(*handler);
    record = std::make_shared<ClassRecord>(maker == nullptr ? "" : maker->GetType(), std::string());
  } else if (record == nullptr) {
    const std::optional<ClassId> id = host->GetOwnBean().Identify(*this);
    if (id) record = host->GetFacts().Find(*id);
  }
  return record.get();
}

const std::string& BeanObject::ClassName() {
  static const std::string unknown;
  const ClassRecord* known = LearnClass();
  return known == nullptr ? unknown : known->GetName();
}

HandlerStatus BeanObject::Introspect() {
  if (introspected) {
    return status::kSuccess;
  }
  if (ClassName().empty()) {
    return status::kIntrospectionFailed;
  }
  const bool ownIdentity = identified || !IsBean();
  const HandlerStatus answer =
      handler->OpenIntrospect(ownIdentity ? nullptr : record->GetIdentity().c_str());
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
  if (LearnClass() == nullptr) {
    return nullptr;
  }
  if (const auto* known = record->FindMethods()) {
    return known;
  }
  if (Introspect() != status::kSuccess) {
    return nullptr;
  }
  return &record->KeepMethods(GatherMethods());
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

std::shared_ptr<const Supertypes> BeanObject::SupertypesOfClass() {
  if (!IsBean() || LearnClass() == nullptr) {
    return nullptr;
  }
  const Supertypes* known = record->FindSupertypes();
  if (known == nullptr) {
    std::optional<Supertypes> learnt = host->GetOwnBean().FindSupertypes(*this);
    if (!learnt) {
      return nullptr;
    }
    known = &record->KeepSupertypes(std::move(*learnt));
  }
  return {record, known};
}

bool BeanObject::IsInstanceOf(const std::string& typeName) {
  const std::shared_ptr<const Supertypes> supertypes = SupertypesOfClass();
  return supertypes != nullptr && supertypes->contains(typeName);
}

std::optional<WideString> BeanObject::ToText() {
  if (!IsBean()) {
    return std::nullopt;
  }
  TypeDesc returnType(TypeDesc::Key::String, TypeDesc::RefType::ByValue, false);
  returnType.typeName.assign("java.lang.String");
  std::vector<ValuePtr> none;
  // No catalogue needs to list it.
  const ValuePtr value = Call(WideString("Invoke:toString:0"), returnType, none).result;
  if (value == nullptr) {
    return std::nullopt;
  }
  WideString text;
  value->GetValueAsString(text);
  return text;
}

}  // namespace quenlatrix::host

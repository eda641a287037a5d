#include "host/host_bean.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "host/host.h"
#include "host/utf8.h"
#include "meta_object/type/array.h"

namespace quenlatrix::host {

namespace type = meta_object::type;
using meta_object::TypeDesc;

namespace {

// Of the two, the number stands first, as it has no blank in it.
std::optional<ClassId> ReadNumberAndName(const type::Object& value) {
  WideString wide;
  value.GetValueAsString(wide);
  const std::string text = ToUtf8(wide);
  const std::size_t blank = std::min(text.find(' '), text.size());
  ClassId id;
  const auto read = std::from_chars(text.data(), text.data() + blank, id.number);
  if (read.ec != std::errc() || read.ptr != text.data() + blank || blank == text.size()) {
    return std::nullopt;
  }
  id.name = text.substr(blank + 1);
  return id;
}

}  // namespace

std::optional<BeanObject> HostBean::Get() {
  const MonitorLock lock(monitor);
  if (!bean) bean = host.Create(Host::MakeIdentity(Host::kBoxingBean)).object;
  return bean ? bean->Share() : std::nullopt;
}

void HostBean::Release() {
  const MonitorLock lock(monitor);
  bean.reset();
}

ValuePtr HostBean::Ask(const char* methodId, const BeanObject& object, const TypeDesc& resultType) {
  std::optional<BeanObject> asked = Get();
  if (!asked) return nullptr;
  std::vector<ValuePtr> parameters;
  parameters.emplace_back(new ObjectArgument(object.GetHandler()));
  TypeDesc parameterType(TypeDesc::Key::Object, TypeDesc::RefType::ByValue, false);
  parameterType.typeName.assign("java.lang.Object");
  parameters.front()->GetMetaItemType() = parameterType;
  return asked->Call(WideString(methodId), resultType, parameters).result;
}

std::optional<ClassId> HostBean::Identify(const BeanObject& object) {
  TypeDesc text(TypeDesc::Key::String, TypeDesc::RefType::ByValue, false);
  text.typeName.assign("java.lang.String");
  const ValuePtr answer = Ask("Invoke:classOf:0", object, text);
  return answer == nullptr ? std::nullopt : ReadNumberAndName(*answer);
}

std::optional<Supertypes> HostBean::FindSupertypes(const BeanObject& object) {
  TypeDesc texts(TypeDesc::Key::String, TypeDesc::RefType::ByValue, true);
  texts.typeName.assign("java.lang.String");
  texts.arrayInfo->AddDimensionInfo(0, -1);
  const ValuePtr answer = Ask("Invoke:supertypesOf:0", object, texts);
  const auto* array = dynamic_cast<const type::Array*>(answer.get());
  if (array == nullptr) return std::nullopt;
  Supertypes distances;
  for (int i = 0; i < array->GetItemCount(); ++i) {
    const type::Object* item = array->GetItemAt(static_cast<unsigned int>(i));
    const std::optional<ClassId> read = item == nullptr ? std::nullopt : ReadNumberAndName(*item);
    if (!read) return std::nullopt;
    int& distance = distances[read->name];
    distance = std::max(distance, static_cast<int>(read->number));
  }
  return distances;
}

}  // namespace quenlatrix::host

#include "host/value_json.h"

#include "host/method_pattern.h"
#include "host/utf8.h"
#include "meta_object/type/array.h"

namespace quenlatrix::host {

namespace {

using meta_object::MethodType;
using meta_object::ParamDirection;
using meta_object::TypeDesc;
namespace type = meta_object::type;

struct KeyName {
  TypeDesc::Key key;
  const char* name;
};

constexpr KeyName kKeyNames[] = {
    {TypeDesc::Key::Void, "Void"},     {TypeDesc::Key::Int, "Int"},
    {TypeDesc::Key::Real, "Real"},     {TypeDesc::Key::String, "String"},
    {TypeDesc::Key::Char, "Char"},     {TypeDesc::Key::Bool, "Bool"},
    {TypeDesc::Key::Date, "Date"},     {TypeDesc::Key::Currency, "Currency"},
    {TypeDesc::Key::Struct, "Struct"}, {TypeDesc::Key::Enum, "Enum"},
    {TypeDesc::Key::Object, "Object"},
};

const char* NameOf(TypeDesc::Key key) {
  for (const KeyName& row : kKeyNames) {
    if (row.key == key) return row.name;
  }
  return "Unknown";
}

const char* NameOf(MethodType kind) {
  if (kind == MethodType::Get) return "Get";
  return kind == MethodType::Set ? "Set" : "Invoke";
}

Document DimensionsDocument(const TypeDesc& desc) {
  Document dimensions = Document::array();
  if (!desc.arrayInfo) return dimensions;
  for (const auto& dimension : desc.arrayInfo->dimensions) {
    dimensions.push_back({dimension.lowerBound, dimension.elementCount});
  }
  return dimensions;
}

Document ArrayDocument(const type::Array& array, const TypeDesc& desc, const ObjectViewer& view) {
  const TypeDesc element(desc.key, desc.typeName, desc.typeName);
  Document document = {{"key", NameOf(desc.key)},
                       {"type", ToUtf8(desc.typeName)},
                       {"dimensions", DimensionsDocument(array.GetMetaItemType())}};
  Document items = Document::array();
  for (int place = 0; place < array.GetItemCount(); ++place) {
    items.push_back(
        ValueDocument(array.GetItemAt(static_cast<unsigned int>(place)), element, view));
  }
  document["items"] = std::move(items);
  return document;
}

Document ObjectDocument(const type::Object& value, const ObjectViewer& view) {
  const ObjectView object = view(value);
  Document document = {{"key", NameOf(TypeDesc::Key::Object)},
                       {"type", object.className},
                       {"text", nullptr},
                       {"object", nullptr}};
  if (object.text) document["text"] = *object.text;
  if (!object.heldName.empty()) document["object"] = object.heldName;
  return document;
}

Document MethodDocument(const MethodDescription& method) {
  Document parameters = Document::array();
  for (const ParameterDescription& parameter : method.parameters) {
    parameters.push_back({{"name", ToUtf8(parameter.name)},
                          {"direction", parameter.direction == ParamDirection::In ? "In" : "InOut"},
                          {"type", TypeDocument(parameter.type)}});
  }
  return {{"id", ToUtf8(method.id)},
          {"name", ToUtf8(method.name)},
          {"kind", NameOf(method.kind)},
          {"returns", TypeDocument(method.returnType)},
          {"parameters", std::move(parameters)}};
}

}  // namespace

Document TypeDocument(const TypeDesc& desc) {
  const std::string name = ToUtf8(desc.typeName);
  const std::string display = ToUtf8(desc.displayName);
  return {{"key", NameOf(desc.key)},
          {"type", name},
          {"display", display.empty() ? name : display},
          {"dimensions", DimensionsDocument(desc)},
          {"ref", desc.refType == TypeDesc::RefType::ByRef ? "ByRef" : "ByValue"}};
}

Document ValueDocument(const type::Object* value, const TypeDesc& desc, const ObjectViewer& view) {
  if (value == nullptr) return nullptr;
  if (const auto* array = dynamic_cast<const type::Array*>(value)) {
    return ArrayDocument(*array, desc, view);
  }
  if (desc.key == TypeDesc::Key::Object) return ObjectDocument(*value, view);
  return {{"key", NameOf(desc.key)}, {"type", ToUtf8(desc.typeName)}, {"value", PlainText(*value)}};
}

Document DescriptionDocument(const std::string& className, const ObjectDescription& description,
                             const std::vector<MethodDescription>& methods) {
  Document list = Document::array();
  for (const MethodDescription& method : methods) list.push_back(MethodDocument(method));
  return {{"class", className},
          {"description", ToUtf8(description.description)},
          {"attributeMethods", description.attributeMethods},
          {"regularMethods", description.regularMethods},
          {"methods", std::move(list)}};
}

std::string ToLine(const Document& document) {
  return document.dump(-1, ' ', false, Document::error_handler_t::replace) + "\n";
}

}  // namespace quenlatrix::host

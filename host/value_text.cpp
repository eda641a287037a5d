#include "host/value_text.h"

#include "host/method_pattern.h"
#include "host/utf8.h"
#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"

namespace quenlatrix::host {

namespace {

using meta_object::TypeDesc;
namespace type = meta_object::type;

std::string ElementText(const type::Object* value, const TypeDesc& desc, const ObjectViewer& view) {
  std::string text = ValueText(value, desc, view);
  if (value == nullptr) return text;
  if (desc.key == TypeDesc::Key::String) return '"' + text + '"';
  return desc.key == TypeDesc::Key::Char ? '\'' + text + '\'' : text;
}

std::string ArrayText(const type::Array& array, const TypeDesc& desc, const ObjectViewer& view) {
  const TypeDesc element(desc.key, desc.typeName, desc.typeName);
  int lowest = 0;
  int columns = 0;
  const bool hasRows = array.GetDimensionInfo(1, lowest, columns) && columns > 0;
  std::string text = hasRows ? "[[" : "[";
  for (int place = 0; place < array.GetItemCount(); ++place) {
    if (place > 0) text += hasRows && place % columns == 0 ? "], [" : ", ";
    text += ElementText(array.GetItemAt(static_cast<unsigned int>(place)), element, view);
  }
  return text + (hasRows ? "]]" : "]");
}

std::string ObjectText(const type::Object& value, const ObjectViewer& view) {
  const ObjectView object = view(value);
  std::string text = object.className.empty() ? "(unknown class)" : ToSourceForm(object.className);
  if (object.text) text += ": " + *object.text;
  return text;
}

}  // namespace

std::string PlainText(const type::Object& value) {
  if (const auto* character = dynamic_cast<const type::Char*>(&value)) {
    return WideToUtf8(std::wstring(1, character->GetValue()));
  }
  WideString text;
  value.GetDesc(text);
  return ToUtf8(text);
}

std::string ValueText(const type::Object* value, const TypeDesc& desc, const ObjectViewer& view) {
  if (value == nullptr) return "null";
  if (const auto* array = dynamic_cast<const type::Array*>(value)) {
    return ArrayText(*array, desc, view);
  }
  return desc.key == TypeDesc::Key::Object ? ObjectText(*value, view) : PlainText(*value);
}

}  // namespace quenlatrix::host

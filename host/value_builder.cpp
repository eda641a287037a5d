#include "host/value_builder.h"

#include <memory>

#include "host/host_error.h"
#include "host/method_pattern.h"
#include "host/outgoing_text.h"
#include "host/parameter_fit.h"
#include "host/utf8.h"
#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"
#include "text/c_numbers.h"

namespace quenlatrix::host {

namespace {

using meta_object::TypeDesc;
namespace type = meta_object::type;
using Kind = Argument::Kind;
using ObjectPtr = std::unique_ptr<type::Object>;

bool IsPrimitive(const std::string& typeName) { return typeName.find('.') == std::string::npos; }

// A held object where the value inside travels.
const Argument& PlainOf(const Argument& argument) {
  return argument.kind == Kind::Object && !argument.items.empty() ? argument.items.front()
                                                                  : argument;
}

// A character goes out as its code where a number is expected.
long WholeValue(const Argument& argument) {
  if (argument.kind == Kind::Character) return static_cast<long>(Utf8ToWide(argument.text).front());
  return text::ReadLong(argument.text.c_str());
}

ObjectPtr RealValue(const Argument& argument, const TypeDesc& desc, bool isElement) {
  std::string digits = argument.text;
  if (argument.kind == Kind::Character) digits = std::to_string(WholeValue(argument));
  // The plug-in reads an element of a primitive array as a number, all else as text.
  const bool asNumber = isElement && IsPrimitive(JavaTypeOf(desc).name);
  if (!asNumber) return std::make_unique<OutgoingText>(desc, digits, isElement);
  return std::make_unique<type::Real>(text::ReadReal(digits.c_str()));
}

ObjectPtr CharValue(const Argument& argument) {
  auto value = std::make_unique<type::Char>();
  value->SetValue(Utf8ToWide(argument.text).front());
  return value;
}

ObjectPtr BoolValue(const Argument& argument) {
  auto value = std::make_unique<type::Bool>();
  value->SetValue(argument.text == "true");
  return value;
}

// `desc` describes the one value, without array information.
ObjectPtr PlainValue(const Argument& argument, const TypeDesc& desc, bool isElement) {
  switch (desc.key) {
    case TypeDesc::Key::Int:
      return std::make_unique<type::Int>(WholeValue(argument));
    case TypeDesc::Key::Real:
      return RealValue(argument, desc, isElement);
    case TypeDesc::Key::Char:
      return CharValue(argument);
    case TypeDesc::Key::Bool:
      return BoolValue(argument);
    default:
      break;
  }
  return std::make_unique<OutgoingText>(desc, argument.text, isElement);
}

ObjectPtr OneValue(const Argument& argument, const TypeDesc& desc, const std::string& boxClass,
                   bool isElement, Boxes& boxes) {
  ObjectPtr value;
  if (IsPlainType(JavaTypeOf(desc).name)) {
    value = PlainValue(PlainOf(argument), desc, isElement);
  } else if (argument.kind == Kind::Object) {
    value = std::make_unique<ObjectArgument>(argument.handler);
  } else {
    value = std::make_unique<ObjectArgument>(boxes.Box(boxClass, argument.text).GetHandler());
  }
  value->GetMetaItemType() = desc;
  return value;
}

void AppendElements(const Argument& array, std::vector<const Argument*>& elements) {
  for (const Argument& item : array.items) {
    if (item.kind == Kind::Array) {
      AppendElements(item, elements);
    } else {
      elements.push_back(&item);
    }
  }
}

ObjectPtr ArrayValue(const Argument& argument, const TypeDesc& parameterType, Boxes& boxes) {
  TypeDesc desc = parameterType;
  desc.arrayInfo->Clear();
  for (const int length : Dimensions(argument)) desc.arrayInfo->AddDimensionInfo(0, length);
  TypeDesc elementDesc(desc.key, desc.typeName, desc.typeName);
  auto array = std::make_unique<type::Array>();
  if (!array->Create(desc)) {
    throw HostError(ExitStatus::Failed,
                    "the array is too large to be passed: " + Describe(argument));
  }
  array->SetDesc(desc.typeName);
  const std::string boxClass = BoxClassOf(argument);
  std::vector<const Argument*> elements;
  AppendElements(argument, elements);
  for (unsigned int place = 0; place < elements.size(); ++place) {
    ObjectPtr value = OneValue(*elements[place], elementDesc, boxClass, true, boxes);
    if (array->SetItemAt(value.get(), place)) static_cast<void>(value.release());
  }
  return array;
}

}  // namespace

ValuePtr BuildValue(const Argument& argument, const ParameterDescription& parameter, Boxes& boxes) {
  ObjectPtr value = parameter.type.arrayInfo
                        ? ArrayValue(argument, parameter.type, boxes)
                        : OneValue(argument, parameter.type, BoxClassOf(argument), false, boxes);
  value->SetParamName(parameter.name);
  value->SetDirection(parameter.direction);
  return ValuePtr(value.release());
}

}  // namespace quenlatrix::host

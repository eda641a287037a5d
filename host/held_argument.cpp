#include "host/held_argument.h"

#include <array>
#include <charconv>

#include "host/host.h"
#include "host/method_pattern.h"
#include "host/parameter_fit.h"
#include "host/utf8.h"
#include "host/value_view.h"
#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"

namespace quenlatrix::host {

namespace {

namespace type = meta_object::type;
using Kind = Argument::Kind;

// The shortest digits that read back as the same number.
std::string DigitsOf(double value) {
  std::array<char, 64> digits;
  const auto [end, error] = std::to_chars(digits.begin(), digits.end(), value);
  return error == std::errc() ? std::string(digits.begin(), end) : std::to_string(value);
}

Argument OfPlain(const type::Object& value, const std::string& typeName) {
  Argument argument;
  argument.kind = PlainKindOf(typeName);
  argument.javaType = typeName;
  argument.text = PlainText(value);
  if (const auto* real = dynamic_cast<const type::Real*>(&value)) {
    argument.text = DigitsOf(real->GetValue());
  }
  return argument;
}

Argument RowOf(Argument& flat, std::size_t first, std::size_t count) {
  Argument row;
  row.kind = Kind::Array;
  const auto begin = flat.items.begin() + static_cast<std::ptrdiff_t>(first);
  row.items.assign(begin, begin + static_cast<std::ptrdiff_t>(count));
  return row;
}

Argument OfArray(Host& host, const type::Array& array, const std::string& typeName);

// A string or wrapped number that came as an object can go where its value is expected.
Argument OfObject(BeanObject& object) {
  Argument argument;
  argument.kind = Kind::Object;
  argument.text = object.ClassName();
  argument.handler = object.GetHandler();
  argument.supertypes = object.SupertypesOfClass();
  if (!IsPlainType(argument.text)) return argument;
  if (const std::optional<WideString> text = object.ToText()) {
    Argument inside;
    inside.kind = PlainKindOf(argument.text);
    inside.javaType = argument.text;
    inside.text = ToUtf8(*text);
    argument.items.push_back(std::move(inside));
  }
  return argument;
}

Argument OfValue(Host& host, const type::Object* value, const std::string& typeName) {
  if (value == nullptr) return {};
  if (const auto* array = dynamic_cast<const type::Array*>(value))
    return OfArray(host, *array, typeName);
  if (std::optional<BeanObject> object = BeanObject::FromValue(host, *value)) {
    return OfObject(*object);
  }
  return OfPlain(*value, typeName);
}

Argument OfArray(Host& host, const type::Array& array, const std::string& typeName) {
  Argument flat;
  flat.kind = Kind::Array;
  for (int place = 0; place < array.GetItemCount(); ++place) {
    flat.items.push_back(
        OfValue(host, array.GetItemAt(static_cast<unsigned int>(place)), typeName));
  }
  int lowest = 0;
  int columns = 0;
  if (!array.GetDimensionInfo(1, lowest, columns) || columns < 1) return flat;
  Argument rows;
  rows.kind = Kind::Array;
  const auto width = static_cast<std::size_t>(columns);
  for (std::size_t first = 0; first < flat.items.size(); first += width) {
    rows.items.push_back(RowOf(flat, first, width));
  }
  return rows;
}

}  // namespace

Argument Resolve(Host& host, const Argument& argument, HeldValues::Loan& loan) {
  if (argument.kind != Kind::Reference) return argument;
  Held& held = loan.Get(argument.text);
  Argument resolved = held.object ? OfObject(*held.object)
                                  : OfValue(host, held.value.get(), JavaTypeOf(held.type).name);
  resolved.source = argument.source;
  resolved.at = argument.at;
  return resolved;
}

}  // namespace quenlatrix::host

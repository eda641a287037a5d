#include "fuzz/echo_model.h"

#include <algorithm>
#include <string_view>

#include "fuzz/jvm_host.h"
#include "host/utf8.h"
#include "meta_object/type/array.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"

namespace {

using quenlatrix::meta_object::Handler;
namespace host = quenlatrix::host;
namespace type = quenlatrix::meta_object::type;
using Key = quenlatrix::meta_object::TypeDesc::Key;

constexpr const wchar_t* kEmptyTextMarker = L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB";

jobject ReferenceOf(const Handler& handler) {
  return static_cast<jobject>(const_cast<void*>(handler.GetObjectRef()));
}

std::string ShowObject(const Handler* handler) {
  if (handler == nullptr) return "Object none";
  std::size_t number = 0;
  for (const host::BeanObject& point : GetPoints()) {
    if (GetEnv()->IsSameObject(ReferenceOf(*point.GetHandler()), ReferenceOf(*handler))) {
      return "Object " + std::to_string(number);
    }
    ++number;
  }
  return "Object other";
}

// The bytes of a character of any number; none for a surrogate and what is negative.
std::string Encode(wchar_t c) {
  if (c < 0 || (c >= 0xd800 && c <= 0xdfff)) return {};
  if (c < 0x80) return {static_cast<char>(c)};
  std::string bytes;
  int lead = 0x3f;
  for (; c > lead; c >>= 6, lead >>= 1) bytes.insert(0, 1, static_cast<char>(0x80 | (c & 0x3f)));
  return static_cast<char>(~lead << 1 | c) + bytes;
}

// As long as the text has characters: what comes behind is cut. Nothing when a character has no
// bytes.
std::optional<NarrowForm> Narrow(const std::wstring& text) {
  NarrowForm narrow;
  for (std::size_t i = 0; narrow.bytes.size() < text.size(); ++i) {
    const std::string bytes = Encode(text[i]);
    if (bytes.empty()) return std::nullopt;
    if (narrow.bytes.size() + bytes.size() > text.size()) break;
    narrow.bytes += bytes;
    narrow.isUnicode = narrow.isUnicode && text[i] <= 0x10ffff;
  }
  return narrow;
}

// A character's text is its low byte's, which beyond ASCII is no character in UTF-8.
std::wstring CharText(const type::Char& value) {
  const wchar_t c = value.GetValue() & 0xff;
  return c == 0 ? std::wstring() : std::wstring(1, c);
}

std::wstring TextOf(const type::Object& value) {
  if (const auto* const c = dynamic_cast<const type::Char*>(&value)) return CharText(*c);
  if (const auto* const real = dynamic_cast<const type::Real*>(&value)) {
    return host::Utf8ToWide(PrintReal(real->GetValue()));
  }
  if (const auto* const whole = dynamic_cast<const type::Int*>(&value)) {
    return std::to_wstring(whole->GetValue());
  }
  if (const auto* const truth = dynamic_cast<const type::Bool*>(&value)) {
    return truth->GetValue() ? L"true" : L"false";
  }
  WideString text;
  value.GetValueAsString(text);
  return text.getWCharPtr() == nullptr ? std::wstring() : text.getWCharPtr();
}

std::string ShowScalar(const type::Object& value, const EchoKind& kind) {
  if (const auto* const blob = dynamic_cast<const type::Blob*>(&value)) {
    return ShowObject(blob->GetValue());
  }
  if (const auto* const whole = dynamic_cast<const type::Int*>(&value)) {
    return ShowInt(whole->GetValue());
  }
  if (const auto* const real = dynamic_cast<const type::Real*>(&value)) {
    // A wrapper comes back through the shortest text that means its number.
    const bool isFloat = std::string_view(kind.javaType) == "java.lang.Float";
    return ShowReal(isFloat ? static_cast<float>(real->GetValue()) : real->GetValue());
  }
  if (const auto* const truth = dynamic_cast<const type::Bool*>(&value)) {
    return ShowBool(truth->GetValue());
  }
  if (const auto* const c = dynamic_cast<const type::Char*>(&value)) return ShowChar(c->GetValue());
  return ShowText(host::WideToUtf8(TextOf(value)));
}

// The counts of the dimensions, then the places one after another.
std::string ShowPlaces(const std::vector<int>& counts, const std::vector<Fate>& places) {
  std::string text;
  for (const int count : counts) text += std::to_string(count) + ":";
  for (const Fate& place : places) text += " [" + place.value_or("-") + "]";
  return text;
}

std::vector<int> CountsOf(const type::Array& array) {
  std::vector<int> counts;
  for (const auto& dimension : array.GetMetaItemType().arrayInfo->dimensions) {
    counts.push_back(dimension.elementCount);
  }
  return counts;
}

Fate ExpectText(const std::wstring& text, const EchoKind& kind) {
  const bool isString = kind.key == Key::String;
  if (isString && text == kEmptyTextMarker) return ShowText({});
  const std::optional<NarrowForm> narrow = Narrow(text);
  return text.empty() || !narrow ? std::nullopt : kind.read(*narrow);
}

Fate ExpectScalar(const type::Object& value, const EchoKind& kind) {
  if (kind.key == Key::Object) {
    const auto* const blob = dynamic_cast<const type::Blob*>(&value);
    return blob == nullptr || blob->GetValue() == nullptr ? std::nullopt
                                                          : Fate(ShowObject(blob->GetValue()));
  }
  return ExpectText(TextOf(value), kind);
}

// One Java array: of references that are there, and a primitive one only if all are. Nothing where
// none can be made.
std::optional<std::vector<Fate>> ExpectRow(const type::Array& array, unsigned int first, int count,
                                           const EchoKind& kind) {
  std::vector<Fate> row;
  for (unsigned int i = 0; i < static_cast<unsigned int>(count); ++i) {
    const type::Object* const item = array.GetItemAt(first + i);
    if (item == nullptr) return std::nullopt;
    row.push_back(kind.readElement != nullptr ? kind.readElement(*item)
                                              : ExpectScalar(*item, kind));
    const bool isNeeded = kind.readElement != nullptr || i == 0;
    if (isNeeded && !row.back()) return std::nullopt;
  }
  return row;
}

// An array of unknown size has none but empty places.
bool HasEmptyPlace(const type::Array& array) {
  for (int i = 0; i < array.GetItemCount(); ++i) {
    if (array.GetItemAt(static_cast<unsigned int>(i)) == nullptr) return true;
  }
  return std::ranges::any_of(CountsOf(array), [](int count) { return count < 0; });
}

// What is null on the way back is an empty place, or a row of them.
std::string ExpectTable(const type::Array& array, int rows, int columns, const EchoKind& kind) {
  std::vector<Fate> places;
  for (int r = 0; r < rows; ++r) {
    const auto row = ExpectRow(array, static_cast<unsigned int>(r * columns), columns, kind);
    if (r == 0 && !row) return "refused";
    for (int c = 0; c < columns; ++c) {
      places.push_back(row ? (*row)[static_cast<std::size_t>(c)] : std::nullopt);
    }
  }
  return ShowPlaces({rows, columns}, places);
}

std::string ExpectArray(const type::Array& array, const EchoKind& kind) {
  const auto& dimensions = array.GetMetaItemType().arrayInfo->dimensions;
  const bool startsAtZero =
      std::ranges::all_of(dimensions, [](const auto& d) { return d.lowerBound == 0; });
  if (dimensions.size() == 1) {
    const auto row = ExpectRow(array, 0, std::max(dimensions[0].elementCount, 1), kind);
    if (row && startsAtZero) return ShowPlaces({dimensions[0].elementCount}, *row);
    return kind.readElement != nullptr ? "null" : "refused";
  }
  if (dimensions.size() != 2 || !startsAtZero || HasEmptyPlace(array)) return "refused";
  return ExpectTable(array, dimensions[0].elementCount, dimensions[1].elementCount, kind);
}

}  // namespace

std::vector<host::BeanObject>& GetPoints() {
  static auto* const points = [] {
    auto* const made = new std::vector<host::BeanObject>;
    for (int i = 0; i < 3; ++i) made->push_back(MakeBean("beans.Point"));
    return made;
  }();
  return *points;
}

std::string Show(const type::Object* value, const EchoKind& kind) {
  if (value == nullptr) return "null";
  const auto* const array = dynamic_cast<const type::Array*>(value);
  if (array == nullptr) return ShowScalar(*value, kind);
  std::vector<Fate> places;
  for (int i = 0; i < array->GetItemCount(); ++i) {
    const type::Object* const item = array->GetItemAt(static_cast<unsigned int>(i));
    places.push_back(item == nullptr ? std::nullopt : Fate(ShowScalar(*item, kind)));
  }
  return ShowPlaces(CountsOf(*array), places);
}

std::string Expect(const type::Object& value, const EchoKind& kind) {
  const auto* const array = dynamic_cast<const type::Array*>(&value);
  if (array != nullptr) return ExpectArray(*array, kind);
  if (kind.key == Key::String && TextOf(value).empty()) return ShowText({});
  return ExpectScalar(value, kind).value_or("refused");
}

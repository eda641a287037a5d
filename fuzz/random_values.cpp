#include "fuzz/random_values.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <memory>
#include <utility>

#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"

namespace {

using quenlatrix::host::ObjectArgument;
using quenlatrix::host::ValuePtr;
using quenlatrix::meta_object::TypeDesc;
namespace type = quenlatrix::meta_object::type;
using Key = TypeDesc::Key;

template <class Value, class Number>
ValuePtr MakeValue(Number number) {
  auto value = std::make_unique<Value>();
  value->SetValue(number);
  return ValuePtr(value.release());
}

ValuePtr MakeInt(FuzzedDataProvider& data) {
  constexpr long kEdges[] = {0,         -1,       1,        SCHAR_MAX, SCHAR_MIN,
                             UCHAR_MAX, SHRT_MAX, SHRT_MIN, USHRT_MAX, INT_MAX,
                             INT_MIN,   UINT_MAX, LONG_MAX, LONG_MIN,  5000000000};
  return ValuePtr(new type::Int(data.ConsumeBool() ? data.PickValueInArray(kEdges)
                                                   : data.ConsumeIntegral<long>()));
}

ValuePtr MakeReal(FuzzedDataProvider& data) {
  constexpr double kEdges[] = {0.0,     -0.0,          1.5,       1e-7,    -0.0000005,
                               FLT_MAX, 2.0 * FLT_MAX, FLT_MIN,   DBL_MAX, -DBL_MAX,
                               DBL_MIN, INFINITY,      -INFINITY, NAN,     9007199254740993.0};
  return ValuePtr(new type::Real(data.ConsumeBool() ? data.PickValueInArray(kEdges)
                                                    : data.ConsumeFloatingPoint<double>()));
}

ValuePtr MakeTextValue(std::unique_ptr<type::String> value, FuzzedDataProvider& data) {
  value->SetValue(WideString(MakeText(data).c_str()));
  return ValuePtr(value.release());
}

}  // namespace

std::wstring MakeText(FuzzedDataProvider& data) {
  // Of one to six bytes; surrogates; the empty text's marker.
  constexpr const wchar_t* kPieces[] = {L"a",
                                        L"0",
                                        L" ",
                                        L"\t",
                                        L"\x7f",
                                        L"\u00e4",
                                        L"\u07ff",
                                        L"\u20ac",
                                        L"\ufffe",
                                        L"\U0001f600",
                                        L"\xd800",
                                        L"\xdfff",
                                        L"\xd83d\xde00",
                                        L"\U0010ffff",
                                        L"\x110000",
                                        L"\x7fffffff",
                                        L"    ",
                                        L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB"};
  std::wstring text;
  const std::size_t count = data.ConsumeIntegralInRange<std::size_t>(0, 8);
  for (std::size_t i = 0; i < count; ++i) {
    text += data.PickValueInArray(kPieces);
  }
  // Beyond what is converted without an allocation.
  if (data.ConsumeIntegralInRange(0, 31) == 31) {
    text.append(data.ConsumeIntegralInRange<std::size_t>(200, 300), L'l');
  }
  return text;
}

std::wstring MakeNumberText(FuzzedDataProvider& data) {
  constexpr const wchar_t* kPieces[] = {
      L"true", L"True", L"TRUE", L"tRue", L"1",
      L"25",   L"-",    L"+",    L".",    L",",
      L"e",    L"E+3",  L"0x1F", L"127",  L"999999999999999999999",
      L" ",    L"NaN",  L"inf",  L"f",    L"\u0663"};
  std::wstring text;
  for (int count = data.ConsumeIntegralInRange(0, 4); count > 0; --count) {
    text += data.PickValueInArray(kPieces);
  }
  return text;
}

ValuePtr MakeScalar(FuzzedDataProvider& data, Key key,
                    const quenlatrix::meta_object::Handler* handler) {
  switch (key) {
    case Key::Int:
      return MakeInt(data);
    case Key::Real:
      return MakeReal(data);
    case Key::Char:
      return MakeValue<type::Char>(data.ConsumeBool()
                                       ? data.ConsumeIntegral<wchar_t>()
                                       : data.ConsumeIntegralInRange<wchar_t>(0, 0x17f));
    case Key::Bool:
      return MakeValue<type::Bool>(data.ConsumeBool());
    case Key::Enum:
      return MakeValue<type::Enum>(data.ConsumeIntegral<long>());
    case Key::String:
      return MakeTextValue(std::make_unique<type::String>(), data);
    case Key::Date:
      return MakeTextValue(std::make_unique<type::Date>(), data);
    case Key::Currency:
      return MakeTextValue(std::make_unique<type::Currency>(), data);
    case Key::Object:
      return ValuePtr(new ObjectArgument(handler));
    default:
      return ValuePtr(new type::Void);
  }
}

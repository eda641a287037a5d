#include "meta_object/type/scalar_values.h"

#include <array>
#include <cwchar>

#include "meta_object/type/number_text.h"
#include "text/c_numbers.h"
#include "text/narrow_text.h"
#include "text/wide_chars.h"

namespace quenlatrix::meta_object::type {

namespace {

long ReadWhole(const WideString& text) {
  const wchar_t* digits = text.getWCharPtr();
  return digits == nullptr ? 0 : quenlatrix::text::wcstol(digits, nullptr, 10);
}

double ReadRealOf(const WideString& text) {
  return quenlatrix::text::ReadReal(NarrowText(text.getWCharPtr()).Get());
}

wchar_t WidenByte(unsigned char byte) {
  const char narrow = static_cast<char>(byte);
  std::mbstate_t state{};
  wchar_t wide = 0;
  return std::mbrtowc(&wide, &narrow, 1, &state) <= 1 ? wide : static_cast<wchar_t>(byte);
}

}  // namespace

Int::Int(long value) : Object(TypeDesc::Key::Int), value(value) {
  valueFormat.assignFormat(WideString::numberFormats.whole);
}

Object* Int::Clone() const { return new Int(*this); }

void Int::GetDesc(WideString& text) const {
  AssignNumber(text, quenlatrix::text::PrintInteger(value));
}

void Int::SetDesc(const WideString& text) { value = ReadWhole(text); }

Real::Real(double value) : Object(TypeDesc::Key::Real), value(value) {
  valueFormat.assignFormat(WideString::numberFormats.real);
}

Object* Real::Clone() const { return new Real(*this); }

void Real::GetDesc(WideString& text) const {
  AssignNumber(text, quenlatrix::text::PrintReal(value));
}

void Real::SetDesc(const WideString& text) { value = ReadRealOf(text); }

Char::Char() : Object(TypeDesc::Key::Char) {}

Object* Char::Clone() const { return new Char(*this); }

void Char::GetDesc(WideString& text) const {
  const std::array<wchar_t, 2> wide{WidenByte(static_cast<unsigned char>(value)), L'\0'};
  text.assign(wide.data());
}

void Char::SetDesc(const WideString& text) {
  const wchar_t* first = text.getWCharPtr();
  value = first == nullptr ? L'\0' : *first;
}

Bool::Bool() : Object(TypeDesc::Key::Bool) {}

Object* Bool::Clone() const { return new Bool(*this); }

void Bool::GetDesc(WideString& text) const { text.assign(value ? L"true" : L"false"); }

void Bool::SetDesc(const WideString& text) { value = text.compare(L"true", 0) == 0; }

Enum::Enum() : Object(TypeDesc::Key::Enum) {}

Object* Enum::Clone() const { return new Enum(*this); }

void Enum::GetDesc(WideString& text) const {
  AssignNumber(text, quenlatrix::text::PrintInteger(value));
}

void Enum::SetDesc(const WideString& text) { value = ReadWhole(text); }

Void::Void() : Object(TypeDesc::Key::Void) {}

Object* Void::Clone() const { return new Void(*this); }

void Void::GetDesc(WideString& text) const { text = WideString(); }

void Void::SetDesc(const WideString& /*text*/) {}

}  // namespace quenlatrix::meta_object::type

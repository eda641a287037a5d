#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "text/c_numbers.h"
#include "text/wide_string.h"

namespace quenlatrix::meta_object::type {

// Printed numbers are plain ASCII, so they widen without the locale's conversion.
template <std::size_t N>
void AssignNumber(WideString& out, const quenlatrix::text::PrintedNumber<N>& number) {
  std::array<wchar_t, N> wide;
  std::copy_n(number.c_str(), number.size() + 1, wide.data());
  out.assign(wide.data());
}

}  // namespace quenlatrix::meta_object::type

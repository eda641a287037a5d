#pragma once

#include <benchmark/benchmark.h>

#include <string>

#include "meta_object/type/object.h"

namespace quenlatrix::bench {

// A benchmark whose work came out wrong fails by name, and the whole program with it.
inline void Expect(benchmark::State& state, bool isRight, const char* otherwise) {
  if (!isRight) {
    state.SkipWithError(otherwise);
  }
}

// The text of a value: what its number, characters or object say.
inline std::wstring TextOf(const meta_object::type::Object* value) {
  WideString text;
  if (value != nullptr) {
    value->GetValueAsString(text);
  }
  const wchar_t* const characters = text.getWCharPtr();
  return characters == nullptr ? std::wstring() : characters;
}

}  // namespace quenlatrix::bench

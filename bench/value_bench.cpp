// What a call does with values and texts outside the VM. The floors do the least that gives the
// same outcome: one piece of memory, one conversion.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <memory>
#include <string>

#include "bench/expect.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::bench {
namespace {

using meta_object::TypeDesc;
using meta_object::type::Int;

constexpr wchar_t kTypeName[] = L"java.lang.String";
// The place of the name's last letter.
constexpr std::size_t kLast = std::size(kTypeName) - 2;
constexpr wchar_t kWideText[] = L"a text of forty characters, all of them.";
constexpr char kNarrowText[] = "a text of forty characters, all of them.";
constexpr char kWrongText[] = "a conversion gave another text";

void CopyTypeOurs(benchmark::State& state) {
  const TypeDesc desc(TypeDesc::Key::String, WideString(kTypeName), WideString(kTypeName));
  for (auto _ : state) {
    const TypeDesc copy(desc);
    Expect(state, copy.typeName.getWCharPtr()[kLast] == L'g', "a copy has another name");
  }
}

void CopyTypeFloor(benchmark::State& state) {
  std::wstring const name(kTypeName);
  for (auto _ : state) {
    std::wstring const displayName(name);
    std::wstring const typeName(name);
    benchmark::DoNotOptimize(displayName.data());
    benchmark::DoNotOptimize(typeName.data());
  }
}

void CloneIntOurs(benchmark::State& state) {
  Int value(0);
  int i = 0;
  for (auto _ : state) {
    value.SetValue(++i);
    const std::unique_ptr<meta_object::type::Object> copy(value.Clone());
    Expect(state, static_cast<Int&>(*copy).GetValue() == i, "a copy has another value");
  }
}

void CloneIntFloor(benchmark::State& state) {
  for (auto _ : state) {
    const auto memory = std::make_unique_for_overwrite<char[]>(sizeof(Int));
    std::memset(memory.get(), 0, sizeof(Int));
    benchmark::DoNotOptimize(memory.get());
  }
}

void NarrowOurs(benchmark::State& state) {
  const WideString text(kWideText);
  for (auto _ : state) {
    const std::unique_ptr<char[]> narrow(text.allocConvert(text.getWCharPtr()));
    Expect(state, std::strcmp(narrow.get(), kNarrowText) == 0, kWrongText);
  }
}

void NarrowFloor(benchmark::State& state) {
  const wchar_t* const text = kWideText;
  for (auto _ : state) {
    std::size_t const length = std::wcslen(text);
    const auto narrow = std::make_unique_for_overwrite<char[]>(length + 1);
    benchmark::DoNotOptimize(std::wcstombs(narrow.get(), text, length + 1));
    Expect(state, std::strcmp(narrow.get(), kNarrowText) == 0, kWrongText);
  }
}

void WideOurs(benchmark::State& state) {
  for (auto _ : state) {
    const WideString text(kNarrowText);
    Expect(state, std::wcscmp(text.getWCharPtr(), kWideText) == 0, kWrongText);
  }
}

void WideFloor(benchmark::State& state) {
  const char* const text = kNarrowText;
  for (auto _ : state) {
    std::size_t const length = std::strlen(text);
    const auto wide = std::make_unique_for_overwrite<wchar_t[]>(length + 1);
    benchmark::DoNotOptimize(std::mbstowcs(wide.get(), text, length + 1));
    Expect(state, std::wcscmp(wide.get(), kWideText) == 0, kWrongText);
  }
}

BENCHMARK(CopyTypeOurs)->Name("copy a TypeDesc with two names|ours");
BENCHMARK(CopyTypeFloor)->Name("copy a TypeDesc with two names|floor");
BENCHMARK(CloneIntOurs)->Name("clone an Int|ours");
BENCHMARK(CloneIntFloor)->Name("clone an Int|floor");
BENCHMARK(NarrowOurs)->Name("wide to narrow, 40 characters|ours");
BENCHMARK(NarrowFloor)->Name("wide to narrow, 40 characters|floor");
BENCHMARK(WideOurs)->Name("narrow to wide, 40 characters|ours");
BENCHMARK(WideFloor)->Name("narrow to wide, 40 characters|floor");

}  // namespace
}  // namespace quenlatrix::bench

// What a call does with values and texts outside the VM. The floors do the least that gives the
// same outcome: one piece of memory, one conversion.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string>

#include "meta_object/type/scalar_values.h"
#include "meta_object/type_desc.h"
#include "text/wide_string.h"

namespace quenlatrix::bench {
namespace {

using meta_object::TypeDesc;
using meta_object::type::Int;

constexpr wchar_t kTypeName[] = L"java.lang.String";

void CopyTypeOurs(benchmark::State& state) {
  const TypeDesc desc(TypeDesc::Key::String, WideString(kTypeName), WideString(kTypeName));
  for (auto _ : state) {
    const TypeDesc copy(desc);
    benchmark::DoNotOptimize(copy.typeName.getWCharPtr());
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
  const Int value(42);
  for (auto _ : state) {
    const std::unique_ptr<meta_object::type::Object> copy(value.Clone());
    benchmark::DoNotOptimize(copy.get());
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
  const WideString text(L"a text of forty characters, all of them.");
  for (auto _ : state) {
    const std::unique_ptr<char[]> narrow(text.allocConvert(text.getWCharPtr()));
    benchmark::DoNotOptimize(narrow.get());
  }
}

void NarrowFloor(benchmark::State& state) {
  const wchar_t* const text = L"a text of forty characters, all of them.";
  for (auto _ : state) {
    std::size_t const length = std::wcslen(text);
    const auto narrow = std::make_unique_for_overwrite<char[]>(length + 1);
    benchmark::DoNotOptimize(std::wcstombs(narrow.get(), text, length + 1));
  }
}

void WideOurs(benchmark::State& state) {
  for (auto _ : state) {
    const WideString text("a text of forty characters, all of them.");
    benchmark::DoNotOptimize(text.getWCharPtr());
  }
}

void WideFloor(benchmark::State& state) {
  const char* const text = "a text of forty characters, all of them.";
  for (auto _ : state) {
    std::size_t const length = std::strlen(text);
    const auto wide = std::make_unique_for_overwrite<wchar_t[]>(length + 1);
    benchmark::DoNotOptimize(std::mbstowcs(wide.get(), text, length + 1));
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

// Arrays in and out, beside the same work in bare JNI with every identifier kept. An array comes
// back after a call, too, unless the method throws: that shows what the way in costs alone.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <cwchar>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "bench/bench_host.h"
#include "bench/expect.h"
#include "bench/heap_count.h"
#include "meta_object/type/array.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"

namespace quenlatrix::bench {
namespace {

using meta_object::Handler;
using meta_object::TypeDesc;
using meta_object::type::Array;
using meta_object::type::Int;
using meta_object::type::Object;
using meta_object::type::String;
using Key = TypeDesc::Key;

constexpr char kWrongElement[] = "a wrong element arrived";
constexpr char kWrongArray[] = "another array came back";

TypeDesc ArrayType(Key key, const wchar_t* elementName, int count) {
  TypeDesc desc(key, TypeDesc::RefType::ByValue, true);
  desc.typeName.assign(elementName);
  desc.arrayInfo->AddDimensionInfo(0, count);
  return desc;
}

TypeDesc IntType() { return TypeDesc(Key::Int, WideString(L"int"), WideString(L"int")); }

struct Session {
  HeldBean bean{"bench.Work"};
  JNIEnv* env = BenchHost::Get().Env();

  jobject Instance() const { return bean.Instance(); }
  jmethodID Method(const char* name, const char* signature) const {
    return env->GetMethodID(env->GetObjectClass(Instance()), name, signature);
  }
};

std::unique_ptr<Array> MakeInts(int count) {
  auto array = std::make_unique<Array>();
  array->Create(ArrayType(Key::Int, L"int", count));
  array->SetDesc(WideString(L"int"));
  for (int i = 0; i < count; ++i) {
    array->SetItemAt(new Int(i), static_cast<unsigned int>(i));
  }
  return array;
}

void IntsInOurs(benchmark::State& state) {
  const Session session;
  const auto array = MakeInts(static_cast<int>(state.range(0)));
  std::list<Object*> params{array.get()};
  const WideString id(L"Invoke:takeInts:0");
  const TypeDesc intType = IntType();
  for (auto _ : state) {
    Object* const last = Call(session.bean.Get(), id, params, intType);
    Expect(state, static_cast<Int*>(last)->GetValue() == state.range(0) - 1, kWrongElement);
    Free(last);
  }
}

// In and back, into memory of the caller's.
void IntsInFloor(benchmark::State& state) {
  const Session session;
  const auto count = static_cast<jsize>(state.range(0));
  std::vector<jint> values(static_cast<std::size_t>(count));
  std::iota(values.begin(), values.end(), 0);
  const jmethodID take = session.Method("takeInts", "([I)I");
  for (auto _ : state) {
    const jintArray array = session.env->NewIntArray(count);
    session.env->SetIntArrayRegion(array, 0, count, values.data());
    const jint last = session.env->CallIntMethod(session.Instance(), take, array);
    session.env->GetIntArrayRegion(array, 0, count, values.data());
    Expect(state, last == count - 1 && values.back() == last, kWrongElement);
    session.env->DeleteLocalRef(array);
  }
}

void RefusedIntsOurs(benchmark::State& state) {
  const Session session;
  const auto array = MakeInts(static_cast<int>(state.range(0)));
  std::list<Object*> params{array.get()};
  const WideString id(L"Invoke:refuseInts:0");
  const TypeDesc nothing;
  for (auto _ : state) {
    const WideString text = FailingCall(session.bean.Get(), id, params, nothing);
    Expect(state, std::wcsstr(text.getWCharPtr(), L"last 999999") != nullptr, kWrongElement);
  }
}

void RefusedIntsFloor(benchmark::State& state) {
  const Session session;
  const auto count = static_cast<jsize>(state.range(0));
  std::vector<jint> values(static_cast<std::size_t>(count));
  std::iota(values.begin(), values.end(), 0);
  const jmethodID refuse = session.Method("refuseInts", "([I)V");
  for (auto _ : state) {
    const jintArray array = session.env->NewIntArray(count);
    session.env->SetIntArrayRegion(array, 0, count, values.data());
    session.env->CallVoidMethod(session.Instance(), refuse, array);
    Expect(state, session.env->ExceptionCheck() == JNI_TRUE, kWrongElement);
    session.env->ExceptionClear();
    session.env->DeleteLocalRef(array);
  }
}

const char* IntsMethod(const benchmark::State& state) {
  return state.range(0) == 1000 ? "giveThousand" : "giveMillion";
}

void IntsOutOurs(benchmark::State& state) {
  const Session session;
  std::list<Object*> params;
  WideString id(L"Invoke:");
  id.append(IntsMethod(state));
  id.append(L":0");
  const TypeDesc type = ArrayType(Key::Int, L"int", -1);
  for (auto _ : state) {
    auto* const result = static_cast<Array*>(Call(session.bean.Get(), id, params, type));
    state.PauseTiming();
    const auto last = static_cast<unsigned int>(state.range(0) - 1);
    Expect(state,
           result->GetItemCount() == state.range(0) &&
               TextOf(result->GetItemAt(last)) == std::to_wstring(last),
           kWrongArray);
    Free(result);
    malloc_trim(0);
    state.ResumeTiming();
  }
  std::size_t const before = HeapBytes();
  Object* const result = Call(session.bean.Get(), id, params, type);
  state.counters["bytes"] =
      static_cast<double>(HeapBytes() - before) / static_cast<double>(state.range(0));
  Free(result);
}

// What an element's memory alone costs: one piece of a value's size, fresh from the system.
void IntsOutBase(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  std::vector<void*> elements(count);
  for (auto _ : state) {
    for (void*& element : elements) {
      element = std::malloc(sizeof(Int));
    }
    state.PauseTiming();
    for (void* const element : elements) {
      std::free(element);
    }
    malloc_trim(0);
    state.ResumeTiming();
  }
}

void IntsOutFloor(benchmark::State& state) {
  const Session session;
  const jmethodID give = session.Method(IntsMethod(state), "()[I");
  const auto count = static_cast<jsize>(state.range(0));
  std::vector<jint> values(static_cast<std::size_t>(count));
  for (auto _ : state) {
    auto* const array =
        static_cast<jintArray>(session.env->CallObjectMethod(session.Instance(), give));
    session.env->GetIntArrayRegion(array, 0, count, values.data());
    Expect(state, values.back() == count - 1, kWrongArray);
    session.env->DeleteLocalRef(array);
  }
}

constexpr int kTexts = 10000;
// What takeTexts answers to all of them: their number and the last one's length.
constexpr int kSeen = kTexts + 9;
constexpr wchar_t kLastText[] = L"text 9999";

std::unique_ptr<Array> MakeTexts() {
  auto array = std::make_unique<Array>();
  array->Create(ArrayType(Key::String, L"java.lang.String", kTexts));
  array->SetDesc(WideString(L"java.lang.String"));
  for (int i = 0; i < kTexts; ++i) {
    auto* const text = new String;
    text->SetValue(WideString(("text " + std::to_string(i)).c_str()));
    array->SetItemAt(text, static_cast<unsigned int>(i));
  }
  return array;
}

void TextsInOurs(benchmark::State& state) {
  const Session session;
  const auto array = MakeTexts();
  std::list<Object*> params{array.get()};
  const WideString id(L"Invoke:takeTexts:0");
  const TypeDesc intType = IntType();
  for (auto _ : state) {
    Object* const seen = Call(session.bean.Get(), id, params, intType);
    Expect(state, static_cast<Int*>(seen)->GetValue() == kSeen, kWrongElement);
    Free(seen);
  }
}

void ReadTexts(JNIEnv* env, jobjectArray array, std::vector<std::string>& texts) {
  for (jsize i = 0; i < kTexts; ++i) {
    auto* const text = static_cast<jstring>(env->GetObjectArrayElement(array, i));
    const char* const chars = env->GetStringUTFChars(text, nullptr);
    texts[static_cast<std::size_t>(i)] = chars;
    env->ReleaseStringUTFChars(text, chars);
    env->DeleteLocalRef(text);
  }
}

std::vector<std::string> PlainTexts() {
  std::vector<std::string> texts;
  for (int i = 0; i < kTexts; ++i) {
    texts.push_back("text " + std::to_string(i));
  }
  return texts;
}

jobjectArray NewTexts(JNIEnv* env, jclass stringClass, const std::vector<std::string>& texts) {
  const jobjectArray array = env->NewObjectArray(kTexts, stringClass, nullptr);
  for (jsize i = 0; i < kTexts; ++i) {
    const jstring text = env->NewStringUTF(texts[static_cast<std::size_t>(i)].c_str());
    env->SetObjectArrayElement(array, i, text);
    env->DeleteLocalRef(text);
  }
  return array;
}

void TextsInFloor(benchmark::State& state) {
  const Session session;
  JNIEnv* const env = session.env;
  const jmethodID take = session.Method("takeTexts", "([Ljava/lang/String;)I");
  const jclass stringClass = env->FindClass("java/lang/String");
  std::vector<std::string> texts = PlainTexts();
  for (auto _ : state) {
    const jobjectArray array = NewTexts(env, stringClass, texts);
    const jint seen = env->CallIntMethod(session.Instance(), take, array);
    ReadTexts(env, array, texts);
    Expect(state, seen == kSeen && texts.back() == "text 9999", kWrongElement);
    env->DeleteLocalRef(array);
  }
}

void RefusedTextsOurs(benchmark::State& state) {
  const Session session;
  const auto array = MakeTexts();
  std::list<Object*> params{array.get()};
  const WideString id(L"Invoke:refuseTexts:0");
  const TypeDesc nothing;
  for (auto _ : state) {
    const WideString text = FailingCall(session.bean.Get(), id, params, nothing);
    Expect(state, std::wcsstr(text.getWCharPtr(), kLastText) != nullptr, kWrongElement);
  }
}

void RefusedTextsFloor(benchmark::State& state) {
  const Session session;
  JNIEnv* const env = session.env;
  const jmethodID refuse = session.Method("refuseTexts", "([Ljava/lang/String;)V");
  const jclass stringClass = env->FindClass("java/lang/String");
  const std::vector<std::string> texts = PlainTexts();
  for (auto _ : state) {
    const jobjectArray array = NewTexts(env, stringClass, texts);
    env->CallVoidMethod(session.Instance(), refuse, array);
    Expect(state, env->ExceptionCheck() == JNI_TRUE, kWrongElement);
    env->ExceptionClear();
    env->DeleteLocalRef(array);
  }
}

void TextsOutOurs(benchmark::State& state) {
  const Session session;
  std::list<Object*> params;
  const WideString id(L"Invoke:giveTexts:0");
  const TypeDesc type = ArrayType(Key::String, L"java.lang.String", -1);
  for (auto _ : state) {
    auto* const result = static_cast<Array*>(Call(session.bean.Get(), id, params, type));
    Expect(state,
           result->GetItemCount() == kTexts && TextOf(result->GetItemAt(kTexts - 1)) == kLastText,
           kWrongArray);
    Free(result);
  }
}

void TextsOutFloor(benchmark::State& state) {
  const Session session;
  const jmethodID give = session.Method("giveTexts", "()[Ljava/lang/String;");
  std::vector<std::string> texts(kTexts);
  for (auto _ : state) {
    auto* const array =
        static_cast<jobjectArray>(session.env->CallObjectMethod(session.Instance(), give));
    ReadTexts(session.env, array, texts);
    Expect(state, texts.back() == "text 9999", kWrongArray);
    session.env->DeleteLocalRef(array);
  }
}

BENCHMARK(IntsInOurs)->Name("int[1000] in and back|ours")->Arg(1000);
BENCHMARK(IntsInFloor)->Name("int[1000] in and back|floor")->Arg(1000);
BENCHMARK(IntsOutOurs)->Name("int[1000] out|ours")->Arg(1000);
BENCHMARK(IntsOutFloor)->Name("int[1000] out|floor")->Arg(1000);
BENCHMARK(IntsInOurs)->Name("int[1,000,000] in and back|ours")->Arg(1000000);
BENCHMARK(IntsInFloor)->Name("int[1,000,000] in and back|floor")->Arg(1000000);
BENCHMARK(IntsOutOurs)->Name("int[1,000,000] out|ours")->Arg(1000000);
BENCHMARK(IntsOutFloor)->Name("int[1,000,000] out|floor")->Arg(1000000);
BENCHMARK(IntsOutBase)->Name("int[1,000,000] out|base")->Arg(1000000);
BENCHMARK(RefusedIntsOurs)->Name("int[1,000,000] in|ours")->Arg(1000000);
BENCHMARK(RefusedIntsFloor)->Name("int[1,000,000] in|floor")->Arg(1000000);
BENCHMARK(RefusedTextsOurs)->Name("String[10,000] in|ours");
BENCHMARK(RefusedTextsFloor)->Name("String[10,000] in|floor");
BENCHMARK(TextsInOurs)->Name("String[10,000] in and back|ours");
BENCHMARK(TextsInFloor)->Name("String[10,000] in and back|floor");
BENCHMARK(TextsOutOurs)->Name("String[10,000] out|ours");
BENCHMARK(TextsOutFloor)->Name("String[10,000] out|floor");

}  // namespace
}  // namespace quenlatrix::bench

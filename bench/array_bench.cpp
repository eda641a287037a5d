// Arrays in and out, beside the same work in bare JNI with every identifier kept.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/bench_host.h"
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

// The array comes back after the call too, as for every array parameter: that is the larger part.
void IntsInOurs(benchmark::State& state) {
  const Session session;
  const auto array = MakeInts(static_cast<int>(state.range(0)));
  std::list<Object*> params{array.get()};
  const WideString id(L"Invoke:takeInts:0");
  const TypeDesc intType = IntType();
  for (auto _ : state) {
    Object* const last = Call(session.bean.Get(), id, params, intType);
    if (static_cast<Int*>(last)->GetValue() != state.range(0) - 1) {
      state.SkipWithError("takeInts saw a wrong element");
    }
    Free(last);
  }
}

// In and back, into memory of the caller's.
void IntsInFloor(benchmark::State& state) {
  const Session session;
  const auto count = static_cast<jsize>(state.range(0));
  std::vector<jint> values(static_cast<std::size_t>(count), 3);
  const jmethodID take = session.Method("takeInts", "([I)I");
  for (auto _ : state) {
    const jintArray array = session.env->NewIntArray(count);
    session.env->SetIntArrayRegion(array, 0, count, values.data());
    benchmark::DoNotOptimize(session.env->CallIntMethod(session.Instance(), take, array));
    session.env->GetIntArrayRegion(array, 0, count, values.data());
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
    if (result->GetItemCount() != state.range(0)) {
      state.SkipWithError("an array came back with another length");
    }
    Free(result);
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
    benchmark::DoNotOptimize(values.data());
    session.env->DeleteLocalRef(array);
  }
}

constexpr int kTexts = 10000;

// The array comes back after the call too, here as for ints.
void TextsInOurs(benchmark::State& state) {
  const Session session;
  const auto array = std::make_unique<Array>();
  array->Create(ArrayType(Key::String, L"java.lang.String", kTexts));
  array->SetDesc(WideString(L"java.lang.String"));
  for (int i = 0; i < kTexts; ++i) {
    auto* const text = new String;
    text->SetValue(WideString(("text " + std::to_string(i)).c_str()));
    array->SetItemAt(text, static_cast<unsigned int>(i));
  }
  std::list<Object*> params{array.get()};
  const WideString id(L"Invoke:takeTexts:0");
  const TypeDesc intType = IntType();
  for (auto _ : state) {
    Free(Call(session.bean.Get(), id, params, intType));
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

void TextsInFloor(benchmark::State& state) {
  const Session session;
  JNIEnv* const env = session.env;
  const jmethodID take = session.Method("takeTexts", "([Ljava/lang/String;)I");
  const jclass stringClass = env->FindClass("java/lang/String");
  std::vector<std::string> texts;
  for (int i = 0; i < kTexts; ++i) {
    texts.push_back("text " + std::to_string(i));
  }
  for (auto _ : state) {
    const jobjectArray array = env->NewObjectArray(kTexts, stringClass, nullptr);
    for (jsize i = 0; i < kTexts; ++i) {
      const jstring text = env->NewStringUTF(texts[static_cast<std::size_t>(i)].c_str());
      env->SetObjectArrayElement(array, i, text);
      env->DeleteLocalRef(text);
    }
    benchmark::DoNotOptimize(env->CallIntMethod(session.Instance(), take, array));
    ReadTexts(env, array, texts);
    env->DeleteLocalRef(array);
  }
}

void TextsOutOurs(benchmark::State& state) {
  const Session session;
  std::list<Object*> params;
  const WideString id(L"Invoke:giveTexts:0");
  const TypeDesc type = ArrayType(Key::String, L"java.lang.String", -1);
  for (auto _ : state) {
    Free(Call(session.bean.Get(), id, params, type));
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
BENCHMARK(TextsInOurs)->Name("String[10,000] in and back|ours");
BENCHMARK(TextsInFloor)->Name("String[10,000] in and back|floor");
BENCHMARK(TextsOutOurs)->Name("String[10,000] out|ours");
BENCHMARK(TextsOutFloor)->Name("String[10,000] out|floor");

}  // namespace
}  // namespace quenlatrix::bench

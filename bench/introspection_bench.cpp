// Describing a class, beside reading the same names by reflection in bare JNI, and asking about one
// that the host knows.

#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include "bench/bench_host.h"
#include "bench/expect.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/param_info.h"

namespace quenlatrix::bench {
namespace {

using meta_object::Handler;

std::string ClassName(const benchmark::State& state) {
  return "bench.ManyMethods" + std::to_string(state.range(0));
}

void DescribeOurs(benchmark::State& state) {
  BenchHost& host = BenchHost::Get();
  const HeldBean bean(ClassName(state).c_str());
  const long before = host.GetMethodsAdded();
  for (auto _ : state) {
    bean.Get()->OpenIntrospect(nullptr);
    bean.Get()->CloseIntrospect();
  }
  const long added = host.GetMethodsAdded() - before;
  Expect(state, added == static_cast<long>(state.iterations()) * state.range(0),
         "the catalogue has another number of methods");
}

// Reads one name and lets its text go.
std::size_t ReadName(JNIEnv* env, jobject named, jmethodID getName) {
  auto* const name = static_cast<jstring>(env->CallObjectMethod(named, getName));
  const char* const chars = env->GetStringUTFChars(name, nullptr);
  std::string const copy(chars);
  env->ReleaseStringUTFChars(name, chars);
  env->DeleteLocalRef(name);
  return copy.size();
}

struct Reflection {
  JNIEnv* env;
  jclass classClass = env->FindClass("java/lang/Class");
  jclass methodClass = env->FindClass("java/lang/reflect/Method");
  jmethodID getMethods =
      env->GetMethodID(classClass, "getMethods", "()[Ljava/lang/reflect/Method;");
  jmethodID className = env->GetMethodID(classClass, "getName", "()Ljava/lang/String;");
  jmethodID methodName = env->GetMethodID(methodClass, "getName", "()Ljava/lang/String;");
  jmethodID returnType = env->GetMethodID(methodClass, "getReturnType", "()Ljava/lang/Class;");
  jmethodID parameterTypes =
      env->GetMethodID(methodClass, "getParameterTypes", "()[Ljava/lang/Class;");

  std::size_t Describe(jclass cls) const {
    auto* const methods = static_cast<jobjectArray>(env->CallObjectMethod(cls, getMethods));
    const jsize count = env->GetArrayLength(methods);
    std::size_t characters = 0;
    for (jsize i = 0; i < count; ++i) {
      const jobject method = env->GetObjectArrayElement(methods, i);
      characters += ReadName(env, method, methodName);
      const jobject result = env->CallObjectMethod(method, returnType);
      characters += ReadName(env, result, className);
      env->DeleteLocalRef(result);
      auto* const types = static_cast<jobjectArray>(env->CallObjectMethod(method, parameterTypes));
      const jsize parameters = env->GetArrayLength(types);
      for (jsize p = 0; p < parameters; ++p) {
        const jobject type = env->GetObjectArrayElement(types, p);
        characters += ReadName(env, type, className);
        env->DeleteLocalRef(type);
      }
      env->DeleteLocalRef(types);
      env->DeleteLocalRef(method);
    }
    env->DeleteLocalRef(methods);
    return characters;
  }
};

void DescribeFloor(benchmark::State& state) {
  const HeldBean bean(ClassName(state).c_str());
  JNIEnv* const env = BenchHost::Get().Env();
  const Reflection reflection{env};
  const jclass cls = env->GetObjectClass(bean.Instance());
  for (auto _ : state) {
    // A method is described by more characters than its own name, "method000", has.
    Expect(state, reflection.Describe(cls) > static_cast<std::size_t>(state.range(0)) * 9,
           "reflection named fewer methods");
  }
}

// What a host asks before it calls a method of a class that its cache has. False when an answer
// wasn't given.
bool DescribeMethod(Handler* bean, const WideString& id) {
  meta_object::info::MethodInfo* method = nullptr;
  std::array<meta_object::info::ParamInfo*, 2> params{};
  bean->OpenIntrospect(nullptr);
  bool isDone = bean->GetMethodInfo(id, ~0UL, method, 0) == 0;
  for (unsigned int i = 0; i < params.size(); ++i) {
    isDone = bean->GetParamInfo(id, i, ~0UL, params[i], 0) == 0 && isDone;
  }
  bean->CloseIntrospect();
  bean->Release(method);
  for (meta_object::info::ParamInfo* const param : params) {
    bean->Release(param);
  }
  return isDone;
}

void DescribeKnownOurs(benchmark::State& state) {
  BenchHost& host = BenchHost::Get();
  const HeldBean bean("bench.ManyMethods50");
  const WideString id(L"Invoke:method007:7");
  host.RememberClass();
  bean.Get()->OpenIntrospect(nullptr);
  bean.Get()->CloseIntrospect();
  {
    const CountedJniCalls calls(host.Env());
    Expect(state, DescribeMethod(bean.Get(), id), "a description was refused");
    state.counters["JNI calls"] = static_cast<double>(calls.Get());
  }
  for (auto _ : state) {
    Expect(state, DescribeMethod(bean.Get(), id), "a description was refused");
  }
  host.ForgetClass();
}

BENCHMARK(DescribeKnownOurs)->Name("describe a method of a class that is known|ours");
BENCHMARK(DescribeOurs)->Name("introspect a class of 5 methods|ours")->Arg(5);
BENCHMARK(DescribeFloor)->Name("introspect a class of 5 methods|floor")->Arg(5);
BENCHMARK(DescribeOurs)->Name("introspect a class of 50 methods|ours")->Arg(50);
BENCHMARK(DescribeFloor)->Name("introspect a class of 50 methods|floor")->Arg(50);
BENCHMARK(DescribeOurs)->Name("introspect a class of 500 methods|ours")->Arg(500);
BENCHMARK(DescribeFloor)->Name("introspect a class of 500 methods|floor")->Arg(500);

}  // namespace
}  // namespace quenlatrix::bench

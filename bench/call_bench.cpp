// Creating and releasing, and calls with scalars, strings, objects and exceptions, each beside the
// same work in bare JNI with every identifier kept. The bases are bare JNI that looks class and
// method up each time, as one does who is handed an object and two names.

#include <benchmark/benchmark.h>

#include <array>
#include <cwchar>
#include <memory>
#include <string>

#include "bench/bench_host.h"
#include "bench/expect.h"
#include "bench/heap_count.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"

namespace quenlatrix::bench {
namespace {

using meta_object::Handler;
using meta_object::TypeDesc;
using meta_object::type::Blob;
using meta_object::type::Int;
using meta_object::type::Object;
using meta_object::type::String;
using Key = TypeDesc::Key;

// Taken in turns: what goes in, and so what must come out, changes with each call.
constexpr std::array kTexts = {"hello there", "hello where", "hello again", "hello hello"};

constexpr char kWrongSum[] = "add answered a wrong sum";
constexpr char kWrongText[] = "echo answered another text";
constexpr char kOtherFailure[] = "the failure says something else";

TypeDesc NamedType(Key key, const wchar_t* name) {
  return TypeDesc(key, WideString(name), WideString(name));
}

// Bare JNI with everything kept: the instance, its class and the methods.
struct Floor {
  JNIEnv* env;
  jclass work;
  jclass plain;
  jmethodID newPlain;
  jobject instance;

  explicit Floor(JNIEnv* env)
      : env(env),
        work(static_cast<jclass>(env->NewGlobalRef(env->FindClass("bench/Work")))),
        plain(static_cast<jclass>(env->NewGlobalRef(env->FindClass("bench/Plain")))),
        newPlain(env->GetMethodID(plain, "<init>", "()V")),
        instance(env->NewGlobalRef(env->NewObject(work, env->GetMethodID(work, "<init>", "()V")))) {
  }

  jmethodID Method(const char* name, const char* signature) const {
    return env->GetMethodID(work, name, signature);
  }
  jmethodID LookUp(const char* name, const char* signature) const {
    const jclass cls = env->GetObjectClass(instance);
    const jmethodID method = env->GetMethodID(cls, name, signature);
    env->DeleteLocalRef(cls);
    return method;
  }
};

void CreateOurs(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  BenchHost& host = BenchHost::Get();
  for (auto _ : state) {
    host.Free(host.Create("bench.Plain"));
  }
  Handler* const last = host.Create("bench.Plain");
  JNIEnv* const env = host.Env();
  Expect(state,
         env->IsInstanceOf(static_cast<jobject>(last->GetObjectRef()),
                           env->FindClass("bench/Plain")) == JNI_TRUE,
         "an object of another class was made");
  host.Free(last);
}

void CreateFloor(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  const Floor floor(BenchHost::Get().Env());
  for (auto _ : state) {
    const jobject local = floor.env->NewObject(floor.plain, floor.newPlain);
    const jobject global = floor.env->NewGlobalRef(local);
    floor.env->DeleteLocalRef(local);
    floor.env->DeleteGlobalRef(global);
  }
}

void CreateBase(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  JNIEnv* const env = BenchHost::Get().Env();
  for (auto _ : state) {
    const jclass cls = env->FindClass("bench/Plain");
    const jobject local = env->NewObject(cls, env->GetMethodID(cls, "<init>", "()V"));
    const jobject global = env->NewGlobalRef(local);
    env->DeleteLocalRef(local);
    env->DeleteLocalRef(cls);
    env->DeleteGlobalRef(global);
  }
}

// The call that the loops below make: add(i, 7), whose answer changes with each turn.
class Adding {
 public:
  explicit Adding(Handler* bean) : bean(bean) {
    a.GetMetaItemType() = intType;
    b.GetMetaItemType() = intType;
  }
  Adding(const Adding&) = delete;
  Adding& operator=(const Adding&) = delete;

  int operator()(int i) {
    a.SetValue(i);
    Object* const result = Call(bean, id, params, intType);
    const int sum = static_cast<int>(static_cast<Int*>(result)->GetValue());
    Free(result);
    return sum;
  }

 private:
  Handler* bean;
  const TypeDesc intType = NamedType(Key::Int, L"int");
  const WideString id = L"Invoke:add:0";
  Int a{0};
  Int b{7};
  std::list<Object*> params{&a, &b};
};

void IntCallOurs(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  Adding add(bean.Get());
  int i = 0;
  std::size_t const before = Allocations();
  for (auto _ : state) {
    ++i;
    Expect(state, add(i) == i + 7, kWrongSum);
  }
  state.counters["allocations"] = static_cast<double>(Allocations() - before) / i;
}

// Each thread calls a bean of its own.
void TwoThreadsOurs(benchmark::State& state) {
  // Never freed: the other thread may still be closing its call when this one is done.
  static std::array<Handler*, 2> beans{};
  if (state.thread_index() == 0 && beans[0] == nullptr) {
    for (Handler*& bean : beans) {
      bean = BenchHost::Get().Create("bench.Work");
    }
  }
  std::unique_ptr<KeptAttached> attached;
  std::unique_ptr<Adding> add;
  int i = 0;
  for (auto _ : state) {
    if (add == nullptr) {
      // Behind the loop's start, where the threads have met and the beans are there.
      Handler* const bean = beans[static_cast<std::size_t>(state.thread_index())];
      attached = std::make_unique<KeptAttached>(bean);
      add = std::make_unique<Adding>(bean);
    }
    ++i;
    Expect(state, (*add)(i) == i + 7, kWrongSum);
  }
}

void IntCallFloor(benchmark::State& state, bool looksUp) {
  const HeldBean bean("bench.Work");
  const Floor floor(BenchHost::Get().Env());
  const jmethodID kept = floor.Method("add", "(II)I");
  int i = 0;
  for (auto _ : state) {
    ++i;
    const jmethodID add = looksUp ? floor.LookUp("add", "(II)I") : kept;
    const jint sum = floor.env->CallIntMethod(floor.instance, add, i, 7);
    Expect(state, sum == i + 7 && floor.env->ExceptionCheck() == JNI_FALSE, kWrongSum);
  }
}

// The same on a thread that each operation attaches and detaches.
void UnattachedCallOurs(benchmark::State& state) {
  BenchHost& host = BenchHost::Get();
  Handler* const bean = host.Create("bench.Work");
  Adding add(bean);
  int i = 0;
  for (auto _ : state) {
    ++i;
    Expect(state, add(i) == i + 7, kWrongSum);
  }
  host.Free(bean);
}

void UnattachedCallFloor(benchmark::State& state) {
  Handler* const bean = BenchHost::Get().Create("bench.Work");
  JavaVM* const vm = BenchHost::Get().Vm();
  void* env = nullptr;
  vm->AttachCurrentThread(&env, nullptr);
  const Floor floor(static_cast<JNIEnv*>(env));
  const jmethodID add = floor.Method("add", "(II)I");
  vm->DetachCurrentThread();
  int i = 0;
  for (auto _ : state) {
    ++i;
    vm->AttachCurrentThread(&env, nullptr);
    const jint sum = static_cast<JNIEnv*>(env)->CallIntMethod(floor.instance, add, i, 7);
    Expect(state, sum == i + 7, kWrongSum);
    vm->DetachCurrentThread();
  }
  BenchHost::Get().Free(bean);
}

void StringCallOurs(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  const TypeDesc stringType = NamedType(Key::String, L"java.lang.String");
  std::array texts = {String(stringType), String(stringType), String(stringType),
                      String(stringType)};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    texts[i].SetValue(WideString(kTexts[i]));
  }
  std::list<Object*> params{nullptr};
  const WideString id(L"Invoke:echo:0");
  std::size_t turn = 0;
  for (auto _ : state) {
    String& text = texts[turn++ % texts.size()];
    params.front() = &text;
    Object* const result = Call(bean.Get(), id, params, stringType);
    Expect(state,
           std::wcscmp(static_cast<String*>(result)->GetValue().getWCharPtr(),
                       text.GetValue().getWCharPtr()) == 0,
           kWrongText);
    Free(result);
  }
}

void StringCallFloor(benchmark::State& state, bool looksUp) {
  const HeldBean bean("bench.Work");
  const Floor floor(BenchHost::Get().Env());
  const char* const signature = "(Ljava/lang/String;)Ljava/lang/String;";
  const jmethodID kept = floor.Method("echo", signature);
  std::size_t turn = 0;
  for (auto _ : state) {
    const char* const given = kTexts[turn++ % kTexts.size()];
    const jmethodID echo = looksUp ? floor.LookUp("echo", signature) : kept;
    const jstring text = floor.env->NewStringUTF(given);
    auto* const answer =
        static_cast<jstring>(floor.env->CallObjectMethod(floor.instance, echo, text));
    const char* const chars = floor.env->GetStringUTFChars(answer, nullptr);
    std::string const copy(chars);
    Expect(state, copy == given, kWrongText);
    floor.env->ReleaseStringUTFChars(answer, chars);
    floor.env->DeleteLocalRef(answer);
    floor.env->DeleteLocalRef(text);
  }
}

void ObjectCallOurs(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  const TypeDesc objectType = NamedType(Key::Object, L"java.lang.Object");
  std::list<Object*> params;
  const WideString id(L"Invoke:object:0");
  for (auto _ : state) {
    Free(Call(bean.Get(), id, params, objectType));
    BenchHost::Get().Collect();
  }
  Object* const last = Call(bean.Get(), id, params, objectType);
  const Floor floor(BenchHost::Get().Env());
  const jobject expected =
      floor.env->CallObjectMethod(floor.instance, floor.Method("object", "()Ljava/lang/Object;"));
  auto* const given = static_cast<jobject>(static_cast<Blob*>(last)->GetValue()->GetObjectRef());
  Expect(state, floor.env->IsSameObject(given, expected) == JNI_TRUE, "another object came back");
  floor.env->DeleteLocalRef(expected);
  Free(last);
  BenchHost::Get().Collect();
}

void ObjectCallFloor(benchmark::State& state, bool looksUp) {
  const HeldBean bean("bench.Work");
  const Floor floor(BenchHost::Get().Env());
  const jmethodID kept = floor.Method("object", "()Ljava/lang/Object;");
  for (auto _ : state) {
    const jmethodID object = looksUp ? floor.LookUp("object", "()Ljava/lang/Object;") : kept;
    const jobject local = floor.env->CallObjectMethod(floor.instance, object);
    const jobject global = floor.env->NewGlobalRef(local);
    floor.env->DeleteLocalRef(local);
    floor.env->DeleteGlobalRef(global);
  }
}

void ThrowingCallOurs(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  const TypeDesc voidType = NamedType(Key::Void, L"void");
  std::list<Object*> params;
  const WideString id(L"Invoke:fail:0");
  for (auto _ : state) {
    const WideString text = FailingCall(bean.Get(), id, params, voidType);
    Expect(state, std::wcsstr(text.getWCharPtr(), L"as ordered") != nullptr, kOtherFailure);
  }
}

void ThrowingCallFloor(benchmark::State& state) {
  const HeldBean bean("bench.Work");
  const Floor floor(BenchHost::Get().Env());
  const jmethodID fail = floor.Method("fail", "()V");
  const jmethodID toString = floor.env->GetMethodID(floor.env->FindClass("java/lang/Throwable"),
                                                    "toString", "()Ljava/lang/String;");
  for (auto _ : state) {
    floor.env->CallVoidMethod(floor.instance, fail);
    const jthrowable thrown = floor.env->ExceptionOccurred();
    floor.env->ExceptionClear();
    auto* const text = static_cast<jstring>(floor.env->CallObjectMethod(thrown, toString));
    const char* const chars = floor.env->GetStringUTFChars(text, nullptr);
    std::string const copy(chars);
    Expect(state, copy == "java.lang.IllegalStateException: as ordered", kOtherFailure);
    floor.env->ReleaseStringUTFChars(text, chars);
    floor.env->DeleteLocalRef(text);
    floor.env->DeleteLocalRef(thrown);
  }
}

BENCHMARK(CreateOurs)->Name("create and release|ours");
BENCHMARK(CreateFloor)->Name("create and release|floor");
BENCHMARK(CreateBase)->Name("create and release|base");
BENCHMARK(IntCallOurs)->Name("int add(int, int)|ours");
BENCHMARK_CAPTURE(IntCallFloor, kept, false)->Name("int add(int, int)|floor");
BENCHMARK_CAPTURE(IntCallFloor, lookedUp, true)->Name("int add(int, int)|base");
BENCHMARK(TwoThreadsOurs)->Name("int add(int, int), two threads|ours")->Threads(2)->UseRealTime();
BENCHMARK(IntCallOurs)->Name("int add(int, int), two threads|base")->UseRealTime();
BENCHMARK(UnattachedCallOurs)->Name("int add(int, int), thread not kept attached|ours");
BENCHMARK(UnattachedCallFloor)->Name("int add(int, int), thread not kept attached|floor");
BENCHMARK(StringCallOurs)->Name("String echo, 11 characters|ours");
BENCHMARK_CAPTURE(StringCallFloor, kept, false)->Name("String echo, 11 characters|floor");
BENCHMARK_CAPTURE(StringCallFloor, lookedUp, true)->Name("String echo, 11 characters|base");
BENCHMARK(ObjectCallOurs)->Name("object result, wrapped and released|ours");
BENCHMARK_CAPTURE(ObjectCallFloor, kept, false)->Name("object result, wrapped and released|floor");
BENCHMARK_CAPTURE(ObjectCallFloor, lookedUp, true)
    ->Name("object result, wrapped and released|base");
BENCHMARK(ThrowingCallOurs)->Name("a method that throws, with its text|ours");
BENCHMARK(ThrowingCallFloor)->Name("a method that throws, with its text|floor");

}  // namespace
}  // namespace quenlatrix::bench

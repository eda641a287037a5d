// A walk over a whole collection, beside the same walk in bare JNI: the iterator's two methods and
// each element's text, with every identifier kept.

#include <benchmark/benchmark.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_host.h"
#include "bench/expect.h"
#include "meta_object/type/blob.h"

namespace quenlatrix::bench {
namespace {

using meta_object::Handler;
using meta_object::TypeDesc;
using meta_object::type::Blob;
using meta_object::type::Object;

constexpr int kElements = 100000;

// A collection that a method of the bean gives out.
class HeldCollection {
 public:
  explicit HeldCollection(const char* method) {
    WideString id(L"Invoke:");
    id.append(method);
    id.append(L":0");
    std::list<Object*> params;
    const TypeDesc type(TypeDesc::Key::Object, WideString(L"java.util.List"),
                        WideString(L"java.util.List"));
    value_.reset(Call(bean_.Get(), id, params, type));
  }
  HeldCollection(const HeldCollection&) = delete;
  HeldCollection& operator=(const HeldCollection&) = delete;
  ~HeldCollection() {
    value_->ReleaseItem();
    value_.reset();
    BenchHost::Get().Collect();
  }

  Handler* Get() const { return static_cast<Blob*>(value_.get())->GetValue(); }
  jobject Instance() const { return static_cast<jobject>(Get()->GetObjectRef()); }

 private:
  HeldBean bean_{"bench.Work"};
  std::unique_ptr<Object> value_;
};

constexpr char kWrongWalk[] = "a walk gave other elements";

void WalkOurs(benchmark::State& state, const char* method, const wchar_t* last) {
  const HeldCollection collection(method);
  for (auto _ : state) {
    meta_object::context::CollectionContext walk;
    std::list<Object*> items;
    int delivered = 0;
    collection.Get()->OpenCollection(walk);
    collection.Get()->GetNextItems(walk, 0, items, &delivered);
    collection.Get()->CloseCollection(walk);
    Expect(state,
           delivered == kElements && items.size() == kElements && TextOf(items.back()) == last,
           kWrongWalk);
    for (Object* const item : items) {
      Free(item);
    }
  }
}

// Both classes' toString() is looked up in Object's, which calls the element's own.
void WalkFloor(benchmark::State& state, const char* method, const char* last) {
  const HeldCollection collection(method);
  JNIEnv* const env = BenchHost::Get().Env();
  const auto find = [env](const char* cls, const char* name, const char* signature) {
    return env->GetMethodID(env->FindClass(cls), name, signature);
  };
  const jmethodID iterator = find("java/util/List", "iterator", "()Ljava/util/Iterator;");
  const jmethodID hasNext = find("java/util/Iterator", "hasNext", "()Z");
  const jmethodID next = find("java/util/Iterator", "next", "()Ljava/lang/Object;");
  const jmethodID toString = find("java/lang/Object", "toString", "()Ljava/lang/String;");
  for (auto _ : state) {
    std::vector<std::string> texts;
    const jobject walk = env->CallObjectMethod(collection.Instance(), iterator);
    while (env->CallBooleanMethod(walk, hasNext) == JNI_TRUE) {
      const jobject element = env->CallObjectMethod(walk, next);
      auto* const text = static_cast<jstring>(env->CallObjectMethod(element, toString));
      const char* const chars = env->GetStringUTFChars(text, nullptr);
      texts.emplace_back(chars);
      env->ReleaseStringUTFChars(text, chars);
      env->DeleteLocalRef(text);
      env->DeleteLocalRef(element);
    }
    env->DeleteLocalRef(walk);
    Expect(state, texts.size() == kElements && texts.back() == last, kWrongWalk);
  }
}

BENCHMARK_CAPTURE(WalkOurs, strings, "stringList", L"text 99999")
    ->Name("walk 100,000 Strings|ours");
BENCHMARK_CAPTURE(WalkFloor, strings, "stringList", "text 99999")
    ->Name("walk 100,000 Strings|floor");
BENCHMARK_CAPTURE(WalkOurs, integers, "integerList", L"99999")->Name("walk 100,000 Integers|ours");
BENCHMARK_CAPTURE(WalkFloor, integers, "integerList", "99999")->Name("walk 100,000 Integers|floor");

}  // namespace
}  // namespace quenlatrix::bench

// Threads that share one bean: on a real VM, and under ThreadSanitizer on a fake one.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <barrier>
#include <list>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "meta_object/context.h"
#include "meta_object/environment.h"
#include "meta_object/handler.h"
#include "meta_object/info/cached_method_info.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"
#include "tests/support/test_vm.h"
#include "tests/support/workers.h"

namespace quenlatrix::test {
namespace {

namespace context = meta_object::context;
namespace info = meta_object::info;
namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using meta_object::Environment;
using meta_object::Handler;
using meta_object::HandlerStatus;
using meta_object::Identity;
using meta_object::TypeDesc;
using testing::AnyOf;

constexpr int kThreads = 4;
constexpr int kSteps = 40;  // of each thread with one bean

// The host's cache: one for each thread, so that it puts the threads in no order.
struct CachedClass {
  std::list<info::cache::CachedMethodInfo> methods;
  info::cache::CachedObjectInfo info;
};
thread_local std::map<std::string, CachedClass> cache;

class Plugin {
 public:
  Plugin() : image(dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL)) {
    FillEnvironment();
    Get<void (*)(Environment*)>("SetEnvironment")(&environment);
    EXPECT_TRUE(Get<bool (*)(void*)>("InitHandler")(image));
    Get<void (*)(JavaVM*)>("SetJavaVM")(TestVm::Get());
    make = Get<Handler* (*)()>("GetHandlerObject");
    free = Get<void (*)(Handler*)>("FreeHandlerObject");
  }
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;
  ~Plugin() { dlclose(image); }

  std::unique_ptr<Handler, void (*)(Handler*)> Make(const char* identity) const {
    std::unique_ptr<Handler, void (*)(Handler*)> handler(make(), free);
    EXPECT_EQ(handler->CreateObject(identity, nullptr), status::kSuccess);
    return handler;
  }

 private:
  template <class Function>
  Function Get(const char* name) const {
    return reinterpret_cast<Function>(dlsym(image, name));
  }

  void FillEnvironment() {
    environment.hostContext = this;
    // A class is described anew now and then.
    environment.cacheOpenIntrospect = [](void*, const Identity& identity, bool& must) {
      thread_local int opened = 0;
      must = ++opened % 8 == 0 || cache.count(identity.identity) == 0;
      if (must) cache.erase(identity.identity);
      return true;
    };
    environment.cacheIntrospectDone = [](void*, const Identity&, bool) { return true; };
    environment.cacheCloseIntrospect = [](void*, const Identity&) { return true; };
    environment.cacheAddMethodInfo = [](void*, const Identity& identity,
                                        const info::cache::CachedMethodInfo& method) {
      CachedClass& cls = cache[identity.identity];
      cls.info.methods.push_back(&cls.methods.emplace_back(method));
      return true;
    };
    environment.cacheGetMethodInfo = [](void*, const Identity&, const char*) {
      return static_cast<const info::cache::CachedMethodInfo*>(nullptr);
    };
    environment.cacheGetObjectInfo = [](void*, const Identity& identity) {
      const auto found = cache.find(identity.identity);
      return found == cache.end() ? nullptr : &std::as_const(found->second.info);
    };
  }

  void* const image;
  Environment environment;
  Handler* (*make)() = nullptr;
  void (*free)(Handler*) = nullptr;
};

std::unique_ptr<type::Object> Text(const char* javaType, const std::string& text) {
  auto value = std::make_unique<type::String>();
  value->GetMetaItemType().typeName.assign(javaType);
  value->SetValueAsString(WideString(text.c_str()));
  return value;
}

std::string TextOf(const type::Object* value) {
  WideString text;
  if (value != nullptr) value->GetValueAsString(text);
  const char* const narrow = text.getCharPtr();
  return narrow == nullptr ? "" : narrow;
}

// Does one thread's share with a bean. What it opens stays open while others release the bean.
class Work {
 public:
  Work(const Plugin& plugin, Handler& shared, unsigned int seed)
      : plugin(plugin), shared(shared), random(seed) {
    Open(text, "Invoke:toString:0", "java.lang.String");
    shared.OpenCollection(walk);
  }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
  ~Work() {
    shared.CloseMethodCall(text);
    shared.CloseCollection(walk);
    // A thread's own beans may get the references of the shared one.
    for (const auto& handler : others) handler->Release();
  }

  void Run() {
    const int last = Below(kSteps);
    for (int i = 0; i < kSteps; ++i) {
      switch (Below(6)) {
        case 0:
          Introspect();
          break;
        case 1:
          Invoke(text, "[one, two, three]");
          break;
        case 2:
          Walk();
          break;
        case 3:
          Compare();
          break;
        case 4:
          Throw();
          break;
        default:
          Name();
      }
      if (i != last) continue;
      isHeld = false;
      EXPECT_THAT(shared.Release(), AnyOf(status::kSuccess, status::kLastReferenceReleased));
      for (int k = 0; k < 3; ++k) others.push_back(plugin.Make("JAVABEAN://beans.Point"));
    }
  }

 private:
  int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned int>(limit)); }

  void Open(context::MethodCallContext& call, const char* id, const char* returnType) {
    EXPECT_EQ(shared.OpenMethodCall(call, WideString(id)), status::kSuccess);
    TypeDesc desc(TypeDesc::Key::String, TypeDesc::RefType::ByValue, false);
    desc.typeName.assign(returnType);
    EXPECT_EQ(shared.SetReturnDataType(call, desc), status::kSuccess);
  }

  // An operation may fail when the bean is gone, and not before. What it answers is the bean's own,
  // never another's.
  bool IsDone(HandlerStatus answered, HandlerStatus failure) const {
    EXPECT_THAT(answered, AnyOf(status::kSuccess, isHeld ? status::kSuccess : failure));
    return answered == status::kSuccess;
  }

  void Invoke(context::MethodCallContext& call, const std::string& answer) {
    meta_object::MethodInvokeStatus record;
    type::Object* result = nullptr;
    if (IsDone(shared.InvokeMethod(call, record, &result), status::kCallFailed)) {
      EXPECT_EQ(TextOf(result), answer);
    }
    shared.Release(result);
  }

  void Compare() {
    const auto reference = reinterpret_cast<std::uintptr_t>(shared.GetObjectRef());
    const auto argument = Text("java.lang.Object", std::to_string(reference));
    std::list<type::Object*> arguments = {argument.get()};
    context::MethodCallContext call;
    Open(call, "Invoke:equals:0", "boolean");
    EXPECT_EQ(shared.PrepareMethodCall(call, arguments), status::kSuccess);
    Invoke(call, "true");
    shared.CloseMethodCall(call);
  }

  void Throw() {
    const auto argument = Text("int", "5");
    std::list<type::Object*> arguments = {argument.get()};
    context::MethodCallContext call;
    meta_object::MethodInvokeStatus record;
    Open(call, "Invoke:get:0", "java.lang.Object");
    EXPECT_EQ(shared.PrepareMethodCall(call, arguments), status::kSuccess);
    EXPECT_EQ(shared.InvokeMethod(call, record, nullptr), status::kCallFailed);
    shared.CloseMethodCall(call);
  }

  void Walk() {
    int size = 0;
    if (IsDone(shared.GetCollectionSize(walk, size), status::kNoCollection)) {
      EXPECT_EQ(size, 3);
    }
    IsDone(shared.SkipItems(walk, 1), status::kNoCollection);
    std::list<type::Object*> items;
    IsDone(shared.GetNextItems(walk, -1, items, nullptr), status::kNoCollection);
    for (type::Object* item : items) {
      EXPECT_THAT(TextOf(item), AnyOf("two", "three"));
      shared.Release(item);
    }
    IsDone(shared.ResetCollection(walk), status::kNoCollection);
  }

  void Introspect() {
    static constexpr const char* kIdentities[] = {nullptr, "JAVABEAN://beans.ThreeStrings",
                                                  "JAVABEAN://beans.ThreeStrings?Scope=user"};
    const HandlerStatus answer = shared.OpenIntrospect(kIdentities[Below(3)]);
    // Without a bean there is nothing to describe, and no identity of its own.
    if (answer != status::kInvalidIdentity || isHeld) IsDone(answer, status::kIntrospectionFailed);
    shared.GetMethodCount();
    std::list<WideString>* ids = nullptr;
    if (shared.GetMethodIDs(ids) == status::kSuccess) shared.Release(ids);
    info::ObjectInfo* record = nullptr;
    shared.GetObjectInfo(record, nullptr, true);
    shared.Release(record);
    WideString id;
    auto kind = meta_object::MethodType::Invoke;
    shared.BuildMethodID(id, WideString("equals"), kind, nullptr, false);
    EXPECT_EQ(shared.CloseIntrospect(), status::kSuccess);
  }

  void Name() {
    shared.SetObjectIdentity(Identity("JAVABEAN://beans.ThreeStrings"));
    shared.IsValidObject();
    EXPECT_LE(shared.GetReferenceCount(), kThreads + 0U);
  }

  const Plugin& plugin;
  Handler& shared;
  std::minstd_rand random;
  bool isHeld = true;  // by this thread's reference
  context::MethodCallContext text;
  context::CollectionContext walk;
  std::vector<std::unique_ptr<Handler, void (*)(Handler*)>> others;
};

TEST(SharedHandler, IsDescribedCalledIteratedAndReleasedByThreadsAtOnce) {
  const Plugin plugin;
  const auto end = EndAfter(std::chrono::seconds(3));
  unsigned int round = 0;
  bool isOver = false;
  auto shared = plugin.Make("JAVABEAN://beans.ThreeStrings");
  const auto share = [&] {
    for (int i = 1; i < kThreads; ++i) shared->AddRef();
  };
  share();
  std::barrier turn(kThreads, [&]() noexcept {
    isOver = ++round > 10 && std::chrono::steady_clock::now() > end;
    if (isOver || testing::Test::HasFailure()) return void(isOver = true);
    shared = plugin.Make("JAVABEAN://beans.ThreeStrings");
    share();
  });
  RunInThreads(kThreads, [&](int thread) {
    while (!isOver) {
      Work(plugin, *shared, round * kThreads + static_cast<unsigned int>(thread) + 1).Run();
      turn.arrive_and_wait();
    }
  });
  std::printf("%u beans\n", round);
}

}  // namespace
}  // namespace quenlatrix::test

#include "bench/bench_host.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace quenlatrix::bench {

namespace {

using meta_object::Handler;
using meta_object::HandlerStatus;
using meta_object::Identity;
using meta_object::info::cache::CachedMethodInfo;
using meta_object::info::cache::CachedObjectInfo;

[[noreturn]] void Fail(const std::string& why) {
  std::fprintf(stderr, "bean_bench: %s\n", why.c_str());
  std::exit(3);
}

}  // namespace

BenchHost& BenchHost::Get() {
  // Never destroyed: the VM would outlive it.
  static auto* const host = new BenchHost;
  return *host;
}

void BenchHost::FillCacheCallbacks() {
  environment.cacheOpenIntrospect = [](void* host, const Identity&, bool& mustIntrospect) {
    mustIntrospect = static_cast<BenchHost*>(host)->record.methods.empty();
    return true;
  };
  environment.cacheIntrospectDone = [](void*, const Identity&, bool succeeded) {
    return succeeded;
  };
  environment.cacheCloseIntrospect = [](void*, const Identity&) { return true; };
  environment.cacheAddMethodInfo = [](void* context, const Identity&,
                                      const CachedMethodInfo& method) {
    auto* const host = static_cast<BenchHost*>(context);
    ++host->methodsAdded;
    if (host->remembers) {
      host->entries.push_back(std::make_unique<CachedMethodInfo>(method));
      host->record.methods.push_back(host->entries.back().get());
    }
    return true;
  };
  environment.cacheGetMethodInfo = [](void*, const Identity&, const char*) {
    return static_cast<CachedMethodInfo const*>(nullptr);
  };
  environment.cacheGetObjectInfo = [](void* context, const Identity&) {
    auto* const host = static_cast<BenchHost*>(context);
    return host->remembers ? static_cast<CachedObjectInfo const*>(&host->record) : nullptr;
  };
}

BenchHost::BenchHost() {
  environment.hostContext = this;
  FillCacheCallbacks();
  environment.gcRegHandlerObject = [](void* host, Handler* handler, const void*) {
    static_cast<BenchHost*>(host)->registered.push_back(handler);
  };

  std::string why;
  host::JavaVm::Options options;
  options.classPath = {BENCH_BEANS_JAR, BENCH_PLUGIN_JAR};
  plugin = host::PluginLibrary::Load(host::PluginLibrary::DefaultFile(), why);
  if (plugin == nullptr || !plugin->Initialise(&environment, why)) {
    Fail(why);
  }
  machine = host::JavaVm::Start(options, why);
  if (machine == nullptr) {
    Fail(why);
  }
  plugin->SetVm(machine->Get());
}

Handler* BenchHost::Create(const char* className) {
  Handler* const handler = plugin->MakeHandler();
  std::string const identity = std::string("JAVABEAN://") + className;
  if (handler == nullptr || handler->CreateObject(identity.c_str(), nullptr) != 0) {
    Fail("no instance of " + identity);
  }
  return handler;
}

void BenchHost::Free(Handler* handler) {
  handler->Release();
  Collect();
}

void BenchHost::Collect() {
  for (Handler* handler : registered) {
    if (handler->GetReferenceCount() == 0) {
      plugin->FreeHandler(handler);
    }
  }
  registered.clear();
}

void BenchHost::RememberClass() {
  ForgetClass();
  remembers = true;
}

void BenchHost::ForgetClass() {
  remembers = false;
  record.methods.clear();
  entries.clear();
}

JNIEnv* BenchHost::Env() {
  void* env = nullptr;
  if (machine->Get()->GetEnv(&env, JNI_VERSION_1_8) != JNI_OK) {
    Fail("the thread is not attached");
  }
  return static_cast<JNIEnv*>(env);
}

namespace {

long countedCalls = 0;

long CountCall() {
  ++countedCalls;
  return 0;
}

}  // namespace

CountedJniCalls::CountedJniCalls(JNIEnv* env) : env(env), functions(env->functions) {
  static const auto table = [] {
    std::array<long (*)(), sizeof(JNINativeInterface_) / sizeof(void*)> entries;
    entries.fill(CountCall);
    return entries;
  }();
  countedCalls = 0;
  env->functions = reinterpret_cast<const JNINativeInterface_*>(table.data());
}

long CountedJniCalls::Get() const { return countedCalls; }

KeptAttached::KeptAttached(Handler* handler) : handler(handler) {
  if (handler->OpenMethodCall(context, WideString(L"Invoke:keep:0")) != 0) {
    Fail("the thread can't be attached");
  }
}

namespace {

HandlerStatus Invoke(Handler* handler, const WideString& methodId,
                     std::list<meta_object::type::Object*>& params,
                     const meta_object::TypeDesc& returnType,
                     meta_object::MethodInvokeStatus& status, meta_object::type::Object** result) {
  meta_object::context::MethodCallContext context;
  handler->OpenMethodCall(context, methodId);
  handler->PrepareMethodCall(context, params);
  handler->SetReturnDataType(context, returnType);
  const HandlerStatus outcome = handler->InvokeMethod(context, status, result);
  handler->CloseMethodCall(context);
  return outcome;
}

}  // namespace

meta_object::type::Object* Call(Handler* handler, const WideString& methodId,
                                std::list<meta_object::type::Object*>& params,
                                const meta_object::TypeDesc& returnType) {
  meta_object::MethodInvokeStatus status;
  meta_object::type::Object* result = nullptr;
  if (Invoke(handler, methodId, params, returnType, status, &result) != 0) {
    const char* const text = status.failureText.getCharPtr();
    Fail(std::string("a call failed: ") + (text == nullptr ? "no text" : text));
  }
  return result;
}

WideString FailingCall(Handler* handler, const WideString& methodId,
                       std::list<meta_object::type::Object*>& params,
                       const meta_object::TypeDesc& returnType) {
  meta_object::MethodInvokeStatus status;
  meta_object::type::Object* result = nullptr;
  if (Invoke(handler, methodId, params, returnType, status, &result) !=
      meta_object::handler_status::kCallFailed) {
    Fail("a call that must fail did not");
  }
  return std::move(status.failureText);
}

void Free(meta_object::type::Object* value) {
  if (value != nullptr) {
    value->ReleaseItem();
    delete value;
  }
}

}  // namespace quenlatrix::bench

#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "host/java_vm.h"
#include "host/plugin_library.h"
#include "meta_object/environment.h"
#include "meta_object/handler.h"
#include "meta_object/info/cached_method_info.h"
#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"

namespace quenlatrix::bench {

// The least host that the plug-in can live in: its cache forgets at once or keeps one class, its
// collector keeps a list. One a process; what isn't said to be for any thread is for one.
class BenchHost {
 public:
  // Starts the VM and loads the plug-in beside the program at the first call; ends the process with
  // a text where that fails.
  static BenchHost& Get();

  // A handler bound to a new instance of the class; ends the process when it can't be made.
  meta_object::Handler* Create(const char* className);
  // The last release of a handler, and its end.
  void Free(meta_object::Handler* handler);
  // Frees every handler that was registered since it was last asked for and has no references left.
  void Collect();

  // The calling thread's environment; the thread must be attached.
  JNIEnv* Env();
  JavaVM* Vm() { return machine->Get(); }
  const std::string& GetVmFile() const { return machine->GetLibraryFile(); }
  // How many catalogue entries the plug-in has handed over in all.
  long GetMethodsAdded() const { return methodsAdded; }
  // From now on the cache keeps the class that is introspected next, until it is told to forget.
  void RememberClass();
  void ForgetClass();

 private:
  BenchHost();
  void FillCacheCallbacks();

  std::unique_ptr<host::JavaVm> machine;
  std::unique_ptr<host::PluginLibrary> plugin;
  meta_object::Environment environment;
  std::vector<meta_object::Handler*> registered;
  long methodsAdded = 0;
  bool remembers = false;
  meta_object::info::cache::CachedObjectInfo record;
  std::vector<std::unique_ptr<meta_object::info::cache::CachedMethodInfo>> entries;
};

// Counts the calls that go through the calling thread's environment while it lives. They do nothing
// and answer 0: this is for work that is expected to make none.
class CountedJniCalls {
 public:
  explicit CountedJniCalls(JNIEnv* env);
  ~CountedJniCalls() { env->functions = functions; }
  CountedJniCalls(const CountedJniCalls&) = delete;
  CountedJniCalls& operator=(const CountedJniCalls&) = delete;

  long Get() const;

 private:
  JNIEnv* env;
  const JNINativeInterface_* functions;
};

// Keeps the calling thread attached with what the interface offers: a method call left open.
class KeptAttached {
 public:
  explicit KeptAttached(meta_object::Handler* handler);
  ~KeptAttached() { handler->CloseMethodCall(context); }
  KeptAttached(const KeptAttached&) = delete;
  KeptAttached& operator=(const KeptAttached&) = delete;

 private:
  meta_object::Handler* handler;
  meta_object::context::MethodCallContext context;
};

// A bean on a thread that is kept attached while it lives.
class HeldBean {
 public:
  explicit HeldBean(const char* className)
      : bean_(BenchHost::Get().Create(className), ReleaseBean), attached_(bean_.get()) {}

  meta_object::Handler* Get() const { return bean_.get(); }
  jobject Instance() const { return static_cast<jobject>(bean_->GetObjectRef()); }

 private:
  static void ReleaseBean(meta_object::Handler* handler) { BenchHost::Get().Free(handler); }

  std::unique_ptr<meta_object::Handler, void (*)(meta_object::Handler*)> bean_;
  KeptAttached attached_;
};

// One whole call as a host makes it: open, prepare, name the result's type, invoke, close. The
// result is the caller's; ends the process when the call fails.
meta_object::type::Object* Call(meta_object::Handler* handler, const WideString& methodId,
                                std::list<meta_object::type::Object*>& params,
                                const meta_object::TypeDesc& returnType);
// The same of a method that throws; gives the failure's text, and ends the process when there is
// no failure.
WideString FailingCall(meta_object::Handler* handler, const WideString& methodId,
                       std::list<meta_object::type::Object*>& params,
                       const meta_object::TypeDesc& returnType);

// Gives a result back.
void Free(meta_object::type::Object* value);

}  // namespace quenlatrix::bench

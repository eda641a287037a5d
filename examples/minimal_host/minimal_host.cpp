// The least that a host does with a handler plug-in: it starts a Java VM, hands the plug-in its
// services, makes a bean, calls its methods, and puts everything away again.
#include <dlfcn.h>
#include <err.h>
#include <jni.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <map>
#include <string>

#include "meta_object/entry_points.h"
#include "meta_object/info/cached_method_info.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/security_info.h"
#include "meta_object/type/scalar_values.h"

using namespace quenlatrix::meta_object;
using handler_status::kSuccess;
using info::cache::CachedMethodInfo;

// What the plug-in's callbacks need: a description of each class, filled once, and the handlers
// that were made. A server that calls from several threads guards both with a lock.
struct Services {
  struct ClassEntry {
    std::list<CachedMethodInfo> methods;
    info::cache::CachedObjectInfo record;
    bool isFilled = false;
  };
  static ClassEntry& EntryOf(void* host, const Identity& id) {
    return static_cast<Services*>(host)->classes[id.handlerData];
  }
  std::map<std::string, ClassEntry> classes;
  std::list<Handler*> handlers;
};

static void Fill(Environment& env, Services& services) {
  env.hostContext = &services;
  env.cacheOpenIntrospect = [](void* host, const Identity& id, bool& mustIntrospect) {
    mustIntrospect = !Services::EntryOf(host, id).isFilled;
    return true;
  };
  env.cacheAddMethodInfo = [](void* host, const Identity& id, const CachedMethodInfo& method) {
    Services::ClassEntry& entry = Services::EntryOf(host, id);
    entry.record.methods.push_back(&entry.methods.emplace_back(method));
    return true;
  };
  env.cacheIntrospectDone = [](void* host, const Identity& id, bool succeeded) {
    return Services::EntryOf(host, id).isFilled = succeeded;
  };
  env.cacheCloseIntrospect = [](void*, const Identity&) { return true; };
  env.cacheGetObjectInfo = [](void* host, const Identity& id) {
    const Services::ClassEntry& entry = Services::EntryOf(host, id);
    return entry.isFilled ? &entry.record : nullptr;
  };
  env.cacheGetMethodInfo = [](void* host, const Identity& id,
                              const char* methodId) -> const CachedMethodInfo* {
    const auto& methods = Services::EntryOf(host, id).record.methods;
    const char* colon = std::strrchr(methodId, ':');  // as in "Invoke:length:14"
    const auto position = std::strtoul(colon == nullptr ? methodId : colon + 1, nullptr, 10);
    return position < methods.size() ? methods[position] : nullptr;
  };
  env.gcRegHandlerObject = [](void* host, Handler* handler, const void*) {
    static_cast<Services*>(host)->handlers.push_back(handler);
  };
  env.checkSecurity = [](info::SecurityInfo* asked) {
    return asked->secondValue == "java.util.BitSet";  // a name has other forms, with "/" for "."
  };
}

static void Expect(bool isSo, const std::string& what) {
  if (!isSo) errx(1, "%s", what.c_str());
}

// The function of that name, of the type that it is declared with.
template <class Function>
static Function* Find(void* image, const char* name) {
  void* symbol = image == nullptr ? nullptr : dlsym(image, name);
  Expect(symbol != nullptr, std::string("no ") + name + ": is the file missing, or another one?");
  return reinterpret_cast<Function*>(symbol);
}

static JavaVM* StartVm(const char* libjvm, const std::string& jar) {
  std::string option = "-Djava.class.path=" + jar;
  JavaVMOption options[] = {{option.data(), nullptr}};
  JavaVMInitArgs arguments = {JNI_VERSION_1_8, 1, options, JNI_FALSE};
  JavaVM* machine = nullptr;
  void* env = nullptr;
  auto* create = Find<decltype(JNI_CreateJavaVM)>(dlopen(libjvm, RTLD_NOW), "JNI_CreateJavaVM");
  Expect(create(&machine, &env, &arguments) == JNI_OK, "the Java VM can't be started");
  return machine;
}

// Calls the method of that name that takes those parameters, and shows what it gives.
static void Call(Handler& handler, const char* name, std::list<type::Object*> params) {
  std::list<TypeDesc*> types;
  for (type::Object* param : params) types.push_back(&param->GetMetaItemType());
  WideString id;
  MethodType kind = MethodType::Invoke;
  info::MethodInfo* method = nullptr;
  Expect(handler.BuildMethodID(id, name, kind, &types, false) == kSuccess &&
             id.getWCharPtr() != nullptr &&
             handler.GetMethodInfo(id, info::kMethodReturnType, method, 0) == kSuccess,
         std::string("no such method: ") + name);  // an unknown one leaves the identifier empty
  context::MethodCallContext call;
  MethodInvokeStatus status;
  type::Object* result = nullptr;
  Expect(handler.OpenMethodCall(call, id) == kSuccess &&
             handler.PrepareMethodCall(call, params) == kSuccess &&
             handler.SetReturnDataType(call, method->returnType) == kSuccess &&
             handler.InvokeMethod(call, status, &result) == kSuccess,
         std::string(name) + " failed");  // status.failureText says why
  handler.CloseMethodCall(call);
  handler.Release(method);
  if (result == nullptr) return;
  WideString text;
  result->GetValueAsString(text);
  if (text.getWCharPtr() != nullptr) std::printf("%s: %ls\n", name, text.getWCharPtr());
  result->ReleaseItem();
  handler.Release(result);
}

int main(int argc, char** argv) {
  Expect(argc == 4, "usage: minimal_host libjvm.so javabean_handler.so javabean_handler.jar");
  Services services;
  Environment environment;
  Fill(environment, services);
  void* plugin = dlopen(argv[2], RTLD_NOW | RTLD_LOCAL);
  Find<decltype(SetEnvironment)>(plugin, "SetEnvironment")(&environment);
  Expect(Find<decltype(InitHandler)>(plugin, "InitHandler")(plugin), "the plug-in won't start");
  Find<decltype(SetJavaVM)>(plugin, "SetJavaVM")(StartVm(argv[1], argv[3]));
  Handler* bean = Find<decltype(GetHandlerObject)>(plugin, "GetHandlerObject")();
  Expect(bean->CreateObject("JAVABEAN://java.util.BitSet", nullptr) == kSuccess, "no object");
  Expect(bean->OpenIntrospect(nullptr) == kSuccess, "no description");
  bean->CloseIntrospect();
  type::Int position(5);
  position.GetMetaItemType().typeName.assign(L"int");
  Call(*bean, "set", {&position});
  Call(*bean, "length", {});
  Call(*bean, "toString", {});
  // The last reference lets the Java object go; the handlers themselves go back to the plug-in.
  bean->Release();
  for (Handler* handler : services.handlers) {
    Find<decltype(FreeHandlerObject)>(plugin, "FreeHandlerObject")(handler);
  }
  Find<decltype(CleanUpHandler)>(plugin, "CleanUpHandler")();
  dlclose(plugin);
}

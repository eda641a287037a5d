#pragma once

#include <gmock/gmock.h>
#include <jni.h>

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/utf8.h"
#include "meta_object/context.h"
#include "meta_object/environment.h"
#include "meta_object/handler.h"
#include "meta_object/info/cached_method_info.h"
#include "meta_object/info/handler_info.h"
#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::test {

struct TestHost;

// A loaded image of the plug-in. Loading it again after the last one has gone starts anew.
class PluginImage {
 public:
  explicit PluginImage(const char* file = PLUGIN_FILE);
  ~PluginImage();
  PluginImage(const PluginImage&) = delete;
  PluginImage& operator=(const PluginImage&) = delete;

  static bool IsLoaded();

  // In the order that a host has to keep.
  void Start(TestHost& host) const;

  // An entry point (a function type) or a datum by its exported name.
  template <class Symbol>
  Symbol* Get(const char* name) const {
    return reinterpret_cast<Symbol*>(Find(name));
  }

  void* const handle;
  void (*const SetEnvironment)(meta_object::Environment*);
  void (*const SetJavaVM)(JavaVM*);
  bool (*const InitHandler)(void*);
  meta_object::info::HandlerInfo* (*const GetHandlerInfo)();
  meta_object::Handler* (*const GetHandlerObject)();
  void (*const FreeHandlerObject)(meta_object::Handler*);

 private:
  void* Find(const char* name) const;
};

// The host's side of the environment: a cache that a map holds, and a record of what was asked.
struct TestHost {
  struct Entry {
    bool isDone = false;
    meta_object::info::cache::CachedObjectInfo info;
    std::vector<std::unique_ptr<meta_object::info::cache::CachedMethodInfo>> owned;
  };

  TestHost();

  meta_object::Environment environment;
  std::map<std::string, Entry> cache;  // by class name
  std::vector<meta_object::Handler*> registered;
  std::vector<const void*> owners;
  std::vector<std::string> log;  // cache calls and security questions
  // What the callbacks answer.
  bool isAllowed = true;
  bool isOpened = true;
  bool isDoneAccepted = true;
};

// A string in UTF-8, whatever the process's encoding is.
inline std::string Utf8(const WideString& text) { return host::ToUtf8(text); }

// An object parameter's class, a primitive type's name, or one of these with "[]" once or twice.
meta_object::TypeDesc DescribeType(const std::string& javaType);

// A value with its descriptor. Elements of an array are separated by ",", rows by ";"; an element
// "-" is left empty. Objects are made apart.
std::unique_ptr<meta_object::type::Object> MakeValue(const std::string& javaType,
                                                     const std::wstring& text);

// "Int 5", "String text", "Object", arrays as "[1,-,3]" and "[[1,2],[3,4]]" with the key before
// them; "null" for none.
std::string Show(const meta_object::type::Object* value);

// What a call answered. The result goes back to the handler with it.
struct CallOutcome {
  CallOutcome() = default;
  CallOutcome(CallOutcome&& other) noexcept;
  CallOutcome& operator=(CallOutcome&&) = delete;
  ~CallOutcome();

  // The result as Show has it; "failed: TEXT" for a call that failed, "refused" for one that never
  // reached the VM and left the status record alone.
  std::string Text() const;
  // The handler of an object result.
  meta_object::Handler* Object() const;

  meta_object::HandlerStatus status = 0;
  meta_object::MethodInvokeStatus record;
  meta_object::type::Object* result = nullptr;
  meta_object::Handler* handler = nullptr;
};

using Values = std::vector<std::unique_ptr<meta_object::type::Object>>;

// From types and texts, or from values made apart.
Values ValuesOf(const std::vector<std::pair<std::string, std::wstring>>& params);
template <class... Value>
Values ValuesOf(std::unique_ptr<Value>... made) {
  Values values;
  (values.push_back(std::move(made)), ...);
  return values;
}

// A call that is prepared once and can be invoked again and again. The values stay the caller's.
class OpenCall {
 public:
  OpenCall(meta_object::Handler& handler, const std::string& method, const std::string& returnType,
           const Values& values);
  ~OpenCall();
  OpenCall(const OpenCall&) = delete;
  OpenCall& operator=(const OpenCall&) = delete;

  CallOutcome Invoke();

 private:
  meta_object::Handler& handler;
  meta_object::context::MethodCallContext context;
  meta_object::HandlerStatus status;  // of its preparation
};

// Calls one method once. Fails the test when the call leaves a local reference, a local frame or an
// exception behind.
CallOutcome Call(meta_object::Handler& handler, const std::string& method,
                 const std::string& returnType, const Values& values = {});

// The text of a call's outcome.
std::string Answer(meta_object::Handler& handler, const std::string& method,
                   const std::string& returnType, const Values& values = {});

// An object value that holds the handler, described as `javaType`.
std::unique_ptr<meta_object::type::Object> HoldObject(meta_object::Handler& handler,
                                                      const std::string& javaType);

// The plug-in, loaded and started. The thread stays attached
// until the end, as patched JNI tables need it.
class PluginTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // A new handler, registered with the host.
  meta_object::Handler& NewHandler();
  // A new handler with a bean.
  meta_object::Handler& Make(const std::string& className);
  // Fills the host's cache for the handler's class.
  void Introspect(meta_object::Handler& handler);

  JNIEnv* Env() { return TestVm::Env(); }

  TestHost host;
  std::unique_ptr<PluginImage> plugin;

 private:
  meta_object::context::MethodCallContext outerAttach;
};

}  // namespace quenlatrix::test

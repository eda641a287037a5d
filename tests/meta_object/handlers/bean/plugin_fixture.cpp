#include "tests/meta_object/handlers/bean/plugin_fixture.h"

#include <dlfcn.h>

#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>

#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/info/security_info.h"
#include "meta_object/type/array.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {

namespace {

namespace type = meta_object::type;
using meta_object::Environment;
using meta_object::Handler;
using meta_object::Identity;
using meta_object::TypeDesc;
using meta_object::info::cache::CachedMethodInfo;
using meta_object::info::cache::CachedObjectInfo;
using Key = TypeDesc::Key;

TestHost& HostOf(void* context) { return *static_cast<TestHost*>(context); }

TestHost::Entry& EntryOf(void* context, const Identity& identity) {
  return HostOf(context).cache[identity.handlerData];
}

// The security callback has no context.
TestHost* currentHost = nullptr;

// The thread's table while no test has patched it.
const JNINativeInterface_* originalTable = nullptr;

std::vector<std::wstring> Split(const std::wstring& text, wchar_t separator) {
  std::vector<std::wstring> parts;
  std::wistringstream stream(text + separator);
  for (std::wstring part; std::getline(stream, part, separator);) {
    parts.push_back(part);
  }
  return parts;
}

std::unique_ptr<type::Object> MakeScalar(Key key) {
  if (key == Key::Int) return std::make_unique<type::Int>(0);
  if (key == Key::Real) return std::make_unique<type::Real>(0.0);
  if (key == Key::Bool) return std::make_unique<type::Bool>();
  if (key == Key::Char) return std::make_unique<type::Char>();
  if (key == Key::Object) return std::make_unique<type::Blob>();
  return std::make_unique<type::String>();
}

std::unique_ptr<type::Object> MakeArray(TypeDesc desc, const std::wstring& text) {
  auto array = std::make_unique<type::Array>();
  const std::vector<std::wstring> rows = Split(text, L';');
  std::vector<std::wstring> elements;
  for (const std::wstring& row : rows) {
    const std::vector<std::wstring> parts = Split(row, L',');
    elements.insert(elements.end(), parts.begin(), parts.end());
  }
  const std::size_t dimensions = desc.arrayInfo->dimensions.size();
  auto count = static_cast<int>(elements.size());
  for (std::size_t i = dimensions; i-- > 0;) {
    const int here = i == 0 ? count : count / static_cast<int>(rows.size());
    desc.arrayInfo->dimensions[i] = {0, here};
    count /= here;
  }
  EXPECT_TRUE(array->Create(desc));
  array->SetDesc(desc.typeName);
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (elements[i] != L"-") {
      auto element = MakeScalar(desc.key);
      element->SetValueAsString(elements[i].c_str());
      array->SetItemAt(element.release(), static_cast<unsigned int>(i));
    }
  }
  return array;
}

std::string ShowScalar(const type::Object& value) {
  WideString text;
  value.GetValueAsString(text);
  return value.IsType(Key::Object) ? Utf8(value.GetMetaItemType().typeName) : Utf8(text);
}

std::string ShowArray(const type::Array& array) {
  int lowerBound = 0;
  int columns = array.GetItemCount();
  const bool hasRows =
      array.GetDimensionCount() == 2 && array.GetDimensionInfo(1, lowerBound, columns);
  std::string text;
  for (int i = 0; i < array.GetItemCount(); ++i) {
    const type::Object* const item = array.GetItemAt(static_cast<unsigned int>(i));
    text += i % columns == 0 ? (i == 0 ? "[" : "],[") : ",";
    text += item == nullptr ? "-" : ShowScalar(*item);
  }
  return hasRows ? "[" + text + "]]" : text + "]";
}

}  // namespace

PluginImage::PluginImage(const char* file)
    : handle(dlopen(file, RTLD_NOW | RTLD_LOCAL)),
      SetEnvironment(Get<void(Environment*)>("SetEnvironment")),
      SetJavaVM(Get<void(JavaVM*)>("SetJavaVM")),
      InitHandler(Get<bool(void*)>("InitHandler")),
      GetHandlerInfo(Get<meta_object::info::HandlerInfo*()>("GetHandlerInfo")),
      GetHandlerObject(Get<Handler*()>("GetHandlerObject")),
      FreeHandlerObject(Get<void(Handler*)>("FreeHandlerObject")) {}

PluginImage::~PluginImage() { EXPECT_EQ(dlclose(handle), 0); }

bool PluginImage::IsLoaded() {
  void* const handle = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) {
    dlclose(handle);
  }
  return handle != nullptr;
}

void PluginImage::Start(TestHost& host) const {
  SetEnvironment(&host.environment);
  EXPECT_TRUE(InitHandler(handle));
  SetJavaVM(TestVm::Get());
}

void* PluginImage::Find(const char* name) const {
  void* const symbol = dlsym(handle, name);
  EXPECT_NE(symbol, nullptr) << name;
  return symbol;
}

TestHost::TestHost() {
  currentHost = this;
  environment.hostContext = this;
  environment.cacheOpenIntrospect = [](void* context, const Identity& identity, bool& must) {
    HostOf(context).log.push_back("open " + identity.handlerData);
    must = !EntryOf(context, identity).isDone;
    return HostOf(context).isOpened;
  };
  environment.cacheIntrospectDone = [](void* context, const Identity& identity, bool succeeded) {
    HostOf(context).log.emplace_back(succeeded ? "done" : "failed");
    EntryOf(context, identity).isDone = succeeded;
    return HostOf(context).isDoneAccepted;
  };
  environment.cacheCloseIntrospect = [](void* context, const Identity& identity) {
    HostOf(context).log.push_back("close " + identity.handlerData);
    return true;
  };
  environment.cacheAddMethodInfo = [](void* context, const Identity& identity,
                                      const CachedMethodInfo& method) {
    TestHost::Entry& entry = EntryOf(context, identity);
    entry.owned.push_back(std::make_unique<CachedMethodInfo>(method));
    entry.info.methods.push_back(entry.owned.back().get());
    return true;
  };
  environment.cacheGetMethodInfo = [](void*, const Identity&,
                                      const char*) -> const CachedMethodInfo* { return nullptr; };
  environment.cacheGetObjectInfo = [](void* context,
                                      const Identity& identity) -> const CachedObjectInfo* {
    const auto found = HostOf(context).cache.find(identity.handlerData);
    return found == HostOf(context).cache.end() ? nullptr : &found->second.info;
  };
  environment.gcRegHandlerObject = [](void* context, Handler* handler, const void* owner) {
    HostOf(context).registered.push_back(handler);
    HostOf(context).owners.push_back(owner);
  };
  environment.checkSecurity = [](meta_object::info::SecurityInfo* security) {
    currentHost->log.push_back("may " + security->firstValue + " " + security->secondValue);
    return currentHost->isAllowed;
  };
}

TypeDesc DescribeType(const std::string& javaType) {
  const auto dimensions = static_cast<std::size_t>(std::ranges::count(javaType, '['));
  const std::string element = javaType.substr(0, javaType.find('['));
  TypeDesc desc =
      meta_object::handlers::bean::GetTypeDesc(WideString(element.c_str()).getWCharPtr());
  if (dimensions > 0) {
    desc.arrayInfo = std::make_unique<TypeDesc::ArrayInfo>();
    for (std::size_t i = 0; i < dimensions; ++i) {
      desc.arrayInfo->AddDimensionInfo(0, -1);
    }
  }
  return desc;
}

std::unique_ptr<type::Object> MakeValue(const std::string& javaType, const std::wstring& text) {
  const TypeDesc desc = DescribeType(javaType);
  if (desc.arrayInfo != nullptr) {
    return MakeArray(desc, text);
  }
  // A text that carries the parameter's descriptor reaches the conversion as it is.
  auto value = std::make_unique<type::String>();
  value->GetMetaItemType() = desc;
  value->SetValueAsString(text.c_str());
  return value;
}

std::string Show(const type::Object* value) {
  if (value == nullptr) return "null";
  static const std::map<Key, std::string> kKeys = {
      {Key::Void, "Void"}, {Key::Int, "Int"},   {Key::Real, "Real"},    {Key::String, "String"},
      {Key::Char, "Char"}, {Key::Bool, "Bool"}, {Key::Object, "Object"}};
  const auto* const array = dynamic_cast<const type::Array*>(value);
  return kKeys.at(value->GetMetaItemType().key) + " " +
         (array == nullptr ? ShowScalar(*value) : ShowArray(*array));
}

CallOutcome::CallOutcome(CallOutcome&& other) noexcept
    : status(other.status),
      record(other.record),
      result(std::exchange(other.result, nullptr)),
      handler(other.handler) {}

CallOutcome::~CallOutcome() {
  if (result == nullptr) return;
  if (auto* const array = dynamic_cast<type::Array*>(result)) {
    for (int i = 0; i < array->GetItemCount(); ++i) {
      type::Object* const item = array->GetItemAt(static_cast<unsigned int>(i));
      if (item != nullptr) item->ReleaseItem();
    }
  }
  result->ReleaseItem();
  handler->Release(result);
}

std::string CallOutcome::Text() const {
  if (status == meta_object::handler_status::kSuccess) {
    EXPECT_EQ(record.statusCode, 1U);
    EXPECT_EQ(Utf8(record.description), "JavaBean method call successful");
    return Show(result);
  }
  EXPECT_EQ(status, meta_object::handler_status::kCallFailed);
  EXPECT_EQ(result, nullptr);
  if (record.statusCode == 0) {
    EXPECT_EQ(Utf8(record.description) + Utf8(record.failureText), "");
    return "refused";
  }
  EXPECT_EQ(record.statusCode, 0xFFFFU);
  return "failed: " + Utf8(record.failureText);
}

Handler* CallOutcome::Object() const {
  const auto* const blob = dynamic_cast<const type::Blob*>(result);
  return blob == nullptr ? nullptr : blob->GetValue();
}

Values ValuesOf(const std::vector<std::pair<std::string, std::wstring>>& params) {
  Values values;
  for (const auto& [javaType, text] : params) {
    values.push_back(MakeValue(javaType, text));
  }
  return values;
}

OpenCall::OpenCall(Handler& handler, const std::string& method, const std::string& returnType,
                   const Values& values)
    : handler(handler) {
  std::list<type::Object*> params;
  for (const auto& value : values) {
    params.push_back(value.get());
  }
  status = handler.OpenMethodCall(context, WideString(("Invoke:" + method + ":0").c_str()));
  if (status == 0) status = handler.PrepareMethodCall(context, params);
  if (status == 0) status = handler.SetReturnDataType(context, DescribeType(returnType));
}

OpenCall::~OpenCall() { EXPECT_EQ(handler.CloseMethodCall(context), 0U); }

CallOutcome OpenCall::Invoke() {
  CallOutcome outcome;
  outcome.handler = &handler;
  outcome.status =
      status == 0 ? handler.InvokeMethod(context, outcome.record, &outcome.result) : status;
  return outcome;
}

CallOutcome Call(Handler& handler, const std::string& method, const std::string& returnType,
                 const Values& values) {
  JNIEnv* const env = TestVm::Env();
  // A test that patches the table itself counts itself.
  std::optional<JniReferenceTracker> tracker;
  if (env->functions == originalTable) tracker.emplace(env);
  CallOutcome outcome = OpenCall(handler, method, returnType, values).Invoke();
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE) << method;
  EXPECT_EQ(tracker ? tracker->LiveLocals() + tracker->OpenFrames() : 0, 0) << method;
  return outcome;
}

std::string Answer(Handler& handler, const std::string& method, const std::string& returnType,
                   const Values& values) {
  return Call(handler, method, returnType, values).Text();
}

std::unique_ptr<type::Object> HoldObject(Handler& handler, const std::string& javaType) {
  auto blob = std::make_unique<type::Blob>(&handler);
  blob->GetMetaItemType() = DescribeType(javaType);
  return blob;
}

void PluginTest::SetUp() {
  plugin = std::make_unique<PluginImage>();
  plugin->Start(host);
  originalTable = Env()->functions;
  NewHandler().OpenMethodCall(outerAttach, WideString("Invoke:none:0"));
}

void PluginTest::TearDown() {
  EXPECT_EQ(Env()->ExceptionCheck(), JNI_FALSE);
  if (!host.registered.empty()) host.registered.front()->CloseMethodCall(outerAttach);
  for (Handler* handler : host.registered) {
    while (handler->Release() == meta_object::handler_status::kSuccess) {
    }
    plugin->FreeHandlerObject(handler);
  }
}

Handler& PluginTest::NewHandler() { return *plugin->GetHandlerObject(); }

Handler& PluginTest::Make(const std::string& className) {
  Handler& handler = NewHandler();
  EXPECT_EQ(handler.CreateObject(("JAVABEAN://" + className).c_str(), nullptr), 0U) << className;
  return handler;
}

void PluginTest::Introspect(Handler& handler) {
  EXPECT_EQ(handler.OpenIntrospect(nullptr), 0U);
  EXPECT_EQ(handler.CloseIntrospect(), 0U);
}

}  // namespace quenlatrix::test

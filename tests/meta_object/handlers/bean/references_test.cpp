#include <atomic>
#include <thread>

#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {
namespace {

namespace type = meta_object::type;
using meta_object::Handler;

// A call that is opened once and invoked again and again.
class OpenCall {
 public:
  OpenCall(Handler& handler, const char* method, const char* returnType, Values values)
      : handler(handler), values(std::move(values)) {
    handler.OpenMethodCall(context, WideString((std::string("Invoke:") + method + ":0").c_str()));
    std::list<type::Object*> params;
    for (const auto& value : this->values) {
      params.push_back(value.get());
    }
    handler.PrepareMethodCall(context, params);
    handler.SetReturnDataType(context, DescribeType(returnType));
  }
  ~OpenCall() { handler.CloseMethodCall(context); }
  OpenCall(const OpenCall&) = delete;
  OpenCall& operator=(const OpenCall&) = delete;

  CallOutcome Invoke() {
    CallOutcome outcome;
    outcome.handler = &handler;
    outcome.status = handler.InvokeMethod(context, outcome.record, &outcome.result);
    return outcome;
  }

 private:
  Handler& handler;
  Values values;
  meta_object::context::MethodCallContext context;
};

Values ValuesOf(const std::vector<std::pair<const char*, const wchar_t*>>& params) {
  Values values;
  for (const auto& [javaType, text] : params) {
    values.push_back(MakeValue(javaType, text));
  }
  return values;
}

class ReferencesTest : public PluginTest {
 protected:
  // Frees the handlers of returned objects, as a host's collector does.
  void Collect() {
    auto* const free = plugin->Get<void(Handler*)>("FreeHandlerObject");
    std::erase_if(host.registered, [free](Handler* handler) {
      const bool isDone = handler->GetReferenceCount() == 0;
      if (isDone) {
        free(handler);
      }
      return isDone;
    });
    host.owners.clear();
  }
};

TEST_F(ReferencesTest, AMillionCallsOfEveryKindLeaveTheTablesAsTheyWere) {
  Handler& echo = Make("beans.ScalarEcho");
  Handler& arrays = Make("beans.ArrayEcho");
  Handler& objects = Make("beans.ObjectReturner");
  Handler& taker = Make("beans.ObjectTaker");
  Handler& throwing = Make("beans.ThrowingMethods");
  Handler& point = Make("beans.Point");
  Values pointParam;
  pointParam.push_back(HoldObject(point, "beans.Point"));
  OpenCall calls[] = {
      {echo, "echoInt", "int", ValuesOf({{"int", L"5"}})},
      {echo, "echoDouble", "double", ValuesOf({{"double", L"2.5"}})},
      {echo, "echoString", "java.lang.String", ValuesOf({{"java.lang.String", L"text"}})},
      {echo, "echo", "java.lang.Integer", ValuesOf({{"java.lang.Integer", L"42"}})},
      {echo, "nothing", "void", {}},
      {arrays, "echo", "int[]", ValuesOf({{"int[]", L"1,2,3"}})},
      {objects, "self", "beans.ObjectReturner", {}},
      {taker, "takesPoint", "int", std::move(pointParam)},
  };
  OpenCall rareCalls[] = {
      {arrays, "echo", "java.lang.String[]", ValuesOf({{"java.lang.String[]", L"a,b"}})},
      {arrays, "echo", "int[][]", ValuesOf({{"int[][]", L"1,2;3,4"}})},
      {throwing, "unchecked", "void", {}},
      {throwing, "unprintable", "int", {}},
      {echo, "noSuchMethod", "void", {}},
      {echo, "echo", "java.lang.Integer", ValuesOf({{"java.lang.Integer", L"x"}})},
      {taker, "takesPoint", "int", ValuesOf({{"beans.Point", L"12345"}})},
  };
  constexpr int kRounds = 1000000 / static_cast<int>(std::size(calls));
  const JniReferenceTracker tracker(Env());
  for (int i = 0; i < kRounds; ++i) {
    for (OpenCall& call : calls) {
      ASSERT_EQ(call.Invoke().status, 0U);
    }
    if (i % 1000 == 0) {
      for (OpenCall& call : rareCalls) {
        call.Invoke();
      }
      Handler& unmade = NewHandler();
      unmade.CreateObject("JAVABEAN://beans.ThrowingConstructor", nullptr);
      unmade.Release();
      Collect();
    }
  }
  EXPECT_GT(tracker.LocalsMade(), 1000000);
  EXPECT_GE(tracker.GlobalsMade(), 2 * kRounds);
  EXPECT_EQ(tracker.LiveLocals(), 0);
  EXPECT_EQ(tracker.LiveGlobals(), 0);
  EXPECT_EQ(tracker.OpenFrames(), 0);
}

TEST_F(ReferencesTest, ThreadsMakeCallAndReleaseBesideEachOther) {
  host.environment.gcRegHandlerObject = nullptr;
  auto* const make = plugin->Get<Handler*()>("GetHandlerObject");
  auto* const free = plugin->Get<void(Handler*)>("FreeHandlerObject");
  host.environment.checkSecurity = nullptr;
  std::atomic<int> good = 0;
  constexpr int kThreads = 4;
  constexpr int kRounds = 100;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&good, make, free] {
      for (int i = 0; i < kRounds; ++i) {
        Handler* const bean = make();
        bean->CreateObject("JAVABEAN://beans.ObjectTaker", nullptr);
        meta_object::context::MethodCallContext context;
        bean->OpenMethodCall(context, WideString(L"Invoke:takesObject:0"));
        const auto self = HoldObject(*bean, "java.lang.Object");
        std::list<type::Object*> params{self.get()};
        bean->PrepareMethodCall(context, params);
        bean->SetReturnDataType(context, DescribeType("java.lang.String"));
        meta_object::MethodInvokeStatus record;
        type::Object* result = nullptr;
        good += bean->InvokeMethod(context, record, &result) == 0 ? 1 : 0;
        bean->Release(result);
        bean->CloseMethodCall(context);
        self->ReleaseItem();
        bean->Release();
        free(bean);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(good, kThreads * kRounds);
}

}  // namespace
}  // namespace quenlatrix::test

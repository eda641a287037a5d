#include <atomic>
#include <thread>

#include "meta_object/handlers/bean/live_references.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {
namespace {

using meta_object::Handler;
using meta_object::handlers::bean::LiveReferences;

struct HeldCall {
  HeldCall(Handler& handler, const char* method, const char* returnType, Values given)
      : values(std::move(given)), call(handler, method, returnType, values) {}
  Values values;
  OpenCall call;
};

class ReferencesTest : public PluginTest {
 protected:
  // Frees the handlers of returned objects, as a host's collector does.
  void Collect() {
    std::erase_if(host.registered, [this](Handler* handler) {
      const bool isDone = handler->GetReferenceCount() == 0;
      if (isDone) plugin->FreeHandlerObject(handler);
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
  HeldCall calls[] = {
      {echo, "echoInt", "int", ValuesOf({{"int", L"5"}})},
      {echo, "echoDouble", "double", ValuesOf({{"double", L"2.5"}})},
      {echo, "echoString", "java.lang.String", ValuesOf({{"java.lang.String", L"text"}})},
      {echo, "echo", "java.lang.Integer", ValuesOf({{"java.lang.Integer", L"42"}})},
      {echo, "nothing", "void", {}},
      {arrays, "echo", "int[]", ValuesOf({{"int[]", L"1,2,3"}})},
      {objects, "self", "beans.ObjectReturner", {}},
      {taker, "takesPoint", "int", ValuesOf(HoldObject(Make("beans.Point"), "beans.Point"))},
  };
  HeldCall rareCalls[] = {
      {arrays, "echo", "java.lang.String[]", ValuesOf({{"java.lang.String[]", L"a,b"}})},
      {arrays, "echo", "int[][]", ValuesOf({{"int[][]", L"1,2;3,4"}})},
      {throwing, "unchecked", "void", {}},
      {throwing, "unprintable", "int", {}},
      {echo, "noSuchMethod", "void", {}},
      {echo, "echo", "java.lang.Integer", ValuesOf({{"java.lang.Integer", L"x"}})},
      {taker, "takesPoint", "int", ValuesOf({{"beans.Point", L"12345"}})},
  };
  constexpr int kRounds = 1000000 / static_cast<int>(std::size(calls));
  // The classes that the first calls look up are kept.
  for (HeldCall& held : calls) {
    held.call.Invoke();
  }
  const JniReferenceTracker tracker(Env());
  for (int i = 0; i < kRounds; ++i) {
    for (HeldCall& held : calls) {
      ASSERT_EQ(held.call.Invoke().status, 0U);
    }
    if (i % 1000 == 0) {
      for (HeldCall& held : rareCalls) {
        held.call.Invoke();
      }
      Handler& unmade = NewHandler();
      unmade.CreateObject("JAVABEAN://beans.ThrowingConstructor", nullptr);
      unmade.Release();
      Collect();
    }
  }
  EXPECT_GT(tracker.LocalsMade(), 1000000);
  EXPECT_GE(tracker.GlobalsMade(), 2 * kRounds);
  EXPECT_EQ(tracker.Left(), 0);
}

}  // namespace
TEST(LiveReferences, AreFoundUntilTheyAreRemovedHoweverManyLieTogether) {
  LiveReferences live;
  const auto reference = [](std::uintptr_t number) {
    return reinterpret_cast<jobject>(number * 64 * sizeof(void*));
  };
  for (std::uintptr_t i = 1; i <= 8; ++i) live.Add(reference(i));
  live.Remove(reference(1));
  live.Add(reference(8));
  for (std::uintptr_t i = 2; i <= 8; ++i) {
    EXPECT_TRUE(live.Contains(reference(i))) << i;
    live.Remove(reference(i));
    EXPECT_FALSE(live.Contains(reference(i))) << i;
  }
  EXPECT_FALSE(live.Contains(nullptr));
}

}  // namespace quenlatrix::test

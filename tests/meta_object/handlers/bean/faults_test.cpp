#include <functional>

#include "meta_object/handlers/bean/bean_handler.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"
#include "tests/support/patched_jni.h"

// What a healthy VM never does.

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
using meta_object::Handler;
using Table = JNINativeInterface_;

class FaultsTest : public PluginTest {
 protected:
  // Runs `action` while call number `faultAt` of an entry fails. Fails the test when references,
  // frames or an exception stay behind.
  void With(FaultyJni::Fault fault, int faultAt, const std::function<void()>& action) {
    const JniReferenceTracker tracker(Env());
    const FaultyJni faulty(Env(), fault, faultAt);
    action();
    EXPECT_TRUE(faulty.HasFailed()) << "the fault never came";
    EXPECT_EQ(Env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(tracker.LiveLocals() + tracker.OpenFrames(), 0);
  }

  static meta_object::HandlerStatus IntrospectOnce(Handler& bean) {
    const meta_object::HandlerStatus answer = bean.OpenIntrospect(nullptr);
    bean.CloseIntrospect();
    return answer;
  }
};

constexpr FaultyJni::Fault LoseTexts = FaultyJni::Lose<&Table::NewStringUTF>;
constexpr FaultyJni::Fault LoseObjectArrays = FaultyJni::Lose<&Table::NewObjectArray>;
constexpr FaultyJni::Fault LoseIntArrays = FaultyJni::Lose<&Table::NewIntArray>;
constexpr FaultyJni::Fault LoseCharacters = FaultyJni::Lose<&Table::GetStringUTFChars>;

TEST_F(FaultsTest, WithoutAnEnvironmentEveryOperationHasItsOwnAnswer) {
  auto& unbound = static_cast<meta_object::handlers::bean::BeanHandler&>(NewHandler());
  Handler& bean = Make("beans.ThreeStrings");
  Handler& fresh = NewHandler();
  meta_object::context::MethodCallContext context;
  meta_object::MethodInvokeStatus record;
  meta_object::type::Object* result = nullptr;
  PatchedVm patch(TestVm::Get());
  patch.Table().AttachCurrentThread = [](JavaVM*, void**, void*) {
    return static_cast<jint>(JNI_ERR);
  };
  EXPECT_EQ(fresh.CreateObject("JAVABEAN://beans.Point", nullptr), status::kObjectNotMade);
  EXPECT_EQ(unbound.BindObject(&unbound, "JAVABEAN://beans.Point"), status::kNothingToBind);
  EXPECT_FALSE(unbound.IsValidObject());
  EXPECT_EQ(IntrospectOnce(bean), status::kIntrospectionFailed);
  meta_object::context::CollectionContext walk;
  EXPECT_EQ(bean.OpenCollection(walk), status::kNoCollection);
  EXPECT_EQ(bean.OpenMethodCall(context, WideString(L"Invoke:size:0")), 0U);
  EXPECT_EQ(bean.InvokeMethod(context, record, &result), status::kCallFailed);
  EXPECT_EQ(record.statusCode, 0U) << "nothing reached the machine";
  EXPECT_EQ(bean.CloseMethodCall(context), 0U);
}

TEST_F(FaultsTest, MemoryThatRunsOutRefusesTheParameter) {
  struct Case {
    FaultyJni::Fault fault;
    int faultAt;
    const char* javaType;
    const wchar_t* text;
    const char* answer;
  };
  const Case cases[] = {
      {LoseTexts, 0, "java.lang.String[]", L"a,b", "refused"},
      {LoseTexts, 1, "java.lang.String[]", L"a,b", "String [a, null]"},
      {LoseObjectArrays, 0, "java.lang.String[]", L"a,b", "refused"},
      {LoseObjectArrays, 0, "int[][]", L"1,2;3,4", "refused"},
      {LoseIntArrays, 0, "int[]", L"1,2", "String null"},
      {LoseIntArrays, 0, "int[][]", L"1,2;3,4", "refused"},
      {LoseIntArrays, 1, "int[][]", L"1,2;3,4", "String [[1, 2], null]"},
      {LoseCharacters, 0, "int[]", L"1,2", "String "},
  };
  Handler& text = Make("beans.ArrayText");
  for (const Case& c : cases) {
    With(c.fault, c.faultAt, [&c, &text] {
      const Values values = ValuesOf({{c.javaType, c.text}});
      EXPECT_EQ(Answer(text, "text", "java.lang.String", values), c.answer) << c.javaType;
    });
  }
  With(LoseTexts, 0, [this] {
    const Values values = ValuesOf({{"java.lang.Integer", L"1"}});
    EXPECT_EQ(Answer(Make("beans.ScalarEcho"), "echo", "java.lang.Integer", values), "refused");
  });
  With(LoseCharacters, 0, [this] {
    EXPECT_EQ(Answer(Make("beans.ThrowingMethods"), "unchecked", "void"),
              "failed: Java Exception: ");
  });
}

}  // namespace
}  // namespace quenlatrix::test

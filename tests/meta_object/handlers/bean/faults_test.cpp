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
using testing::ElementsAre;

const JNINativeInterface_* original = nullptr;
// Which of the coming calls of a patched entry fails; 0 is the next.
int callsUntilFault = 0;

bool IsFaulty() { return callsUntilFault-- == 0; }

void RunOutOfMemory(JNIEnv* env) {
  jclass const cls = original->FindClass(env, "java/lang/OutOfMemoryError");
  original->ThrowNew(env, cls, "patched");
  original->DeleteLocalRef(env, cls);
}

class FaultsTest : public PluginTest {
 protected:
  using Patch = void (*)(JNINativeInterface_&);

  // Runs `action` with an entry whose call number `faultAt` fails. Fails the test when references,
  // frames or an exception stay behind.
  void With(Patch patch, int faultAt, const std::function<void()>& action) {
    JNIEnv* const env = Env();
    const JniReferenceTracker tracker(env);
    PatchedJni patched(env);
    original = &patched.Original();
    callsUntilFault = faultAt;
    patch(patched.Table());
    action();
    EXPECT_LT(callsUntilFault, 0) << "the fault never came";
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(tracker.LiveLocals(), 0);
    EXPECT_EQ(tracker.OpenFrames(), 0);
  }

  static meta_object::HandlerStatus IntrospectOnce(Handler& bean) {
    const meta_object::HandlerStatus answer = bean.OpenIntrospect(nullptr);
    bean.CloseIntrospect();
    return answer;
  }
};

void LoseGlobalReferences(JNINativeInterface_& table) {
  table.NewGlobalRef = [](JNIEnv* env, jobject object) -> jobject {
    return IsFaulty() ? nullptr : original->NewGlobalRef(env, object);
  };
}

void LoseTexts(JNINativeInterface_& table) {
  table.NewStringUTF = [](JNIEnv* env, const char* text) -> jstring {
    if (IsFaulty()) {
      RunOutOfMemory(env);
      return nullptr;
    }
    return original->NewStringUTF(env, text);
  };
}

void LoseObjectArrays(JNINativeInterface_& table) {
  table.NewObjectArray = [](JNIEnv* env, jsize count, jclass cls, jobject first) -> jobjectArray {
    if (IsFaulty()) {
      RunOutOfMemory(env);
      return nullptr;
    }
    return original->NewObjectArray(env, count, cls, first);
  };
}

void LoseIntArrays(JNINativeInterface_& table) {
  table.NewIntArray = [](JNIEnv* env, jsize count) -> jintArray {
    if (IsFaulty()) {
      RunOutOfMemory(env);
      return nullptr;
    }
    return original->NewIntArray(env, count);
  };
}

void LoseFrames(JNINativeInterface_& table) {
  table.PushLocalFrame = [](JNIEnv* env, jint capacity) {
    if (IsFaulty()) {
      RunOutOfMemory(env);
      return static_cast<jint>(JNI_ENOMEM);
    }
    return original->PushLocalFrame(env, capacity);
  };
}

void LoseCharacters(JNINativeInterface_& table) {
  table.GetStringUTFChars = [](JNIEnv* env, jstring text, jboolean* isCopy) -> const char* {
    if (IsFaulty()) {
      RunOutOfMemory(env);
      return nullptr;
    }
    return original->GetStringUTFChars(env, text, isCopy);
  };
}

void LoseIntElements(JNINativeInterface_& table) {
  table.GetIntArrayElements = [](JNIEnv* env, jintArray array, jboolean* isCopy) -> jint* {
    return IsFaulty() ? nullptr : original->GetIntArrayElements(env, array, isCopy);
  };
}

TEST_F(FaultsTest, WithoutAnEnvironmentEveryOperationHasItsOwnAnswer) {
  auto& unbound = static_cast<meta_object::handlers::bean::BeanHandler&>(NewHandler());
  Handler& bean = Make("beans.Point");
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
  EXPECT_EQ(bean.OpenIntrospect(nullptr), status::kIntrospectionFailed);
  EXPECT_EQ(bean.CloseIntrospect(), 0U);
  EXPECT_EQ(bean.OpenMethodCall(context, WideString(L"Invoke:getX:0")), 0U);
  EXPECT_EQ(bean.InvokeMethod(context, record, &result), status::kCallFailed);
  EXPECT_EQ(record.statusCode, 0U) << "nothing reached the machine";
  EXPECT_EQ(bean.CloseMethodCall(context), 0U);
}

TEST_F(FaultsTest, ALostGlobalReferenceMakesNoObject) {
  // Loads the class: the VM's own native code works with the patched table too.
  Make("beans.Point");
  Handler& returner = Make("beans.ObjectReturner");
  Introspect(returner);
  With(LoseGlobalReferences, 1, [this] {
    EXPECT_EQ(NewHandler().CreateObject("JAVABEAN://beans.Point", nullptr), status::kObjectNotMade);
  });
  With(LoseGlobalReferences, 0, [this] {
    Handler& bean = NewHandler();
    EXPECT_EQ(bean.CreateObject("JAVABEAN://beans.Point", nullptr), 0U) << "only its class is lost";
    EXPECT_TRUE(bean.IsValidObject());
    bean.Release();
  });
  With(LoseGlobalReferences, 0, [&returner] {
    EXPECT_EQ(Call(returner, "self", "beans.ObjectReturner", {}).Text(), "null");
  });
  Handler& bean = Make("beans.PlainProperty");
  With(LoseGlobalReferences, 0,
       [&bean] { EXPECT_EQ(IntrospectOnce(bean), status::kIntrospectionFailed); });
}

TEST_F(FaultsTest, MemoryThatRunsOutRefusesTheParameter) {
  struct Case {
    void (*patch)(JNINativeInterface_&);
    int faultAt;
    const char* method;
    const char* javaType;
    const wchar_t* text;
    const char* answer;
  };
  const Case cases[] = {
      {LoseTexts, 0, "text", "java.lang.String[]", L"a,b", "refused"},
      {LoseTexts, 1, "text", "java.lang.String[]", L"a,b", "String [a, null]"},
      {LoseObjectArrays, 0, "text", "java.lang.String[]", L"a,b", "refused"},
      {LoseObjectArrays, 0, "text", "int[][]", L"1,2;3,4", "refused"},
      {LoseIntArrays, 0, "text", "int[]", L"1,2", "String null"},
      {LoseIntArrays, 0, "text", "int[][]", L"1,2;3,4", "refused"},
      {LoseIntArrays, 1, "text", "int[][]", L"1,2;3,4", "String [[1, 2], null]"},
      {LoseCharacters, 0, "text", "int[]", L"1,2", "String "},
  };
  Handler& text = Make("beans.ArrayText");
  for (const Case& c : cases) {
    With(c.patch, c.faultAt, [&c, &text] {
      Values values;
      values.push_back(MakeValue(c.javaType, c.text));
      EXPECT_EQ(Call(text, c.method, "java.lang.String", values).Text(), c.answer) << c.javaType;
    });
  }
  With(LoseTexts, 0, [this] {
    Values values;
    values.push_back(MakeValue("java.lang.Integer", L"1"));
    EXPECT_EQ(Call(Make("beans.ScalarEcho"), "echo", "java.lang.Integer", values).Text(),
              "refused");
  });
  With(LoseCharacters, 0, [this] {
    EXPECT_EQ(Call(Make("beans.ThrowingMethods"), "unchecked", "void", {}).Text(),
              "failed: Java Exception: ");
  });
}

TEST_F(FaultsTest, MemoryThatRunsOutFailsTheFill) {
  // Every allocation of a fill in turn; the last fault lies behind the last one.
  for (auto* const patch : {LoseObjectArrays, LoseIntArrays, LoseFrames, LoseCharacters}) {
    for (int faultAt = 0; faultAt < 2; ++faultAt) {
      Handler& bean = Make("beans.PlainProperty");
      host.log.clear();
      With(patch, faultAt,
           [&bean] { EXPECT_EQ(IntrospectOnce(bean), status::kIntrospectionFailed); });
      EXPECT_THAT(host.log,
                  ElementsAre("open beans.PlainProperty", "failed", "close beans.PlainProperty"));
    }
  }
}

TEST_F(FaultsTest, LostAccessorBitsLeaveTheAccessorsOut) {
  Handler& bean = Make("beans.PlainProperty");
  With(LoseIntElements, 0, [&bean] { EXPECT_EQ(IntrospectOnce(bean), 0U); });
  EXPECT_EQ(bean.GetMethodCount(), 1U) << "the regular method alone";
  Handler& other = Make("beans.Point");
  With(LoseIntElements, 1,
       [&other] { EXPECT_EQ(IntrospectOnce(other), status::kIntrospectionFailed); });
}

}  // namespace
}  // namespace quenlatrix::test

#include <list>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
using meta_object::Handler;
using meta_object::handlers::bean::BeanHandler;
using testing::ElementsAre;

class BeanLifecycleTest : public PluginTest {};

std::string DescriptionOf(Handler& handler) {
  meta_object::info::ObjectInfo* info = nullptr;
  EXPECT_EQ(handler.GetObjectInfo(info, nullptr, false), 0U);
  const std::string text = Utf8(info->description);
  handler.Release(info);
  return text;
}

TEST_F(BeanLifecycleTest, MakesObjectsOfClassesAlone) {
  const std::pair<meta_object::HandlerStatus, std::vector<std::string>> cases[] = {
      {status::kSuccess,
       {"JAVABEAN://beans.Point", "JAVABEAN://beans/Point", "JAVABEAN://java.util.ArrayList",
        "JAVABEAN://beans.Point?x=1?y=://",
        "JAVABEAN://beans.HiddenBean"}},  // only the constructor has to be public
      {status::kObjectNotMade,
       {"JAVABEAN://beans.NoDefaultConstructor",
        "JAVABEAN://beans.PrivateConstructor",
        "JAVABEAN://java.lang.Runtime",
        "JAVABEAN://java.lang.ClassLoader",
        "JAVABEAN://java.lang.invoke.MethodHandles$Lookup",
        "JAVABEAN://beans.ThrowingConstructor",
        "JAVABEAN://beans.ThrowingInitializer",
        "JAVABEAN://beans.AbstractBean",
        "JAVABEAN://beans.BeanInterface",
        "JAVABEAN://beans.point",
        "JAVABEAN://beans",
        "JAVABEAN://beans..Point",
        "JAVABEAN://[I",
        "JAVABEAN://[Lbeans.Point;",
        "JAVABEAN://Lbeans.Point;",
        "JAVABEAN://int",
        "JAVABEAN://int[]",
        "JAVABEAN://void",
        "JAVABEAN://beans.Point;I",
        "JAVABEAN://../beans/Point",
        "JAVABEAN://C:\\beans\\Point",
        "JAVABEAN://beans.Point\n",
        "JAVABEAN://JAVABEAN://beans.Point",
        "JAVABEAN://" + std::string(70000, 'x'),
        "JAVABEAN://beans" + std::string(5000000, '.') + "Point",
        "JAVABEAN://\xC3\x28",
        "JAVABEAN://beans.\xE2\x82\xAC",
        "JAVABEAN://beans.Poin\xC1\xB4",  // an overlong "t"
        "JAVABEAN://%n%s\x01\x7F"}},
      {status::kInvalidIdentity, {"JAVABEAN://", "beans.Point", "://beans.Point", ""}}};
  // The first round loads classes, and the VM's own native code works with the same table.
  for (const bool isCounted : {false, true}) {
    for (const auto& [expected, identities] : cases) {
      const bool isMade = expected == status::kSuccess;
      for (const std::string& identity : identities) {
        const std::string name = identity.substr(0, 60);
        Handler& bean = NewHandler();
        const JniReferenceTracker tracker(Env());
        EXPECT_EQ(bean.CreateObject(identity.c_str(), nullptr), expected) << name;
        EXPECT_EQ(bean.IsValidObject(), isMade) << name;
        EXPECT_EQ(bean.GetObjectRef() != nullptr, isMade) << name;
        EXPECT_EQ(Env()->ExceptionCheck(), JNI_FALSE) << name;
        EXPECT_TRUE(!isCounted || tracker.LiveGlobals() == (isMade ? 2 : 0)) << name;
        EXPECT_EQ(bean.Release(), status::kLastReferenceReleased) << name;
        EXPECT_TRUE(!isCounted || tracker.Left() == 0) << name;
      }
    }
  }
  EXPECT_EQ(NewHandler().CreateObject(nullptr, nullptr), status::kInvalidIdentity);
}

// Did the static initialiser of beans.StaticInitRecorder run?
bool HasInitialised(JNIEnv* env) {
  env->PushLocalFrame(8);
  const jclass system = env->FindClass("java/lang/System");
  const jmethodID getProperty =
      env->GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
  const jstring key = env->NewStringUTF("beans.StaticInitRecorder");
  const bool isSet = env->CallStaticObjectMethod(system, getProperty, key) != nullptr;
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  env->PopLocalFrame(nullptr);
  return isSet;
}

TEST_F(BeanLifecycleTest, ARefusedClassNeverReachesTheMachineAndTheHandlerServesOnceAllowed) {
  Make("beans.Point");
  Handler& bean = NewHandler();
  host.isAllowed = false;
  const std::string refused = "beans.StaticInitRecorder";
  for (const std::string& name :
       {refused, std::string("beans/StaticInitRecorder"), refused + "?a=b"}) {
    host.log.clear();
    const JniReferenceTracker tracker(Env());
    EXPECT_EQ(bean.CreateObject(("JAVABEAN://" + name).c_str(), nullptr), status::kRefused);
    EXPECT_EQ(tracker.LocalsMade() + tracker.GlobalsMade(), 0) << "no class was looked for";
    EXPECT_THAT(host.log, ElementsAre("may JAVABEAN " + name.substr(0, name.find('?'))));
    EXPECT_FALSE(bean.IsValidObject());
    EXPECT_EQ(Env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(DescriptionOf(bean), " in CLASSPATH environment") << "no identity was taken";
    EXPECT_EQ(bean.OpenIntrospect(nullptr), status::kInvalidIdentity) << "nothing to describe";
    bean.CloseIntrospect();
    EXPECT_FALSE(HasInitialised(Env()));
  }
  EXPECT_TRUE(host.cache.empty());
  host.environment.checkSecurity = nullptr;
  EXPECT_EQ(bean.CreateObject("JAVABEAN://beans.StaticInitRecorder", nullptr), 0U)
      << "nobody asked";
  EXPECT_TRUE(HasInitialised(Env()));
}

TEST_F(BeanLifecycleTest, TheLastReleaseLetsTheObjectGoAndLeavesTheHandler) {
  Handler& bean = Make("beans.Point");
  const void* const reference = bean.GetObjectRef();
  EXPECT_EQ(bean.CreateObject("JAVABEAN://beans.ScalarEcho", nullptr), 0U) << "bound already";
  EXPECT_EQ(bean.GetObjectRef(), reference);
  EXPECT_EQ(DescriptionOf(bean), "beans.Point in CLASSPATH environment");
  EXPECT_EQ(bean.AddRef(), 0U);
  EXPECT_EQ(bean.Release(), 0U);
  EXPECT_TRUE(bean.IsValidObject());
  EXPECT_EQ(bean.Release(), status::kLastReferenceReleased);
  EXPECT_FALSE(bean.IsValidObject());
  EXPECT_EQ(bean.GetObjectRef(), nullptr);
  EXPECT_EQ(DescriptionOf(bean), " in CLASSPATH environment");
  EXPECT_EQ(bean.Release(), status::kReleasedTwice);
  EXPECT_EQ(bean.GetErrorText().getWCharPtr(), nullptr);
  EXPECT_FALSE(bean.IsHandlerAvailable("JAVABEAN://beans.Point")) << "no jar is recorded for it";
  EXPECT_FALSE(bean.IsHandlerAvailable(nullptr));
}

TEST_F(BeanLifecycleTest, BindsAGlobalReferenceThatIsGivenOverAndUnbindsItAlive) {
  auto& bean = static_cast<BeanHandler&>(NewHandler());
  EXPECT_EQ(bean.BindObject(nullptr, "JAVABEAN://beans.Point"), status::kNothingToBind);
  EXPECT_FALSE(bean.IsValidObject());
  const JniReferenceTracker tracker(Env());
  const jstring text = Env()->NewStringUTF("bound");
  const jobject given = Env()->NewGlobalRef(text);
  Env()->DeleteLocalRef(text);
  EXPECT_EQ(bean.BindObject(given, "JAVABEAN://java.lang.String"), 0U);
  EXPECT_EQ(bean.GetObjectRef(), given);
  EXPECT_EQ(DescriptionOf(bean), "java.lang.String in CLASSPATH environment");
  EXPECT_EQ(Answer(bean, "toString", "java.lang.String"), "String bound");
  EXPECT_EQ(tracker.LiveGlobals(), 2);
  EXPECT_EQ(bean.Release(), status::kLastReferenceReleased);
  EXPECT_EQ(tracker.Left(), 0);

  auto& unbound = static_cast<BeanHandler&>(Make("beans.Point"));
  auto* const reference = static_cast<jobject>(unbound.GetObjectRef());
  unbound.UnbindObject();
  EXPECT_FALSE(unbound.IsValidObject());
  EXPECT_EQ(Env()->GetObjectRefType(reference), JNIGlobalRefType);
  Env()->DeleteGlobalRef(reference);
}

TEST_F(BeanLifecycleTest, AReleasedListLeavesItsElementsValid) {
  Handler& bean = NewHandler();
  meta_object::type::Object* const value = new meta_object::type::Int(7);
  bean.Release(new std::list<meta_object::type::Object*>{value});
  WideString text;
  value->GetValueAsString(text);
  EXPECT_EQ(Utf8(text), "7");
  bean.Release(value);
  bean.Release(static_cast<std::list<WideString>*>(nullptr));
  bean.Release(static_cast<meta_object::type::Object*>(nullptr));
  bean.Release(static_cast<meta_object::info::MethodInfo*>(nullptr));
}

}  // namespace
}  // namespace quenlatrix::test

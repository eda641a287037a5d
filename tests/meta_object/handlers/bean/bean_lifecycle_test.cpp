#include <list>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/type/scalar_values.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"
#include "tests/support/patched_jni.h"

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
  struct Case {
    std::string identity;
    meta_object::HandlerStatus status;
  };
  const Case cases[] = {
      {"JAVABEAN://beans.Point", status::kSuccess},
      {"JAVABEAN://beans/Point", status::kSuccess},
      {"JAVABEAN://java.util.ArrayList", status::kSuccess},
      {"JAVABEAN://beans.ThrowingMethods$CheckedException", status::kObjectNotMade},
      {"JAVABEAN://beans.NoDefaultConstructor", status::kObjectNotMade},
      {"JAVABEAN://beans.ThrowingConstructor", status::kObjectNotMade},
      {"JAVABEAN://beans.ThrowingInitializer", status::kObjectNotMade},
      {"JAVABEAN://beans.AbstractBean", status::kObjectNotMade},
      {"JAVABEAN://beans.BeanInterface", status::kObjectNotMade},
      {"JAVABEAN://beans.point", status::kObjectNotMade},
      {"JAVABEAN://no.such.Bean", status::kObjectNotMade},
      {"JAVABEAN://beans", status::kObjectNotMade},
      {"JAVABEAN://beans..Point", status::kObjectNotMade},
      {"JAVABEAN://.", status::kObjectNotMade},
      {"JAVABEAN://[I", status::kObjectNotMade},
      {"JAVABEAN://[Lbeans.Point;", status::kObjectNotMade},
      {"JAVABEAN://Lbeans.Point;", status::kObjectNotMade},
      {"JAVABEAN://int", status::kObjectNotMade},
      {"JAVABEAN://beans.Point;I", status::kObjectNotMade},
      {"JAVABEAN://" + std::string(70000, 'x'), status::kObjectNotMade},
      {"JAVABEAN://\xC3\x28", status::kObjectNotMade},
      {"JAVABEAN://beans.\xE2\x82\xAC", status::kObjectNotMade},
      {"JAVABEAN://%n%s\x01\x7F", status::kObjectNotMade},
      {"JAVABEAN://", status::kInvalidIdentity},
      {"beans.Point", status::kInvalidIdentity},
      {"://beans.Point", status::kInvalidIdentity},
      {"", status::kInvalidIdentity},
  };
  // The first round loads classes, and the VM's own native code works with the same table.
  for (const bool isCounted : {false, true}) {
    for (const Case& c : cases) {
      const std::string name = c.identity.substr(0, 60);
      Handler& bean = NewHandler();
      const JniReferenceTracker tracker(Env());
      EXPECT_EQ(bean.CreateObject(c.identity.c_str(), nullptr), c.status) << name;
      const bool isMade = c.status == status::kSuccess;
      EXPECT_EQ(bean.IsValidObject(), isMade) << name;
      EXPECT_EQ(bean.GetObjectRef() != nullptr, isMade) << name;
      EXPECT_EQ(Env()->ExceptionCheck(), JNI_FALSE) << name;
      const int globals = tracker.LiveGlobals();
      EXPECT_EQ(bean.Release(), status::kLastReferenceReleased) << name;
      if (isCounted) {
        EXPECT_EQ(globals, isMade ? 2 : 0) << name;
        EXPECT_EQ(tracker.LiveGlobals(), 0) << name;
        EXPECT_EQ(tracker.LiveLocals(), 0) << name;
      }
    }
  }
  EXPECT_EQ(NewHandler().CreateObject(nullptr, nullptr), status::kInvalidIdentity);
}

int classesFound = 0;

TEST_F(BeanLifecycleTest, ARefusedObjectNeverReachesTheMachine) {
  Make("beans.Point");
  host.log.clear();
  Handler& bean = NewHandler();
  PatchedJni patch(Env());
  static const JNINativeInterface_* const original = &patch.Original();
  patch.Table().FindClass = [](JNIEnv* env, const char* name) {
    ++classesFound;
    return original->FindClass(env, name);
  };
  host.isAllowed = false;
  EXPECT_EQ(bean.CreateObject("JAVABEAN://shop.cart.Widget", nullptr), status::kRefused);
  EXPECT_THAT(host.log, ElementsAre("may JAVABEAN shop.cart.Widget"));
  EXPECT_EQ(classesFound, 0);
  EXPECT_EQ(DescriptionOf(bean), " in CLASSPATH environment") << "no identity was taken";
  host.environment.checkSecurity = nullptr;
  EXPECT_EQ(bean.CreateObject("JAVABEAN://beans.Point", nullptr), 0U) << "nobody to ask";
  EXPECT_EQ(classesFound, 1);
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

TEST_F(BeanLifecycleTest, BindsAGlobalReferenceThatIsGivenOver) {
  auto& bean = static_cast<BeanHandler&>(NewHandler());
  EXPECT_EQ(bean.BindObject(nullptr, "JAVABEAN://beans.Point"), status::kNothingToBind);
  EXPECT_FALSE(bean.IsValidObject());
  const JniReferenceTracker tracker(Env());
  jstring const text = Env()->NewStringUTF("bound");
  jobject const given = Env()->NewGlobalRef(text);
  Env()->DeleteLocalRef(text);
  EXPECT_EQ(bean.BindObject(given, "JAVABEAN://java.lang.String"), 0U);
  EXPECT_EQ(bean.GetObjectRef(), given);
  EXPECT_EQ(DescriptionOf(bean), "java.lang.String in CLASSPATH environment");
  EXPECT_EQ(Call(bean, "toString", "java.lang.String", {}).Text(), "String bound");
  EXPECT_EQ(tracker.LiveGlobals(), 2);
  EXPECT_EQ(bean.Release(), status::kLastReferenceReleased);
  EXPECT_EQ(tracker.LiveGlobals(), 0);
  EXPECT_EQ(tracker.LiveLocals(), 0);
}

TEST_F(BeanLifecycleTest, UnbindForgetsWithoutDeleting) {
  auto& bean = static_cast<BeanHandler&>(Make("beans.Point"));
  auto* const reference = static_cast<jobject>(bean.GetObjectRef());
  bean.UnbindObject();
  EXPECT_FALSE(bean.IsValidObject());
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

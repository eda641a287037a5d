#include "host/bean_object.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include "host/host.h"
#include "host/utf8.h"
#include "meta_object/type/array.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::host {
namespace {

namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using meta_object::TypeDesc;
using test::TestVm;
using testing::HasSubstr;

std::string ValueOf(const type::Object& value) {
  WideString text;
  value.GetValueAsString(text);
  return ToUtf8(text);
}

class BeanObjectTest : public testing::Test {
 protected:
  static std::unique_ptr<Host> Start() {
    Host::Options options;
    options.pluginFile = PLUGIN_FILE;
    options.javaHome = TestVm::JavaHome();
    options.classPath = TestVm::Jar("test_beans.jar");
    options.javaOptions = {"-Xcheck:jni"};
    options.deny = {"java.util.Arr*"};
    std::string why;
    std::unique_ptr<Host> started = Host::Start(options, why);
    EXPECT_NE(started, nullptr) << why;
    return started;
  }

  BeanObject Make(const std::string& className) {
    Host::Creation creation = host->Create(className);
    EXPECT_TRUE(creation.object.has_value()) << creation.text;
    return std::move(*creation.object);
  }

  // Calls the only method of that name.
  static CallOutcome Call(BeanObject& object, const std::string& name,
                          std::vector<ValuePtr>& parameters) {
    for (const MethodDescription& method : *object.Methods()) {
      if (ToUtf8(method.name) == name) {
        return object.Call(method, parameters);
      }
    }
    ADD_FAILURE() << "no method " << name;
    return {};
  }

  BeanObject CallForObject(BeanObject& object, const std::string& name) {
    std::vector<ValuePtr> none;
    const CallOutcome outcome = Call(object, name, none);
    EXPECT_EQ(outcome.status, 0U) << ToUtf8(outcome.failureText);
    std::optional<BeanObject> result = BeanObject::FromValue(*host, *outcome.result);
    EXPECT_TRUE(result.has_value());
    return std::move(*result);
  }

  std::unique_ptr<Host> host = Start();
};

TEST_F(BeanObjectTest, ACreationThatFailsSaysWhy) {
  const std::tuple<const char*, std::uint32_t, const char*> cases[] = {
      {"no.such.Bean", status::kObjectNotMade, "isn't on the class path"},
      {"beans.ThrowingConstructor", status::kObjectNotMade, "constructor threw"},
      {"java/util/ArrayList", status::kRefused, "--deny java.util.Arr* matches"},
      {"beans.Point?x=1", status::kInvalidIdentity, "is no class name"},
      {"", status::kInvalidIdentity, "is no class name"},
  };
  for (const auto& [className, status, text] : cases) {
    const Host::Creation creation = host->Create(className);
    EXPECT_FALSE(creation.object.has_value()) << className;
    EXPECT_EQ(creation.status, status) << className;
    EXPECT_THAT(creation.text, HasSubstr(text)) << className;
  }
  EXPECT_EQ(host->Collect(), 3U) << "the handlers of the failed creations";
}

TEST_F(BeanObjectTest, AReturnedObjectKnowsItsRunTimeClassAndCanBeDescribed) {
  BeanObject returner = Make("beans.ObjectReturner");
  BeanObject point = CallForObject(returner, "pointAsObject");
  EXPECT_EQ(point.ClassName(), "beans.Point");
  EXPECT_EQ(ToUtf8(point.ToText().value()), "(7, 8)");
  EXPECT_EQ(point.Describe().attributeMethods, 4);
  EXPECT_EQ(CallForObject(returner, "arrayAsObject").ClassName(), "[I");
  BeanObject silent = Make("beans.ThrowingToString");
  EXPECT_EQ(silent.ToText(), std::nullopt);

  EXPECT_EQ(point.Release(), status::kLastReferenceReleased);
  EXPECT_TRUE(point.IsEmpty());
}

TEST_F(BeanObjectTest, ATypeIsNearerThanItsOwnSupertypes) {
  BeanObject strings = Make("beans.ThreeStrings");
  const Supertypes* found = strings.SupertypesOfClass();
  ASSERT_NE(found, nullptr);
  const Supertypes& distance = *found;
  EXPECT_EQ(distance.at("beans.ThreeStrings"), 0);
  EXPECT_EQ(distance.at("java.util.ArrayList"), 1);
  EXPECT_LT(distance.at("java.util.AbstractList"), distance.at("java.util.AbstractCollection"));
  // ArrayList implements List itself and by its superclass.
  EXPECT_LT(distance.at("java.util.List"), distance.at("java.util.Collection"));
  for (const auto& [name, steps] : distance) {
    EXPECT_TRUE(name == "java.lang.Object" || steps < distance.at("java.lang.Object")) << name;
  }
  EXPECT_TRUE(strings.IsInstanceOf("java.lang.Iterable"));
  EXPECT_FALSE(strings.IsInstanceOf("java.util.Map"));
}

TEST_F(BeanObjectTest, AnArrayOfObjectsKeepsNoReferencesBehindAfterACall) {
  BeanObject changer = Make("beans.ObjectTaker");
  BeanObject point = Make("beans.Point");
  std::vector<ValuePtr> parameters;
  auto* array = new type::Array;
  parameters.emplace_back(array);
  TypeDesc desc(TypeDesc::Key::Object, TypeDesc::RefType::ByValue, true);
  desc.typeName.assign("beans.Point");
  desc.arrayInfo->AddDimensionInfo(0, 2);
  ASSERT_TRUE(array->Create(desc));
  array->SetDesc(WideString("beans.Point"));
  for (unsigned int i = 0; i < 2; ++i) {
    auto argument = std::make_unique<ObjectArgument>(point.GetHandler());
    argument->GetMetaItemType().typeName.assign("beans.Point");
    array->SetItemAt(argument.release(), i);
  }
  EXPECT_EQ(point.GetHandler()->GetReferenceCount(), 3U);
  const CallOutcome outcome = Call(changer, "takesPoints", parameters);
  EXPECT_EQ(outcome.status, 0U) << ToUtf8(outcome.failureText);
  EXPECT_EQ(ValueOf(*outcome.result), "0");
  EXPECT_NE(array->GetItemAt(0), nullptr) << "not filled again";
  const std::size_t before = host->GetCollector().GetCount();
  parameters.clear();
  EXPECT_EQ(point.GetHandler()->GetReferenceCount(), 1U);
  EXPECT_EQ(host->Collect(), 2U) << "the elements that came back";
  EXPECT_EQ(host->GetCollector().GetCount(), before - 2);
}

// The process must then end by itself, too: the timer's thread is no daemon and waits for ever.
TEST_F(BeanObjectTest, TheHostEndsWithBeansStillHeldAndJavaThreadsRunning) {
  Host::Creation timer = host->Create("java.util.Timer");
  ASSERT_TRUE(timer.object.has_value()) << timer.text;
  timer.object->GetHandler()->AddRef();
  timer.object.reset();
  EXPECT_EQ(host->GetCollector().GetCount(), 2U);
  host.reset();
  EXPECT_EQ(dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

TEST_F(BeanObjectTest, EveryMethodWithoutParametersThatIsListedCanBeCalled) {
  int called = 0;
  for (const char* name :
       {"java.lang.StringBuilder", "java.util.LinkedList", "java.util.TreeMap",
        "java.util.GregorianCalendar", "java.text.SimpleDateFormat", "java.util.BitSet",
        "java.util.Properties", "java.util.concurrent.ConcurrentHashMap"}) {
    for (const MethodDescription& method : *Make(name).Methods()) {
      if (!method.parameters.empty()) continue;
      ++called;
      std::vector<ValuePtr> none;
      const CallOutcome outcome = Make(name).Call(method, none);
      if (outcome.status != status::kSuccess) {
        EXPECT_THAT(ToUtf8(outcome.failureText), testing::StartsWith("Java Exception: "))
            << name << " " << ToUtf8(method.id);
      }
    }
  }
  EXPECT_GE(called, 100);
}

}  // namespace
}  // namespace quenlatrix::host

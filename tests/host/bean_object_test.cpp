#include "host/bean_object.h"

#include <dlfcn.h>

#include "tests/host/test_host.h"

namespace quenlatrix::host {
namespace {

TEST(BeanObject, OfATypeIsNearerToItThanToTheTypesOwnSupertypes) {
  const std::unique_ptr<Host> host = StartHost(PLUGIN_FILE);
  Host::Creation strings = host->Create("beans.ThreeStrings");
  ASSERT_TRUE(strings.object.has_value()) << strings.text;
  const auto found = strings.object->SupertypesOfClass();
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
  EXPECT_TRUE(strings.object->IsInstanceOf("java.lang.Iterable"));
  EXPECT_FALSE(strings.object->IsInstanceOf("java.util.Map"));
}

// The process must then end by itself, too: the timer's thread is no daemon and waits for ever.
TEST(BeanObject, CanBeHeldStillAndItsThreadsRunningWhenTheHostEnds) {
  test::TestVm::LeaveRunning();
  std::unique_ptr<Host> host = StartHost(PLUGIN_FILE);
  Host::Creation timer = host->Create("java.util.Timer");
  ASSERT_TRUE(timer.object.has_value()) << timer.text;
  timer.object->GetHandler()->AddRef();
  timer.object.reset();
  EXPECT_EQ(host->GetCollector().GetCount(), 2U);
  host.reset();
  EXPECT_EQ(dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

TEST(BeanObject, HasNoTextWhenItsToStringThrows) {
  const std::unique_ptr<Host> host = StartHost(PLUGIN_FILE);
  Host::Creation silent = host->Create("beans.ThrowingToString");
  ASSERT_TRUE(silent.object.has_value()) << silent.text;
  EXPECT_EQ(silent.object->ToText(), std::nullopt);
}

}  // namespace
}  // namespace quenlatrix::host

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "meta_object/handlers/bean/class_path.h"
#include "meta_object/handlers/bean/jar_path_set.h"
#include "tests/support/jni_reference_tracker.h"
#include "tests/support/patched_jni.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::test {
namespace {

namespace fs = std::filesystem;
using meta_object::handlers::bean::GetBeanNames;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

struct Found {
  int count = 0;
  std::vector<std::string> names;
};

// Appends to what is there. Fails the test when references or an exception stay behind.
Found FindBeans(const std::string& path) {
  JNIEnv* const env = TestVm::Env();
  const JniReferenceTracker tracker(env);
  Found found;
  std::string first = "first";
  std::list<char*> names{first.data()};
  found.count = GetBeanNames(env, path.c_str(), names);
  EXPECT_EQ(names.front(), first.data());
  names.pop_front();
  for (char* const name : names) {
    found.names.emplace_back(std::unique_ptr<char[]>(name).get());
  }
  EXPECT_TRUE(std::ranges::is_sorted(found.names));
  EXPECT_EQ(tracker.Left(), 0) << path;
  return found;
}

TEST(Discovery, AJarsBeansAreItsConcretePublicClassesThatCanBeMade) {
  ASSERT_TRUE(fs::exists(COMMONS_LANG_JAR))
      << "expected the jar of Apache Commons Lang, found none (" << COMMONS_LANG_JAR
      << "): install the package libcommons-lang3-java, then configure again";
  const std::tuple<std::string, std::vector<std::string>, std::vector<std::string>> cases[] = {
      {TestVm::Jar("test_beans.jar"),
       {"I", "beans.Point", "beans.ThreeStrings"},
       {"beans.AbstractBean", "beans.BeanInterface", "beans.HiddenBean",
        "beans.NoDefaultConstructor", "beans.PrivateConstructor"}},
      {COMMONS_LANG_JAR,
       {"org.apache.commons.lang3.mutable.MutableInt", "org.apache.commons.lang3.time.StopWatch"},
       {"org.apache.commons.lang3.tuple.Pair", "org.apache.commons.lang3.JavaVersion"}}};
  for (const auto& [jar, beans, others] : cases) {
    const Found found = FindBeans(jar);
    EXPECT_EQ(found.count, static_cast<int>(found.names.size()));
    EXPECT_THAT(found.names, IsSupersetOf(beans));
    for (const std::string& other : others) EXPECT_THAT(found.names, Not(Contains(other)));
  }
}

TEST(Discovery, ARegisteredNameStandsForItsJar) {
  std::string jar = TestVm::Jar("named_parameters.jar");
  std::string name = "beans.named";
  EXPECT_THAT(FindBeans(name).names, IsEmpty());
  addJarPath(jar, name);
  const Found beans = FindBeans(name);
  cleanJarPath();
  EXPECT_FALSE(beans.names.empty());
  EXPECT_EQ(beans.names, FindBeans(jar).names);
}

TEST(Discovery, WhatIsNoJarHasNoBeans) {
  std::string directory = (fs::temp_directory_path() / "discovery_test.XXXXXX").string();
  ASSERT_NE(mkdtemp(directory.data()), nullptr);
  std::ifstream file(TestVm::Jar("test_beans.jar"), std::ios::binary);
  const std::string good((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_GT(good.size(), 1000U);
  std::string noise = good;
  std::fill(noise.begin() + 30, noise.end() - 22, '\xFF');
  const std::pair<const char*, std::string> jars[] = {
      {"empty", ""},
      {"text", "no jar at all"},
      {"half", good.substr(0, good.size() / 2)},
      {"without its end", good.substr(0, good.size() - 1)},
      {"noise between good ends", noise},
      {"end record alone", good.substr(good.size() - 22)},
  };
  for (const auto& [name, bytes] : jars) {
    const std::string path = directory + "/" + name + ".jar";
    std::ofstream(path, std::ios::binary) << bytes;
    const Found beans = FindBeans(path);
    EXPECT_EQ(beans.count, 0) << name;
    EXPECT_THAT(beans.names, IsEmpty()) << name;
  }
  for (const std::string& path : {std::string(), directory, directory + "/none.jar"}) {
    EXPECT_EQ(FindBeans(path).count, 0) << path;
  }
  fs::remove_all(directory);
  std::list<char*> names;
  EXPECT_EQ(GetBeanNames(nullptr, "any.jar", names), 0);
  EXPECT_EQ(GetBeanNames(TestVm::Env(), nullptr, names), 0);
  EXPECT_THAT(names, IsEmpty());
}

TEST(Discovery, ANameThatIsLostEndsTheListAndCounts) {
  const FaultyJni faulty(TestVm::Env(), FaultyJni::Lose<&JNINativeInterface_::GetStringUTFChars>,
                         2);
  const Found beans = FindBeans(TestVm::Jar("test_beans.jar"));
  EXPECT_EQ(beans.count, 3);
  EXPECT_EQ(beans.names.size(), 2U);
}

}  // namespace
}  // namespace quenlatrix::test

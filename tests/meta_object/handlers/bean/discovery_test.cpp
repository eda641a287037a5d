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

// Fails the test when references or an exception stay behind.
Found FindBeans(const std::string& path) {
  JNIEnv* const env = TestVm::Env();
  const JniReferenceTracker tracker(env);
  Found found;
  std::list<char*> names;
  found.count = GetBeanNames(env, path.c_str(), names);
  for (char* const name : names) {
    found.names.emplace_back(std::unique_ptr<char[]>(name).get());
  }
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE) << path;
  EXPECT_EQ(tracker.LiveLocals() + tracker.LiveGlobals(), 0) << path;
  return found;
}

TEST(Discovery, AJarsBeansAreItsConcretePublicClassesThatCanBeMade) {
  const Found beans = FindBeans(TestVm::Jar("test_beans.jar"));
  EXPECT_EQ(beans.count, static_cast<int>(beans.names.size()));
  EXPECT_TRUE(std::ranges::is_sorted(beans.names));
  EXPECT_THAT(beans.names, IsSupersetOf({"I", "beans.Point", "beans.ThreeStrings"}));
  for (const char* const none : {"beans.AbstractBean", "beans.BeanInterface", "beans.HiddenBean",
                                 "beans.NoDefaultConstructor", "beans.PrivateConstructor"}) {
    EXPECT_THAT(beans.names, Not(Contains(none)));
  }
}

TEST(Discovery, ALibrarysBeansAreFoundAndCanBeMade) {
  const std::string jar = COMMONS_LANG_JAR;
  ASSERT_TRUE(fs::exists(jar)) << "expected the jar of Apache Commons Lang, found none: install "
                                  "the package libcommons-lang3-java, then configure again ("
                               << jar << ")";
  const Found beans = FindBeans(jar);
  EXPECT_EQ(beans.count, static_cast<int>(beans.names.size()));
  EXPECT_TRUE(std::ranges::is_sorted(beans.names));
  EXPECT_THAT(beans.names, IsSupersetOf({"org.apache.commons.lang3.mutable.MutableInt",
                                         "org.apache.commons.lang3.text.StrBuilder",
                                         "org.apache.commons.lang3.time.StopWatch"}));
  EXPECT_THAT(beans.names, Not(Contains("org.apache.commons.lang3.tuple.Pair"))) << "abstract";
  EXPECT_THAT(beans.names, Not(Contains("org.apache.commons.lang3.JavaVersion"))) << "an enum";
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

TEST(Discovery, FoundNamesAreAppendedBehindOthers) {
  std::string first = "first";
  std::list<char*> names{first.data()};
  const int count = GetBeanNames(TestVm::Env(), TestVm::Jar("named_parameters.jar").c_str(), names);
  EXPECT_EQ(static_cast<int>(names.size()), count + 1);
  EXPECT_EQ(names.front(), first.data());
  names.pop_front();
  for (char* const name : names) {
    delete[] name;
  }
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

const JNINativeInterface_* original = nullptr;
int callsUntilFault = -1;

TEST(Discovery, ANameThatIsLostEndsTheListAndCounts) {
  PatchedJni patch(TestVm::Env());
  original = &patch.Original();
  // Counts from the end of the search on, in which the VM's own native code works with the table.
  patch.Table().CallBooleanMethodV = [](JNIEnv* env, jobject object, jmethodID method,
                                        va_list arguments) {
    const jboolean answer = original->CallBooleanMethodV(env, object, method, arguments);
    callsUntilFault = 2;
    return answer;
  };
  patch.Table().GetStringUTFChars = [](JNIEnv* env, jstring text, jboolean* isCopy) -> const char* {
    if (callsUntilFault-- != 0) {
      return original->GetStringUTFChars(env, text, isCopy);
    }
    const jclass cls = original->FindClass(env, "java/lang/OutOfMemoryError");
    original->ThrowNew(env, cls, "patched");
    original->DeleteLocalRef(env, cls);
    return nullptr;
  };
  const Found beans = FindBeans(TestVm::Jar("test_beans.jar"));
  EXPECT_EQ(beans.count, 3);
  EXPECT_EQ(beans.names.size(), 2U);
}

// The class that the handler needs isn't what it should be.
TEST(Discovery, WithAnotherJavaSideNothingIsFound) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto findWith = [](const char* bridge) {
    TestVm::SetClassPath({TestVm::Jar(bridge)});
    const Found beans = FindBeans(TestVm::Jar("test_beans.jar"));
    std::fprintf(stderr, "found %d\n", beans.count + static_cast<int>(beans.names.size()));
    std::exit(testing::Test::HasFailure() ? 1 : 0);
  };
  EXPECT_EXIT(findWith("long_indexes_bridge.jar"), testing::ExitedWithCode(0), "found 0\n");
  EXPECT_EXIT(findWith("telling_bridge.jar"), testing::ExitedWithCode(0), "found 0\n");
}

}  // namespace
}  // namespace quenlatrix::test

#include <gmock/gmock.h>

#include <algorithm>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "meta_object/handlers/bean/class_path.h"
#include "meta_object/handlers/bean/jar_path_set.h"
#include "tests/support/files.h"
#include "tests/support/jni_reference_tracker.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::test {
namespace {

using meta_object::handlers::bean::GetBeanNames;
using testing::Contains;
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

TEST(Discovery, NamesAndCountsTheBeansOfAJar) {
  const Found found = FindBeans(TestVm::Jar("test_beans.jar"));
  EXPECT_EQ(found.count, static_cast<int>(found.names.size()));
  EXPECT_THAT(found.names, IsSupersetOf({"I", "beans.Point", "beans.ThreeStrings"}));
  EXPECT_THAT(found.names, Not(Contains("beans.AbstractBean")));
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
  const TemporaryDirectory directory;
  const std::string good = ReadFile(TestVm::Jar("test_beans.jar"));
  ASSERT_GT(good.size(), 1000U);
  std::string noise = good;
  std::fill(noise.begin() + 30, noise.end() - 22, '\xFF');
  const std::string endRecord = good.substr(good.size() - 22);
  for (const std::string& bytes :
       {std::string(), good.substr(0, good.size() / 2), noise, endRecord}) {
    const TemporaryFile file(bytes);
    const Found beans = FindBeans(file.path);
    EXPECT_EQ(beans.count, 0) << bytes.size();
    EXPECT_THAT(beans.names, IsEmpty()) << bytes.size();
  }
  for (const std::string& path :
       {std::string(), directory.path.string(), std::string("/none.jar")}) {
    EXPECT_EQ(FindBeans(path).count, 0) << path;
  }
  std::list<char*> names;
  EXPECT_EQ(GetBeanNames(nullptr, "any.jar", names), 0);
  EXPECT_EQ(GetBeanNames(TestVm::Env(), nullptr, names), 0);
  EXPECT_THAT(names, IsEmpty());
}

}  // namespace
}  // namespace quenlatrix::test

#include "meta_object/handlers/bean/jar_path_set.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>

namespace {

using quenlatrix::meta_object::handlers::bean::IsValidBeanName;
using testing::ElementsAre;
using testing::IsEmpty;

void Record(std::string jarPath, std::string beanName) { addJarPath(jarPath, beanName); }

class JarPathSetTest : public testing::Test {
 protected:
  ~JarPathSetTest() override { cleanJarPath(); }
};

TEST_F(JarPathSetTest, KeepsTheFirstJarOfABean) {
  Record("first.jar", "shop.Cart");
  Record("second.jar", "shop.Cart");
  Record("second.jar", "shop.cart");
  EXPECT_EQ(getJarPath("shop.Cart"), "first.jar");
  EXPECT_EQ(getJarPath("shop.cart"), "second.jar");
  EXPECT_EQ(getJarPath("shop"), "");
  cleanJarPath();
  EXPECT_EQ(getJarPath("shop.Cart"), "");
}

TEST_F(JarPathSetTest, GivesThePathsOfMarkedEntriesOnly) {
  for (int number = 0; const char* const jar : {"b.jar", "a.jar", "b.jar"}) {
    JarPathBean entry;
    entry.jarPath = jar;
    entry.beanName = std::to_string(++number);
    entry.marked = true;
    _JarPathBeanSet->Add(std::move(entry));
  }
  Record("recorded.jar", "R");
  EXPECT_THAT(*std::unique_ptr<std::set<std::string>>(getPaths()), ElementsAre("a.jar", "b.jar"));
  cleanJarPath();
  EXPECT_THAT(*std::unique_ptr<std::set<std::string>>(getPaths()), IsEmpty());
}

TEST_F(JarPathSetTest, KnowsABeanByTheClassOfItsIdentity) {
  Record("shop.jar", "shop.Cart");
  EXPECT_TRUE(IsValidBeanName("JAVABEAN://shop.Cart"));
  EXPECT_TRUE(IsValidBeanName("JAVABEAN://shop.Cart?Scope=user"));
  for (const char* const unknown : {"JAVABEAN://shop.Other", "shop.Cart", ""}) {
    EXPECT_FALSE(IsValidBeanName(unknown)) << unknown;
  }
  EXPECT_FALSE(IsValidBeanName(nullptr));
}

}  // namespace

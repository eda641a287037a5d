#include "host/introspection_cache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <string>
#include <thread>

#include "meta_object/identity.h"
#include "tests/support/workers.h"

namespace quenlatrix::host {
namespace {

namespace cache = meta_object::info::cache;
using meta_object::Identity;

const Identity kWidget("JAVABEAN://shop.cart.Widget");

void AddMethods(IntrospectionCache& tested, int count) {
  for (int i = 0; i < count; ++i) {
    cache::CachedMethodInfo method;
    method.name.assign(("method" + std::to_string(i)).c_str());
    EXPECT_TRUE(tested.Add(kWidget, method));
  }
}

// Eight threads open the class at once; the first `failures` that are told to fill it fail. How
// often a fill was asked for.
int OpenFromEightThreads(IntrospectionCache& tested, int failures) {
  constexpr int kThreads = 8;
  std::latch start(kThreads);
  std::atomic<int> fills = 0;
  RunInThreads(kThreads, [&](int) {
    start.arrive_and_wait();
    bool mustIntrospect = false;
    EXPECT_TRUE(tested.Open(kWidget, mustIntrospect));
    bool readable = true;
    if (mustIntrospect) {
      readable = ++fills > failures;
      EXPECT_EQ(tested.GetObject(kWidget), nullptr) << "readable before it is filled";
      AddMethods(tested, 1);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      AddMethods(tested, 2);
      EXPECT_TRUE(tested.Done(kWidget, readable));
    }
    if (readable) {
      const cache::CachedObjectInfo* record = tested.GetObject(kWidget);
      EXPECT_TRUE(record != nullptr && record->methods.size() == 3);
    }
    EXPECT_TRUE(tested.Close(kWidget));
  });
  return fills;
}

TEST(IntrospectionCache, AClassIsFilledOnceAndAFailedFillIsDroppedHoweverManyThreadsWait) {
  for (const int failures : {0, 3}) {
    IntrospectionCache tested;
    EXPECT_EQ(OpenFromEightThreads(tested, failures), failures + 1);
    EXPECT_EQ(OpenFromEightThreads(tested, 0), 0);
  }
}

TEST(IntrospectionCache, AThreadIsNotMadeToWaitForItselfNorForAnotherClass) {
  IntrospectionCache tested;
  const Identity other("JAVABEAN://shop.cart.Basket");
  bool mustIntrospect = false;
  ASSERT_TRUE(tested.Open(kWidget, mustIntrospect) && mustIntrospect);
  EXPECT_FALSE(tested.Open(kWidget, mustIntrospect));
  EXPECT_FALSE(mustIntrospect);
  tested.Close(kWidget);
  EXPECT_TRUE(tested.Open(other, mustIntrospect) && mustIntrospect);

  AddMethods(tested, 2);
  EXPECT_TRUE(tested.Done(kWidget, true)) << "the refused opening has ended the fill";
  ASSERT_NE(tested.GetObject(kWidget), nullptr);
  EXPECT_EQ(tested.GetObject(kWidget)->methods.size(), 2U);
  EXPECT_EQ(tested.GetObject(other), nullptr);
}

TEST(IntrospectionCache, OnlyTheThreadThatFillsAClassCanAddToItAndEndIt) {
  IntrospectionCache tested;
  const cache::CachedMethodInfo method;
  EXPECT_FALSE(tested.Add(kWidget, method)) << "never opened";
  EXPECT_FALSE(tested.Close(kWidget));
  bool mustIntrospect = false;
  ASSERT_TRUE(tested.Open(kWidget, mustIntrospect));
  AddMethods(tested, 2);
  EXPECT_TRUE(tested.Close(kWidget)) << "without a report, the fill has failed";
  EXPECT_EQ(tested.GetObject(kWidget), nullptr);
  ASSERT_TRUE(tested.Open(kWidget, mustIntrospect));
  EXPECT_TRUE(mustIntrospect);
  std::jthread([&] {
    EXPECT_FALSE(tested.Add(kWidget, method));
    EXPECT_FALSE(tested.Done(kWidget, true));
    EXPECT_TRUE(tested.Close(kWidget));
  }).join();
  EXPECT_TRUE(tested.Done(kWidget, true)) << "another thread's Close has ended the fill";
  EXPECT_TRUE(tested.GetObject(kWidget)->methods.empty()) << "entries of the failed fill";
}

TEST(IntrospectionCache, TellsAClassApartByTheHostsAttributeAloneAndForgetsIt) {
  IntrospectionCache tested;
  const std::string text = "JAVABEAN://shop.cart.Widget?HostClass=1";
  const Identity numbered(text.c_str());
  bool mustIntrospect = false;
  for (const Identity* identity : {&kWidget, &numbered}) {
    ASSERT_TRUE(tested.Open(*identity, mustIntrospect) && mustIntrospect) << identity->identity;
    ASSERT_TRUE(tested.Done(*identity, true));
  }
  EXPECT_TRUE(tested.Open(Identity("JAVABEAN://shop.cart.Widget?Scope=user"), mustIntrospect));
  EXPECT_FALSE(mustIntrospect);
  tested.Forget(text);
  EXPECT_EQ(tested.GetObject(numbered), nullptr);
  EXPECT_NE(tested.GetObject(kWidget), nullptr);
}

TEST(IntrospectionCache, AMethodIdentifierNamesAPosition) {
  IntrospectionCache tested;
  bool mustIntrospect = false;
  ASSERT_TRUE(tested.Open(kWidget, mustIntrospect));
  AddMethods(tested, 2);
  EXPECT_EQ(tested.GetMethod(kWidget, "Invoke:method0:0"), nullptr) << "not filled yet";
  ASSERT_TRUE(tested.Done(kWidget, true));
  for (const char* id : {"Invoke:method1:1", "a:b:1", "Get:x:1 and more"}) {
    const cache::CachedMethodInfo* found = tested.GetMethod(kWidget, id);
    ASSERT_NE(found, nullptr) << id;
    EXPECT_EQ(found->name.compare(L"method1", 0), 0) << id;
  }
  for (const char* id : {"Invoke:method1:2", "Invoke:method1:-1", "Invoke:method1:", "Invoke::1",
                         ":method1:1", "Invoke:1", "1", "", "a:b:99999999999999999999"}) {
    EXPECT_EQ(tested.GetMethod(kWidget, id), nullptr) << id;
  }
  EXPECT_EQ(tested.GetMethod(kWidget, nullptr), nullptr);
}

}  // namespace
}  // namespace quenlatrix::host

#include "meta_object/handler.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <thread>

#include "tests/meta_object/test_handler.h"
#include "tests/support/workers.h"

namespace quenlatrix::meta_object {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Handler, MakesTheRealObjectOnceAndReportsEveryCreation) {
  TestHandler test;
  Handler& handler = test;
  test.createStatus = handler_status::kRefused;
  EXPECT_EQ(handler.CreateObject("a", nullptr), 14U);
  EXPECT_FALSE(handler.IsValidObject());
  test.createStatus = 0;
  test.constructStatus = 77;
  EXPECT_EQ(handler.CreateObject("b", nullptr), 77U);
  EXPECT_TRUE(handler.IsValidObject());
  EXPECT_EQ(handler.CreateObject("c", nullptr), 77U);
  EXPECT_THAT(test.calls, ElementsAre("create a", "create b", "construct", "construct"));
}

TEST(Handler, LetsTheRealObjectGoWithTheLastReferenceAndLives) {
  TestHandler test;
  Handler& handler = test;
  handler.CreateObject("a", nullptr);
  test.calls.clear();
  EXPECT_EQ(handler.GetReferenceCount(), 1U);
  EXPECT_EQ(handler.AddRef(), 0U);
  EXPECT_EQ(handler.Release(), 0U);
  EXPECT_THAT(test.calls, IsEmpty());
  EXPECT_EQ(handler.Release(), 0xFFE0U);
  EXPECT_THAT(test.calls, ElementsAre("destruct 1", "release"));
  EXPECT_EQ(handler.GetReferenceCount(), 0U);
  EXPECT_FALSE(handler.IsValidObject());
  EXPECT_EQ(handler.Release(), 9U);
  EXPECT_EQ(test.calls.size(), 2U);
}

class NamedHandler : public TestHandler {
 public:
  const Identity& Named() NO_THREAD_SAFETY_ANALYSIS { return objectIdentity; }
};

TEST(Handler, TakesAnotherIdentityWholeAndLeavesAnEqualOneAlone) {
  NamedHandler test;
  const std::string text("A://of\0one", 10);
  Identity given;
  given.SetIdentity(text);
  test.SetObjectIdentity(given);
  EXPECT_EQ(test.Named().identity, text);
  const char* const place = test.Named().identity.data();
  test.SetObjectIdentity(given);
  test.SetObjectIdentity(test.Named());
  EXPECT_EQ(static_cast<const void*>(test.Named().identity.data()), place);
}

class ThrowingHandler : public TestHandler {
 public:
  HandlerStatus CreateObjectImp(const char*, context::CreateObjectContext*) override {
    throw std::runtime_error("create");
  }
  HandlerStatus OnDestructObject() override { throw std::runtime_error("destruct"); }
};

TEST(Handler, TurnsWhatAHookThrowsIntoAStatusAndStaysUsable) {
  ThrowingHandler test;
  EXPECT_EQ(test.CreateObject("a", nullptr), 3U);
  std::thread([&] { EXPECT_EQ(test.AddRef(), 0U); }).join();
  EXPECT_EQ(test.Release(), 0U);
  EXPECT_EQ(static_cast<Handler&>(test).Release(), 0xFFE0U);
}

class QuietHandler : public TestHandler {
 public:
  HandlerStatus OnConstructObject(const char*, context::CreateObjectContext*) override { return 0; }
};

TEST(Handler, MakesOneObjectAndCountsRightForManyThreads) {
  QuietHandler test;
  RunInThreads(4, [&test](int) {
    for (int round = 0; round < 1000; ++round) {
      test.CreateObject("a", nullptr);
      test.AddRef();
      test.Release();
    }
    test.AddRef();
  });
  EXPECT_THAT(test.calls, ElementsAre("create a"));
  EXPECT_EQ(test.GetReferenceCount(), 5U);
}

}  // namespace
}  // namespace quenlatrix::meta_object

#include "host/collector.h"

#include <gtest/gtest.h>

#include <future>
#include <set>
#include <thread>

#include "host/bean_script.h"
#include "tests/host/test_host.h"
#include "tests/meta_object/test_handler.h"

namespace quenlatrix::host {
namespace {

using meta_object::Handler;
using meta_object::TestHandler;

// Its object takes as long to make as the test wants.
class SlowHandler : public TestHandler {
 public:
  meta_object::HandlerStatus CreateObjectImp(const char* identity,
                                             meta_object::context::CreateObjectContext*) override {
    started.set_value();
    mayEnd.get_future().wait();
    return TestHandler::CreateObjectImp(identity, nullptr);
  }
  std::promise<void> started;
  std::promise<void> mayEnd;
};

class CollectorTest : public testing::Test {
 protected:
  TestHandler* Make() {
    auto* handler = new TestHandler;
    tested.Register(handler, this);
    return handler;
  }

  std::multiset<Handler*> freed;
  Collector tested{[this](Handler* handler, const void* owner) {
                     EXPECT_EQ(owner, this);
                     EXPECT_EQ(handler->GetReferenceCount(), 0U);
                     freed.insert(handler);
                     delete handler;
                   },
                   4};
};

TEST_F(CollectorTest, FreesTheHandlersWithoutReferencesAndAtTheEndAll) {
  TestHandler* shared = Make();
  TestHandler* single = Make();
  shared->AddRef();
  single->Handler::Release();
  EXPECT_EQ(tested.Collect(), 1U);
  EXPECT_EQ(freed, std::multiset<Handler*>{single});
  EXPECT_EQ(tested.Collect(), 0U);
  EXPECT_EQ(tested.GetCount(), 1U);
  Make()->Handler::Release();
  EXPECT_EQ(tested.ReleaseAll(), 1U) << "held still";
  EXPECT_EQ(freed.size(), 3U);
  EXPECT_EQ(tested.GetCount(), 0U);
}

TEST_F(CollectorTest, CollectsByItselfWhenThereAreManyHandlers) {
  for (int i = 0; i < 3; ++i) Make()->Handler::Release();
  EXPECT_TRUE(freed.empty());
  Make();
  EXPECT_EQ(freed.size(), 3U);
}

TEST_F(CollectorTest, DoesNotWaitForAHandlerThatWasWithdrawn) {
  auto* slow = new SlowHandler;
  tested.Register(slow, this);
  Make()->Handler::Release();
  ASSERT_TRUE(tested.Withdraw(slow));
  EXPECT_FALSE(tested.Withdraw(slow));
  std::jthread creator([slow] { slow->CreateObject("JAVABEAN://Slow", nullptr); });
  slow->started.get_future().wait();
  // Would wait for ever for the slow handler's lock.
  EXPECT_EQ(tested.Collect(), 1U);
  slow->mayEnd.set_value();
  creator.join();
  tested.Register(slow, this);
  EXPECT_EQ(tested.GetCount(), 1U);
}

// Or a script with many held beans would take the square of the time.
TEST(CollectorOfAHost, IsLeftAloneByStatementsWhileItsHandlersAreFew) {
  const std::unique_ptr<Host> host = StartHost(PLUGIN_FILE);
  HeldValues names;
  Session session(*host, names);
  const std::size_t before = host->GetCollector().GetCount();
  EXPECT_EQ(RunStatement("new x beans.Point", session).error, "");
  EXPECT_EQ(RunStatement("release x", session).error, "");
  EXPECT_EQ(host->GetCollector().GetCount(), before + 1);
}

}  // namespace
}  // namespace quenlatrix::host

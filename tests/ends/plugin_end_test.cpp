// Loading, starting and unloading, in every order that a host's fault or its plan may bring.
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <algorithm>
#include <barrier>
#include <cstddef>
#include <filesystem>
#include <thread>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/files.h"
#include "tests/support/workers.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
using meta_object::Environment;
using meta_object::Handler;
using testing::ElementsAre;

// What has been called so far.
struct Started {
  bool environment = false;
  bool handler = false;
  bool vm = false;
};

// Every kind of operation once, on a handler of its own.
void Use(const PluginImage& image, TestHost& host, const Started& started) {
  const std::size_t known = host.registered.size();
  host.log.clear();
  Handler* const bean = image.GetHandlerObject();
  ASSERT_NE(bean, nullptr);
  EXPECT_EQ(host.registered.size() - known, started.environment ? 1U : 0U);
  const bool isMade = started.vm;
  const bool isCached = started.vm && started.environment;
  EXPECT_EQ(bean->CreateObject("JAVABEAN://beans.ThreeStrings", nullptr),
            isMade ? status::kSuccess : status::kObjectNotMade);
  const std::string asked = started.handler ? "may JAVABEAN " : "may  ";
  EXPECT_EQ(host.log.empty() ? "" : host.log[0],
            started.environment ? asked + "beans.ThreeStrings" : "");
  EXPECT_EQ(bean->OpenIntrospect(nullptr),
            isCached ? status::kSuccess : status::kIntrospectionFailed);
  EXPECT_EQ(bean->CloseIntrospect(), 0U);
  EXPECT_EQ(bean->GetMethodCount() > 0, isCached);
  EXPECT_EQ(OpenCall(*bean, "size", "int", {}).Invoke().Text(), isMade ? "Int 3" : "refused");
  meta_object::context::CollectionContext walk;
  EXPECT_EQ(bean->OpenCollection(walk), isMade ? status::kSuccess : status::kNoCollection);
  EXPECT_EQ(bean->CloseCollection(walk), isMade ? status::kSuccess : status::kNoCollection);
  EXPECT_FALSE(bean->IsHandlerAvailable("JAVABEAN://beans.ThreeStrings"));
  EXPECT_EQ(bean->Release(), status::kLastReferenceReleased);
  image.FreeHandlerObject(bean);
}

TEST(PluginEnd, EveryOrderOfTheEntryPointsIsAnswered) {
  std::string order = "ceiiv";
  do {
    SCOPED_TRACE(order);
    TestHost host;
    const PluginImage image;
    Started started;
    Use(image, host, started);
    for (const char step : order) {
      if (step == 'e') {
        image.SetEnvironment(&host.environment);
        started.environment = true;
      } else if (step == 'v') {
        image.SetJavaVM(TestVm::Get());
        started.vm = true;
      } else if (step == 'i') {
        const bool isTaken = started.environment && !started.vm;
        EXPECT_EQ(image.InitHandler(image.handle), isTaken);
        started.handler |= isTaken;
      } else {
        EXPECT_TRUE(image.Get<bool()>("CleanUpHandler")());
        EXPECT_EQ(image.Get<int()>("ProcessIdle")(), 1);
      }
      Use(image, host, started);
    }
  } while (std::ranges::next_permutation(order).found);
}

TEST(PluginEnd, ThreadsThatUsedItOutliveItAndFindANewOneFresh) {
  TestVm::LeaveRunning();  // which still counts the threads that end attached
  constexpr int kThreads = 8;
  constexpr int kImages = 3;
  TestHost host;
  // Threads that use it beside each other make handlers.
  host.environment.gcRegHandlerObject = nullptr;
  host.environment.checkSecurity = nullptr;
  std::unique_ptr<PluginImage> image;
  std::barrier phase(kThreads + 1);
  std::jthread owner([&] {
    for (int i = 0; i < kImages; ++i) {
      image = std::make_unique<PluginImage>();
      EXPECT_EQ(*image->Get<Environment*>("_pEnvironment"), nullptr);
      EXPECT_EQ(image->GetHandlerInfo()->GetHandlerName(), nullptr);
      image->Start(host);
      phase.arrive_and_wait();
      phase.arrive_and_wait();
      image.reset();
      EXPECT_FALSE(PluginImage::IsLoaded());
    }
    phase.arrive_and_wait();
  });
  RunInThreads(kThreads, [&](int number) {
    for (int i = 0; i < kImages; ++i) {
      phase.arrive_and_wait();
      Handler* const bean = image->GetHandlerObject();
      EXPECT_EQ(bean->CreateObject("JAVABEAN://beans.Point", nullptr), 0U);
      void* env = nullptr;
      EXPECT_EQ(TestVm::Get()->GetEnv(&env, JNI_VERSION_1_8), JNI_EDETACHED);
      // An attach that is never undone: the next image knows nothing of it.
      if (number % 2 == 0) bean->OpenIntrospect("none");
      EXPECT_EQ(bean->Release(), status::kLastReferenceReleased);
      image->FreeHandlerObject(bean);
      phase.arrive_and_wait();
    }
    phase.arrive_and_wait();
  });
}

// A process has 1024 thread-specific keys, of which each load takes one.
TEST(PluginEnd, UnloadingGivesBackWhatLoadingTook) {
  for (int i = 0; i < 1100; ++i) const PluginImage image;
  TestHost host;
  const PluginImage image;
  image.Start(host);
  Use(image, host, {true, true, true});
}

// The calling thread opens nothing for reading and writing any more, as where devices are missing.
bool LoseDevices() {
  sock_filter steps[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
      BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_RDWR, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOENT),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program = {std::size(steps), steps};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0 &&
         open("/dev/zero", O_RDWR | O_CLOEXEC) == -1;
}

TEST(PluginEnd, WithoutDevicesItLoadsAndWorks) {
  TestHost host;
  std::unique_ptr<PluginImage> image;
  RunInThreads(1, [&image](int) {
    ASSERT_TRUE(LoseDevices());
    image = std::make_unique<PluginImage>();
  });
  ASSERT_NE(image, nullptr);
  image->Start(host);
  Use(*image, host, {true, true, true});
}

TEST(PluginEnd, TwoInOneProcessKeepTheirStatesApart) {
  const TemporaryDirectory directory;
  const std::string file = directory.path / "other_handler.so";
  std::filesystem::copy_file(PLUGIN_FILE, file);
  TestHost hosts[2];
  auto one = std::make_unique<PluginImage>();
  const PluginImage other(file.c_str());
  one->Start(hosts[0]);
  other.Start(hosts[1]);
  EXPECT_FALSE(one->InitHandler(other.handle));
  EXPECT_STREQ(one->GetHandlerInfo()->GetServerPath(), PLUGIN_FILE);
  EXPECT_EQ(other.GetHandlerInfo()->GetServerPath(), file);

  Handler* const point = one->GetHandlerObject();
  Handler* const taker = other.GetHandlerObject();
  EXPECT_THAT(hosts[0].registered, ElementsAre(point));
  EXPECT_THAT(hosts[1].registered, ElementsAre(taker));
  EXPECT_EQ(point->CreateObject("JAVABEAN://beans.Point", nullptr), 0U);
  EXPECT_EQ(taker->CreateObject("JAVABEAN://beans.ObjectTaker", nullptr), 0U);
  const Values foreign = ValuesOf(HoldObject(*point, "beans.Point"));
  EXPECT_EQ(OpenCall(*taker, "takesPoint", "int", foreign).Invoke().Text(), "refused");
  foreign[0]->ReleaseItem();
  EXPECT_EQ(point->Release(), status::kLastReferenceReleased);
  one->FreeHandlerObject(point);
  one.reset();
  EXPECT_FALSE(PluginImage::IsLoaded());
  Use(other, hosts[1], {true, true, true});
  EXPECT_EQ(taker->Release(), status::kLastReferenceReleased);
  other.FreeHandlerObject(taker);
}

}  // namespace
}  // namespace quenlatrix::test

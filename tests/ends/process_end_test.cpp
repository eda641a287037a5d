// A server's process may end at any moment, whatever its threads are doing in the plug-in.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/files.h"
#include "tests/support/workers.h"

namespace quenlatrix::test {
namespace {

using meta_object::Handler;

constexpr int kStatus = 7;

struct End {
  const char* name;
  int status;
  void (*run)();
};

void ExitInJava() {
  JNIEnv* const env = TestVm::Env();
  const jclass system = env->FindClass("java/lang/System");
  env->CallStaticVoidMethod(system, env->GetStaticMethodID(system, "exit", "(I)V"), kStatus);
}

const End kEnds[] = {
    {"exit, as at the end of main", kStatus, [] { std::exit(kStatus); }},
    {"exit on another thread", kStatus, [] { std::thread([] { std::exit(kStatus); }).join(); }},
    {"System.exit", kStatus, ExitInJava},
    {"SIGTERM", 128 + SIGTERM,
     [] {
       kill(getpid(), SIGTERM);
       while (true) pause();
     }},
    {"quick_exit", kStatus, [] { std::quick_exit(kStatus); }},
    {"_exit", kStatus, [] { _exit(kStatus); }},
};

// What a process has until its very end: never destroyed, as its threads are never joined.
struct Server {
  TestHost host;
  PluginImage plugin;

  Server() {
    // The host's lists are for one thread.
    host.environment.gcRegHandlerObject = nullptr;
    host.environment.checkSecurity = [](meta_object::info::SecurityInfo*) { return true; };
    plugin.Start(host);
  }
};

void CallAndWalk(Server& server) {
  const Values boxed = ValuesOf({{"java.lang.Integer", L"5"}});
  const Values texts = ValuesOf({{"java.lang.String[]", L"a,b"}});
  while (true) {
    Handler* const list = server.plugin.GetHandlerObject();
    Handler* const echo = server.plugin.GetHandlerObject();
    list->CreateObject("JAVABEAN://beans.ThreeStrings", nullptr);
    echo->CreateObject("JAVABEAN://beans.ScalarEcho", nullptr);
    echo->IsHandlerAvailable("JAVABEAN://beans.ScalarEcho");
    OpenCall(*echo, "echo", "java.lang.Integer", boxed).Invoke();
    OpenCall(*echo, "none", "void", texts).Invoke();
    const Values held = ValuesOf(HoldObject(*echo, "java.lang.Object"));
    OpenCall(*list, "contains", "boolean", held).Invoke();
    held[0]->ReleaseItem();
    meta_object::context::CollectionContext walk;
    std::list<meta_object::type::Object*> items;
    list->OpenCollection(walk);
    list->GetNextItems(walk, 3, items, nullptr);
    for (meta_object::type::Object* item : items) list->Release(item);
    list->CloseCollection(walk);
    for (Handler* handler : {list, echo}) {
      handler->Release();
      server.plugin.FreeHandlerObject(handler);
    }
  }
}

void WaitInJava(Server& server) {
  Handler* const queue = server.plugin.GetHandlerObject();
  queue->CreateObject("JAVABEAN://java.util.concurrent.LinkedBlockingQueue", nullptr);
  OpenCall(*queue, "take", "java.lang.Object", {}).Invoke();
}

void HoldAnOpenCall(Server& server) {
  Handler* const bean = server.plugin.GetHandlerObject();
  bean->CreateObject("JAVABEAN://beans.Point", nullptr);
  meta_object::context::MethodCallContext open;
  bean->OpenMethodCall(open, WideString(L"Invoke:getX:0"));
  while (true) pause();
}

// The number chooses how the process ends and what runs then: one bit each.
bool WorkAndEnd(int number) {
  // Seven: the first few numbers already differ in every bit.
  const std::size_t running = static_cast<std::size_t>(number) / std::size(kEnds) * 7;
  TestVm::Get();
  // Runs after the destructors of the plug-in's statics, whose absence the threads would notice.
  std::atexit([] { usleep(20000); });
  auto& server = *new Server;
  for (std::size_t i = 0; i <= running % 4; ++i) {
    std::thread([&server] { CallAndWalk(server); }).detach();
  }
  if ((running & 4U) != 0) std::thread([&server] { WaitInJava(server); }).detach();
  if ((running & 8U) != 0) std::thread([&server] { HoldAnOpenCall(server); }).detach();
  Handler* const held = server.plugin.GetHandlerObject();
  EXPECT_EQ(held->CreateObject("JAVABEAN://beans.Point", nullptr), 0U);
  EXPECT_EQ(held->OpenIntrospect(nullptr), 0U);  // and so attached
  if ((running & 16U) != 0) {
    held->CloseIntrospect();
    held->Release();
    server.plugin.FreeHandlerObject(held);
  }
  usleep(static_cast<unsigned int>(number) % 7 * 3000);
  kEnds[static_cast<unsigned int>(number) % std::size(kEnds)].run();
  return false;
}

pid_t StartEnding(int number, const TemporaryFile& output) {
  return StartProcess([number, &output] {
    alarm(120);  // what hangs ends with another status
    const int out = open(output.path.c_str(), O_WRONLY | O_APPEND);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    return WorkAndEnd(number);
  });
}

TEST(ProcessEnd, NeitherCrashesNorHangsNorComplainsWhateverStillRuns) {
  TestVm::AddOption("-XX:+IgnoreUnrecognizedVMOptions");
  TestVm::AddOption("-XX:+ErrorFileToStdout");
  TestVm::AddOption("-XX:-CreateCoredumpOnCrash");
  // Or the VM's watch over its signal handlers may compare them with what is destroyed already.
  TestVm::AddOption("-XX:+AllowUserSignalHandlers");
  const char* const given = std::getenv("QUENLATRIX_PROCESS_ENDS");
  const int count = given == nullptr ? 30 : std::atoi(given);
  std::fflush(nullptr);
  for (int first = 0; first < count; first += 2) {
    const TemporaryFile outputs[2];
    const pid_t processes[] = {StartEnding(first, outputs[0]), StartEnding(first + 1, outputs[1])};
    for (int i = 0; i < 2; ++i) {
      const End& end = kEnds[static_cast<std::size_t>(first + i) % std::size(kEnds)];
      SCOPED_TRACE("process " + std::to_string(first + i) + ", " + end.name);
      int status = -1;
      EXPECT_EQ(waitpid(processes[i], &status, 0), processes[i]);
      EXPECT_EQ(status, W_EXITCODE(end.status, 0));
      EXPECT_EQ(outputs[i].Read(), "");
    }
  }
}

}  // namespace
}  // namespace quenlatrix::test

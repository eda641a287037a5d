// The shell as a person meets it: at a terminal of its own.
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include "host/statement_completion.h"
#include "tests/support/files.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::host {
namespace {

using test::TestVm;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kPrompt = "bean> ";
constexpr const char* kInterrupt = "\x03";

// Types at a pseudo-terminal with the program behind it, and reads what appears there.
class ShellAtTerminal : public testing::Test {
 protected:
  void SetUp() override {
    const std::string classPath = TestVm::Jar("test_beans.jar") + ":" + EXAMPLES_JAR;
    winsize size = {24, 200, 0, 0};
    child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
      setenv("XDG_STATE_HOME", state.c_str(), 1);
      setenv("TERM", "xterm", 1);
      unsetenv("NO_COLOR");
      if (!TestVm::JavaHome().empty()) setenv("JAVA_HOME", TestVm::JavaHome().c_str(), 1);
      execl(BEANHOST_PROGRAM, BEANHOST_PROGRAM, "--class-path", classPath.c_str(), "--java-option",
            "-Xcheck:jni", "shell", nullptr);
      _exit(127);
    }
    Expect(kPrompt);
  }
  void TearDown() override {
    EXPECT_THAT(seen, AllOf(Not(HasSubstr("WARNING in native method")),
                            Not(HasSubstr("FATAL ERROR in native method"))));
  }

  void Type(const std::string& keys) const {
    ASSERT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // Waits until the text appears behind what was expected before.
  void Expect(const std::string& text) {
    if (HasFatalFailure()) return;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    std::size_t found = std::string::npos;
    while ((found = seen.find(text, next)) == std::string::npos) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline) << text << " in " << seen.substr(next);
      ASSERT_TRUE(ReadMore()) << text << " in " << seen.substr(next);
    }
    next = found + text.size();
  }

  // A statement, what it answers, and the next prompt.
  void Say(const std::string& keys, const std::string& answer) {
    Type(keys + "\r");
    Expect("\r\n");
    Expect(answer);
    Expect(kPrompt);
  }

  // The status that the program ends with.
  int WaitForEnd() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (ReadMore()) {
      if (std::chrono::steady_clock::now() < deadline) continue;
      ADD_FAILURE() << "goes on after " << seen.substr(next);
      kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  const TemporaryDirectory own;
  const std::filesystem::path& state = own.path;
  std::string seen;

 private:
  // False at the end.
  bool ReadMore() {
    pollfd ready = {terminal, POLLIN, 0};
    if (poll(&ready, 1, 1000) == 0) return true;
    char bytes[4096];
    const ssize_t count = read(terminal, bytes, sizeof bytes);
    if (count > 0) seen.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
  }

  int terminal = -1;
  pid_t child = -1;
  std::size_t next = 0;
};

TEST_F(ShellAtTerminal, CompletesShowsErrorsInColourAndGoesOn) {
  Say("ne\tg examples.Gr\t", "");
  Say("call g setN\tÄda", "");
  Say("call g gree\t\t", "greetAll");
  Say("", "Hello, Äda!");
  Say("des\t g", "\033[1mPROPERTY\033[0m  \033[1mTYPE\033[0m");
  Say("call g greet x",
      "\033[31mbeanhost:\033[0m examples.Greeter.greet can't be called like this; greet(): takes 0 "
      "arguments, found 1\r\n  call g greet x\r\n               ^\r\n");
  Type("call g nonsense");
  Type(kInterrupt);
  Expect("^C");
  Expect(kPrompt);
  // The line before in the history is the refused one.
  Say("\033[A\x7f\x7f", "Hello, Äda!");
  Type("\x04");
  EXPECT_EQ(WaitForEnd(), 0);

  const std::filesystem::path history = state / "beanhost" / "history";
  struct stat file = {};
  ASSERT_EQ(stat(history.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777, 0600U);
  EXPECT_THAT(LinesOf(ReadFile(history)).at(0), HasSubstr("new g examples.Greeter"));
}

TEST_F(ShellAtTerminal, StopsWaitingForACallAndKeepsWhatItUses) {
  Say("new q java.util.concurrent.SynchronousQueue", "");
  Type("let x = call q take\r");
  Expect("Ctrl-C stops waiting (");
  Type(kInterrupt);
  Expect("no longer waiting");
  Expect("stays held: q");
  Expect(kPrompt);
  Say("release q", "\"q\" stays held, because a statement that still goes on uses it");
  Say("let s = call q toString", "s = []");
  Say("call q put 5", "");
  Say("release x", "nothing is held under the name \"x\"");
  for (int tries = 0; tries < 100 && seen.find("this has ended now") == std::string::npos;
       ++tries) {
    usleep(100000);
    Say("", "");
  }
  EXPECT_THAT(seen, HasSubstr("this has ended now: let x = call q take"));
  Say("new p java.util.concurrent.SynchronousQueue", "");
  Say("release q", "");
  Type("call p take\r");
  Expect("Ctrl-C stops waiting (");
  Type(kInterrupt);
  Expect(kPrompt);
  Type("quit\r");
  EXPECT_EQ(WaitForEnd(), 0);
  EXPECT_THAT(seen, HasSubstr("statements that still go on are cut off: 1"));
}

TEST(StatementCompletion, FollowsTheFormOfTheStatement) {
  const std::vector<std::string> forms = {"new NAME CLASS", "let NAME = call NAME METHOD [ARG]...",
                                          "walk NAME [skip N]", "describe NAME|CLASS"};
  CompletionSource source;
  source.heldNames = [] { return std::vector<std::string>{"list", "lot", "pear"}; };
  source.classNames = [] { return std::vector<std::string>{"a.List", "a.Map", "lib.X"}; };
  source.methodsOf = [](const std::string& name) {
    return name == "list" ? std::vector<std::string>{"add(int, long)", "add(long)", "all()"}
                          : std::vector<std::string>();
  };
  struct Case {
    const char* line;
    std::size_t from;
    std::vector<std::string> candidates;
  };
  const Case cases[] = {
      {"new x a.", 6, {"a.List", "a.Map"}},
      {"walk l", 5, {"list", "lot"}},
      {"walk list s", 10, {"skip"}},
      {"let x ", 6, {"="}},
      {"let x=call list a", 16, {"add", "all"}},
      {"let x = call list add(int, l", 18, {"add(int, long)"}},
      {"let x = call pear a", 18, {}},
      {"let x = call list add(int, long) 5 @l", 35, {"@list", "@lot"}},
      {"let x = call list add \"@l", 0, {}},
      {"describe l", 9, {"lib.X", "list", "lot"}},
  };
  for (const Case& each : cases) {
    const Completion completion = CompleteStatement(each.line, forms, source);
    EXPECT_EQ(completion.candidates, each.candidates) << each.line;
    if (completion.candidates.empty()) continue;
    EXPECT_EQ(completion.from, each.from) << each.line;
  }
}

}  // namespace
}  // namespace quenlatrix::host

#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::host {

using nlohmann::json;
using Words = std::vector<std::string>;

struct ProgramRun {
  int status = -1;
  std::string out;
  std::string err;
};

// The real program in a directory of its own, which holds its standard streams.
class BeanhostCli : public testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(directory / "in");
    unsetenv("QUENLATRIX_PATH");
    if (!test::TestVm::JavaHome().empty()) setenv("JAVA_HOME", test::TestVm::JavaHome().c_str(), 1);
  }

  // The program with these words alone.
  ProgramRun Start(const Words& words) const {
    std::vector<char*> arguments = {const_cast<char*>(BEANHOST_PROGRAM)};
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
      Redirect("in", O_RDONLY, STDIN_FILENO);
      Redirect("out", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
      Redirect("err", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
      execv(BEANHOST_PROGRAM, arguments.data());
      _exit(127);
    }
    int state = 0;
    waitpid(child, &state, 0);
    ProgramRun run{WIFEXITED(state) ? WEXITSTATUS(state) : -1, ReadFile(directory / "out"),
                   ReadFile(directory / "err")};
    EXPECT_THAT(run.err,
                testing::AllOf(testing::Not(testing::HasSubstr("WARNING in native method")),
                               testing::Not(testing::HasSubstr("WARNING: JNI local refs")),
                               testing::Not(testing::HasSubstr("FATAL ERROR in native method"))));
    return run;
  }

  // With the beans of the tests and of the examples, and the VM watching its native callers.
  ProgramRun Host(const Words& words) const {
    Words all = {"--class-path",  test::TestVm::Jar("test_beans.jar"),
                 "--class-path",  EXAMPLES_JAR,
                 "--java-option", "-Xcheck:jni"};
    all.insert(all.end(), words.begin(), words.end());
    return Start(all);
  }

  ProgramRun Script(const std::string& statements, const Words& options = {}) const {
    std::ofstream(directory / "in") << statements;
    Words words = options;
    words.insert(words.end(), {"run", "-"});
    return Host(words);
  }

  // The documents of a script, one a statement.
  std::vector<json> Documents(const std::string& statements, bool keepGoing = false) const {
    const ProgramRun run =
        Script(statements, keepGoing ? Words{"--json", "--keep-going"} : Words{"--json"});
    return Parsed(run.out);
  }

  static std::vector<json> Parsed(const std::string& out) {
    std::vector<json> documents;
    for (const std::string& line : LinesOf(out)) documents.push_back(json::parse(line));
    return documents;
  }

  const TemporaryDirectory own;
  const std::filesystem::path& directory = own.path;

 private:
  void Redirect(const char* name, int flags, int descriptor) const {
    dup2(open((directory / name).c_str(), flags, 0600), descriptor);
  }
};

}  // namespace quenlatrix::host

// A whole run of beanhost that makes one call, beside a bare program that starts the VM and makes
// the same call: wall-clock time from the program's start to its end.

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

#include "bench/expect.h"
#include "host/companion_files.h"

namespace quenlatrix::bench {
namespace {

// The standard output of a program that ends with exit status 0; empty for any other.
std::string OutputOf(const std::vector<const char*>& words) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) {
    return {};
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, ends[0]);
  posix_spawn_file_actions_addclose(&actions, ends[1]);
  std::vector<char*> arguments;
  for (const char* word : words) {
    arguments.push_back(const_cast<char*>(word));
  }
  arguments.push_back(nullptr);
  pid_t child = 0;
  const bool runs =
      posix_spawn(&child, words.front(), &actions, nullptr, arguments.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  std::string output;
  std::array<char, 256> piece{};
  for (ssize_t size = 0; runs && (size = read(ends[0], piece.data(), piece.size())) > 0;) {
    output.append(piece.data(), static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  const bool isDone = runs && waitpid(child, &status, 0) == child && status == 0;
  return isDone ? output : std::string();
}

// Every Random is seeded anew: what a run answers is a number that no other run is known to give.
void RunProgram(benchmark::State& state, const char* program,
                std::initializer_list<const char*> words) {
  const std::string file = host::FindCompanion(program).string();
  std::vector<const char*> line = {file.c_str()};
  line.insert(line.end(), words);
  for (auto _ : state) {
    const std::string output = OutputOf(line);
    int answer = 0;
    char end = '\0';
    Expect(state, std::sscanf(output.c_str(), "%d%c", &answer, &end) == 2 && end == '\n',
           "a run didn't answer a number");
  }
}

void BeanhostOurs(benchmark::State& state) {
  RunProgram(state, "beanhost", {"call", "java.util.Random", "nextInt"});
}

void BareProgram(benchmark::State& state) { RunProgram(state, "bare_call", {}); }

// A run is short beside what the machine does meanwhile; so many of them, in turns.
constexpr int kRuns = 15;

BENCHMARK(BeanhostOurs)
    ->Name("a whole run of beanhost, one call|ours")
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->UseRealTime();
BENCHMARK(BareProgram)
    ->Name("a whole run of beanhost, one call|base")
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->UseRealTime();

}  // namespace
}  // namespace quenlatrix::bench

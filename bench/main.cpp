// Runs the benchmarks, each of ours interleaved with its floors, and prints the tables. With
// --check as the first argument everything is run once, and only whether its results are right is
// told.

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <vector>

#include "bench/bench_host.h"
#include "bench/table_reporter.h"
#include "tests/support/end_vm.h"

int main(int argc, char** argv) {
  std::vector<std::string> arguments = {argv[0], "--benchmark_repetitions=5",
                                        "--benchmark_enable_random_interleaving=true",
                                        "--benchmark_min_time=0.1"};
  const bool checks = argc > 1 && std::string_view(argv[1]) == "--check";
  if (checks) {
    arguments = {argv[0], "--benchmark_min_time=0"};
  }
  arguments.insert(arguments.end(), argv + (checks ? 2 : 1), argv + argc);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) {
    return 2;
  }
  using namespace quenlatrix::bench;
  benchmark::AddCustomContext("jvm", BenchHost::Get().GetVmFile());
  TableReporter reporter(checks ? TableReporter::Prints::kErrors : TableReporter::Prints::kTables);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  quenlatrix::test::EndVm();
  return reporter.IsAllRight() ? 0 : 1;
}

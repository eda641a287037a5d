// Runs the benchmarks, each of ours interleaved with its floors, and prints the tables.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/table_reporter.h"

int main(int argc, char** argv) {
  std::vector<std::string> arguments = {argv[0], "--benchmark_repetitions=5",
                                        "--benchmark_enable_random_interleaving=true",
                                        "--benchmark_min_time=0.1"};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) {
    return 2;
  }
  quenlatrix::bench::TableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

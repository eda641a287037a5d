// Runs the benchmarks, each of ours interleaved with its floor, and prints one table.
//
// A benchmark's name is "work|ours" or "work|floor"; the median of several repetitions counts.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Row {
  double ours = 0;
  double floor = 0;
};

// Collects the medians and prints the table at the end; what went wrong stands in its row.
class TableReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override {
    std::printf("%d processors, %.0f MHz; median of the repetitions\n", context.cpu_info.num_cpus,
                context.cpu_info.cycles_per_second / 1e6);
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      std::string const name = run.run_name.function_name;
      std::size_t const bar = name.rfind('|');
      std::string const work = name.substr(0, bar);
      if (run.error_occurred) {
        errors_[work] = run.error_message;
      }
      const bool counts =
          run.repetitions > 1 ? run.aggregate_name == "median" : run.run_type == Run::RT_Iteration;
      if (!counts) {
        continue;
      }
      order_[run.family_index] = work;
      const double nanoseconds =
          run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
      (name.substr(bar + 1) == "ours" ? rows_[work].ours : rows_[work].floor) = nanoseconds;
    }
  }

  void Finalize() override {
    std::printf("%-52s %14s %14s %7s\n", "work", "ours, ns", "floor, ns", "ratio");
    for (const auto& [family, work] : order_) {
      if (order_.count(family + 1) != 0 && order_[family + 1] == work) {
        continue;  // the row belongs to the pair, and is printed once
      }
      const Row& row = rows_[work];
      std::printf("%-52s %14.0f %14.0f %7.2f\n", work.c_str(), row.ours, row.floor,
                  row.floor > 0 ? row.ours / row.floor : 0.0);
    }
    for (const auto& [work, error] : errors_) {
      std::printf("%s: %s\n", work.c_str(), error.c_str());
    }
  }

 private:
  // As the benchmarks were registered; ours and its floor one after the other.
  std::map<int64_t, std::string> order_;
  std::map<std::string, Row> rows_;
  std::map<std::string, std::string> errors_;
};

}  // namespace

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
  TableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

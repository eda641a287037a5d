#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "bench/goals.h"

namespace quenlatrix::bench {

// Collects the medians and prints two tables at the end: every row beside its floor, and every goal
// with what was measured. What went wrong stands below, or alone where no tables are wanted. A
// benchmark's name is "work|ours", "work|floor" or "work|base".
class TableReporter : public benchmark::BenchmarkReporter {
 public:
  enum class Prints { kTables, kErrors };

  explicit TableReporter(Prints prints) : prints(prints) {}

  // Whether something was run and nothing went wrong.
  bool IsAllRight() const { return !order.empty() && errors.empty(); }

  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  struct Row {
    double ours = 0;
    double floor = 0;
    double base = 0;
    std::map<std::string, double, std::less<>> counters;

    double Base() const { return base > 0 ? base : floor; }
  };

  void PrintRows() const;
  void PrintGoals() const;
  void PrintGoal(const Goal& goal, const Row& row) const;

  Prints prints;
  // As the benchmarks were registered.
  std::map<int64_t, std::string> order;
  std::map<std::string, Row, std::less<>> rows;
  std::map<std::string, std::string> errors;
};

}  // namespace quenlatrix::bench

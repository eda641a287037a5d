#include "bench/table_reporter.h"

#include <cstdio>
#include <set>

namespace quenlatrix::bench {

namespace {

double Ratio(double ours, double floor) { return floor > 0 ? ours / floor : 0.0; }

}  // namespace

bool TableReporter::ReportContext(const Context& context) {
  if (prints == Prints::kErrors) {
    return true;
  }
  std::printf("%d processors, %.0f MHz; median of the repetitions, CPU time\n",
              context.cpu_info.num_cpus, context.cpu_info.cycles_per_second / 1e6);
  return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    std::string const name = run.run_name.function_name;
    std::size_t const bar = name.rfind('|');
    std::string const work = name.substr(0, bar);
    if (run.error_occurred) {
      errors[work] = run.error_message;
    }
    const bool counts =
        run.repetitions > 1 ? run.aggregate_name == "median" : run.run_type == Run::RT_Iteration;
    if (!counts) {
      continue;
    }
    order[run.family_index] = work;
    // The calling thread's own time: other work on the machine doesn't count.
    const bool isParallel = run.run_name.time_type == "real_time";
    const double time = isParallel ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    const double nanoseconds = time / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
    Row& row = rows[work];
    std::string const kind = name.substr(bar + 1);
    (kind == "ours" ? row.ours : kind == "floor" ? row.floor : row.base) = nanoseconds;
    for (const auto& [counter, value] : run.counters) {
      row.counters[counter] = value;
    }
  }
}

void TableReporter::Finalize() {
  if (prints == Prints::kTables) {
    PrintRows();
    PrintGoals();
  }
  for (const auto& [work, error] : errors) {
    std::printf("%s: %s\n", work.c_str(), error.c_str());
  }
}

void TableReporter::PrintRows() const {
  std::printf("%-52s %14s %14s %7s\n", "work", "ours, ns", "floor, ns", "ratio");
  std::set<std::string> printed;
  for (const auto& [family, work] : order) {
    const Row& row = rows.find(work)->second;
    if (printed.insert(work).second && row.ours > 0 && row.floor > 0) {
      std::printf("%-52s %14.0f %14.0f %7.2f\n", work.c_str(), row.ours, row.floor,
                  Ratio(row.ours, row.floor));
    }
  }
}

void TableReporter::PrintGoals() const {
  std::printf("\n%-44s %12s %12s %22s %22s\n", "goal", "ours, ns", "base, ns", "measured", "limit");
  for (const Goal& goal : Goals()) {
    const auto row = rows.find(goal.work);
    const bool compares =
        goal.measure == Goal::Measure::kRatio || goal.measure == Goal::Measure::kPerElement;
    if (row != rows.end() && row->second.ours > 0 && (!compares || row->second.Base() > 0)) {
      PrintGoal(goal, row->second);
    }
  }
}

void TableReporter::PrintGoal(const Goal& goal, const Row& row) const {
  const double base = row.Base();
  double measured = 0;
  std::string unit;
  switch (goal.measure) {
    case Goal::Measure::kRatio:
      measured = Ratio(row.ours, base);
      unit = "x base";
      break;
    case Goal::Measure::kPerElement:
      measured = (row.ours - base) / goal.elements;
      unit = "ns an element";
      break;
    case Goal::Measure::kTime:
      measured = row.ours;
      unit = "ns";
      break;
    case Goal::Measure::kCounter: {
      const auto counter = row.counters.find(goal.counter);
      if (counter == row.counters.end()) {
        return;
      }
      measured = counter->second;
      unit = goal.counter;
      break;
    }
  }
  std::printf("%-44s %12.0f %12.0f %8.2f %-13s %8.2f  %s\n", std::string(goal.work).c_str(),
              row.ours, base, measured, unit.c_str(), goal.limit,
              measured <= goal.limit ? "met" : "NOT MET");
}

}  // namespace quenlatrix::bench

// The console report of a benchmark program that prints its goals at the end:
// it keeps each benchmark's real seconds per iteration, by name.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

class GoalReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred && run.iterations > 0)
                seconds[run.benchmark_name()] =
                    run.real_accumulated_time / static_cast<double>(run.iterations);
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> seconds;
};

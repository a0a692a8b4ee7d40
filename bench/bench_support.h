// What the benchmark programs share: a scratch folder for their data, and
// the console report of a program that prints its goals at the end.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

// A new folder in the system's temporary folder, removed with all it holds.
struct BenchFolder {
    explicit BenchFolder(const std::string& prefix) {
        std::string pattern = std::filesystem::temp_directory_path() / (prefix + "-XXXXXX");
        path = ::mkdtemp(pattern.data());
    }
    ~BenchFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path, ec);
    }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    std::string path;
};

// Keeps each benchmark's real seconds per iteration, by name.
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

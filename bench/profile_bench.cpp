// AI profiles with 20,000 generated units: opening and merging against
// loading the catalogue, saving against staging the same bytes. After the
// runs it prints the two goals, measured in this run: opening costs at most
// 1.5 times loading the catalogue, saving at most 0.5 s.
#include "base/staged_file.h"
#include "catalogue/load_units.h"
#include "demo/demo_units.h"
#include "profile/profile.h"
#include "profile/profile_writer.h"

#include "bench_support.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <map>
#include <random>

namespace {

using namespace vantrel;

constexpr int UnitCount = 20000;

class FixedClock : public Clock {
  public:
    std::time_t Now() override { return 1795608000; }
    double SecondsSinceMidnight() override { return 0; }
};

// The generated Units folder, catalogue and saved profile, made once.
struct Fixture {
    BenchFolder scratch{"vantrel-bench"};
    std::string dir = scratch.path;
    std::string units;
    std::string profile;
    Definitions defs;
    Progress progress;
    PlainSettingsFields fields;
    FixedClock clock;
    ProfileContext ctx{defs, progress, fields, clock};

    Fixture() {
        units = dir + "/Units";
        std::filesystem::create_directory(units);
        static const char* classes[] = {"CNSTR",  "COMMANDER", "VTOL",  "TANK",
                                        "KBOT",   "SHIP",      "WATER", "FORT",
                                        "ENERGY", "METAL",     "PLANT", "SPECIAL"};
        std::mt19937 rng(42);
        for (int i = 1; i <= UnitCount; ++i) {
            // ARM1 is a prefix of ARM10..ARM19, ARM100.. and so on.
            std::string name = (i % 2 ? "ARM" : "CORE") + std::to_string(i);
            demo::DemoUnit u{
                name, "Unit " + name, i % 2 ? "ARM" : "CORE", classes[rng() % 12], "generated", 0};
            demo::WriteFile(units + "/" + name + ".fbi", demo::UnitFileText(u));
        }
        LoadUnitsFromFolder(defs, units, nullptr, nullptr);
        for (int i = 1; i <= defs.Units.UBound(); ++i) {
            defs.Units[i].Weight = static_cast<float>(rng() % 1000) / 100.0f;
            defs.Units[i].Limit = static_cast<float>(rng() % 50);
            defs.Units[i].Include = rng() % 10 != 0;
        }
        profile = dir + "/Bench.txt";
        SaveAI(ctx, profile);
    }
};

Fixture& Data() {
    static Fixture f;
    return f;
}

void BM_LoadCatalogue(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        Definitions defs;
        LoadUnitsFromFolder(defs, f.units, nullptr, nullptr);
        benchmark::DoNotOptimize(defs.Units.UBound());
    }
}

void BM_OpenProfile(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state)
        ReadAI(f.ctx, f.profile, false);
}

void BM_SaveAI(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state)
        SaveAI(f.ctx, f.dir + "/Saved.txt");
}

// The same bytes through the temporary-file-and-rename path SaveAI uses.
void BM_StageSameBytes(benchmark::State& state) {
    Fixture& f = Data();
    std::string text = ProfileFileText(f.defs, {"11-19-2026", "N/A", "New AI"}, ".");
    std::string set = BuildSetText(f.defs, "New AI");
    for (auto _ : state) {
        ReplaceFile(f.dir + "/Staged.txt", text);
        ReplaceFile(f.dir + "/Staged.set", set);
    }
}

// Opening without the build set, as Merge reads.
void BM_MergeProfile(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state)
        ReadAI(f.ctx, f.profile, true);
}

BENCHMARK(BM_LoadCatalogue)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenProfile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MergeProfile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveAI)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StageSameBytes)->Unit(benchmark::kMillisecond);

} // namespace

// Each read allocates a few buffers of a megabyte or more. With glibc's
// default settings they are mapped afresh and faulted in on every iteration
// (and on a virtual machine a page fault is dear), which measures the
// allocator rather than the code. VANTREL_BENCH_DEFAULT_MALLOC=1 keeps the
// defaults; otherwise large blocks stay in the heap between iterations.
int main(int argc, char** argv) {
    if (!std::getenv("VANTREL_BENCH_DEFAULT_MALLOC")) {
        mallopt(M_MMAP_THRESHOLD, 256 << 20);
        mallopt(M_TRIM_THRESHOLD, 512 << 20);
    }
    benchmark::Initialize(&argc, argv);
    GoalReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    auto& s = reporter.seconds;
    if (s.count("BM_LoadCatalogue") && s.count("BM_OpenProfile"))
        std::printf("Opening a profile of %d units: %.3f s, %.2f times loading the catalogue "
                    "(%.3f s; goal: at most 1.5)\n",
                    UnitCount, s["BM_OpenProfile"], s["BM_OpenProfile"] / s["BM_LoadCatalogue"],
                    s["BM_LoadCatalogue"]);
    if (s.count("BM_SaveAI"))
        std::printf("Saving it: %.3f s (goal: at most 0.5 s)\n", s["BM_SaveAI"]);
    return 0;
}

// AI profiles with 20,000 generated units: opening against loading the
// catalogue, reading against a bare read-and-upper-case, saving against
// writing the same bytes, and the indexed look-up against one search per unit.
// For ratios, run the reads and the writes apart (--benchmark_filter) with
// --benchmark_repetitions=10 --benchmark_enable_random_interleaving=true:
// on a small machine the disk traffic of the saves slows the reads after them.
#include "catalogue/load_units.h"
#include "catalogue/text.h"
#include "demo/demo_units.h"
#include "profile/profile.h"
#include "profile/profile_io.h"
#include "profile/profile_lookup.h"
#include "profile/profile_reader.h"
#include "profile/profile_writer.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <malloc.h>
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
    std::string dir;
    std::string units;
    std::string profile;
    Definitions defs;
    Progress progress;
    PlainSettingsFields fields;
    FixedClock clock;
    ProfileContext ctx{defs, progress, fields, clock};

    Fixture() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantrel-bench-XXXXXX");
        dir = ::mkdtemp(pattern.data());
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
    ~Fixture() {
        std::error_code ec;
        std::filesystem::remove_all(dir, ec);
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

// The first open after the catalogue is loaded or its names change also
// builds the unit-name index that later reads reuse.
void BM_OpenProfileNewIndex(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        f.defs.UnitNameIndex.reset();
        ReadAI(f.ctx, f.profile, false);
    }
}

void BM_MergeProfileNewIndex(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        f.defs.UnitNameIndex.reset();
        ReadAI(f.ctx, f.profile, true);
    }
}

void BM_ReadAndUpperCase(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        FileText file = ReadProfileFile(f.profile);
        std::string upper = UCase(file.data);
        benchmark::DoNotOptimize(upper.data());
    }
}

// Opening also reads the build-set file: the same baseline for both files.
void BM_ReadAndUpperCaseWithBuildSet(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        FileText file = ReadProfileFile(f.profile);
        std::string upper = UCase(file.data);
        FileText set = ReadProfileFile(BuildSetPath(f.profile));
        std::string setUpper = UCase(set.data);
        benchmark::DoNotOptimize(upper.data());
        benchmark::DoNotOptimize(setUpper.data());
    }
}

void BM_SaveAI(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state)
        SaveAI(f.ctx, f.dir + "/Saved.txt");
}

void BM_WriteSameBytes(benchmark::State& state) {
    Fixture& f = Data();
    std::string text = ProfileFileText(f.defs, {"11-19-2026", "N/A", "New AI"}, ".");
    std::string set = BuildSetText(f.defs, "New AI");
    for (auto _ : state) {
        std::ofstream(f.dir + "/Plain.txt", std::ios::binary | std::ios::trunc) << text;
        std::ofstream(f.dir + "/Plain.set", std::ios::binary | std::ios::trunc) << set;
    }
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

std::vector<std::string> Names(const Definitions& defs) {
    std::vector<std::string> names;
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        names.push_back(defs.Units[i].UnitName);
    return names;
}

void BM_IndexedLookUp(benchmark::State& state) {
    Fixture& f = Data();
    std::string text = ReadProfileFile(f.profile).data;
    std::vector<std::string> names = Names(f.defs);
    for (auto _ : state) {
        ProfileLookup lookup(text, names);
        float sum = 0;
        for (std::size_t i = 0; i < names.size(); ++i)
            sum += lookup.Weight(i) + lookup.Limit(i);
        benchmark::DoNotOptimize(sum);
    }
}

void BM_PerUnitSearch(benchmark::State& state) {
    Fixture& f = Data();
    std::string upper = UCase(ReadProfileFile(f.profile).data);
    std::vector<std::string> names = Names(f.defs);
    for (auto _ : state) {
        float sum = 0;
        for (const std::string& name : names)
            sum += GetWeight(name, upper, ".") + GetLimit(name, upper, ".");
        benchmark::DoNotOptimize(sum);
    }
}

BENCHMARK(BM_LoadCatalogue)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenProfile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenProfileNewIndex)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MergeProfileNewIndex)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadAndUpperCase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadAndUpperCaseWithBuildSet)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveAI)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteSameBytes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StageSameBytes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MergeProfile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IndexedLookUp)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PerUnitSearch)->Unit(benchmark::kMillisecond)->Iterations(1);

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
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

// Loading 20,000 unit files against reading every file once (the floor) and
// against five whole-file reads per unit (one per field).
#include "base/paths.h"
#include "base/text.h"
#include "catalogue/load_units.h"
#include "demo/demo_units.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

const std::string& UnitsFolder() {
    static const std::string dir = [] {
        std::string d = (std::filesystem::temp_directory_path() / "vantrel-bench-units").string();
        std::filesystem::remove_all(d);
        std::filesystem::create_directories(d);
        const auto& units = vantrel::demo::DemoUnits();
        for (int i = 0; i < 20000; ++i) {
            vantrel::demo::DemoUnit u = units[static_cast<std::size_t>(i) % units.size()];
            u.UnitName += std::to_string(i);
            vantrel::demo::WriteFile(d + "/" + u.UnitName + ".fbi", vantrel::demo::UnitFileText(u));
        }
        return d;
    }();
    return dir;
}

void BM_ReadEveryFileOnce(benchmark::State& state) {
    const std::string& dir = UnitsFolder();
    for (auto _ : state) {
        std::size_t bytes = 0;
        for (const std::string& f : vantrel::ListFiles(dir, "*.fbi"))
            if (auto t = vantrel::ReadWholeFile(vantrel::JoinPath(dir, f))) bytes += t->size();
        benchmark::DoNotOptimize(bytes);
    }
}

void BM_LoadUnits(benchmark::State& state) {
    const std::string& dir = UnitsFolder();
    for (auto _ : state) {
        vantrel::Definitions defs;
        vantrel::LoadUnitsFromFolder(defs, dir, nullptr, nullptr);
        benchmark::DoNotOptimize(defs.Units.UBound());
    }
}

void BM_FiveReadsPerUnit(benchmark::State& state) {
    const std::string& dir = UnitsFolder();
    for (auto _ : state) {
        vantrel::Definitions defs;
        auto files = vantrel::ListFiles(dir, "*.fbi");
        defs.Units.Dim(static_cast<int>(files.size()));
        int n = 0;
        for (const std::string& f : files) {
            vantrel::vtUnit& u = defs.Units[++n];
            std::string path = vantrel::JoinPath(dir, f);
            if (auto v = vantrel::GetField(path, "Description=", 1, "=", ";")) u.Description = *v;
            if (auto v = vantrel::GetField(path, "Name=", 2, "=", ";")) u.Name = *v;
            if (auto v = vantrel::GetField(path, "Side=", 1, "=", ";")) u.Side = *v;
            if (auto v = vantrel::GetField(path, "TEDClass=", 1, "=", ";")) u.TEDClass = *v;
            if (auto v = vantrel::GetField(path, "UnitName=", 1, "=", ";")) u.UnitName = *v;
        }
        benchmark::DoNotOptimize(defs.Units.UBound());
    }
}

BENCHMARK(BM_ReadEveryFileOnce)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_LoadUnits)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_FiveReadsPerUnit)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

BENCHMARK_MAIN();

// Decoding a folder of 500 unit pictures (64 x 64, every other one 24-bit),
// against ImageMagick's convert on the same files in the same run.
//
//   BM_LoadPCX           LoadPCX on every file (what building a board does)
//   BM_LoadPCXCached     the same through a warm PictureCache (a rebuild)
//   BM_PcxToPng          LoadPCX + WritePng on every file (what `vantrel-cli pcx` does)
//   BM_ConvertPerFile    `convert IN.pcx OUT.png`, one process per file
//   BM_ConvertOneProcess `convert *.pcx +adjoin OUT-%03d.png`, one process for all files
//
// The summary at the end gives pictures per second and the ratios.
#include "demo/demo_units.h"
#include "formats/pcx.h"
#include "mainwindow/picture_cache.h"
#include "formats/png_writer.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace vantrel;

constexpr int PictureCount = 500;

class NoMessages : public Messages {
  public:
    MsgAnswer Show(const std::string&, const std::string&, MsgButtons, MsgIcon) override {
        return MsgAnswer::OK;
    }
};

struct Folder {
    fs::path dir;
    std::vector<std::string> files;
    std::size_t bytes = 0;

    Folder() {
        dir = fs::temp_directory_path() / ("vantrel-pcx-bench-" + std::to_string(::getpid()));
        fs::create_directories(dir / "png");
        const auto& units = demo::DemoUnits();
        for (int i = 0; i < PictureCount; ++i) {
            const demo::DemoUnit& u = units[static_cast<std::size_t>(i) % units.size()];
            char name[32];
            std::snprintf(name, sizeof name, "unit%03d.pcx", i);
            const std::string data =
                i % 2 == 0 ? demo::DemoPicture256(u, 64, 64) : demo::DemoPicture24(u, 64, 64);
            files.push_back((dir / name).string());
            demo::WriteFile(files.back(), data);
            bytes += data.size();
        }
    }
    ~Folder() {
        std::error_code ec;
        fs::remove_all(dir, ec);
    }
    void ClearPngs() const {
        for (const auto& e : fs::directory_iterator(dir / "png"))
            fs::remove(e.path());
    }
    std::size_t PngCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(dir / "png"), fs::directory_iterator{}));
    }
};

Folder& TheFolder() {
    static Folder folder;
    return folder;
}

// Seconds per pass over the folder, by benchmark name (for the summary).
std::map<std::string, double>& PassSeconds() {
    static std::map<std::string, double> seconds;
    return seconds;
}

std::string Convert() {
    // The real program, not a wrapper in front of it.
    return fs::exists("/usr/bin/convert") ? "/usr/bin/convert" : "convert";
}

template <typename Pass> void RunPasses(benchmark::State& state, const char* name, Pass pass) {
    const Folder& folder = TheFolder();
    double total = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (!pass(folder)) {
            state.SkipWithError("a picture failed");
            return;
        }
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        total += took.count();
        state.SetIterationTime(took.count());
    }
    PassSeconds()[name] = total / static_cast<double>(state.iterations());
    state.SetItemsProcessed(state.iterations() * PictureCount);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(folder.bytes));
}

void BM_LoadPCX(benchmark::State& state) {
    NoMessages msgs;
    RunPasses(state, "LoadPCX", [&](const Folder& f) {
        for (const std::string& file : f.files) {
            PcxResult r = LoadPCX(file, msgs);
            if (!r) return false;
            benchmark::DoNotOptimize(r.image->pixels.data());
        }
        return true;
    });
}
BENCHMARK(BM_LoadPCX)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_LoadPCXCached(benchmark::State& state) {
    NoMessages msgs;
    PictureCache cache;
    for (const std::string& file : TheFolder().files)
        cache.Load(file, msgs);
    RunPasses(state, "LoadPCXCached", [&](const Folder& f) {
        for (const std::string& file : f.files)
            if (!cache.Load(file, msgs)) return false;
        return true;
    });
}
BENCHMARK(BM_LoadPCXCached)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_PcxToPng(benchmark::State& state) {
    NoMessages msgs;
    RunPasses(state, "PcxToPng", [&](const Folder& f) {
        std::string error;
        for (std::size_t i = 0; i < f.files.size(); ++i) {
            PcxResult r = LoadPCX(f.files[i], msgs);
            const std::string out =
                (f.dir / "png" / ("ours" + std::to_string(i) + ".png")).string();
            if (!r || !WritePng(out, *r.image, error)) return false;
        }
        return true;
    });
}
BENCHMARK(BM_PcxToPng)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ConvertPerFile(benchmark::State& state) {
    TheFolder().ClearPngs();
    RunPasses(state, "ConvertPerFile", [](const Folder& f) {
        for (std::size_t i = 0; i < f.files.size(); ++i) {
            const std::string cmd = Convert() + " '" + f.files[i] + "' '" +
                                    (f.dir / "png" / ("im" + std::to_string(i) + ".png")).string() +
                                    "' 2>/dev/null";
            if (std::system(cmd.c_str()) != 0) return false;
        }
        return f.PngCount() >= f.files.size();
    });
}
BENCHMARK(BM_ConvertPerFile)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_ConvertOneProcess(benchmark::State& state) {
    TheFolder().ClearPngs();
    RunPasses(state, "ConvertOneProcess", [](const Folder& f) {
        const std::string cmd = Convert() + " '" + (f.dir / "unit*.pcx").string() + "' +adjoin '" +
                                (f.dir / "png" / "im-%03d.png").string() + "' 2>/dev/null";
        return std::system(cmd.c_str()) == 0 && f.PngCount() >= f.files.size();
    });
}
BENCHMARK(BM_ConvertOneProcess)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(2);

void PrintSummary() {
    const auto& s = PassSeconds();
    const double mb = static_cast<double>(TheFolder().bytes) / 1e6;
    std::cout << "\n" << PictureCount << " pictures, " << mb << " MB of PCX per pass\n";
    for (const auto& [name, secs] : s)
        std::cout << "  " << name << ": " << secs * 1e3 << " ms per pass, " << PictureCount / secs
                  << " pictures/s, " << mb / secs << " MB/s\n";
    auto ratio = [&](const char* slow, const char* fast) {
        if (s.count(slow) && s.count(fast))
            std::cout << "  " << slow << " / " << fast << " = " << s.at(slow) / s.at(fast) << "\n";
    };
    ratio("ConvertPerFile", "PcxToPng");
    ratio("ConvertOneProcess", "PcxToPng");
    ratio("ConvertOneProcess", "LoadPCX");
    ratio("LoadPCX", "LoadPCXCached");
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    TheFolder();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    PrintSummary();
    return 0;
}

// Unpacking a package of 500 small unit files: the package reader (temporary
// file, rename without replacing, existing-name check, size limits) against a
// plain libzip copy loop that writes every entry straight to its place.
#include "base/paths.h"
#include "formats/zip_package.h"

#include <benchmark/benchmark.h>
#include <zip.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Package {
    fs::path root, zip, units;
    Package() {
        std::string pattern = (fs::temp_directory_path() / "vantrel-unzip-bench-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) std::abort();
        root = pattern;
        zip = root / "units.zip";
        units = root / "Units";
        int error = 0;
        zip_t* za = zip_open(zip.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
        std::vector<std::string> data;
        for (int i = 0; i < 500; ++i)
            data.push_back("[UNITINFO]\n{\nUnitName=UNIT" + std::to_string(i) + ";\n" +
                           std::string(static_cast<std::size_t>(2000 + i), 'x') + "}\n");
        for (int i = 0; i < 500; ++i) {
            zip_source_t* src = zip_source_buffer(za, data[i].data(), data[i].size(), 0);
            zip_file_add(za, ("units/UNIT" + std::to_string(i) + ".FBI").c_str(), src, 0);
        }
        zip_close(za);
    }
    ~Package() { fs::remove_all(root); }
    void Reset() {
        fs::remove_all(units);
        fs::create_directory(units);
    }
};

Package& Shared() {
    static Package package;
    return package;
}

void BM_ZipPackage(benchmark::State& state) {
    Package& p = Shared();
    for (auto _ : state) {
        state.PauseTiming();
        p.Reset();
        state.ResumeTiming();
        auto zip = vantrel::ZipPackage::Open(p.zip.string());
        int written = 0;
        zip->UnpackTo(p.units.string(), nullptr, [&written](const vantrel::ZipEntryReport& r) {
            written += r.result == vantrel::ZipResult::Written;
        });
        benchmark::DoNotOptimize(written);
    }
}

void BM_PlainLibzipCopy(benchmark::State& state) {
    Package& p = Shared();
    std::vector<char> buffer(64 * 1024);
    for (auto _ : state) {
        state.PauseTiming();
        p.Reset();
        state.ResumeTiming();
        zip_t* za = zip_open(p.zip.c_str(), ZIP_RDONLY, nullptr);
        for (zip_int64_t i = 0; i < zip_get_num_entries(za, 0); ++i) {
            const char* name = zip_get_name(za, static_cast<zip_uint64_t>(i), 0);
            zip_file_t* zf = zip_fopen_index(za, static_cast<zip_uint64_t>(i), 0);
            std::string target = vantrel::JoinPath(p.units.string(), fs::path(name).filename());
            std::FILE* out = std::fopen(target.c_str(), "wb");
            zip_int64_t n;
            while ((n = zip_fread(zf, buffer.data(), buffer.size())) > 0)
                std::fwrite(buffer.data(), 1, static_cast<std::size_t>(n), out);
            std::fclose(out);
            zip_fclose(zf);
        }
        zip_discard(za);
    }
}

} // namespace

BENCHMARK(BM_PlainLibzipCopy)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZipPackage)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();

// `vantrel-cli check` against `vantrel-cli show` on one generated 100 MB
// profile of 2,000 units (entries of every unit, names that are prefixes of
// others, unknown names, a few values that are not numbers). Each run is a
// process of its own, so its peak memory is its own. After the runs it
// prints the goals, measured in this run: check takes at most 1.5 times the
// time of show and at most twice its peak memory.
#include "demo/demo_units.h"

#include "bench_support.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int UnitCount = 2000;
constexpr std::size_t ProfileBytes = 100u << 20;

struct Fixture {
    BenchFolder scratch{"vantrel-check"};
    std::string dir = scratch.path, units, profile;

    Fixture() {
        units = dir + "/Units";
        std::filesystem::create_directory(units);
        static const char* classes[] = {"CNSTR", "COMMANDER", "VTOL", "TANK", "KBOT", "FORT"};
        for (int i = 1; i <= UnitCount; ++i) {
            std::string name = (i % 2 ? "ARM" : "CORE") + std::to_string(i);
            vantrel::demo::DemoUnit u{name, name, i % 2 ? "ARM" : "CORE", classes[i % 6], "g", 0};
            vantrel::demo::WriteFile(units + "/" + name + ".fbi", vantrel::demo::UnitFileText(u));
        }
        std::mt19937 rng(7);
        std::string text = "/ ---\r\nAuth: Bench\r\nName: Big AI\r\n";
        text.reserve(ProfileBytes + 64);
        // A quarter of the bytes for the weights, one for each plan.
        const char* plans[] = {"", "plan easy", "plan medium", "plan hard"};
        for (std::size_t p = 0; p < std::size(plans); ++p) {
            text.append(plans[p]).append("\r\n");
            const char* key = p == 0 ? "Weight " : "Limit ";
            while (text.size() < ProfileBytes / 4 * (p + 1)) {
                const unsigned pick = rng() % 100;
                const int i = 1 + static_cast<int>(rng() % UnitCount);
                std::string name = (i % 2 ? "ARM" : "CORE") + std::to_string(i);
                if (pick < 5) name += "X"; // read as another unit's
                if (pick >= 5 && pick < 8) name = "NOBODY" + std::to_string(rng() % 500);
                text.append(key).append(name).append(" ");
                text.append(pick == 99 ? "abc" : std::to_string(rng() % 50)).append("\r\n");
            }
        }
        profile = dir + "/Big.txt";
        vantrel::demo::WriteFile(profile, text);
    }
};

Fixture& Data() {
    static Fixture f;
    return f;
}

// Runs vantrel-cli COMMAND UNITS PROFILE with its output thrown away; the
// child's peak memory in MB.
double RunCli(const char* command) {
    Fixture& f = Data();
    const pid_t pid = ::fork();
    if (pid == 0) {
        std::freopen("/dev/null", "w", stdout);
        std::freopen("/dev/null", "w", stderr);
        ::execl(VANTREL_CLI_PATH, "vantrel-cli", command, f.units.c_str(), f.profile.c_str(),
                static_cast<char*>(nullptr));
        std::_Exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(pid, &status, 0, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// Per command: the peak memory and the shortest run (the machine's other load
// only ever adds to a run, so the shortest is the fairest to compare).
std::map<std::string, double> peakMB, fastest;

void RunTimed(benchmark::State& state, const char* command) {
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        peakMB[command] = RunCli(command);
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (!fastest.count(command) || seconds < fastest[command]) fastest[command] = seconds;
    }
    state.counters["peak_MB"] = peakMB[command];
}

void BM_Show(benchmark::State& state) {
    RunTimed(state, "show");
}
void BM_Check(benchmark::State& state) {
    RunTimed(state, "check");
}

BENCHMARK(BM_Show)->Unit(benchmark::kSecond)->Iterations(5)->UseRealTime();
BENCHMARK(BM_Check)->Unit(benchmark::kSecond)->Iterations(5)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    Data(); // the files are made before any run is timed
    benchmark::ConsoleReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    if (fastest.count("show") && fastest.count("check"))
        std::printf("check on a 100 MB profile: %.2f s and %.0f MB; show: %.2f s and %.0f MB "
                    "(fastest of the runs); time %.2f times (goal: at most 1.5), peak memory "
                    "%.2f times (goal: at most 2)\n",
                    fastest["check"], peakMB["check"], fastest["show"], peakMB["show"],
                    fastest["check"] / fastest["show"], peakMB["check"] / peakMB["show"]);
    return 0;
}

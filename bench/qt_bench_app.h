// What the Qt benchmark programs share: the one QApplication, made on first
// use, and the peak memory of the process as a counter.
#pragma once

#include <QApplication>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

inline QApplication& App() {
    static int argc = 1;
    static char name[] = "vantrel_bench";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    return app;
}

inline void ReportPeak(benchmark::State& state) {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

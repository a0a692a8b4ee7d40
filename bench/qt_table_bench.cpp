// The unit table on 20,000 units (offscreen platform): opening it, a filter
// keystroke, a bulk set of every unit and its undo, against a plain loop
// over the units that reads what one table row shows.
// Run one benchmark per process to read its peak memory:
//   QT_QPA_PLATFORM=offscreen build/qt_table_bench --benchmark_filter=TableOpen/
#include "base/text.h"
#include "bench/qt_bench_app.h"
#include "mainwindow/frmTable.h"
#include "mainwindow/qt_edit_history.h"
#include "mainwindow/qt_unit_table.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPixmap>
#include <QTableView>


#include <memory>
#include <string>
#include <vector>

using namespace vantrel;

namespace {

void Catalogue(Definitions& defs, int units) {
    static const char* const classes[] = {"KBOT", "TANK", "VTOL", "FORT", "CNSTR", "SHIP"};
    defs.Units.Dim(units);
    for (int i = 1; i <= units; ++i) {
        vtUnit& u = defs.Units[i];
        u.Name = "Unit " + std::to_string((i * 7919) % units);
        u.UnitName = "U" + std::to_string(i);
        u.Side = i % 2 ? "ARM" : "CORE";
        u.TEDClass = classes[i % 6];
        u.Description = "A unit";
        u.Weight = static_cast<float>(i % 1000) / 100.0f;
        u.Limit = static_cast<float>(i % 50);
        u.Include = true;
    }
}

struct Tables {
    Definitions defs;
    SystemClock clock;
    EditHistory history{defs, clock};
    std::unique_ptr<frmTable> table;
    explicit Tables(int units) { Catalogue(defs, units); }
    void Open() {
        table = std::make_unique<frmTable>(defs, history);
        table->Model().pictureLoader = [](const std::string&) {
            static QPixmap pic = [] {
                QPixmap p(64, 64);
                p.fill(Qt::darkGreen);
                return p;
            }();
            return pic;
        };
        table->ShowWithFocus();
        QApplication::processEvents(); // painted once
    }
};

// An open table of `units` units sorted by weight, so that every change of
// weights re-sorts the rows.
struct SortedTable : Tables {
    explicit SortedTable(int units) : Tables(units) {
        App();
        Open();
        table->tblUnits->sortByColumn(UnitTableModel::ColWeight, Qt::AscendingOrder);
    }
};

// Opening the window: model, proxy, view, the rows in view painted.
void BM_TableOpen(benchmark::State& state) {
    App();
    Tables t(static_cast<int>(state.range(0)));
    for (auto _ : state)
        t.Open();
    ReportPeak(state);
}
BENCHMARK(BM_TableOpen)->Arg(20000)->Unit(benchmark::kMillisecond);

// Baseline: every unit's row read once in a plain loop (filter test,
// category, numbers as text), with no model or view.
void BM_LoopOverUnits(benchmark::State& state) {
    Tables t(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::size_t n = 0;
        for (int i = 1; i <= t.defs.Units.UBound(); ++i) {
            const vtUnit& u = t.defs.Units[i];
            n += MatchesUnitFilter(u, "core") + CategoryOf(u).size() + FloatText(u.Weight).size() +
                 FloatText(u.Limit).size();
        }
        benchmark::DoNotOptimize(n);
    }
}
BENCHMARK(BM_LoopOverUnits)->Arg(20000)->Unit(benchmark::kMillisecond);

// One keystroke in the filter box (the rows re-filtered and painted).
void BM_FilterKeystroke(benchmark::State& state) {
    App();
    Tables t(static_cast<int>(state.range(0)));
    t.Open();
    bool odd = false;
    for (auto _ : state) {
        t.table->txtFilter->setText((odd = !odd) ? "cor" : "core");
        QApplication::processEvents();
    }
    ReportPeak(state);
}
BENCHMARK(BM_FilterKeystroke)->Arg(20000)->Unit(benchmark::kMillisecond);

// Ctrl+A and one value for every unit, on a table sorted by that value
// (the proxy re-sorts every row), painted.
void BM_BulkSet(benchmark::State& state) {
    SortedTable t(static_cast<int>(state.range(0)));
    t.table->tblUnits->selectAll();
    double value = 1;
    for (auto _ : state) {
        t.history.Set(t.table->SelectedUnits(), UnitField::Weight, value = 3 - value);
        QApplication::processEvents();
    }
    ReportPeak(state);
}
BENCHMARK(BM_BulkSet)->Arg(20000)->Unit(benchmark::kMillisecond);

// Undo of that bulk set (the set itself is outside the timing).
void BM_BulkUndo(benchmark::State& state) {
    SortedTable t(static_cast<int>(state.range(0)));
    const std::vector<int> all = UnitsMatching(t.defs, "*");
    for (auto _ : state) {
        state.PauseTiming();
        t.history.Set(all, UnitField::Weight, 5);
        QApplication::processEvents();
        state.ResumeTiming();
        t.history.Stack().undo();
        QApplication::processEvents();
    }
    ReportPeak(state);
}
BENCHMARK(BM_BulkUndo)->Arg(20000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

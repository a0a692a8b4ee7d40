// Building and scrolling the unit board ("All") for 500 and 20,000 cards on
// the offscreen platform, against the baseline of one widget tree per card.
// Run one benchmark per process to read its peak memory:
//   QT_QPA_PLATFORM=offscreen build/qt_board_bench --benchmark_filter=Board/20000
#include "bench/qt_bench_app.h"
#include "forms/frmUnit.h"
#include "mainwindow/qt_board.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPixmap>
#include <QScrollBar>


#include <memory>
#include <string>
#include <vector>

using namespace vantrel;

namespace {

class QuietMessages : public Messages {
  public:
    MsgAnswer Show(const std::string&, const std::string&, MsgButtons, MsgIcon) override {
        return MsgAnswer::Yes;
    }
};

void Catalogue(Definitions& defs, int cards) {
    defs.Units.Dim(cards);
    defs.CurrentSide = "ARM";
    for (int i = 1; i <= cards; ++i) {
        vtUnit& u = defs.Units[i];
        u.Name = "Unit " + std::to_string(cards - i);
        u.UnitName = "U" + std::to_string(i);
        u.Side = "ARM";
        u.TEDClass = "KBOT";
        u.Description = "A unit";
        u.Weight = static_cast<float>(i % 1000) / 100.0f;
        u.Limit = static_cast<float>(i % 50);
        u.Include = true;
    }
}

const QPixmap& Picture() {
    static QPixmap pic = [] {
        QPixmap p(64, 64);
        p.fill(Qt::darkGreen);
        return p;
    }();
    return pic;
}

struct BoardWindow {
    Definitions defs;
    QuietMessages messages;
    Progress progress;
    QWidget host;
    UnitBoard* board;
    explicit BoardWindow(int cards) {
        Catalogue(defs, cards);
        board = new UnitBoard(defs, messages, progress, &host);
        board->pictureLoader = [](const std::string&) { return Picture(); };
        host.resize(800, 700);
        board->setGeometry(0, 0, 800, 700);
        host.show();
        QApplication::processEvents();
    }
};

// The board as built: entries for every unit, widgets for the rows in view.
void BM_Board(benchmark::State& state) {
    App();
    const int cards = static_cast<int>(state.range(0));
    BoardWindow w(cards);
    for (auto _ : state) {
        w.board->BuildForCategory("&All");
        QApplication::processEvents(); // paint the board once
        benchmark::DoNotOptimize(w.board->CardCount());
    }
    state.counters["widgets"] = w.board->CardWidgetCount();
    ReportPeak(state);
}
BENCHMARK(BM_Board)->Arg(500)->Arg(20000)->Unit(benchmark::kMillisecond);

// One scroll step of a page on a built board, painted.
void BM_BoardScroll(benchmark::State& state) {
    App();
    BoardWindow w(static_cast<int>(state.range(0)));
    w.board->BuildForCategory("&All");
    QScrollBar* bar = w.board->verticalScrollBar();
    for (auto _ : state) {
        int next = bar->value() + bar->pageStep();
        bar->setValue(next > bar->maximum() ? bar->minimum() : next);
        w.host.repaint();
    }
    ReportPeak(state);
}
BENCHMARK(BM_BoardScroll)->Arg(20000)->Unit(benchmark::kMicrosecond);

// Baseline: one card widget tree per unit, filled and laid out, all at once.
void BM_OneWidgetPerCard(benchmark::State& state) {
    App();
    const int cards = static_cast<int>(state.range(0));
    Definitions defs;
    Catalogue(defs, cards);
    for (auto _ : state) {
        QWidget host;
        host.resize(800, 700);
        auto* area = new QWidget(&host);
        const int pitch = frmUnit(defs).sizeHint().height();
        area->setGeometry(0, 20, 783, cards * pitch);
        for (int i = 1; i <= cards; ++i) {
            auto* card = new frmUnit(defs, area);
            card->setGeometry(0, (i - 1) * pitch, 783, pitch);
            card->Show(i, Picture(), defs.Units[i].Name);
        }
        host.show();
        QApplication::processEvents();
    }
    ReportPeak(state);
}
BENCHMARK(BM_OneWidgetPerCard)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();

#include "mainwindow/qt_board.h"

#include "gui/gui_app.h"
#include "support/test_support.h"
#include "support/unit_fixtures.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSlider>

#include <gtest/gtest.h>

using namespace vantrel;
using vantrel::testing::PressKey;
using vantrel::testing::ShowActive;
using vantrel::testing::Wheel;

namespace {

struct BoardFixture : vantrel::testing::GuiTest {
    Definitions defs;
    test::ScriptedMessages messages;
    test::RecordingProgress progress;
    test::FixedGauge gauge;
    QWidget host;
    UnitBoard* board = nullptr;
    QLineEdit* elsewhere = nullptr;

    void SetUp() override {
        defs.CurrentSide = "ARM";
        board = new UnitBoard(defs, messages, progress, &host);
        board->SetResourceGauge(&gauge);
        elsewhere = new QLineEdit(&host);
        host.resize(board->minimumWidth() + 100, 440);
        board->setGeometry(0, 0, host.width(), 400);
        elsewhere->setGeometry(0, 410, 100, 20);
        ASSERT_TRUE(ShowActive(host));
    }
    QScrollBar* Bar() { return board->verticalScrollBar(); }
    template <class W = QWidget> W* Part(int row, const char* name) {
        frmUnit* card = board->CardAt(row);
        return card ? card->findChild<W*>(QString::fromLatin1(name)) : nullptr;
    }
    std::string Title(int row) { return Part<QLabel>(row, "lblUnitName")->text().toStdString(); }
    // K10, K11 ...; the one at `excluded` is excluded.
    void AddKbots(int count, int excluded = -1) {
        for (int i = 0; i < count; ++i)
            test::AddUnit(defs, "ARM", "K" + std::to_string(10 + i), "KBOT", 1, 1, i != excluded);
    }
    // The row's card is on screen whole.
    bool InView(int row) {
        frmUnit* card = board->CardAt(row);
        if (!card || card->isHidden()) return false;
        const int top = card->mapTo(board->viewport(), QPoint(0, 0)).y();
        return top >= 0 && top + card->height() <= board->viewport()->height();
    }
};

} // namespace

TEST_F(BoardFixture, RowsAreCardsAndTheScrollBarStepsACardAndAPage) {
    AddKbots(12);
    test::AddUnit(defs, "ARM", "Solo", "VTOL");
    board->BuildForCategory("&Kbots");
    QApplication::processEvents(); // the bar shows
    const int pitch = board->RowHeight();
    const int view = board->viewport()->height();
    ASSERT_EQ(board->CardCount(), 12);
    EXPECT_EQ(progress.shows, 1);
    EXPECT_FALSE(progress.visible);
    EXPECT_EQ(Bar()->maximum(), 12 * pitch - view);
    EXPECT_EQ(Bar()->singleStep(), pitch);
    EXPECT_EQ(Bar()->pageStep(), view);
    EXPECT_EQ(board->CardAt(0)->width(), board->viewport()->width());
    Bar()->setValue(Bar()->maximum());
    EXPECT_EQ(Title(11), "K21");
    EXPECT_EQ(board->CardAt(11)->mapTo(board->viewport(), QPoint(0, pitch)).y(), view)
        << "the last card ends at the bottom";

    // All cards fit: no range and no bar.
    board->resize(board->width(), 12 * pitch + 50);
    QApplication::processEvents();
    EXPECT_EQ(Bar()->maximum(), 0);
    EXPECT_FALSE(Bar()->isVisible());
    board->BuildForCategory("&All");
    EXPECT_EQ(board->CardCount(), 13);
    EXPECT_TRUE(messages.shown.empty()) << "no question, not even for All";
}

TEST_F(BoardFixture, LargeBoardsMakeWidgetsOnlyForRowsInViewAndShowUnitsWithoutWritingThem) {
    for (int i = 0; i < 2000; ++i)
        test::AddUnit(defs, "ARM", "U" + std::to_string(100000 + i), "KBOT", 8, 40, i != 2);
    defs.Options.WeightMax = 5;
    board->BuildForCategory("&Kbots");
    ASSERT_EQ(board->CardCount(), 2000);
    EXPECT_LE(board->CardWidgetCount(), 400 / board->RowHeight() + 2);
    EXPECT_TRUE(Part(2, "lblExclude")->isVisible());

    // Scroll to the middle: the rows there get cards, with their own units;
    // the active card keeps its widget.
    Bar()->setValue(1000 * board->RowHeight());
    ASSERT_NE(board->CardAt(1000), nullptr);
    EXPECT_EQ(Title(1000), "U101000");
    EXPECT_EQ(Part<QLabel>(1000, "lblWeight")->text(), "8");
    EXPECT_EQ(Part<QSlider>(1000, "sldPriority")->value(), 500) << "above the maximum: at the end";
    EXPECT_NE(board->CardAt(0), nullptr) << "the active card stays";
    EXPECT_LE(board->CardWidgetCount(), 400 / board->RowHeight() + 3);
    EXPECT_FLOAT_EQ(defs.Units[1001].Weight, 8.0f);
    EXPECT_FALSE(defs.Profile.Changed) << "building, scrolling and activating never write";
}

TEST_F(BoardFixture, AWheelNotchScrollsWheelScrollLinesCardsUnlessASliderHasTheFocus) {
    for (int i = 0; i < 300; ++i)
        test::AddUnit(defs, "ARM", "U" + std::to_string(1000 + i), "KBOT", 2, 4);
    board->BuildForCategory("&Kbots");
    const int pitch = board->RowHeight();
    // Over an inactive card's slider the wheel scrolls the board.
    QSlider* inactive = Part<QSlider>(1, "sldPriority");
    ASSERT_NE(inactive, nullptr);
    Wheel(inactive, -1);
    EXPECT_EQ(Bar()->value(),
              std::min(QApplication::wheelScrollLines() * pitch, Bar()->pageStep()));
    EXPECT_FALSE(defs.Profile.Changed);

    // The focused slider takes it: one small step, and the board stays.
    board->StepTo(CardStep::Next);
    QSlider* focused = Part<QSlider>(1, "sldPriority");
    ASSERT_EQ(QApplication::focusWidget(), focused);
    const int scrolled = Bar()->value();
    Wheel(focused, 1);
    EXPECT_EQ(Bar()->value(), scrolled);
    EXPECT_FLOAT_EQ(defs.Units[board->UnitIndexAt(1)].Weight, 2.1f);
}

TEST_F(BoardFixture, FocusFollowsTheActiveCardThroughStepsTabsRefreshesAndDialogs) {
    AddKbots(12, 1);
    board->BuildForCategory("&Kbots");
    EXPECT_EQ(QApplication::focusWidget(), Part(0, "sldPriority")) << "a new board";
    auto press = [&](int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        PressKey(QApplication::focusWidget(), key, {}, modifiers);
        QApplication::processEvents();
    };
    Part(0, "sldNumbers")->setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(InView(1));
    EXPECT_EQ(QApplication::focusWidget(), board->CardAt(1)) << "an excluded card has no slider";
    press(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), Part(2, "sldPriority"));
    press(Qt::Key_End);
    EXPECT_TRUE(InView(11));
    EXPECT_EQ(Bar()->value(), Bar()->maximum());
    Part(11, "sldNumbers")->setFocus();
    press(Qt::Key_Up);
    EXPECT_TRUE(InView(10));
    EXPECT_EQ(QApplication::focusWidget(), Part(10, "sldNumbers")) << "a slider stays a slider";

    // Tab from the number field goes on to the next card, Shift+Tab back.
    Part(10, "txtLimit")->setFocus();
    press(Qt::Key_Tab, Qt::NoModifier);
    EXPECT_EQ(QApplication::focusWidget(), Part(11, "sldPriority"));
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), Part(10, "txtLimit"));
    press(Qt::Key_Home);
    EXPECT_TRUE(InView(0));
    EXPECT_EQ(Bar()->value(), 0);

    // A refresh (after Open, Merge, a dialog) keeps the active unit, and the
    // focus comes back to it from elsewhere.
    board->StepTo(CardStep::Last);
    const int unit = board->UnitIndexAt(board->ActiveRow());
    elsewhere->setFocus();
    QApplication::processEvents();
    board->BuildForCategory("&Kbots", UnitBoard::Build::Refresh);
    EXPECT_EQ(board->UnitIndexAt(board->ActiveRow()), unit);
    EXPECT_TRUE(InView(board->ActiveRow()));
    elsewhere->setFocus();
    QApplication::processEvents();
    board->FocusActiveCard();
    EXPECT_EQ(QApplication::focusWidget(), Part(board->ActiveRow(), "sldPriority"));
    EXPECT_FALSE(defs.Profile.Changed);
}

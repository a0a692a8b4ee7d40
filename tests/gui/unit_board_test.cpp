#include "mainwindow/qt_board.h"

#include "gui/gui_app.h"
#include "support/test_support.h"
#include "support/unit_fixtures.h"

#include <QLabel>
#include <QScrollBar>
#include <QSlider>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace vantrel;
using vantrel::testing::PressKey;
using vantrel::testing::ShowActive;

namespace {

struct BoardFixture : vantrel::testing::GuiTest {
    Definitions defs;
    test::ScriptedMessages messages;
    test::RecordingProgress progress;
    test::FixedGauge gauge;
    QWidget host;
    UnitBoard* board = nullptr;
    std::vector<std::string> pictures;

    void SetUp() override {
        defs.CurrentSide = "ARM";
        board = new UnitBoard(defs, messages, progress, &host);
        board->SetResourceGauge(&gauge);
        board->pictureLoader = [this](const std::string& path) {
            pictures.push_back(path);
            return QPixmap();
        };
        // Inner height 6000 twips.
        host.resize(420, 400);
        board->setGeometry(0, 0, 420, 400);
        ASSERT_TRUE(ShowActive(host));
    }
};

} // namespace

TEST_F(BoardFixture, CardsFollowTheScrollBarTheSizeAndTheCategory) {
    for (int i = 0; i < 12; ++i)
        test::AddUnit(defs, "K" + std::to_string(10 + i), "ARM", "KBOT");
    test::AddUnit(defs, "Solo", "ARM", "VTOL");
    board->BuildForCategory("&Kbots");
    EXPECT_EQ(board->CardCount(), 12);
    EXPECT_EQ(board->Vscroll1->maximum(), 10455);
    EXPECT_EQ(board->Vscroll1->value(), -255);
    EXPECT_EQ(board->picScreen->height(), 32400 / 15);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    frmUnit* first = board->CardAt(0);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->IsActive());
    EXPECT_EQ(first->lblUnitName->text().toStdString(), "K10");
    EXPECT_EQ(pictures.front(), "U1.pcx");

    board->Vscroll1->setValue(10455);
    EXPECT_EQ(board->picScreen->y(), -697);
    ASSERT_NE(board->CardAt(11), nullptr);
    EXPECT_EQ(board->CardAt(11)->lblUnitName->text().toStdString(), "K21");

    // A resize brings the range along: the last card stays reachable.
    board->resize(600, 500);
    QApplication::processEvents();
    EXPECT_EQ(board->CardAt(11)->width(), 600 - 17);
    EXPECT_EQ(board->CardAt(11)->y(), 11 * 90);
    EXPECT_EQ(defs.BoardTop, 12 * 1350);
    EXPECT_EQ(board->Vscroll1->maximum(), 16200 - (7500 - 255));
    EXPECT_EQ(board->Vscroll1->value(), board->Vscroll1->maximum());
    EXPECT_EQ(board->picScreen->y() + 12 * 90, 500 - 17);
    board->resize(600, 1200);
    QApplication::processEvents();
    EXPECT_FALSE(board->Vscroll1->isEnabled()) << "all cards fit";
    EXPECT_EQ(board->picScreen->y(), 17);
    board->resize(420, 400);

    // One card fits: no range, the card right below the banner.
    board->BuildForCategory("&Kbots");
    board->Vscroll1->setValue(2000);
    board->BuildForCategory("&Aircraft");
    ASSERT_EQ(board->CardCount(), 1);
    EXPECT_EQ(defs.Units[board->UnitIndexAt(0)].Name, "Solo");
    EXPECT_EQ(board->Vscroll1->value(), -255);
    EXPECT_FALSE(board->Vscroll1->isEnabled());
    EXPECT_EQ(board->picScreen->y(), 17);

    // Declining the long build leaves an empty board.
    messages.answers = {MsgAnswer::No};
    board->BuildForCategory("&All");
    EXPECT_EQ(board->CardCount(), 0);
    EXPECT_TRUE(board->RowsWithCards().empty());
    EXPECT_EQ(board->Vscroll1->maximum(), board->Vscroll1->minimum()) << "no range left over";
    for (QObject* child : board->picScreen->children())
        if (auto* w = qobject_cast<QWidget*>(child)) EXPECT_TRUE(w->isHidden());
}

TEST_F(BoardFixture, LargeBoardsMakeWidgetsOnlyForRowsInViewAndKeepTheirViews) {
    for (int i = 0; i < 2000; ++i)
        test::AddUnit(defs, "U" + std::to_string(100000 + i), "ARM", "KBOT", 0.125f, 70, i != 2);
    board->BuildForCategory("&Kbots");
    ASSERT_EQ(board->CardCount(), 2000);
    EXPECT_LE(board->CardWidgetCount(), 8) << "400 px of view hold at most five 90 px rows";
    board->CardAt(2)->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(board->CardAt(2)->lblExclude->isVisible());
    board->CardAt(1)->setFocus();
    QApplication::processEvents();

    // Scroll to the middle: the rows there get cards, with their own units.
    board->Vscroll1->setValue(1000 * 1350);
    std::vector<int> rows = board->RowsWithCards();
    EXPECT_NE(std::find(rows.begin(), rows.end(), 1000), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), 1), rows.end()) << "the active card stays";
    EXPECT_EQ(board->CardAt(1000)->lblUnitName->text().toStdString(), "U101000");
    EXPECT_LE(board->CardWidgetCount(), 10);

    // Cards keep an edit or the excluded view after scrolling away and back.
    frmUnit* card = board->CardAt(1001);
    ASSERT_NE(card, nullptr);
    card->sldNumbers->setValue(33);
    board->Vscroll1->setValue(-255);
    ASSERT_NE(board->CardAt(2), nullptr);
    EXPECT_TRUE(board->CardAt(2)->lblExclude->isVisible());
    EXPECT_FALSE(board->CardAt(2)->sldPriority->isVisible());
    board->Vscroll1->setValue(1000 * 1350);
    EXPECT_EQ(board->CardAt(1001)->lblLimit->text().toStdString(), "33");
}

TEST_F(BoardFixture, ShowingNeverWritesAUnitAndTheWheelScrollsPastInactiveCards) {
    for (int i = 0; i < 300; ++i)
        test::AddUnit(defs, "U" + std::to_string(1000 + i), "ARM", "KBOT", 8, 40);
    defs.OptionValues[optWeightMax] = 5;
    defs.OptionValues[optLimitMax] = 0;
    board->BuildForCategory("&Kbots");
    board->Vscroll1->setValue(150 * 1350);
    board->resize(500, 300);
    QApplication::processEvents();
    frmUnit* inactive = board->CardAt(151);
    ASSERT_NE(inactive, nullptr);
    EXPECT_EQ(inactive->lblWeight->text(), "8");
    EXPECT_EQ(inactive->sldPriority->value(), 500) << "above the maximum: at the end";
    EXPECT_EQ(inactive->lblLimit->text(), "40") << "a maximum of 0 shows the real value";
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        ASSERT_FLOAT_EQ(defs.Units[i].Weight, 8.0f) << i;
        ASSERT_FLOAT_EQ(defs.Units[i].Limit, 40.0f) << i;
    }
    EXPECT_FALSE(defs.Changed);

    // The wheel over an inactive card's slider scrolls the board instead.
    defs.OptionValues[optWeightMax] = 100;
    inactive->Show(board->UnitIndexAt(151), QPixmap());
    const int before = board->Vscroll1->value();
    auto wheel = [](QWidget* w, int notches) {
        QWheelEvent e(QPointF(5, 5), w->mapToGlobal(QPointF(5, 5)), QPoint(),
                      QPoint(0, -120 * notches), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
        QApplication::sendEvent(w, &e);
    };
    wheel(inactive->sldPriority, 1);
    EXPECT_EQ(inactive->sldPriority->value(), 800);
    EXPECT_GT(board->Vscroll1->value(), before);
    EXPECT_FALSE(defs.Changed);

    // The active card's slider takes it while it has the focus.
    frmUnit* active = board->CardAt(board->ActiveRow());
    ASSERT_NE(active, nullptr);
    active->sldPriority->setFocus();
    QApplication::processEvents();
    const int scrolled = board->Vscroll1->value();
    wheel(active->sldPriority, 1);
    EXPECT_EQ(board->Vscroll1->value(), scrolled);
    EXPECT_NE(defs.Units[active->UnitIndex].Weight, 8.0f);
    EXPECT_TRUE(defs.Changed);
}

TEST_F(BoardFixture, CtrlArrowsMoveTheActiveCardAndKeepItInView) {
    for (int i = 0; i < 12; ++i)
        test::AddUnit(defs, "K" + std::to_string(10 + i), "ARM", "KBOT", 1, 1, i != 1);
    auto* banner = new QWidget;
    banner->setFixedHeight(20); // taller than the designed 17 px: the cards start below it
    board->SetBanner(banner);
    board->BuildForCategory("&Kbots");
    auto press = [&](int key) {
        PressKey(QApplication::focusWidget(), key, {}, Qt::ControlModifier);
        QApplication::processEvents();
    };
    auto inView = [&](int row) {
        frmUnit* card = board->CardAt(row);
        if (!card || !card->IsActive() || card->isHidden()) return false;
        const int top = card->mapTo(board, QPoint(0, 0)).y();
        return top >= 20 && top + card->height() <= board->height();
    };
    board->CardAt(0)->sldNumbers->setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(inView(1));
    EXPECT_EQ(QApplication::focusWidget(), board->CardAt(1)) << "an excluded card has no slider";
    press(Qt::Key_Down);
    EXPECT_TRUE(inView(2));
    press(Qt::Key_End);
    EXPECT_TRUE(inView(11));
    EXPECT_EQ(board->Vscroll1->value(), 12 * 1350 - 6000);
    board->CardAt(11)->sldNumbers->setFocus();
    press(Qt::Key_Up);
    EXPECT_TRUE(inView(10));
    EXPECT_EQ(QApplication::focusWidget(), board->CardAt(10)->sldNumbers);
    press(Qt::Key_Home);
    EXPECT_TRUE(inView(0));
    EXPECT_EQ(board->Vscroll1->value(), -300);
    EXPECT_FALSE(defs.Changed);
}

#include "mainwindow/qt_board.h"

#include "gui/gui_app.h"
#include "support/test_support.h"
#include "support/unit_fixtures.h"

#include <QLabel>
#include <QScrollBar>
#include <QSlider>

#include <gtest/gtest.h>

using namespace vantrel;
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

    board->resize(600, 500);
    QApplication::processEvents();
    EXPECT_EQ(board->CardAt(11)->width(), 600 - 17);
    EXPECT_EQ(board->CardAt(11)->y(), 11 * 90);
    EXPECT_EQ(defs.BoardTop, 12 * 1350);

    // One card keeps the earlier scroll settings.
    board->Vscroll1->setValue(2000);
    board->BuildForCategory("&Aircraft");
    ASSERT_EQ(board->CardCount(), 1);
    EXPECT_EQ(defs.Units[board->UnitIndexAt(0)].Name, "Solo");
    EXPECT_EQ(board->Vscroll1->value(), 2000);
    EXPECT_EQ(board->picScreen->y(), 17);

    // Declining the long build leaves an empty board.
    messages.answers = {MsgAnswer::No};
    board->BuildForCategory("&All");
    EXPECT_EQ(board->CardCount(), 0);
    EXPECT_TRUE(board->RowsWithCards().empty());
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

#include "forms/frmUnit.h"

#include "gui/gui_app.h"
#include "support/unit_fixtures.h"

#include <QLabel>
#include <QLineEdit>
#include <QSlider>

#include <gtest/gtest.h>

using namespace vantrel;
using vantrel::testing::PressKey;
using vantrel::testing::ShowActive;
using vantrel::testing::TypeText;

namespace {

struct CardFixture : vantrel::testing::GuiTest {
    Definitions defs;
    QWidget host;
    QLineEdit* elsewhere = nullptr;
    frmUnit* card = nullptr;
    int unit = 0;

    void SetUp() override {
        host.resize(500, 200);
        elsewhere = new QLineEdit(&host);
        elsewhere->setGeometry(0, 150, 100, 20);
        card = new frmUnit(defs, &host);
        card->setGeometry(0, 0, 400, 90);
    }

    // A filled card, activated through the focus.
    void Open(float weight, float limit, bool include = true) {
        unit = test::AddUnit(defs, "Flash", "ARM", "TANK", weight, limit, include);
        card->Show(unit, QPixmap());
        ASSERT_TRUE(ShowActive(host));
        card->setFocus();
        QApplication::processEvents();
        ASSERT_TRUE(card->IsActive());
    }
    std::string Text(QLabel* l) { return l->text().toStdString(); }
    std::string Text(QLineEdit* l) { return l->text().toStdString(); }
    vtUnit& Unit() { return defs.Units[unit]; }
};

} // namespace

TEST_F(CardFixture, ActivationShowsTheValuesReadingTheOptionsEachTimeAndLeavingDimsTheCard) {
    Open(8, 40);
    EXPECT_EQ(card->sldPriority->value(), 800);
    EXPECT_EQ(Text(card->txtWeight), "8");
    EXPECT_EQ(Text(card->lblLimit), "40");
    EXPECT_TRUE(card->txtWeight->isVisible());
    auto readable = [](QLabel* l) {
        QColor back = l->palette().color(QPalette::Window),
               text = l->palette().color(QPalette::WindowText);
        return ContrastRatio({back.red(), back.green(), back.blue()},
                             {text.red(), text.green(), text.blue()}) >= 4.5;
    };
    EXPECT_EQ(card->lblUnitName->palette().color(QPalette::Window), frmUnit::ActiveTitleColor());
    EXPECT_NE(frmUnit::ActiveTitleColor(), QApplication::palette().color(QPalette::Highlight))
        << "distinct from the banner";
    EXPECT_TRUE(readable(card->lblUnitName));
    EXPECT_EQ(card->imgUnit->toolTip().toStdString(), "Flash - Flash unit");

    elsewhere->setFocus();
    QApplication::processEvents();
    EXPECT_FALSE(card->IsActive());
    EXPECT_FALSE(card->txtWeight->isVisible());
    EXPECT_EQ(card->lblUnitName->palette().color(QPalette::Window),
              frmUnit::InactiveCaptionColor());
    EXPECT_TRUE(readable(card->lblUnitName));

    // Lower maxima: the values above them show as they are, sliders at the end.
    defs.OptionValues[optWeightMax] = 5;
    defs.OptionValues[optLimitMax] = 0;
    card->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(card->sldPriority->maximum(), 500);
    EXPECT_EQ(card->sldPriority->value(), 500);
    EXPECT_EQ(Text(card->lblWeight), "8");
    EXPECT_EQ(Text(card->txtLimit), "40");
    elsewhere->setFocus(); // leaving the untouched fields commits nothing
    QApplication::processEvents();
    EXPECT_FLOAT_EQ(Unit().Weight, 8.0f);
    EXPECT_FLOAT_EQ(Unit().Limit, 40.0f);
    EXPECT_FALSE(defs.Changed) << "showing and activating never write";
}

TEST_F(CardFixture, ExcludedUnitShowsTheNoticeBeforeAndAfterActivation) {
    unit = test::AddUnit(defs, "Flash", "ARM", "TANK", 2.5f, 7, false);
    card->Show(unit, QPixmap());
    ASSERT_TRUE(ShowActive(host));
    EXPECT_TRUE(card->lblExclude->isVisible()) << "without being clicked";
    card->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(card->lblExclude->isVisible());
    for (QWidget* w : std::initializer_list<QWidget*>{card->sldPriority, card->sldNumbers,
                                                      card->txtWeight, card->txtLimit})
        EXPECT_FALSE(w->isVisible()) << w->objectName().toStdString();
    elsewhere->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(card->lblExclude->isVisible());
}

TEST_F(CardFixture, EntriesFilterKeysAndCommitOnEnterAndOnLeaving) {
    Open(2.5f, 3);
    card->txtWeight->setFocus();
    card->txtWeight->selectAll();
    TypeText(card->txtWeight, ".");
    EXPECT_EQ(Text(card->txtWeight), "2.5") << "the filter sees the selected text too";
    TypeText(card->txtWeight, "7");
    EXPECT_EQ(Text(card->txtWeight), "7");

    card->txtLimit->setFocus(); // leaving commits the weight
    QApplication::processEvents();
    card->txtLimit->clear();
    TypeText(card->txtLimit, "12.7");
    PressKey(card->txtLimit, Qt::Key_Return, "\r");
    EXPECT_FLOAT_EQ(Unit().Limit, 12.0f);
    EXPECT_EQ(QApplication::focusWidget(), card->sldNumbers);
    EXPECT_EQ(Text(card->lblLimit), "12");

    card->txtLimit->setFocus();
    card->txtLimit->setText("12.7");
    PressKey(card->txtLimit, Qt::Key_Tab, "\t"); // Tab leaves the field
    EXPECT_NE(QApplication::focusWidget(), card->txtLimit);
    EXPECT_FLOAT_EQ(Unit().Limit, 13.0f);

    card->txtWeight->setFocus();
    card->txtWeight->setText(".");
    PressKey(card->txtWeight, Qt::Key_Return, "\r");
    EXPECT_FLOAT_EQ(Unit().Weight, 7.0f) << "an empty entry keeps the unit's value";
    EXPECT_EQ(Text(card->txtWeight), "7");
    card->txtWeight->setText("30");
    PressKey(card->txtWeight, Qt::Key_Return, "\r");
    EXPECT_FLOAT_EQ(Unit().Weight, 10.0f);
    EXPECT_EQ(QApplication::focusWidget(), card->sldPriority);
}

TEST_F(CardFixture, EntryFieldsLieOnTheirValueLabels) {
    Open(2.5f, 3);
    for (auto [label, field] :
         {std::pair{card->lblWeight, card->txtWeight}, std::pair{card->lblLimit, card->txtLimit}})
        EXPECT_EQ(card->childAt(label->geometry().center()), field) << Text(field);
    card->txtWeight->setFocus();
    card->txtWeight->selectAll();
    TypeText(card->txtWeight, "2.35");
    EXPECT_EQ(Text(card->txtWeight), "2.35");
}

TEST_F(CardFixture, SliderKeysStepLikeTheTrackbar) {
    Open(2.5f, 20);
    card->sldPriority->setFocus();
    PressKey(card->sldPriority, Qt::Key_PageUp);
    EXPECT_EQ(card->sldPriority->value(), 350);
    EXPECT_FLOAT_EQ(Unit().Weight, 3.5f);
    PressKey(card->sldNumbers, Qt::Key_PageUp);
    EXPECT_EQ(card->sldNumbers->value(), 25);
    EXPECT_EQ(Text(card->txtLimit), "25");
}

TEST_F(CardFixture, ManualEditSetsAndShowsThePriority) {
    Open(2.5f, 3);
    elsewhere->setFocus();
    QApplication::processEvents();
    std::optional<std::string> answer = "300";
    card->InputBox = [&](const std::string&, const std::string&) { return answer; };
    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(2, 2), QPointF(2, 2), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(card->lblWeight, &dbl);
    EXPECT_EQ(Text(card->lblWeight), "255");
    EXPECT_FLOAT_EQ(Unit().Weight, 255.0f);
    EXPECT_EQ(card->sldPriority->value(), 1000) << "above the maximum: the slider at its end";
    answer = std::nullopt;
    QApplication::sendEvent(card->lblWeight, &dbl);
    EXPECT_EQ(Text(card->lblWeight), "255");
}

TEST_F(CardFixture, ACardNeverFilledHidesItself) {
    ASSERT_TRUE(ShowActive(host));
    card->show();
    card->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(card->isHidden());
    EXPECT_TRUE(card->CurrentView().selfHidden);
}

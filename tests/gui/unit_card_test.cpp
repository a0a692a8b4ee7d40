#include "forms/frmUnit.h"

#include "gui/gui_app.h"
#include "support/unit_fixtures.h"

#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSlider>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

using namespace vantrel;
using vantrel::testing::PressKey;
using vantrel::testing::ShowActive;
using vantrel::testing::TypeText;
using vantrel::testing::Wheel;

namespace {

// The rules behind the card (steps, caps, rounding, colours) are pinned by
// the card rules tests; these pin what reaches them: keys, clicks, the wheel,
// the focus and what the card shows.
struct CardFixture : vantrel::testing::GuiTest {
    Definitions defs;
    QWidget host;
    QLineEdit* elsewhere = nullptr;
    frmUnit* card = nullptr;
    int unit = 0;
    std::vector<std::tuple<UnitField, double, int>> commits; // field, before, gesture
    std::vector<std::pair<CardStep, CardControl>> steps;

    void SetUp() override {
        host.resize(500, 200);
        elsewhere = new QLineEdit(&host);
        elsewhere->setGeometry(0, 170, 100, 20);
        card = new frmUnit(defs, &host);
        card->setGeometry(0, 0, 400, card->sizeHint().height());
        QObject::connect(card, &frmUnit::valueCommitted,
                         [this](int, UnitField field, double before, int gesture) {
                             commits.emplace_back(field, before, gesture);
                         });
        QObject::connect(card, &frmUnit::navigate, [this](CardStep step, CardControl control) {
            steps.emplace_back(step, control);
        });
    }
    // A filled card, shown; activated through the focus unless excluded.
    void Open(float weight, float limit, bool include = true) {
        unit = test::AddUnit(defs, "ARM", "Flash", "TANK", weight, limit, include);
        card->Show(unit, QPixmap(), "Flash");
        ASSERT_TRUE(ShowActive(host));
        if (!include) return;
        card->setFocus();
        QApplication::processEvents();
        ASSERT_TRUE(card->IsActive());
    }
    void Leave() {
        elsewhere->setFocus();
        QApplication::processEvents();
    }
    template <class W = QWidget> W* Part(const char* name) {
        return card->findChild<W*>(QString::fromLatin1(name));
    }
    QSlider* Priority() { return Part<QSlider>("sldPriority"); }
    QSlider* Numbers() { return Part<QSlider>("sldNumbers"); }
    QLineEdit* Weight() { return Part<QLineEdit>("txtWeight"); }
    QLineEdit* Limit() { return Part<QLineEdit>("txtLimit"); }
    QString Label(const char* name) { return Part<QLabel>(name)->text(); }
    vtUnit& Unit() { return defs.Units[unit]; }
    void Click(QWidget* w) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), w->mapToGlobal(QPointF(2, 2)),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(w, &press);
        QApplication::processEvents();
    }
    void Enter(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->setText(text);
        PressKey(field, Qt::Key_Return, "\r");
    }
};

} // namespace

TEST_F(CardFixture, ActivationShowsTheValuesAndLeavingDimsTheCard) {
    Open(8, 40);
    EXPECT_EQ(Priority()->value(), 800);
    EXPECT_EQ(Weight()->text(), "8");
    EXPECT_EQ(Label("lblLimit"), "40");
    EXPECT_TRUE(Weight()->isVisible());
    EXPECT_EQ(Part("lblUnitName")->palette().color(QPalette::Window), frmUnit::ActiveTitleColor());
    // What the tooltip and a screen reader say.
    EXPECT_EQ(card->toolTip(), "Flash unit (U1)");
    EXPECT_EQ(card->accessibleName(), "Flash");
    EXPECT_EQ(Priority()->accessibleName(), "Build Priority of Flash");
    EXPECT_EQ(Limit()->accessibleName(), "Number Produced value of Flash");
    Leave(); // leaving the untouched fields commits nothing
    EXPECT_FALSE(card->IsActive());
    EXPECT_FALSE(Weight()->isVisible());
    EXPECT_FLOAT_EQ(Unit().Weight, 8.0f);
    EXPECT_FALSE(defs.Profile.Changed) << "showing and activating never write";
}

TEST_F(CardFixture, ExcludedUnitShowsTheNoticeAndTakesTheFocusItself) {
    Open(2.5f, 7, false);
    EXPECT_TRUE(Part("lblExclude")->isVisible()) << "without being clicked";
    Click(Part("imgUnit"));
    EXPECT_EQ(QApplication::focusWidget(), card) << "an excluded card has no slider";
    EXPECT_TRUE(card->IsActive());
    for (QWidget* w : std::initializer_list<QWidget*>{Priority(), Numbers(), Weight(), Limit()})
        EXPECT_FALSE(w->isVisible()) << w->objectName().toStdString();
}

TEST_F(CardFixture, AClickAnywhereFocusesThePrioritySliderAndTabGoesOnToTheNextCard) {
    Open(2.5f, 3);
    for (const char* part : {"imgUnit", "lblNumbers"}) {
        Leave();
        Click(Part(part));
        EXPECT_EQ(QApplication::focusWidget(), Priority()) << part;
    }
    // Tab: priority slider, priority field, number slider, number field.
    EXPECT_EQ(Priority()->nextInFocusChain(), Weight());
    EXPECT_EQ(Weight()->nextInFocusChain(), Numbers());
    EXPECT_EQ(Numbers()->nextInFocusChain(), Limit());
    PressKey(Limit(), Qt::Key_Tab);
    PressKey(Priority(), Qt::Key_Backtab, {}, Qt::ShiftModifier);
    PressKey(Numbers(), Qt::Key_End, {}, Qt::ControlModifier);
    using Step = std::pair<CardStep, CardControl>;
    EXPECT_EQ(steps, (std::vector<Step>{{CardStep::Next, CardControl::First},
                                        {CardStep::Previous, CardControl::Last},
                                        {CardStep::Last, CardControl::Same}}));
}

TEST_F(CardFixture, KeysAndTheWheelStepTheFocusedSliderAndStepsShareAGestureWhileItKeepsTheFocus) {
    Open(2.5f, 20);
    // WeightMax 10 and LimitMax 50: 0.10 and 1.00, 1 and 5.
    const std::tuple<QSlider*, int, int> keys[] = {{Priority(), Qt::Key_Up, 260},
                                                   {Priority(), Qt::Key_PageUp, 360},
                                                   {Numbers(), Qt::Key_PageDown, 15}};
    for (const auto& [slider, key, value] : keys) {
        slider->setFocus();
        PressKey(slider, key);
        EXPECT_EQ(slider->value(), value) << key;
    }
    EXPECT_EQ(Limit()->text(), "15");
    Priority()->setFocus();
    Wheel(Priority(), 1);
    EXPECT_EQ(Priority()->value(), 370) << "a notch is a small step";
    Wheel(Numbers(), 1);
    EXPECT_EQ(Numbers()->value(), 15) << "a slider without the focus leaves the wheel alone";

    commits.clear();
    PressKey(Priority(), Qt::Key_Right);
    PressKey(Priority(), Qt::Key_Right);
    Numbers()->setFocus();
    PressKey(Numbers(), Qt::Key_Right);
    Priority()->setFocus();
    PressKey(Priority(), Qt::Key_Right);
    Enter(Weight(), "7");
    ASSERT_EQ(commits.size(), 5u);
    const int first = std::get<2>(commits[0]);
    EXPECT_FLOAT_EQ(static_cast<float>(std::get<1>(commits[0])), 3.7f);
    EXPECT_NE(first, 0);
    EXPECT_EQ(std::get<2>(commits[1]), first);
    EXPECT_EQ(std::get<0>(commits[2]), UnitField::Limit);
    EXPECT_NE(std::get<2>(commits[2]), first);
    EXPECT_NE(std::get<2>(commits[3]), first) << "the focus came back: a new gesture";
    EXPECT_EQ(std::get<2>(commits[4]), 0) << "a typed value is a step of its own";
}

TEST_F(CardFixture, EntriesTakeNumbersAndCommitOnEnterAndOnLeaving) {
    Open(2.5f, 3);
    Weight()->setFocus();
    Weight()->selectAll();
    TypeText(Weight(), "7x");
    EXPECT_EQ(Weight()->text(), "7") << "digits and one point only";
    Limit()->setFocus(); // leaving commits the weight
    QApplication::processEvents();
    EXPECT_FLOAT_EQ(Unit().Weight, 7.0f);

    Enter(Limit(), "12.7");
    EXPECT_FLOAT_EQ(Unit().Limit, 12.0f);
    EXPECT_EQ(QApplication::focusWidget(), Numbers());
    EXPECT_EQ(Label("lblLimit"), "12");
    Enter(Weight(), ".");
    EXPECT_FLOAT_EQ(Unit().Weight, 7.0f) << "an empty entry keeps the unit's value";
    EXPECT_EQ(Weight()->text(), "7");
    Enter(Weight(), "30");
    EXPECT_FLOAT_EQ(Unit().Weight, 10.0f);
    EXPECT_EQ(QApplication::focusWidget(), Priority());
}

TEST_F(CardFixture, DoubleClickOnThePriorityAsksForItAndShowsIt) {
    Open(2.5f, 3);
    Leave();
    std::optional<std::string> answer = "300";
    card->InputBox = [&](const std::string&, const std::string&) { return answer; };
    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(2, 2), QPointF(2, 2), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(Part("lblWeight"), &dbl);
    EXPECT_EQ(Label("lblWeight"), "255");
    EXPECT_FLOAT_EQ(Unit().Weight, 255.0f);
    EXPECT_EQ(Priority()->value(), 1000) << "above the maximum: the slider at its end";
    answer = std::nullopt;
    QApplication::sendEvent(Part("lblWeight"), &dbl);
    EXPECT_EQ(Label("lblWeight"), "255");
}

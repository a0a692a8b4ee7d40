#include "forms/frmUnit.h"

#include "gui/gui_app.h"
#include "support/unit_fixtures.h"

#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSlider>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

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
    struct Commit {
        UnitField field;
        double before;
        int gesture;
    };
    std::vector<Commit> commits;
    std::vector<std::pair<CardStep, CardControl>> steps;

    void SetUp() override {
        host.resize(500, 200);
        elsewhere = new QLineEdit(&host);
        elsewhere->setGeometry(0, 170, 100, 20);
        card = new frmUnit(defs, &host);
        card->setGeometry(0, 0, 400, card->sizeHint().height());
        QObject::connect(card, &frmUnit::valueCommitted,
                         [this](int, UnitField field, double before, int gesture) {
                             commits.push_back({field, before, gesture});
                         });
        QObject::connect(card, &frmUnit::navigate, [this](CardStep step, CardControl control) {
            steps.emplace_back(step, control);
        });
    }

    // A filled card, activated through the focus.
    void Open(float weight, float limit, bool include = true) {
        unit = test::AddUnit(defs, "Flash", "ARM", "TANK", weight, limit, include);
        card->Show(unit, QPixmap(), "Flash");
        ASSERT_TRUE(ShowActive(host));
        card->setFocus();
        QApplication::processEvents();
        ASSERT_TRUE(card->IsActive());
    }
    template <class W = QWidget> W* Part(const char* name) {
        return card->findChild<W*>(QString::fromLatin1(name));
    }
    QSlider* Priority() { return Part<QSlider>("sldPriority"); }
    QSlider* Numbers() { return Part<QSlider>("sldNumbers"); }
    QLineEdit* Weight() { return Part<QLineEdit>("txtWeight"); }
    QLineEdit* Limit() { return Part<QLineEdit>("txtLimit"); }
    std::string Text(const char* name) {
        if (auto* l = Part<QLabel>(name)) return l->text().toStdString();
        return Part<QLineEdit>(name)->text().toStdString();
    }
    vtUnit& Unit() { return defs.Units[unit]; }
    void Click(QWidget* w) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), w->mapToGlobal(QPointF(2, 2)),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(w, &press);
        QApplication::processEvents();
    }
    void Wheel(QWidget* w, int notches) {
        QWheelEvent wheel(QPointF(5, 5), w->mapToGlobal(QPointF(5, 5)), QPoint(),
                          QPoint(0, 120 * notches), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &wheel);
    }
};

} // namespace

TEST_F(CardFixture, ActivationShowsTheValuesReadingTheOptionsEachTimeAndLeavingDimsTheCard) {
    Open(8, 40);
    EXPECT_EQ(Priority()->value(), 800);
    EXPECT_EQ(Text("txtWeight"), "8");
    EXPECT_EQ(Text("lblLimit"), "40");
    EXPECT_TRUE(Weight()->isVisible());
    auto readable = [](QWidget* w) {
        QColor back = w->palette().color(QPalette::Window),
               text = w->palette().color(QPalette::WindowText);
        return ContrastRatio({back.red(), back.green(), back.blue()},
                             {text.red(), text.green(), text.blue()}) >= 4.5;
    };
    QLabel* title = Part<QLabel>("lblUnitName");
    EXPECT_EQ(title->palette().color(QPalette::Window), frmUnit::ActiveTitleColor());
    EXPECT_TRUE(readable(title));
    EXPECT_TRUE(readable(card));
    // What the tooltip and a screen reader say.
    EXPECT_EQ(card->toolTip().toStdString(), "Flash unit (U1)");
    EXPECT_EQ(card->accessibleName().toStdString(), "Flash");
    EXPECT_EQ(Priority()->accessibleName().toStdString(), "Build Priority of Flash");
    EXPECT_EQ(Limit()->accessibleName().toStdString(), "Number Produced value of Flash");

    elsewhere->setFocus();
    QApplication::processEvents();
    EXPECT_FALSE(card->IsActive());
    EXPECT_FALSE(Weight()->isVisible());
    EXPECT_TRUE(readable(title));

    // Lower maxima: the values above them show as they are, sliders at the end.
    defs.Options.WeightMax = 5;
    defs.Options.LimitMax = 0;
    card->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(Priority()->maximum(), 500);
    EXPECT_EQ(Priority()->value(), 500);
    EXPECT_EQ(Text("lblWeight"), "8");
    EXPECT_EQ(Text("txtLimit"), "40");
    elsewhere->setFocus(); // leaving the untouched fields commits nothing
    QApplication::processEvents();
    EXPECT_FLOAT_EQ(Unit().Weight, 8.0f);
    EXPECT_FLOAT_EQ(Unit().Limit, 40.0f);
    EXPECT_FALSE(defs.Profile.Changed) << "showing and activating never write";
}

TEST_F(CardFixture, ExcludedUnitShowsTheNoticeAndTakesTheFocusItself) {
    unit = test::AddUnit(defs, "Flash", "ARM", "TANK", 2.5f, 7, false);
    card->Show(unit, QPixmap(), "Flash");
    ASSERT_TRUE(ShowActive(host));
    EXPECT_TRUE(Part<QLabel>("lblExclude")->isVisible()) << "without being clicked";
    Click(Part("imgUnit"));
    EXPECT_EQ(QApplication::focusWidget(), card) << "an excluded card has no slider";
    EXPECT_TRUE(card->IsActive());
    for (QWidget* w : std::initializer_list<QWidget*>{Priority(), Numbers(), Weight(), Limit()})
        EXPECT_FALSE(w->isVisible()) << w->objectName().toStdString();
}

TEST_F(CardFixture, AClickAnywhereFocusesThePrioritySliderAndTabGoesOnToTheNextCard) {
    Open(2.5f, 3);
    for (const char* part : {"imgUnit", "lblUnitName", "lblNumbers"}) {
        elsewhere->setFocus();
        QApplication::processEvents();
        Click(Part(part));
        EXPECT_EQ(QApplication::focusWidget(), Priority()) << part;
        EXPECT_TRUE(card->IsActive()) << part;
    }
    // Tab: priority slider, priority field, number slider, number field.
    const std::vector<QWidget*> order{Priority(), Weight(), Numbers(), Limit()};
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        EXPECT_EQ(order[i]->nextInFocusChain(), order[i + 1]) << i;
    }
    PressKey(Limit(), Qt::Key_Tab);
    PressKey(Priority(), Qt::Key_Backtab, {}, Qt::ShiftModifier);
    PressKey(Numbers(), Qt::Key_End, {}, Qt::ControlModifier);
    using Step = std::pair<CardStep, CardControl>;
    EXPECT_EQ(steps, (std::vector<Step>{{CardStep::Next, CardControl::First},
                                        {CardStep::Previous, CardControl::Last},
                                        {CardStep::Last, CardControl::Same}}));
}

TEST_F(CardFixture, KeysMakeSmallAndLargeStepsAndTheWheelOnlyOnTheFocusedSlider) {
    Open(2.5f, 20);
    // WeightMax 10 and LimitMax 50: 0.10 and 1.00, 1 and 5.
    const std::tuple<QSlider*, int, int> keys[] = {
        {Priority(), Qt::Key_Right, 260}, {Priority(), Qt::Key_Up, 270},
        {Priority(), Qt::Key_Left, 260},  {Priority(), Qt::Key_Down, 250},
        {Priority(), Qt::Key_PageUp, 350}, {Priority(), Qt::Key_PageDown, 250},
        {Numbers(), Qt::Key_Up, 21},       {Numbers(), Qt::Key_PageDown, 16}};
    for (const auto& [slider, key, value] : keys) {
        slider->setFocus();
        PressKey(slider, key);
        EXPECT_EQ(slider->value(), value) << key;
    }
    EXPECT_FLOAT_EQ(Unit().Weight, 2.5f);
    EXPECT_EQ(Text("txtLimit"), "16");

    Priority()->setFocus();
    Wheel(Priority(), 2);
    EXPECT_EQ(Priority()->value(), 270) << "a notch is a small step";
    Wheel(Numbers(), 1);
    EXPECT_EQ(Numbers()->value(), 16) << "a slider without the focus leaves the wheel alone";
}

TEST_F(CardFixture, KeyStepsWhileTheSliderKeepsTheFocusShareAGesture) {
    Open(2.5f, 20);
    Priority()->setFocus();
    PressKey(Priority(), Qt::Key_Right);
    PressKey(Priority(), Qt::Key_Right);
    Numbers()->setFocus();
    PressKey(Numbers(), Qt::Key_Right);
    Priority()->setFocus();
    PressKey(Priority(), Qt::Key_Right);
    Weight()->setFocus();
    Weight()->setText("7");
    PressKey(Weight(), Qt::Key_Return, "\r");
    ASSERT_EQ(commits.size(), 5u);
    EXPECT_DOUBLE_EQ(commits[0].before, 2.5);
    EXPECT_NE(commits[0].gesture, 0);
    EXPECT_EQ(commits[1].gesture, commits[0].gesture);
    EXPECT_NE(commits[2].gesture, commits[0].gesture);
    EXPECT_EQ(commits[2].field, UnitField::Limit);
    EXPECT_NE(commits[3].gesture, commits[0].gesture) << "the focus came back: a new gesture";
    EXPECT_EQ(commits[4].gesture, 0) << "a typed value is a step of its own";
}

TEST_F(CardFixture, EntriesTakeNumbersAndCommitOnEnterAndOnLeaving) {
    Open(2.5f, 3);
    Weight()->setFocus();
    Weight()->selectAll();
    TypeText(Weight(), "7x");
    EXPECT_EQ(Text("txtWeight"), "7") << "digits and one point only";

    Limit()->setFocus(); // leaving commits the weight
    QApplication::processEvents();
    EXPECT_FLOAT_EQ(Unit().Weight, 7.0f);
    Limit()->clear();
    TypeText(Limit(), "12.7");
    PressKey(Limit(), Qt::Key_Return, "\r");
    EXPECT_FLOAT_EQ(Unit().Limit, 12.0f);
    EXPECT_EQ(QApplication::focusWidget(), Numbers());
    EXPECT_EQ(Text("lblLimit"), "12");

    Weight()->setFocus();
    Weight()->setText(".");
    PressKey(Weight(), Qt::Key_Return, "\r");
    EXPECT_FLOAT_EQ(Unit().Weight, 7.0f) << "an empty entry keeps the unit's value";
    EXPECT_EQ(Text("txtWeight"), "7");
    Weight()->setText("30");
    PressKey(Weight(), Qt::Key_Return, "\r");
    EXPECT_FLOAT_EQ(Unit().Weight, 10.0f);
    EXPECT_EQ(QApplication::focusWidget(), Priority());
}

TEST_F(CardFixture, AtItsNarrowestEveryValueSitsBesideItsLabelAndNothingIsCut) {
    Open(10, 50);
    for (int width : {card->minimumSizeHint().width(), 1900}) {
        card->resize(width, card->sizeHint().height());
        QApplication::processEvents();
        for (const char* name : {"lblPriority", "lblNumbers", "lblUnitName"}) {
            QLabel* label = Part<QLabel>(name);
            EXPECT_GE(label->width(), label->sizeHint().width()) << name << " at " << width;
        }
        for (auto [label, value] : {std::pair{"lblPriority", "txtWeight"},
                                    std::pair{"lblNumbers", "txtLimit"}}) {
            const QRect l = Part(label)->geometry(), v = Part(value)->geometry();
            const int textRight = l.left() + Part<QLabel>(label)->fontMetrics().horizontalAdvance(
                                                 Part<QLabel>(label)->text());
            EXPECT_GE(v.left() - textRight, 4) << value << " at " << width;
            EXPECT_LT(v.left() - l.right(), 40) << value << " beside its label at " << width;
        }
    }
}

TEST_F(CardFixture, ManualEditSetsAndShowsThePriority) {
    Open(2.5f, 3);
    elsewhere->setFocus();
    QApplication::processEvents();
    std::optional<std::string> answer = "300";
    card->InputBox = [&](const std::string&, const std::string&) { return answer; };
    QMouseEvent dbl(QEvent::MouseButtonDblClick, QPointF(2, 2), QPointF(2, 2), Qt::LeftButton,
                    Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(Part("lblWeight"), &dbl);
    EXPECT_EQ(Text("lblWeight"), "255");
    EXPECT_FLOAT_EQ(Unit().Weight, 255.0f);
    EXPECT_EQ(Priority()->value(), 1000) << "above the maximum: the slider at its end";
    answer = std::nullopt;
    QApplication::sendEvent(Part("lblWeight"), &dbl);
    EXPECT_EQ(Text("lblWeight"), "255");
}

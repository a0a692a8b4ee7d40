#include "forms/frmUnit.h"

#include "base/text.h"
#include "forms/qt_text.h"

#include <QApplication>
#include <QGridLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <limits>
#include <utility>

namespace vantrel {

namespace {

constexpr int PictureSize = 64; // the game's unit pictures

SliderSettings SettingsOf(const QSlider* s) {
    return {s->minimum(), s->maximum(), s->pageStep(), s->singleStep(), s->tickInterval()};
}

Rgb ToRgb(const QColor& c) {
    return {c.red(), c.green(), c.blue()};
}
// `back` behind a text that reads on it, `preferred` when it does.
void ReadableColour(QWidget* w, const QColor& back, Rgb preferred) {
    const Rgb text = ReadableText(ToRgb(back), preferred);
    QPalette p = w->palette();
    p.setColor(QPalette::Window, back);
    p.setColor(QPalette::WindowText, QColor(text.r, text.g, text.b));
    w->setPalette(p);
}

// Key and wheel steps of one slider while it keeps the focus form a gesture;
// numbers are unique across all cards.
int NextGesture() {
    static int last = 0;
    last = last == std::numeric_limits<int>::max() ? 1 : last + 1;
    return last;
}

} // namespace

QColor frmUnit::ActiveCaptionColor() {
    return QApplication::palette().color(QPalette::Highlight);
}
// The banner above the board uses the highlight colour too: the active card's
// title is a darker shade of it, so the two never merge.
QColor frmUnit::ActiveTitleColor() {
    return ActiveCaptionColor().darker(160);
}
QColor frmUnit::InactiveCaptionColor() {
    return QApplication::palette().color(QPalette::Mid);
}

frmUnit::frmUnit(Definitions& defs, QWidget* parent) : QFrame(parent), defs_(defs) {
    setObjectName("frmUnit");
    setFrameShape(QFrame::StyledPanel);
    setFocusPolicy(Qt::ClickFocus);
    setAutoFillBackground(true);
    // On the board's viewport a card would take the viewport's Base colour.
    setBackgroundRole(QPalette::Window);

    auto label = [this](const char* name, const char* text) {
        auto* l = new QLabel(QString::fromLatin1(text), this);
        l->setObjectName(name);
        return l;
    };
    lblUnitName = label("lblUnitName", "");
    lblUnitName->setAutoFillBackground(true);
    lblUnitName->setBackgroundRole(QPalette::Window);
    lblUnitName->setTextFormat(Qt::PlainText);
    QFont bold = lblUnitName->font();
    bold.setBold(true);
    lblUnitName->setFont(bold);
    imgUnit = label("imgUnit", "");
    imgUnit->setFixedSize(PictureSize, PictureSize);
    imgUnit->setAlignment(Qt::AlignCenter);
    lblPriority = label("lblPriority", "Build Priority");
    lblNumbers = label("lblNumbers", "Number Produced");
    lblWeight = label("lblWeight", "0");
    lblLimit = label("lblLimit", "0");
    lblExclude = label("lblExclude", ExcludedCaption.data());
    lblExclude->setAlignment(Qt::AlignCenter);
    lblExclude->hide();

    // A value cell holds the value's label on an inactive card and its entry
    // field on the active one, as wide as the widest value in bold.
    QFontMetrics boldMetrics(bold);
    const int valueWidth = boldMetrics.horizontalAdvance(QStringLiteral("0000.00")) +
                           2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + 6;
    auto entry = [this, valueWidth](const char* name) {
        auto* t = new QLineEdit(QStringLiteral("0"), this);
        t->setObjectName(name);
        t->setToolTip(QtText(std::string(EntryTooltip)));
        t->setFixedWidth(valueWidth);
        // Digits and at most one decimal point.
        t->setValidator(new QRegularExpressionValidator(
            QRegularExpression(QStringLiteral("[0-9]*\\.?[0-9]*")), t));
        t->hide();
        return t;
    };
    txtWeight = entry("txtWeight");
    txtLimit = entry("txtLimit");
    for (QLabel* l : {lblWeight, lblLimit})
        l->setMinimumWidth(valueWidth);

    auto slider = [this](const char* name, const char* tip) {
        auto* sl = new QSlider(Qt::Horizontal, this);
        sl->setObjectName(name);
        sl->setToolTip(QString::fromLatin1(tip));
        sl->setTickPosition(QSlider::TicksBelow);
        sl->setFocusPolicy(Qt::StrongFocus);
        return sl;
    };
    sldPriority = slider("sldPriority", "Unit Build Priority");
    sldNumbers = slider("sldNumbers", "Maximum Number Produced");
    SetSliders();

    auto* grid = new QGridLayout;
    grid->addWidget(imgUnit, 0, 0, 4, 1, Qt::AlignTop);
    grid->addWidget(lblPriority, 0, 1);
    grid->addWidget(lblWeight, 0, 2);
    grid->addWidget(txtWeight, 0, 2);
    grid->addWidget(sldPriority, 1, 1, 1, 3);
    grid->addWidget(lblNumbers, 2, 1);
    grid->addWidget(lblLimit, 2, 2);
    grid->addWidget(txtLimit, 2, 2);
    grid->addWidget(sldNumbers, 3, 1, 1, 3);
    grid->addWidget(lblExclude, 0, 1, 4, 3);
    grid->setColumnStretch(3, 1);
    // Hidden parts keep their room: every card is as high as every other,
    // active or not, excluded or not.
    for (QWidget* w : std::initializer_list<QWidget*>{lblPriority, lblWeight, txtWeight,
                                                      sldPriority, lblNumbers, lblLimit, txtLimit,
                                                      sldNumbers}) {
        QSizePolicy policy = w->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        w->setSizePolicy(policy);
    }
    // The style's margins and spacing: a nested layout would have none.
    QStyle* s = style();
    grid->setContentsMargins(s->pixelMetric(QStyle::PM_LayoutLeftMargin),
                             s->pixelMetric(QStyle::PM_LayoutTopMargin) / 2,
                             s->pixelMetric(QStyle::PM_LayoutRightMargin),
                             s->pixelMetric(QStyle::PM_LayoutBottomMargin) / 2);
    const int spacing = std::max(6, s->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    grid->setHorizontalSpacing(spacing);
    // The captions keep a space before their values (cells that share a
    // column with a spanning slider would otherwise touch).
    for (QLabel* caption : {lblPriority, lblNumbers})
        caption->setContentsMargins(0, 0, spacing, 0);
    grid->setVerticalSpacing(0);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(lblUnitName);
    column->addLayout(grid);
    // The title's text starts where the grid's does.
    lblUnitName->setIndent(grid->contentsMargins().left());

    setFocusProxy(sldPriority);
    setTabOrder(sldPriority, txtWeight);
    setTabOrder(txtWeight, sldNumbers);
    setTabOrder(sldNumbers, txtLimit);

    // Code sets the sliders with their notifications blocked, so what arrives
    // here is the player's.
    connect(sldPriority, &QSlider::valueChanged, this, &frmUnit::EditWeight);
    connect(sldNumbers, &QSlider::valueChanged, this, &frmUnit::EditLimit);
    connect(qApp, &QApplication::focusChanged, this, &frmUnit::OnFocusChanged);
    // A drag is one edit from its first move to the release.
    connect(sldPriority, &QSlider::sliderReleased, this, [this] { EndEdit(UnitField::Weight); });
    connect(sldNumbers, &QSlider::sliderReleased, this, [this] { EndEdit(UnitField::Limit); });
    connect(txtWeight, &QLineEdit::returnPressed, this, [this] { CommitWeight(true); });
    connect(txtLimit, &QLineEdit::returnPressed, this, [this] { CommitLimit(true); });

    for (QObject* o : std::initializer_list<QObject*>{lblWeight, lblLimit, txtWeight, txtLimit,
                                                      sldPriority, sldNumbers})
        o->installEventFilter(this);
    SetLook(false);

    InputBox = [this](const std::string& title,
                      const std::string& prompt) -> std::optional<std::string> {
        QInputDialog dialog(this);
        dialog.setWindowTitle(QtText(title));
        dialog.setLabelText(QtText(ReplaceAll(prompt, "\r\n", "\n")));
        dialog.setInputMode(QInputDialog::TextInput);
        if (auto* field = dialog.findChild<QLineEdit*>())
            field->setAccessibleName(QtText(title));
        if (dialog.exec() != QDialog::Accepted) return std::nullopt;
        return StdText(dialog.textValue());
    };
}

vtUnit& frmUnit::Unit() {
    return defs_.Units[unitIndex_];
}

bool frmUnit::Contains(const QWidget* w) const {
    return w && (w == this || isAncestorOf(w));
}

void frmUnit::Show(int unitIndex, const QPixmap& picture, const std::string& title) {
    active_ = false;
    unitIndex_ = unitIndex;
    editBefore_[0].reset();
    editBefore_[1].reset();
    const vtUnit& unit = Unit();
    SetSliders();
    ShowWeight();
    ShowLimit();
    imgUnit->setPixmap(picture);
    const QString name = QtText(title);
    lblUnitName->setText(name);
    setToolTip(QtText(unit.Description + " (" + unit.UnitName + ")"));
    // What a screen reader says: the card is its unit, each control says whose it is.
    setAccessibleName(name);
    setAccessibleDescription(toolTip());
    imgUnit->setAccessibleName("Picture of " + name);
    sldPriority->setAccessibleName("Build Priority of " + name);
    txtWeight->setAccessibleName("Build Priority value of " + name);
    sldNumbers->setAccessibleName("Number Produced of " + name);
    txtLimit->setAccessibleName("Number Produced value of " + name);
    SetIncludedView(unit.Include);
    ShowFields(false);
    SetLook(false);
}

void frmUnit::ShowWeight() {
    const float weight = Unit().Weight;
    {
        QSignalBlocker block(sldPriority);
        sldPriority->setValue(PriorityPosition(weight, SettingsOf(sldPriority)));
    }
    lblWeight->setText(QtText(FloatText(weight)));
    txtWeight->setText(lblWeight->text());
}

void frmUnit::ShowLimit() {
    const float limit = Unit().Limit;
    {
        QSignalBlocker block(sldNumbers);
        sldNumbers->setValue(NumbersPosition(limit, SettingsOf(sldNumbers)));
    }
    lblLimit->setText(QtText(FloatText(limit)));
    txtLimit->setText(lblLimit->text());
}

void frmUnit::SetSliders() {
    // A value above the new maximum is pulled down without a notification:
    // the unit keeps its value until the player changes it.
    auto apply = [](QSlider* slider, const SliderSettings& s) {
        QSignalBlocker block(slider);
        slider->setRange(s.Min, s.Max);
        slider->setPageStep(s.LargeChange);
        slider->setSingleStep(s.SmallChange);
        slider->setTickInterval(s.TickFrequency);
    };
    apply(sldPriority, PrioritySettings(defs_));
    apply(sldNumbers, NumbersSettings(defs_));
}

void frmUnit::ShowFields(bool shown) {
    const bool included = unitIndex_ > 0 && Unit().Include;
    txtWeight->setVisible(shown && included);
    txtLimit->setVisible(shown && included);
    lblWeight->setVisible(!shown && included);
    lblLimit->setVisible(!shown && included);
}

void frmUnit::SetLook(bool active) {
    // Every text is black or the colour named, unless that reads at less
    // than 4.5:1 on its background in the desktop's palette.
    const QColor back = active ? ActiveCaptionColor() : InactiveCaptionColor();
    ReadableColour(this, back, Black);
    ReadableColour(lblUnitName, active ? ActiveTitleColor() : back.darker(130), White);
    for (QLabel* l : {lblLimit, lblWeight}) {
        QFont f = l->font();
        f.setBold(active);
        l->setFont(f);
    }
}

void frmUnit::SetIncludedView(bool included) {
    for (QWidget* w : std::initializer_list<QWidget*>{lblPriority, lblNumbers, sldPriority,
                                                      sldNumbers})
        w->setVisible(included);
    ShowFields(active_);
    lblExclude->setVisible(!included);
    // An excluded card takes the focus itself: it has no control to give it to.
    setFocusProxy(included ? sldPriority : nullptr);
}

void frmUnit::Activate() {
    active_ = true;
    SetLook(true);
    SetIncludedView(Unit().Include);
    if (!Unit().Include) return;
    SetSliders();
    ShowWeight();
    ShowLimit();
    ShowFields(true);
}

void frmUnit::Deactivate() {
    active_ = false;
    ShowFields(false);
    SetLook(false);
}

void frmUnit::OnFocusChanged(QWidget* old, QWidget* now) {
    if (Contains(now)) {
        if (!active_) Activate();
    } else if (active_ && now) {
        Deactivate();
    }
    // Key and wheel steps merge while their slider keeps the focus.
    if (old == sldPriority || old == sldNumbers) gesture_ = 0;
    if (now == sldPriority || now == sldNumbers) gesture_ = NextGesture();
}

void frmUnit::EditWeight(int position) {
    BeginEdit(UnitField::Weight);
    ApplyPriorityPosition(defs_, Unit(), position);
    ShowWeight();
    if (!sldPriority->isSliderDown()) EndEdit(UnitField::Weight);
}

void frmUnit::EditLimit(int limit) {
    BeginEdit(UnitField::Limit);
    ApplyNumbersPosition(defs_, Unit(), limit);
    ShowLimit();
    if (!sldNumbers->isSliderDown()) EndEdit(UnitField::Limit);
}

void frmUnit::BeginEdit(UnitField field) {
    std::optional<double>& before = editBefore_[field == UnitField::Weight ? 0 : 1];
    if (before) return;
    before = FieldValue(Unit(), field);
    changedBefore_ = defs_.Profile.Changed;
}

void frmUnit::EndEdit(UnitField field) {
    const bool weight = field == UnitField::Weight;
    std::optional<double>& before = editBefore_[weight ? 0 : 1];
    if (!before) return;
    const double old = *before;
    before.reset();
    QSlider* slider = weight ? sldPriority : sldNumbers;
    // A drag or a typed value is a step of its own; keys and the wheel on the
    // focused slider continue its gesture.
    const int gesture = slider->hasFocus() && !slider->isSliderDown() &&
                                QApplication::mouseButtons() == Qt::NoButton
                            ? gesture_
                            : 0;
    if (old == FieldValue(Unit(), field))
        defs_.Profile.Changed = changedBefore_; // dragged away and back: nothing changed
    else
        emit valueCommitted(unitIndex_, field, old, gesture);
}

void frmUnit::ShowValues() {
    ShowWeight();
    ShowLimit();
    SetIncludedView(Unit().Include);
}

bool frmUnit::NavigationKey(const QKeyEvent* key) {
    if (!(key->modifiers() & Qt::ControlModifier)) return false;
    static constexpr std::pair<int, CardStep> Steps[] = {{Qt::Key_Down, CardStep::Next},
                                                         {Qt::Key_Up, CardStep::Previous},
                                                         {Qt::Key_Home, CardStep::First},
                                                         {Qt::Key_End, CardStep::Last}};
    for (const auto& [qtKey, step] : Steps) {
        if (key->key() != qtKey) continue;
        emit navigate(step, CardControl::Same);
        return true;
    }
    return false;
}

void frmUnit::keyPressEvent(QKeyEvent* event) {
    if (!NavigationKey(event)) QFrame::keyPressEvent(event);
}

void frmUnit::mousePressEvent(QMouseEvent* event) {
    // A click on the picture, a caption or the empty area: the card's first control.
    setFocus(Qt::MouseFocusReason);
    QFrame::mousePressEvent(event);
}

// A field committed with the unit's own value unchanged writes nothing: a
// value above the maximum stays as it is until the player types another.
void frmUnit::CommitWeight(bool enter) {
    std::string text = StdText(txtWeight->text());
    if (text != FloatText(Unit().Weight)) {
        auto position = CommitWeightText(text, SettingsOf(sldPriority));
        if (!position) {
            ShowWeight(); // no number: the field shows the unit's value again
            return;
        }
        EditWeight(*position);
    }
    if (enter) sldPriority->setFocus(Qt::OtherFocusReason);
}

void frmUnit::CommitLimit(bool enter) {
    std::string text = StdText(txtLimit->text());
    if (text != FloatText(Unit().Limit)) {
        auto position = CommitLimitText(text, SettingsOf(sldNumbers), enter);
        if (!position) {
            ShowLimit();
            return;
        }
        EditLimit(*position);
    }
    if (enter) sldNumbers->setFocus(Qt::OtherFocusReason);
}

void frmUnit::ManualEdit() {
    if (!InputBox) return;
    auto answer = InputBox(std::string(ManualEditTitle), std::string(ManualEditPrompt));
    if (!answer) return;
    if (auto priority = ManualPriority(*answer)) EditWeight(*priority * 100);
}

bool frmUnit::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        // A click on a value puts the caret in its field (shown by the activation).
        if (watched == lblWeight || watched == lblLimit) {
            setFocus(Qt::MouseFocusReason);
            QLineEdit* field = watched == lblWeight ? txtWeight : txtLimit;
            if (field->isVisible()) field->setFocus(Qt::MouseFocusReason);
            return true;
        }
        break;
    case QEvent::MouseButtonDblClick:
        if (watched == lblWeight || watched == txtWeight) {
            ManualEdit();
            return true;
        }
        break;
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (NavigationKey(key)) return true;
        // Tab leaves the card's last control for the next card, Shift+Tab
        // its first control for the previous one.
        if (key->key() == Qt::Key_Tab && watched == txtLimit) {
            emit navigate(CardStep::Next, CardControl::First);
            return true;
        }
        if (key->key() == Qt::Key_Backtab && watched == sldPriority) {
            emit navigate(CardStep::Previous, CardControl::Last);
            return true;
        }
        break;
    }
    case QEvent::FocusIn:
        if (watched == txtWeight || watched == txtLimit)
            QMetaObject::invokeMethod(watched, "selectAll", Qt::QueuedConnection);
        break;
    case QEvent::FocusOut: {
        auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) break;
        if (watched == txtWeight) CommitWeight(false);
        if (watched == txtLimit) CommitLimit(false);
        break;
    }
    case QEvent::Wheel:
        if (watched == sldPriority || watched == sldNumbers) {
            auto* slider = static_cast<QSlider*>(watched);
            auto* wheel = static_cast<QWheelEvent*>(event);
            // A slider takes the wheel only while it has the focus; otherwise
            // the wheel goes to what holds the card (the board scrolls).
            if (!slider->hasFocus()) {
                if (QWidget* holder = parentWidget()) QApplication::sendEvent(holder, wheel);
                return true;
            }
            // One small step a notch (fine wheels add up to notches).
            wheelTurn_ += wheel->angleDelta().y();
            const int notches = wheelTurn_ / 120;
            wheelTurn_ -= notches * 120;
            if (notches != 0)
                slider->setValue(SliderWheelPosition(slider->value(), notches, SettingsOf(slider)));
            return true;
        }
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace vantrel

#include "forms/frmUnit.h"

#include "base/text.h"

#include <QApplication>
#include <QFrame>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QSignalBlocker>
#include <QSlider>
#include <QWheelEvent>

#include <utility>

namespace vantrel {

namespace {

QString Latin1(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
std::string FromQt(const QString& s) {
    return s.toLatin1().toStdString();
}

void Place(QWidget* w, const TwipRect& r) {
    w->setGeometry(TwipsToPixels(r.Left), TwipsToPixels(r.Top), TwipsToPixels(r.Width),
                   TwipsToPixels(r.Height));
}

void Colour(QWidget* w, const QColor& back, const QColor& text) {
    QPalette p = w->palette();
    p.setColor(QPalette::Window, back);
    p.setColor(QPalette::WindowText, text);
    w->setPalette(p);
}

// Qt's key to the key codes of the slider table (0: not one of them).
int KeyCode(int qtKey) {
    switch (qtKey) {
    case Qt::Key_PageUp:
        return KeyPageUp;
    case Qt::Key_PageDown:
        return KeyPageDown;
    case Qt::Key_Left:
        return KeyLeft;
    case Qt::Key_Up:
        return KeyUp;
    case Qt::Key_Right:
        return KeyRight;
    case Qt::Key_Down:
        return KeyDown;
    default:
        return 0;
    }
}

SliderSettings SettingsOf(const QSlider* s) {
    return {s->minimum(), s->maximum(), s->pageStep(), s->singleStep(), s->tickInterval()};
}

Rgb ToRgb(const QColor& c) {
    return {c.red(), c.green(), c.blue()};
}
QColor ToQColor(Rgb c) {
    return QColor(c.r, c.g, c.b);
}
// `back` behind a text that reads on it, `preferred` when it does.
void ReadableColour(QWidget* w, const QColor& back, Rgb preferred) {
    Colour(w, back, ToQColor(ReadableText(ToRgb(back), preferred)));
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
QColor frmUnit::ButtonFaceColor() {
    return QApplication::palette().color(QPalette::Button);
}

frmUnit::frmUnit(Definitions& defs, QWidget* parent) : QWidget(parent), defs_(defs) {
    setObjectName("frmUnit");
    setFocusPolicy(Qt::ClickFocus);
    QFont small = font();
    small.setPixelSize(11);
    setFont(small);
    resize(TwipsToPixels(CardDesign::Width), TwipsToPixels(CardDesign::Height));

    auto label = [this](const char* name, const char* text, const TwipRect& r) {
        auto* l = new QLabel(QString::fromLatin1(text), this);
        l->setObjectName(name);
        Place(l, r);
        return l;
    };
    Frame1 = new QFrame(this);
    Frame1->setObjectName("Frame1");
    Frame1->setFrameShape(QFrame::StyledPanel);
    Place(Frame1, CardDesign::Frame1);

    auto entry = [this](const char* name, const TwipRect& r) {
        auto* t = new QLineEdit(QStringLiteral("0"), this);
        t->setObjectName(name);
        t->setToolTip(Latin1(std::string(EntryTooltip)));
        Place(t, r);
        t->hide();
        return t;
    };
    txtWeight = entry("txtWeight", CardDesign::txtWeight);
    txtLimit = entry("txtLimit", CardDesign::txtLimit);
    lblExclude = label("lblExclude", "This unit has been excluded", CardDesign::lblExclude);
    lblExclude->hide();
    lblPriority = label("lblPriority", "Build Priority", CardDesign::lblPriority);
    lblLimit = label("lblLimit", "0", CardDesign::lblLimit);
    lblWeight = label("lblWeight", "0", CardDesign::lblWeight);
    lblUnitName = label("lblUnitName", "Unit Name goes here", CardDesign::lblUnitName);
    lblNumbers = label("lblNumbers", "Number Produced", CardDesign::lblNumbers);
    for (QLabel* l : {lblUnitName, lblPriority, lblNumbers, lblWeight, lblLimit})
        l->setAutoFillBackground(true);
    // The designed label widths suit the original 8-point font; with the
    // desktop's font the captions are widened to their text (the layout keeps
    // them right-aligned), and the value labels as wide as the entry fields
    // that cover them, so "10.25" is not cut.
    auto fit = [](QLabel* l, TwipRect& r) {
        l->setFont(QFont(l->font().family(), l->font().pointSize(), QFont::Bold));
        r.Width = std::max(r.Width, PixelsToTwips(l->sizeHint().width() + 2));
        l->setFont(QFont(l->font().family(), l->font().pointSize(), QFont::Normal));
    };
    fit(lblPriority, layout_.lblPriority);
    fit(lblNumbers, layout_.lblNumbers);
    fit(lblExclude, layout_.lblExclude);
    for (QLabel* l : {lblWeight, lblLimit})
        l->resize(TwipsToPixels(CardDesign::txtWeight.Width), l->height());
    imgUnit = label("imgUnit", "", CardDesign::imgUnit);
    imgUnit->setToolTip(QStringLiteral("Unit Pic (If Available)"));
    imgUnit->setAlignment(Qt::AlignCenter);
    Line1 = new QFrame(this);
    Line1->setObjectName("Line1");
    Line1->setFrameShape(QFrame::HLine);
    Line1->setGeometry(0, TwipsToPixels(CardDesign::Line1.Top), TwipsToPixels(3840), 1);

    auto slider = [this](const char* name, const char* tip, const TwipRect& r,
                         const SliderSettings& s) {
        auto* sl = new QSlider(Qt::Horizontal, this);
        sl->setObjectName(name);
        sl->setToolTip(QString::fromLatin1(tip));
        sl->setTickPosition(QSlider::TicksBelow);
        sl->setFocusPolicy(Qt::StrongFocus);
        sl->setRange(s.Min, s.Max);
        sl->setPageStep(s.LargeChange);
        sl->setSingleStep(s.SmallChange);
        sl->setTickInterval(s.TickFrequency);
        Place(sl, r);
        return sl;
    };
    sldPriority =
        slider("sldPriority", "Unit Build Priority", CardDesign::sldPriority, PriorityDesign);
    sldNumbers =
        slider("sldNumbers", "Maximum Number Produced", CardDesign::sldNumbers, NumbersDesign);
    Frame1->lower();
    // The entry fields lie on the value labels: what is typed is what is seen.
    txtWeight->raise();
    txtLimit->raise();

    // Change and Scroll both arrive as valueChanged (tracking is on).
    // Code sets the sliders with their notifications blocked, so what arrives
    // here is the player's.
    connect(sldPriority, &QSlider::valueChanged, this, &frmUnit::EditWeight);
    connect(sldNumbers, &QSlider::valueChanged, this, &frmUnit::EditLimit);
    connect(qApp, &QApplication::focusChanged, this, &frmUnit::OnFocusChanged);
    // A drag is one edit from its first move to the release; a key, a wheel
    // notch or a click beside the handle is one edit of its own.
    connect(sldPriority, &QSlider::sliderReleased, this, [this] { EndEdit(UnitField::Weight); });
    connect(sldNumbers, &QSlider::sliderReleased, this, [this] { EndEdit(UnitField::Limit); });

    for (QObject* o : std::initializer_list<QObject*>{Frame1, imgUnit, lblNumbers, lblPriority,
                                                      lblUnitName, lblWeight, lblLimit, txtWeight,
                                                      txtLimit, sldPriority, sldNumbers})
        o->installEventFilter(this);
    SetLook(false);

    InputBox = [this](const std::string& title,
                      const std::string& prompt) -> std::optional<std::string> {
        bool ok = false;
        QString answer =
            QInputDialog::getText(this, Latin1(title), Latin1(ReplaceAll(prompt, "\r\n", "\n")),
                                  QLineEdit::Normal, QString(), &ok);
        if (!ok) return std::nullopt;
        return FromQt(answer);
    };
}

vtUnit& frmUnit::Unit() {
    return defs_.Units[UnitIndex];
}

bool frmUnit::Contains(const QWidget* w) const {
    return w && (w == this || isAncestorOf(w));
}

void frmUnit::SetValueCaption(QLabel* label, const std::string& text) {
    label->setText(Latin1(text));
    // The value labels size themselves to their text.
    label->resize(std::max(label->sizeHint().width(), TwipsToPixels(CardDesign::lblWeight.Width)),
                  label->height());
}

void frmUnit::Load() {
    move(0, y());
    txtLimit->hide();
    txtWeight->hide();
    SetValueCaption(lblLimit, FloatText(Unit().Limit));
    SetValueCaption(lblWeight, FloatText(Unit().Weight));
}

void frmUnit::Show(int unitIndex, const QPixmap& picture, View view) {
    active_ = false;
    UnitIndex = unitIndex;
    view_ = view;
    editBefore_[0].reset();
    editBefore_[1].reset();
    Load();
    const vtUnit& unit = Unit();
    SetSliders(PrioritySettings(defs_), NumbersSettings(defs_));
    ShowWeight();
    ShowLimit();
    imgUnit->setPixmap(picture);
    imgUnit->setToolTip(Latin1(unit.Name + " - " + unit.Description));
    lblUnitName->setText(Latin1(unit.Name));
    SetIncludedView(unit.Include);
    txtLimit->hide();
    txtWeight->hide();
    SetLook(false);
}

void frmUnit::ShowValue(QSlider* slider, QLabel* label, QLineEdit* field, float value,
                        int position) {
    {
        QSignalBlocker block(slider);
        slider->setValue(position);
    }
    SetValueCaption(label, FloatText(value));
    field->setText(label->text());
}

void frmUnit::ShowWeight() {
    const float weight = Unit().Weight;
    ShowValue(sldPriority, lblWeight, txtWeight, weight,
              PriorityPosition(weight, SettingsOf(sldPriority)));
}

void frmUnit::ShowLimit() {
    const float limit = Unit().Limit;
    ShowValue(sldNumbers, lblLimit, txtLimit, limit,
              NumbersPosition(limit, SettingsOf(sldNumbers)));
}

void frmUnit::SetSliders(const SliderSettings& priority, const SliderSettings& numbers) {
    // A Value above the new Max is pulled down without a notification: the
    // unit keeps its value until the player changes it.
    QSignalBlocker blockPriority(sldPriority);
    QSignalBlocker blockNumbers(sldNumbers);
    sldPriority->setRange(priority.Min, priority.Max);
    sldPriority->setPageStep(priority.LargeChange);
    sldPriority->setSingleStep(priority.SmallChange);
    sldPriority->setTickInterval(priority.TickFrequency);
    sldNumbers->setRange(numbers.Min, numbers.Max);
    sldNumbers->setPageStep(numbers.LargeChange);
    sldNumbers->setSingleStep(numbers.SmallChange);
    sldNumbers->setTickInterval(numbers.TickFrequency);
}

void frmUnit::SetLook(bool active) {
    // Every text is black or the colour named, unless that reads at less
    // than 4.5:1 on its background in the desktop's palette.
    if (active) {
        ReadableColour(lblUnitName, ActiveTitleColor(), White);
        for (QLabel* l : {lblNumbers, lblPriority, lblLimit, lblWeight})
            ReadableColour(l, ActiveCaptionColor(), Black);
    } else {
        for (QLabel* l : {lblPriority, lblNumbers, lblWeight, lblLimit})
            ReadableColour(l, InactiveCaptionColor(), Black);
        ReadableColour(lblUnitName, InactiveCaptionColor(), ToRgb(ButtonFaceColor()));
        SetValuesBold(false);
    }
}

void frmUnit::SetValuesBold(bool bold) {
    for (QLabel* l : {lblLimit, lblNumbers, lblPriority, lblWeight}) {
        QFont f = l->font();
        f.setBold(bold);
        l->setFont(f);
    }
}

void frmUnit::SetIncludedView(bool included) {
    for (QWidget* w :
         std::initializer_list<QWidget*>{txtLimit, txtWeight, lblLimit, lblWeight, lblPriority,
                                         lblNumbers, sldPriority, sldNumbers})
        w->setVisible(included);
    if (!included) {
        TwipRect place = ExcludedNoticePlace(PixelsToTwips(width()), PixelsToTwips(height()),
                                             layout_.lblExclude);
        layout_.lblExclude = place;
        Place(lblExclude, place);
    }
    lblExclude->setVisible(!included);
}

void frmUnit::Activate() {
    active_ = true;
    if (FromQt(lblUnitName->text()) == UnnamedCaption) {
        view_.selfHidden = true;
        hide();
    }
    update();
    SetLook(true);
    const vtUnit& unit = Unit();
    SetIncludedView(unit.Include);
    if (!unit.Include) return;
    SetSliders(PrioritySettings(defs_), NumbersSettings(defs_));
    ShowWeight();
    ShowLimit();
    txtWeight->show();
    txtLimit->show();
    imgUnit->setToolTip(Latin1(unit.Name + " - " + unit.Description));
    SetValuesBold(true);
}

void frmUnit::Deactivate() {
    active_ = false;
    txtWeight->hide();
    txtLimit->hide();
    SetLook(false);
}

void frmUnit::OnFocusChanged(QWidget*, QWidget* now) {
    if (Contains(now)) {
        if (!active_) Activate();
    } else if (active_ && now) {
        Deactivate();
    }
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
    changedBefore_ = defs_.Changed;
}

void frmUnit::EndEdit(UnitField field) {
    std::optional<double>& before = editBefore_[field == UnitField::Weight ? 0 : 1];
    if (!before) return;
    const double old = *before;
    before.reset();
    if (old == FieldValue(Unit(), field))
        defs_.Changed = changedBefore_; // dragged away and back: nothing changed
    else if (OnValueCommitted)
        OnValueCommitted(UnitIndex, field, old);
}

void frmUnit::ShowValues() {
    ShowWeight();
    ShowLimit();
    SetIncludedView(Unit().Include);
    if (!active_) {
        txtWeight->hide();
        txtLimit->hide();
    }
}

bool frmUnit::SliderKey(QSlider* slider, int keyCode) {
    if (keyCode == 0) return false;
    // The card's step and the trackbar's own (Qt's would go the other way for
    // some keys) in one move, so the unit is written once.
    slider->setValue(
        SliderKeyPosition(slider->value(), keyCode, slider == sldPriority, SettingsOf(slider)));
    return true;
}

bool frmUnit::NavigationKey(const QKeyEvent* key) {
    if (!Navigate || !(key->modifiers() & Qt::ControlModifier)) return false;
    static constexpr std::pair<int, CardStep> Steps[] = {{Qt::Key_Down, CardStep::Next},
                                                         {Qt::Key_Up, CardStep::Previous},
                                                         {Qt::Key_Home, CardStep::First},
                                                         {Qt::Key_End, CardStep::Last}};
    for (const auto& [qtKey, step] : Steps) {
        if (key->key() != qtKey) continue;
        Navigate(step);
        return true;
    }
    return false;
}

void frmUnit::keyPressEvent(QKeyEvent* event) {
    if (!NavigationKey(event)) QWidget::keyPressEvent(event);
}

bool frmUnit::EntryKey(QLineEdit* field, QKeyEvent* key) {
    int code = 0;
    if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab)
        return false; // focus moves on, as the platform's fields do before any filter
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)
        code = 13;
    else if (key->key() == Qt::Key_Backspace)
        code = 8;
    else if (!key->text().isEmpty())
        code = key->text().at(0).unicode();
    else
        return false; // no character: cursor keys, Delete and the like
    switch (FilterEntryKey(code, FromQt(field->text()))) {
    case KeyVerdict::Accept:
        return false;
    case KeyVerdict::Cancel:
        return true;
    case KeyVerdict::Commit:
        if (field == txtWeight)
            CommitWeight(true);
        else
            CommitLimit(true);
        return true;
    }
    return false;
}

// A field committed with the unit's own value unchanged writes nothing: a
// value above the maximum stays as it is until the player types another.
void frmUnit::CommitWeight(bool enter) {
    std::string text = FromQt(txtWeight->text());
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
    std::string text = FromQt(txtLimit->text());
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
    case QEvent::MouseButtonRelease: {
        // A press on the card's parts (a click on lblLimit) gives the card the focus.
        bool wanted = (event->type() == QEvent::MouseButtonPress) != (watched == lblLimit);
        if (wanted && !Contains(QApplication::focusWidget())) setFocus(Qt::MouseFocusReason);
        // A click on a value puts the caret in its field (shown by the activation).
        QLineEdit* field = watched == lblWeight  ? txtWeight
                           : watched == lblLimit ? txtLimit
                                                 : nullptr;
        if (wanted && field && field->isVisible()) field->setFocus(Qt::MouseFocusReason);
        break;
    }
    case QEvent::MouseButtonDblClick:
        // The weight's label, or its field lying on it on the active card.
        if (watched == lblWeight || watched == txtWeight) {
            ManualEdit();
            return true;
        }
        break;
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (NavigationKey(key)) return true;
        if (watched == sldPriority || watched == sldNumbers)
            return SliderKey(static_cast<QSlider*>(watched), KeyCode(key->key()));
        if (watched == txtWeight || watched == txtLimit)
            return EntryKey(static_cast<QLineEdit*>(watched), key);
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
            // A slider takes the wheel only on the active card while it has
            // the focus; otherwise the wheel goes on to the board, which scrolls.
            if (!(active_ && slider->hasFocus())) {
                if (PassWheel) PassWheel(wheel);
                return true;
            }
            // One Up or Down key step a notch (fine wheels add up to notches).
            wheelTurn_ += wheel->angleDelta().y();
            const int notches = wheelTurn_ / 120;
            wheelTurn_ -= notches * 120;
            slider->setValue(SliderWheelPosition(slider->value(), notches, slider == sldPriority,
                                                 SettingsOf(slider)));
            return true;
        }
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void frmUnit::resizeEvent(QResizeEvent*) {
    layout_ = LayOutCard(PixelsToTwips(width()), PixelsToTwips(height()), layout_);
    Place(lblExclude, layout_.lblExclude);
    Place(Frame1, layout_.Frame1);
    Place(lblUnitName, layout_.lblUnitName);
    Place(lblPriority, layout_.lblPriority);
    Place(lblNumbers, layout_.lblNumbers);
    Place(sldPriority, layout_.sldPriority);
    Place(sldNumbers, layout_.sldNumbers);
    update();
}

} // namespace vantrel

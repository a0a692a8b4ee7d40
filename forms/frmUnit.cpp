#include "forms/frmUnit.h"

#include "catalogue/text.h"

#include <QApplication>
#include <QFrame>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QSignalBlocker>
#include <QSlider>

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

} // namespace

QColor frmUnit::ActiveCaptionColor() {
    return QApplication::palette().color(QPalette::Highlight);
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

    // Change and Scroll both arrive as valueChanged (tracking is on).
    connect(sldPriority, &QSlider::valueChanged, this, &frmUnit::OnPriorityChanged);
    connect(sldNumbers, &QSlider::valueChanged, this, &frmUnit::OnNumbersChanged);
    connect(qApp, &QApplication::focusChanged, this, &frmUnit::OnFocusChanged);
    // A drag is one edit from press to release; a wheel step or a click
    // beside the handle is one edit of its own.
    for (auto [sl, field] : {std::pair{sldPriority, UnitField::Weight},
                             std::pair{sldNumbers, UnitField::Limit}}) {
        connect(sl, &QSlider::sliderPressed, this, [this, f = field] { BeginEdit(f); });
        connect(sl, &QSlider::actionTriggered, this, [this, f = field] { BeginEdit(f); });
        connect(sl, &QSlider::sliderReleased, this, [this, f = field] { EndEdit(f); });
    }

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

void frmUnit::Fill(int unitIndex, const QPixmap& picture) {
    FillUnit(defs_, unitIndex, PrioritySettings(defs_), NumbersSettings(defs_));
    Show(unitIndex, picture, View{});
}

void frmUnit::Show(int unitIndex, const QPixmap& picture, View view) {
    active_ = false;
    UnitIndex = unitIndex;
    view_ = view;
    editBefore_[0].reset();
    editBefore_[1].reset();
    Load();
    const vtUnit& unit = Unit();
    {
        QSignalBlocker blockPriority(sldPriority);
        QSignalBlocker blockNumbers(sldNumbers);
        SetSliders(PrioritySettings(defs_), NumbersSettings(defs_));
        sldPriority->setValue(PriorityPosition(unit.Weight, SettingsOf(sldPriority)));
        sldNumbers->setValue(NumbersPosition(unit.Limit, SettingsOf(sldNumbers)));
    }
    ShowUnitValues();
    imgUnit->setPixmap(picture);
    imgUnit->setToolTip(Latin1(unit.Name + " - " + unit.Description));
    lblUnitName->setText(Latin1(unit.Name));
    SetIncludedView(!view.excluded);
    txtLimit->hide();
    txtWeight->hide();
    SetLook(false);
}

void frmUnit::ShowUnitValues() {
    std::string weight = FloatText(static_cast<float>(sldPriority->value() / 100.0));
    std::string limit = FloatText(static_cast<float>(sldNumbers->value()));
    SetValueCaption(lblWeight, weight);
    SetValueCaption(lblLimit, limit);
    txtWeight->setText(Latin1(weight));
    txtLimit->setText(Latin1(limit));
}

void frmUnit::SetSliders(const SliderSettings& priority, const SliderSettings& numbers) {
    // Max first, so a Value above the new Max is pulled down (and notified).
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
    const QColor black(Qt::black);
    if (active) {
        Colour(lblUnitName, ActiveCaptionColor(), QColor(Qt::white));
        for (QLabel* l : {lblNumbers, lblPriority, lblLimit, lblWeight})
            Colour(l, ActiveCaptionColor(), black);
    } else {
        for (QLabel* l : {lblPriority, lblNumbers, lblUnitName, lblWeight, lblLimit})
            Colour(l, InactiveCaptionColor(), black);
        Colour(lblUnitName, InactiveCaptionColor(), ButtonFaceColor());
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
    if (!unit.Include) {
        view_.excluded = true;
        SetIncludedView(false);
        return;
    }
    view_.excluded = false;
    SetIncludedView(true);
    SetSliders(PrioritySettings(defs_), NumbersSettings(defs_));
    // Each setting may notify, which writes the unit; read it afresh each time.
    sldPriority->setValue(PriorityPosition(Unit().Weight, SettingsOf(sldPriority)));
    sldNumbers->setValue(NumbersPosition(Unit().Limit, SettingsOf(sldNumbers)));
    txtWeight->show();
    txtLimit->show();
    SetValueCaption(lblLimit, FloatText(Unit().Limit));
    SetValueCaption(lblWeight, FloatText(Unit().Weight));
    txtWeight->setText(lblWeight->text());
    txtLimit->setText(lblLimit->text());
    imgUnit->setToolTip(Latin1(Unit().Name + " - " + Unit().Description));
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

void frmUnit::OnPriorityChanged(int value) {
    vtUnit& unit = Unit();
    ApplyPriorityPosition(defs_, unit, value);
    SetValueCaption(lblWeight, FloatText(unit.Weight));
    txtWeight->setText(lblWeight->text());
    if (!sldPriority->isSliderDown() && !keying_) EndEdit(UnitField::Weight);
}

void frmUnit::OnNumbersChanged(int value) {
    vtUnit& unit = Unit();
    ApplyNumbersPosition(defs_, unit, value);
    SetValueCaption(lblLimit, FloatText(unit.Limit));
    txtLimit->setText(lblLimit->text());
    if (!sldNumbers->isSliderDown() && !keying_) EndEdit(UnitField::Limit);
}

void frmUnit::BeginEdit(UnitField field) {
    std::optional<double>& before = editBefore_[field == UnitField::Weight ? 0 : 1];
    if (!before) before = FieldValue(Unit(), field);
}

void frmUnit::EndEdit(UnitField field) {
    std::optional<double>& before = editBefore_[field == UnitField::Weight ? 0 : 1];
    if (!before) return;
    const double old = *before;
    before.reset();
    if (old != FieldValue(Unit(), field) && OnValueCommitted)
        OnValueCommitted(UnitIndex, field, old);
}

void frmUnit::ShowValues() {
    {
        QSignalBlocker blockPriority(sldPriority);
        QSignalBlocker blockNumbers(sldNumbers);
        sldPriority->setValue(PriorityPosition(Unit().Weight, SettingsOf(sldPriority)));
        sldNumbers->setValue(NumbersPosition(Unit().Limit, SettingsOf(sldNumbers)));
    }
    ShowUnitValues();
    if (active_) {
        view_.excluded = !Unit().Include;
        SetIncludedView(Unit().Include);
        txtWeight->setVisible(Unit().Include);
        txtLimit->setVisible(Unit().Include);
    }
}

bool frmUnit::SliderKey(QSlider* slider, int keyCode) {
    if (keyCode == 0) return false;
    const UnitField field = slider == sldPriority ? UnitField::Weight : UnitField::Limit;
    BeginEdit(field);
    keying_ = true;
    SliderSettings s = SettingsOf(slider);
    slider->setValue(s.Clamp(slider->value() + SliderKeyDelta(keyCode, slider == sldPriority)));
    // The trackbar's own step follows (Qt's would go the other way for some keys).
    slider->setValue(s.Clamp(slider->value() + TrackbarStep(keyCode, s)));
    keying_ = false;
    EndEdit(field);
    return true;
}

bool frmUnit::EntryKey(QLineEdit* field, QKeyEvent* key) {
    int code = 0;
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

void frmUnit::CommitWeight(bool enter) {
    std::string text = FromQt(txtWeight->text());
    auto position = CommitWeightText(text, SettingsOf(sldPriority));
    if (!position) {
        // No number: the field shows the unit's value again.
        txtWeight->setText(Latin1(FloatText(Unit().Weight)));
        return;
    }
    txtWeight->setText(Latin1(text));
    BeginEdit(UnitField::Weight);
    sldPriority->setValue(*position);
    EndEdit(UnitField::Weight);
    if (enter) sldPriority->setFocus(Qt::OtherFocusReason);
}

void frmUnit::CommitLimit(bool enter) {
    std::string text = FromQt(txtLimit->text());
    auto position = CommitLimitText(text, SettingsOf(sldNumbers), enter);
    if (!position) {
        txtLimit->setText(Latin1(FloatText(Unit().Limit)));
        return;
    }
    txtLimit->setText(Latin1(text));
    BeginEdit(UnitField::Limit);
    sldNumbers->setValue(*position);
    EndEdit(UnitField::Limit);
    if (enter) sldNumbers->setFocus(Qt::OtherFocusReason);
}

void frmUnit::ManualEdit() {
    if (!InputBox) return;
    auto answer = InputBox(std::string(ManualEditTitle), std::string(ManualEditPrompt));
    if (!answer) return;
    if (auto priority = ManualPriority(*answer))
        SetValueCaption(lblWeight, std::to_string(*priority));
}

bool frmUnit::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease: {
        // A press on the card's parts (a click on lblLimit) gives the card the focus.
        bool wanted = (event->type() == QEvent::MouseButtonPress) != (watched == lblLimit);
        if (wanted && !Contains(QApplication::focusWidget())) setFocus(Qt::MouseFocusReason);
        break;
    }
    case QEvent::MouseButtonDblClick:
        if (watched == lblWeight) {
            ManualEdit();
            return true;
        }
        break;
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
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

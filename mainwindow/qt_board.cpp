#include "mainwindow/qt_board.h"

#include <QApplication>
#include <QScrollBar>
#include <QSlider>

namespace vantrel {

namespace {

// Widgets the program may hold before the guard calls the graphics figure low.
constexpr int WidgetBudget = 20000;

int WidgetsFreePercent() {
    auto live = QApplication::allWidgets().size();
    if (live >= WidgetBudget) return 0;
    return static_cast<int>(100 - live * 100 / WidgetBudget);
}

// Busy pointer for the lifetime of the object.
struct BusyPointer {
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
};

} // namespace

UnitBoard::UnitBoard(Definitions& defs, Messages& messages, Progress& progress, QWidget* parent)
    : QAbstractScrollArea(parent), defs_(defs), messages_(messages), progress_(progress) {
    setObjectName("UnitBoard");
    setAccessibleName("Unit board");
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    verticalScrollBar()->setObjectName("Vscroll1");
    verticalScrollBar()->setAccessibleName("Scroll the unit board");
    systemGauge_.graphics = &WidgetsFreePercent;
    // Every card has the same rows, so one card's size is every row's, and
    // its narrowest size is the board's.
    frmUnit probe(defs_);
    pitch_ = probe.sizeHint().height();
    setMinimumWidth(probe.minimumSizeHint().width() +
                    verticalScrollBar()->sizeHint().width());
    // The row of the card that has the focus is the active one; it stays so
    // while a dialog or another window has the focus.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (!now || !viewport()->isAncestorOf(now)) return;
        for (const auto& [row, card] : bound_)
            if (card->Contains(now)) activeRow_ = row;
    });
}

UnitBoard::~UnitBoard() = default;

void UnitBoard::SetResourceGauge(ResourceGauge* gauge) {
    gauge_ = gauge ? gauge : &systemGauge_;
}

int UnitBoard::CardCount() const {
    return static_cast<int>(entries_.size());
}

int UnitBoard::UnitIndexAt(int row) const {
    if (row < 0 || row >= CardCount()) return 0;
    return entries_[static_cast<std::size_t>(row)];
}

frmUnit* UnitBoard::CardAt(int row) const {
    auto it = bound_.find(row);
    return it == bound_.end() ? nullptr : it->second;
}

int UnitBoard::ActiveRow() const {
    return activeRow_;
}

void UnitBoard::BuildForCategory(const std::string& menuCaption, Build kind) {
    BusyPointer busy;
    const int keepUnit = kind == Build::Refresh ? UnitIndexAt(activeRow_) : 0;
    const int keepScroll = kind == Build::Refresh ? verticalScrollBar()->value() : 0;
    Clear();
    BoardBuild build = BuildBoard(defs_, menuCaption, messages_, progress_, *gauge_);
    entries_ = std::move(build.unitIndices);
    titles_ = BoardTitles(defs_, entries_);
    progress_.Close();
    progress_.ProcessEvents();
    UpdateScroll();
    verticalScrollBar()->setValue(keepScroll);
    RefreshCards();
    if (CardCount() == 0) return;
    auto kept = std::find(entries_.begin(), entries_.end(), keepUnit);
    const int row = kept == entries_.end() ? 0 : static_cast<int>(kept - entries_.begin());
    verticalScrollBar()->setValue(
        ScrollShowingRow(row, verticalScrollBar()->value(), pitch_, viewport()->height()));
    FocusRow(row, CardControl::First);
}

void UnitBoard::Clear() {
    // A value typed but not committed is dropped: the focus leaving its field
    // would otherwise write it into whatever the board shows next.
    for (auto& [row, card] : bound_)
        if (card->IsActive()) card->ShowValues();
    if (QWidget* focus = QApplication::focusWidget(); focus && viewport()->isAncestorOf(focus))
        setFocus(Qt::OtherFocusReason);
    while (!bound_.empty()) {
        auto last = std::prev(bound_.end());
        if (last->second->IsActive()) last->second->Deactivate();
        Release(last->first, last->second);
        bound_.erase(last);
    }
    entries_.clear();
    titles_.clear();
    activeRow_ = -1;
    UpdateScroll();
}

void UnitBoard::UpdateScroll() {
    // The range follows the size and the card count: the last card stays
    // reachable and no blank area opens below it.
    QScrollBar* bar = verticalScrollBar();
    const long long height = static_cast<long long>(CardCount()) * pitch_;
    bar->setRange(0, static_cast<int>(std::max<long long>(0, height - viewport()->height())));
    bar->setSingleStep(pitch_);
    bar->setPageStep(std::max(1, viewport()->height()));
}

void UnitBoard::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    UpdateScroll();
    RefreshCards();
}

void UnitBoard::scrollContentsBy(int, int) {
    RefreshCards();
}

void UnitBoard::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    FocusActiveCard();
}

void UnitBoard::FocusActiveCard() {
    if (activeRow_ >= 0 && activeRow_ < CardCount()) FocusRow(activeRow_, CardControl::First);
}

void UnitBoard::StepTo(CardStep step, CardControl control) {
    const int from = activeRow_;
    const int row = StepRow(from < 0 ? 0 : from, step, CardCount());
    if (row < 0) return;
    verticalScrollBar()->setValue(
        ScrollShowingRow(row, verticalScrollBar()->value(), pitch_, viewport()->height()));
    FocusRow(row, control);
}

void UnitBoard::PlaceCard(int row, frmUnit* card) {
    card->setGeometry(0, row * pitch_ - verticalScrollBar()->value(), viewport()->width(), pitch_);
}

void UnitBoard::RefreshCards() {
    RowSpan span = VisibleRows(verticalScrollBar()->value(), viewport()->height(), pitch_,
                               CardCount());
    for (auto it = bound_.begin(); it != bound_.end();) {
        if (!span.Contains(it->first) && it->first != activeRow_) {
            Release(it->first, it->second);
            it = bound_.erase(it);
        } else {
            PlaceCard(it->first, it->second);
            ++it;
        }
    }
    for (int row = span.first; row <= span.last; ++row)
        EnsureCard(row);
}

frmUnit* UnitBoard::EnsureCard(int row) {
    if (frmUnit* card = CardAt(row)) return card;
    frmUnit* card = nullptr;
    if (pool_.empty()) {
        card = new frmUnit(defs_, viewport());
        if (inputBox) card->InputBox = inputBox;
        connect(card, &frmUnit::navigate, this, &UnitBoard::StepTo);
        connect(card, &frmUnit::valueCommitted, this, &UnitBoard::valueCommitted);
    } else {
        card = pool_.back();
        pool_.pop_back();
    }
    const int unitIndex = UnitIndexAt(row);
    QPixmap picture;
    if (pictureLoader) picture = pictureLoader(defs_.Units[unitIndex].UnitName + ".pcx");
    card->Show(unitIndex, picture, titles_[static_cast<std::size_t>(row)]);
    PlaceCard(row, card);
    card->show();
    bound_[row] = card;
    return card;
}

void UnitBoard::RefreshValues(int firstUnit, int lastUnit) {
    for (const auto& [row, card] : bound_)
        if (card->UnitIndex() >= firstUnit && card->UnitIndex() <= lastUnit) card->ShowValues();
}

void UnitBoard::Release(int, frmUnit* card) {
    card->hide();
    pool_.push_back(card);
}

void UnitBoard::FocusRow(int row, CardControl control) {
    // The same control of the new card takes the focus (a slider stays a
    // slider), or the one asked for.
    QString name;
    if (frmUnit* old = CardAt(activeRow_); old && control == CardControl::Same)
        if (QWidget* focus = QApplication::focusWidget(); focus != old && old->Contains(focus))
            name = focus->objectName();
    frmUnit* card = EnsureCard(row);
    activeRow_ = row;
    // A board that is not on screen yet cannot take the focus; the card is
    // activated all the same and keeps the focus for when the window shows.
    if (!card->IsActive()) card->Activate();
    if (control == CardControl::Last) name = QStringLiteral("txtLimit");
    QWidget* target = name.isEmpty() ? nullptr : card->findChild<QWidget*>(name);
    if (target && !target->isHidden())
        target->setFocus(Qt::TabFocusReason);
    else
        card->setFocus(Qt::OtherFocusReason);
    RefreshCards(); // the card that was active may now be released
}

} // namespace vantrel

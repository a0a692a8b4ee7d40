#include "mainwindow/qt_board.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <QWindow>

namespace vantrel {

namespace {

// Widgets the program may hold before the guard calls the graphics figure low.
constexpr int WidgetBudget = 20000;

int WidgetsFreePercent() {
    auto live = QApplication::allWidgets().size();
    if (live >= WidgetBudget) return 0;
    return static_cast<int>(100 - live * 100 / WidgetBudget);
}

} // namespace

UnitBoard::UnitBoard(Definitions& defs, Messages& messages, Progress& progress, QWidget* parent)
    : QWidget(parent), defs_(defs), messages_(messages), progress_(progress) {
    setObjectName("UnitBoard");
    systemGauge_.graphics = &WidgetsFreePercent;
    picScreen = new QWidget(this);
    picScreen->setObjectName("picScreen");
    picScreen->setGeometry(0, TwipsToPixels(BoardDesign::StartCardAreaTop), 0, 0);
    Vscroll1 = new QScrollBar(Qt::Vertical, this);
    Vscroll1->setObjectName("Vscroll1");
    Vscroll1->setPageStep(BoardDesign::ScrollLargeChange);
    Vscroll1->setSingleStep(BoardDesign::ScrollSmallChange);
    Vscroll1->setEnabled(false);
    // Value changes and thumb drags both arrive here (tracking is on).
    connect(Vscroll1, &QScrollBar::valueChanged, this, &UnitBoard::OnScroll);
}

UnitBoard::~UnitBoard() = default;

void UnitBoard::SetBanner(QWidget* picBorder) {
    banner_ = picBorder;
    if (banner_) {
        banner_->setParent(this);
        banner_->raise();
        banner_->show();
    }
}

void UnitBoard::SetResourceGauge(ResourceGauge* gauge) {
    gauge_ = gauge ? gauge : &systemGauge_;
}

int UnitBoard::InnerWidth() const {
    return PixelsToTwips(width());
}
int UnitBoard::InnerHeight() const {
    return PixelsToTwips(height());
}
// The banner's real height: the first card starts right below it.
int UnitBoard::BannerHeight() const {
    return banner_ ? PixelsToTwips(banner_->height()) : BoardDesign::BannerHeight;
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

std::vector<int> UnitBoard::RowsWithCards() const {
    std::vector<int> rows;
    for (const auto& [row, card] : bound_)
        rows.push_back(row);
    return rows;
}

void UnitBoard::BuildForCategory(const std::string& menuCaption, Build kind) {
    defs_.BoardTop = 0;
    picScreen->move(0, TwipsToPixels(BannerHeight()));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    Clear();
    const bool keepDeclined = kind == Build::Refresh && declined_ && menuCaption == AllCaption;
    BoardBuild build;
    if (!keepDeclined)
        build =
            BuildBoard(defs_, menuCaption, messages_, progress_, *gauge_, kind == Build::Choice);
    declined_ = keepDeclined || build.declined;
    if (declined_) {
        ResizeMe();
        QApplication::restoreOverrideCursor();
        return;
    }
    entries_ = std::move(build.unitIndices);
    views_.assign(entries_.size(), frmUnit::View{});
    Finish();
}

void UnitBoard::Finish() {
    ResizeMe();
    shown_ = true;
    RefreshCards();
    if (CardCount() > 0) FocusRow(0);
    QApplication::restoreOverrideCursor();
    progress_.Close();
    progress_.ProcessEvents();
    UpdateScroll(true);
    if (CardCount() > 0) FocusRow(0);
    progress_.ProcessEvents();
}

void UnitBoard::UpdateScroll(bool toStart) {
    ScrollSettings scroll = BoardScroll(defs_.BoardTop, InnerHeight(), BannerHeight());
    picScreen->resize(picScreen->width(), TwipsToPixels(scroll.CardAreaHeight));
    const int value = toStart ? scroll.Value : Vscroll1->value();
    {
        QSignalBlocker block(Vscroll1);
        Vscroll1->setRange(scroll.Min, scroll.Max);
        Vscroll1->setValue(std::clamp(value, scroll.Min, scroll.Max));
    }
    Vscroll1->setEnabled(scroll.Enabled);
    OnScroll(Vscroll1->value());
}

void UnitBoard::Clear() {
    // A value typed but not committed is dropped: the focus leaving its field
    // would otherwise write it into whatever the board shows next.
    for (auto& [row, card] : bound_)
        if (card->IsActive()) card->ShowValues();
    if (QWidget* focus = QApplication::focusWidget(); focus && picScreen->isAncestorOf(focus))
        focus->clearFocus();
    while (!bound_.empty()) {
        auto last = std::prev(bound_.end());
        if (last->second->IsActive()) last->second->Deactivate();
        Release(last->first, last->second);
        bound_.erase(last);
    }
    entries_.clear();
    views_.clear();
    shown_ = false;
}

void UnitBoard::ResizeMe() {
    if (QWidget* w = window(); w && w->isMinimized()) return;
    defs_.BoardTop = 0;
    const int inner = InnerWidth();
    const int scrollWidth = BoardDesign::ScrollBarWidth;
    const int bannerHeight = BannerHeight();
    Vscroll1->setGeometry(TwipsToPixels(inner - scrollWidth), TwipsToPixels(bannerHeight),
                          TwipsToPixels(scrollWidth), TwipsToPixels(InnerHeight() - bannerHeight));
    picScreen->setGeometry(0, picScreen->y(), std::max(0, TwipsToPixels(inner - scrollWidth)),
                           picScreen->height());
    if (banner_) banner_->setGeometry(0, 0, width(), banner_->height());
    defs_.BoardTop = LaidOutBoardTop(CardCount());
    for (const auto& [row, card] : bound_)
        PlaceCard(row, card);
    // The range follows the size (and the card count): the last card stays
    // reachable and no blank area opens below it.
    UpdateScroll(false);
}

void UnitBoard::resizeEvent(QResizeEvent*) {
    ResizeMe();
}

void UnitBoard::wheelEvent(QWheelEvent* event) {
    // The wheel anywhere over the board scrolls it (a card's slider passes
    // the wheel on itself, unless it is the active card's and has the focus).
    QApplication::sendEvent(Vscroll1, event);
}

void UnitBoard::OnScroll(int value) {
    picScreen->move(picScreen->x(), TwipsToPixels(CardAreaTop(value, BannerHeight())));
    RefreshCards();
}

int UnitBoard::ActiveRow() const {
    for (const auto& [row, card] : bound_)
        if (card->IsActive()) return row;
    return -1;
}

void UnitBoard::StepTo(CardStep step) {
    const int from = ActiveRow();
    const int row = StepRow(from < 0 ? 0 : from, step, CardCount());
    if (row < 0) return;
    // The same control of the new card takes the focus (a slider stays a
    // slider), or the card itself.
    QString control;
    if (frmUnit* old = CardAt(from); old && old->Contains(QApplication::focusWidget()))
        if (QApplication::focusWidget() != old) control = QApplication::focusWidget()->objectName();
    ScrollSettings range{Vscroll1->minimum(), Vscroll1->maximum()};
    Vscroll1->setValue(
        ScrollShowingRow(row, Vscroll1->value(), range, InnerHeight(), BannerHeight()));
    FocusRow(row);
    frmUnit* card = CardAt(row);
    if (QWidget* same = control.isEmpty() ? nullptr : card->findChild<QWidget*>(control);
        same && same->isVisible())
        same->setFocus(Qt::ShortcutFocusReason);
}

void UnitBoard::PlaceCard(int row, frmUnit* card) {
    const int pitch = TwipsToPixels(BoardDesign::LayoutRowPitch);
    card->setGeometry(0, row * pitch, picScreen->width(), pitch);
}

void UnitBoard::RefreshCards() {
    if (!shown_) return;
    RowSpan span =
        VisibleRows(PixelsToTwips(-picScreen->y()), InnerHeight(), BoardDesign::LayoutRowPitch,
                    CardCount(), PixelsToTwips(picScreen->height()));
    for (auto it = bound_.begin(); it != bound_.end();) {
        if (!span.Contains(it->first) && !it->second->IsActive()) {
            Release(it->first, it->second);
            it = bound_.erase(it);
        } else {
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
        card = new frmUnit(defs_, picScreen);
        if (inputBox) card->InputBox = inputBox;
        card->Navigate = [this](CardStep step) { StepTo(step); };
        card->PassWheel = [this](QWheelEvent* wheel) { QApplication::sendEvent(Vscroll1, wheel); };
        card->OnValueCommitted = [this](int unitIndex, UnitField field, double before) {
            if (valueCommitted) valueCommitted(unitIndex, field, before);
        };
    } else {
        card = pool_.back();
        pool_.pop_back();
    }
    const int unitIndex = UnitIndexAt(row);
    QPixmap picture;
    if (pictureLoader) picture = pictureLoader(defs_.Units[unitIndex].UnitName + ".pcx");
    card->Show(unitIndex, picture, views_[static_cast<std::size_t>(row)]);
    PlaceCard(row, card);
    card->setVisible(!views_[static_cast<std::size_t>(row)].selfHidden);
    bound_[row] = card;
    return card;
}

void UnitBoard::RefreshValues(int firstUnit, int lastUnit) {
    for (const auto& [row, card] : bound_)
        if (card->UnitIndex >= firstUnit && card->UnitIndex <= lastUnit) card->ShowValues();
}

void UnitBoard::Release(int row, frmUnit* card) {
    if (row >= 0 && row < CardCount()) views_[static_cast<std::size_t>(row)] = card->CurrentView();
    card->hide();
    pool_.push_back(card);
}

void UnitBoard::FocusRow(int row) {
    frmUnit* card = EnsureCard(row);
    card->setFocus(Qt::OtherFocusReason);
    // A board that is not on screen yet cannot take the focus; the card is
    // activated all the same and keeps the focus for when the window shows.
    if (!card->IsActive()) card->Activate();
}

} // namespace vantrel

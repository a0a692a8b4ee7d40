// The unit board: a scroll area of unit cards, one row per unit of the
// chosen side and category. The main window owns the Type and Side menus and
// calls in here.
//
// The board keeps one entry (a unit index and a title) per row and makes card
// widgets only for the rows in view, reusing them as the board scrolls; the
// active card keeps its widget while out of view. Every row is one card high
// (the card's size hint); the scroll bar steps a card and a page, a wheel
// notch scrolls QApplication::wheelScrollLines() cards, and the bar is hidden
// while everything fits. Showing a unit never writes it: building, scrolling,
// resizing and activating leave every unit and the unsaved-changes flag as
// they are.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "forms/frmUnit.h"
#include "mainwindow/board_rules.h"

#include <QAbstractScrollArea>
#include <QPixmap>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vantrel {

class UnitBoard : public QAbstractScrollArea {
    Q_OBJECT
  public:
    UnitBoard(Definitions& defs, Messages& messages, Progress& progress, QWidget* parent = nullptr);
    ~UnitBoard() override;

    // Builds the board for defs.CurrentSide and the category with this Type-menu
    // caption ("&Kbots", "&All", ...): clears the old cards, collects, sorts and
    // shows the cards. A refresh (after Randomize, Open, Merge, Options, Build
    // Set) keeps the active unit active and the view where it was.
    enum class Build { Choice, Refresh };
    void BuildForCategory(const std::string& menuCaption, Build kind = Build::Choice);
    // Throws the cards away (board empty).
    void Clear();
    int CardCount() const;

    // The unit pictures: given "UnitName.pcx" (relative to the current
    // folder), a picture or a null pixmap. Called when a card comes into view.
    std::function<QPixmap(const std::string& path)> pictureLoader;
    // The manual edit's input box for every card (default: a Qt input dialog).
    std::function<std::optional<std::string>(const std::string&, const std::string&)> inputBox;

    // The cards of units firstUnit..lastUnit show their units' present values.
    void RefreshValues(int firstUnit, int lastUnit);

    // Where the resource guard reads its figures (default: the system's).
    void SetResourceGauge(ResourceGauge* gauge);

    // Unit index of a row (0 when out of range).
    int UnitIndexAt(int row) const;
    // The card widget of a row, nullptr while the row has none.
    frmUnit* CardAt(int row) const;
    // Activates the card a step leads to from the active card, scrolls it into
    // view and focuses `control` of it.
    void StepTo(CardStep step, CardControl control = CardControl::Same);
    // Row of the active card (-1: none).
    int ActiveRow() const;
    // Gives the keyboard focus back to the active card (after a dialog, Open, ...).
    void FocusActiveCard();
    // Height of a row in pixels.
    int RowHeight() const { return pitch_; }
    // Card widgets made so far (in use or waiting to be reused).
    int CardWidgetCount() const { return static_cast<int>(bound_.size() + pool_.size()); }

  signals:
    // Every value the player commits on a card (see frmUnit::valueCommitted).
    void valueCommitted(int unitIndex, UnitField field, double before, int gesture);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    void RefreshCards();
    frmUnit* EnsureCard(int row);
    void Release(int row, frmUnit* card);
    void PlaceCard(int row, frmUnit* card);
    void FocusRow(int row, CardControl control);
    void UpdateScroll();

    Definitions& defs_;
    Messages& messages_;
    Progress& progress_;
    SystemResourceGauge systemGauge_;
    ResourceGauge* gauge_ = &systemGauge_;
    int pitch_ = 0;

    std::vector<int> entries_;         // unit index per row
    std::vector<std::string> titles_;  // card title per row
    std::map<int, frmUnit*> bound_;    // rows with a widget
    std::vector<frmUnit*> pool_;       // widgets waiting for a row
    int activeRow_ = -1;
};

} // namespace vantrel

// The unit board: the card area picScreen with its cards and the scroll bar
// Vscroll1. The main window owns the Type and Side menus and calls in here.
//
// The board keeps one entry (a unit index) per card in board order, and
// makes card widgets only for the rows in view, reusing them as the board
// scrolls; the card that has the focus keeps its widget while out of view.
// Showing a unit never writes it: building, scrolling, resizing and
// activating leave every unit and the unsaved-changes flag as they are.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "forms/frmUnit.h"
#include "mainwindow/board_rules.h"

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <map>
#include <string>
#include <vector>

class QScrollBar;

namespace vantrel {

class UnitBoard : public QWidget {
    Q_OBJECT
  public:
    UnitBoard(Definitions& defs, Messages& messages, Progress& progress, QWidget* parent = nullptr);
    ~UnitBoard() override;

    // Builds the board for defs.CurrentSide and the category with this Type-menu
    // caption ("&Kbots", "&All", ...), after the menu has checked it: clears the
    // old cards, asks the "&All" question, collects, sorts and shows the cards.
    // A refresh (after Randomize, Open, Merge, Options, Build Set) rebuilds the
    // same board without asking again; a declined "&All" board stays empty.
    enum class Build { Choice, Refresh };
    void BuildForCategory(const std::string& menuCaption, Build kind = Build::Choice);
    // Throws the cards away (board empty).
    void Clear();
    // The layout pass (also run on every resize).
    void ResizeMe();
    int CardCount() const;

    QWidget* picScreen = nullptr;
    QScrollBar* Vscroll1 = nullptr;

    // The unit pictures: given "UnitName.pcx" (relative to the current
    // folder), a picture or a null pixmap. Called when a card comes into view.
    std::function<QPixmap(const std::string& path)> pictureLoader;
    // The manual edit's input box for every card (default: a Qt input dialog).
    std::function<std::optional<std::string>(const std::string&, const std::string&)> inputBox;

    // Every value the player commits on a card, with its value before the edit.
    std::function<void(int unitIndex, UnitField field, double before)> valueCommitted;
    // The cards of units firstUnit..lastUnit show their units' present values.
    void RefreshValues(int firstUnit, int lastUnit);

    // The main window's banner (picBorder), laid out across the top of the
    // board by the layout pass. Optional; the board leaves the banner's
    // height (255 twips) free either way.
    void SetBanner(QWidget* picBorder);
    // Where the resource guard reads its figures (default: the system's).
    void SetResourceGauge(ResourceGauge* gauge);

    // Unit index of a row (0 when out of range).
    int UnitIndexAt(int row) const;
    // The card widget of a row, nullptr while the row has none.
    frmUnit* CardAt(int row) const;
    // Activates the card a keyboard step leads to (Ctrl+Down and the like)
    // from the active card and scrolls it into view.
    void StepTo(CardStep step);
    // Row of the active card (-1: none).
    int ActiveRow() const;
    // Rows that have a card widget at the moment.
    std::vector<int> RowsWithCards() const;
    // Card widgets made so far (in use or waiting to be reused).
    int CardWidgetCount() const { return static_cast<int>(bound_.size() + pool_.size()); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void Finish();
    void RefreshCards();
    frmUnit* EnsureCard(int row);
    void Release(int row, frmUnit* card);
    void PlaceCard(int row, frmUnit* card);
    void FocusRow(int row);
    void OnScroll(int value);
    // Range and card area for the board as it stands; `toStart` shows the first card.
    void UpdateScroll(bool toStart);
    int InnerWidth() const;   // twips
    int InnerHeight() const;  // twips
    int BannerHeight() const; // twips

    Definitions& defs_;
    Messages& messages_;
    Progress& progress_;
    SystemResourceGauge systemGauge_;
    ResourceGauge* gauge_ = &systemGauge_;
    QWidget* banner_ = nullptr;

    std::vector<int> entries_;         // unit index per row
    std::vector<frmUnit::View> views_; // what each row's card showed last
    std::map<int, frmUnit*> bound_;    // rows with a widget
    std::vector<frmUnit*> pool_;       // widgets waiting for a row
    bool shown_ = false;               // the build has finished: cards may be made
    bool declined_ = false;            // the board is an "&All" the player declined
};

} // namespace vantrel

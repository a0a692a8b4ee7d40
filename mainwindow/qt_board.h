// The unit board: the card area picScreen with its cards and the scroll bar
// Vscroll1. The main window owns the Type and Side menus and calls in here.
#pragma once

#include "catalogue/definitions.h"
#include "startup/ports.h"

#include <QWidget>

#include <string>

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
    void BuildForCategory(const std::string& menuCaption);
    // Throws the cards away (board empty).
    void Clear();
    // The layout pass (also run on every resize).
    void ResizeMe();
    int CardCount() const;

    QWidget* picScreen = nullptr;
    QScrollBar* Vscroll1 = nullptr;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    Definitions& defs_;
    Messages& messages_;
    Progress& progress_;
};

} // namespace vantrel

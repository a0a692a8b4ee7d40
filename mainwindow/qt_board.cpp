// Placeholder board: keeps the widgets the main window lays out; the cards
// arrive with the board itself.
#include "mainwindow/qt_board.h"

#include <QScrollBar>

namespace vantrel {

UnitBoard::UnitBoard(Definitions& defs, Messages& messages, Progress& progress, QWidget* parent)
    : QWidget(parent), defs_(defs), messages_(messages), progress_(progress) {
    setObjectName("UnitBoard");
    picScreen = new QWidget(this);
    picScreen->setObjectName("picScreen");
    Vscroll1 = new QScrollBar(Qt::Vertical, this);
    Vscroll1->setObjectName("Vscroll1");
    Vscroll1->setEnabled(false);
}

UnitBoard::~UnitBoard() = default;

void UnitBoard::BuildForCategory(const std::string&) { defs_.BoardTop = 0; }
void UnitBoard::Clear() {}
void UnitBoard::ResizeMe() {}
int UnitBoard::CardCount() const { return 0; }
void UnitBoard::resizeEvent(QResizeEvent*) { ResizeMe(); }

} // namespace vantrel

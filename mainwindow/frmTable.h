// The Unit Table window: every unit of the catalogue in one sortable,
// filterable table, with in-place and bulk edits of build priority, number
// produced and the build set. It shares the units and the edit history with
// the board.
#pragma once

#include "catalogue/definitions.h"

#include <QRect>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QTableView;

namespace vantrel {

class EditHistory;
class UnitFilterProxy;
class UnitTableModel;

class frmTable : public QWidget {
    Q_OBJECT
  public:
    frmTable(Definitions& defs, EditHistory& history, QWidget* parent = nullptr);

    // Shows and raises the window with the focus in the filter box.
    void ShowWithFocus();
    // The board's side and the keywords of its category, for the second filter.
    void SetBoardChoice(const std::string& side, const std::string& keywords);
    // Units of the selected rows, in row order.
    std::vector<int> SelectedUnits() const;
    // Asks for one value and sets it on every selected unit as one edit.
    void SetSelected(int column);
    // Includes (or excludes) every selected unit as one edit.
    void IncludeSelected(bool include);

    // Where the table's window goes (its frame's top left): beside the main
    // window where the screen has room, else cascaded over it so that
    // `keepVisible` (the board's active card) stays in view where it can.
    static QPoint Placement(const QRect& screen, const QRect& main, const QSize& table,
                            const QRect& keepVisible);

    UnitTableModel& Model() { return *model_; }
    UnitFilterProxy& Proxy() { return *proxy_; }

    // Asks for a value between 0 and `max` (title, prompt, start value, max,
    // decimals); nullopt when cancelled. Tests replace it.
    std::function<std::optional<double>(const QString&, const QString&, double, double, int)>
        askValue;

    // The window's Edit menu: the bulk commands (the main window puts Undo
    // and Redo in front of them).
    QMenu* mnuEdit = nullptr;
    QLineEdit* txtFilter = nullptr;
    QCheckBox* chkBoard = nullptr;
    QTableView* tblUnits = nullptr;
    QPushButton* cmdWeight = nullptr;
    QPushButton* cmdLimit = nullptr;
    QPushButton* cmdInclude = nullptr;
    QPushButton* cmdExclude = nullptr;
    QAction* actSetWeight = nullptr;
    QAction* actSetLimit = nullptr;
    QAction* actInclude = nullptr;
    QAction* actExclude = nullptr;
    QAction* actSelectAll = nullptr;
    QLabel* lblCount = nullptr; // "128 of 425 units"

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void ApplyBoardFilter();
    void ShowCount();

    Definitions& defs_;
    EditHistory& history_;
    UnitTableModel* model_ = nullptr;
    UnitFilterProxy* proxy_ = nullptr;
    std::string side_;
    std::string keywords_;
};

} // namespace vantrel

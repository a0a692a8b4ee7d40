// The Build Set dialog: units of one category with a check box each; every
// check or uncheck is written at once into the unit's Include flag.
#pragma once

#include "catalogue/definitions.h"

#include <QDialog>

#include <cstdint>
#include <functional>
#include <vector>

class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace vantrel {

class frmBuild : public QDialog {
    Q_OBJECT
  public:
    explicit frmBuild(Definitions& defs, QWidget* parent = nullptr);


    QComboBox* cboType = nullptr;
    QListWidget* lstMain = nullptr;
    QLabel* Label1 = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    // Element k + 1 is the index into Units of list row k; element 0 holds no unit.
    std::vector<std::int32_t> RowUnits{0};

    // Called for every tick the player changes, with the unit's earlier Include.
    std::function<void(int unitIndex, bool before)> OnIncludeChanged;

  private:
    void FillCategory();
    void OnRowChanged(QListWidgetItem* item);

    Definitions& defs_;
    bool filling_ = false;
};

} // namespace vantrel

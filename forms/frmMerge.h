// The Merge dialog: pick traits (side and category) whose build priority and
// number produced come from the second profile.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "forms/merge_rules.h"

#include <QDialog>

#include <string>
#include <vector>

class QLabel;
class QListWidget;
class QPushButton;

namespace vantrel {

class frmMerge : public QDialog {
    Q_OBJECT
  public:
    // The current AI's name for the label is taken from the caption of the
    // label "lblAIName" of the parent's window when there is one.
    frmMerge(Definitions& defs, Progress& progress, QWidget* parent = nullptr);

    // Sets the current AI's name shown in the label (the main window's banner).
    void SetCurrentAIName(const std::string& name);

    // The rows with their check states as the list shows them now.
    std::vector<TraitRow> Rows() const;


    QLabel* lblLoad = nullptr;
    QListWidget* lstMain = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

  private:
    void OnOK();

    Definitions& defs_;
    Progress& progress_;
};

} // namespace vantrel

// View, Check Profile...: what the check finds in a profile, one row per
// finding, against the units of the catalogue.
#pragma once

#include "catalogue/definitions.h"
#include "profile/profile_check.h"

#include <QDialog>

#include <vector>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace vantrel {

class frmCheck : public QDialog {
    Q_OBJECT
  public:
    // `findings` of the profile `name` (a path).
    frmCheck(const std::string& name, const std::vector<CheckFinding>& findings,
             QWidget* parent = nullptr);

    QLabel* lblSummary = nullptr;
    QTreeWidget* lstFindings = nullptr; // Line, Finding (in words)
    QPushButton* cmdOK = nullptr;
};

} // namespace vantrel

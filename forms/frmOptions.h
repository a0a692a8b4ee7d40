// The Options dialog: the three difficulty percentages, the two slider
// maxima, the two start-up switches and the game folder.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "forms/folder_picker.h"
#include "forms/options_rules.h"

#include <QDialog>

#include <array>
#include <memory>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vantrel {

class frmOptions : public QDialog {
    Q_OBJECT
  public:
    frmOptions(Definitions& defs, SettingsStore& store, QWidget* parent = nullptr);
    ~frmOptions() override;

    // The folder dialog behind "Browse..."; not owned. nullptr restores the
    // desktop's folder dialog.
    void SetFolderPicker(FolderPicker* picker);

    // What the boxes hold now.
    OptionsInput Input() const;


    QGroupBox* Frame1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    QGroupBox* Frame3 = nullptr;
    std::array<QLabel*, 9> Label{}; // Label[1] .. Label[8]; [0] unused
    QLineEdit* txtEasy = nullptr;
    QLineEdit* txtMedium = nullptr;
    QLineEdit* txtHard = nullptr;
    QLineEdit* txtWeightMax = nullptr;
    QLineEdit* txtLimitMax = nullptr;
    QCheckBox* chkLoad = nullptr;
    QCheckBox* chkRandom = nullptr;
    QLabel* lblGameDir = nullptr;
    QLineEdit* txtGameDir = nullptr;
    QPushButton* cmdBrowse = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::array<QLineEdit*, 5> NumberBoxes() const;
    void OnBrowse();
    void OnOK();

    Definitions& defs_;
    SettingsStore& store_;
    std::unique_ptr<FolderPicker> desktopPicker_;
    FolderPicker* picker_ = nullptr;
};

} // namespace vantrel

// The window start-up shows when the Units folder holds no unit: where the
// program looked, the game folder it found, a field to name another one, and
// the ways on: extract the units, go on without units, or quit.
#pragma once

#include "startup/main_sequence.h"

#include <QDialog>

#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;

namespace vantrel {

class FolderPicker;

class frmFirstStart : public QDialog, public NoUnitsWindow {
    Q_OBJECT
  public:
    explicit frmFirstStart(QWidget* parent = nullptr);
    ~frmFirstStart() override;

    // Browse... asks this picker (tests script it); nullptr: the desktop's dialog.
    void SetFolderPicker(FolderPicker* picker);

    // NoUnitsWindow: shows the window modally. Extract takes the field's
    // folder into defs.GameDir; closing the window is Quit.
    NoUnitsChoice Ask(Definitions& defs, const std::string& unitsFolder,
                      bool afterExtract) override;

    QLabel* lblLooked = nullptr;
    QLabel* lblFound = nullptr;
    QLineEdit* txtGameDir = nullptr;
    QPushButton* cmdBrowse = nullptr;
    QPushButton* cmdExtract = nullptr;
    QPushButton* cmdContinue = nullptr;
    QPushButton* cmdQuit = nullptr;

  private:
    void OnBrowse();
    void UpdateExtract();

    std::unique_ptr<FolderPicker> desktopPicker_;
    FolderPicker* picker_ = nullptr;
};

} // namespace vantrel

// The progress form shown while start-up extracts and loads units, and while
// profiles are read or written.
#pragma once

#include "base/ports.h"

#include <QDialog>

class QLabel;
class QProgressBar;

namespace vantrel {

class frmLoad : public QDialog, public Progress {
    Q_OBJECT
  public:
    explicit frmLoad(QWidget* parent = nullptr);

    void Show() override;
    void Repaint() override;
    void Close() override;
    void ProcessEvents() override;

    QLabel* lblStatus = nullptr;
    QProgressBar* prbMain = nullptr;

  protected:
    void OnChange() override;
};

} // namespace vantrel

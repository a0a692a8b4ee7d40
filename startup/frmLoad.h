// The progress form shown while start-up extracts and loads units, and while
// profiles are read or written.
#pragma once

#include "base/ports.h"

#include <QDialog>
#include <QElapsedTimer>

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

  private:
    // Repaint() paints at most once per 50 ms: extraction names every file,
    // faster than the eye can follow or the screen needs.
    QElapsedTimer sinceRepaint_;
};

} // namespace vantrel

// The About box: version, two links, a line of our own and the icon.
#pragma once

#include "startup/ports.h"

#include <QDialog>

class QLabel;
class QPushButton;

namespace vantrel {

inline constexpr const char* FeedbackLink = "mailto:feedback@vantrel.invalid?subject=Vantrel";
inline constexpr const char* WebAddress = "https://vantrel.invalid/";

class frmAbout : public QDialog {
    Q_OBJECT
  public:
    explicit frmAbout(Shell& shell, QWidget* parent = nullptr);

    QLabel* Image1 = nullptr;
    QLabel* Label1 = nullptr; // "Version 1.1.0"
    QLabel* Label3 = nullptr; // the authors; opens the feedback mail link
    QLabel* Label4 = nullptr;
    QLabel* Label5 = nullptr; // the web address
    QPushButton* cmdOK = nullptr;

  private:
    Shell& shell_;
};

} // namespace vantrel

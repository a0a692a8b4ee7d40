// The About box: version, authors, a line of our own, the icon and a link
// that opens the program folder (the profiles' and units' home). Vantrel has
// no web site or mail address, so the box offers none.
#pragma once

#include "base/ports.h"

#include <QDialog>

#include <string>

class QLabel;
class QPushButton;

namespace vantrel {

class frmAbout : public QDialog {
    Q_OBJECT
  public:
    frmAbout(Shell& shell, const std::string& appDir, QWidget* parent = nullptr);

    QLabel* Image1 = nullptr;
    QLabel* Label1 = nullptr; // "Version 1.1.0"
    QLabel* Label3 = nullptr; // the authors
    QLabel* Label4 = nullptr;
    QLabel* Label5 = nullptr; // the program folder; a click opens it
    QPushButton* cmdOK = nullptr;

  private:
    Shell& shell_;
};

} // namespace vantrel

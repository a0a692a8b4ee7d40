// The help viewer: shows the help file "Vant1.hlp" (HTML) of the program folder.
#pragma once

#include <QDialog>
#include <QString>

class QTextBrowser;

namespace vantrel {

class frmHelp : public QDialog {
    Q_OBJECT
  public:
    explicit frmHelp(QWidget* parent = nullptr);
    // Shows the file's contents; a missing or unreadable file gets a note instead.
    void ShowContents(const QString& helpFile);

    QTextBrowser* txtHelp = nullptr;
};

} // namespace vantrel

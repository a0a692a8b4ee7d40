// The help viewer: shows the help file "Vant1.hlp" (HTML) of the program folder.
// The program carries the help text as a resource (BuiltInHelp), which is also
// what the viewer shows when the file cannot be read.
#pragma once

#include <QByteArray>
#include <QDialog>
#include <QString>

class QTextBrowser;

namespace vantrel {

// The help text built into the program.
QByteArray BuiltInHelp();

class frmHelp : public QDialog {
    Q_OBJECT
  public:
    explicit frmHelp(QWidget* parent = nullptr);
    // Shows the file's contents; a missing or unreadable file shows the built-in help.
    void ShowContents(const QString& helpFile);

    QTextBrowser* txtHelp = nullptr;
};

} // namespace vantrel

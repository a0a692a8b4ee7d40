// The open and save dialogs of the desktop program (QFileDialog).
#pragma once

#include "mainwindow/file_commands.h"

#include <QStringList>

class QWidget;

namespace vantrel {

// "AI Text File|*.txt|Tessaly 1.x|*.tsy" as Qt name filters:
// "AI Text File (*.txt)", "Tessaly 1.x (*.tsy)".
QStringList QtNameFilters(const std::string& filter);
// The extension a name filter gives: "txt" for "AI Text File (*.txt)", "" for none.
QString FilterSuffix(const QString& nameFilter);

class QtFileDialogs : public FileDialogs {
  public:
    explicit QtFileDialogs(QWidget* parent = nullptr) : parent_(parent) {}
    void SetParent(QWidget* parent) { parent_ = parent; }
    FileDialogResult Open(const std::string& title, const std::string& filter,
                          const std::string& initialFolder) override;
    FileDialogResult Save(const std::string& title, const std::string& filter,
                          const std::string& initialFolder,
                          const std::string& proposedName) override;

  private:
    QWidget* parent_;
};

} // namespace vantrel

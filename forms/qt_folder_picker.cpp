#include "forms/qt_folder_picker.h"

#include <QDir>
#include <QFileDialog>

namespace vantrel {

std::optional<std::string> QtFolderPicker::PickFolder(const std::string& title,
                                                      const std::string& start) {
    QString chosen = QFileDialog::getExistingDirectory(parent_, QString::fromStdString(title),
                                                       QString::fromStdString(start));
    if (chosen.isEmpty()) return std::nullopt;
    return QDir::toNativeSeparators(chosen).toStdString();
}

} // namespace vantrel

#include "mainwindow/qt_file_dialogs.h"

#include "forms/qt_text.h"

#include <QDir>
#include <QFileDialog>
#include <QRegularExpression>

namespace vantrel {

QStringList QtNameFilters(const std::string& filter) {
    const QStringList parts = QtText(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        filters << QString("%1 (%2)").arg(parts[i], QString(parts[i + 1]).replace(';', ' '));
    return filters;
}

QString FilterSuffix(const QString& nameFilter) {
    static const QRegularExpression pattern(R"(\*\.(\w+))");
    const QRegularExpressionMatch match = pattern.match(nameFilter);
    return match.hasMatch() ? match.captured(1) : QString();
}

namespace {
FileDialogResult Run(QFileDialog& dialog, const std::string& filter) {
    const QStringList filters = QtNameFilters(filter);
    dialog.setNameFilters(filters);
    FileDialogResult result;
    result.accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    result.folder = StdPath(QDir::toNativeSeparators(dialog.directory().absolutePath()));
    if (!result.folder.empty() && result.folder.back() != '/') result.folder += '/';
    if (result.accepted) {
        result.path = StdPath(dialog.selectedFiles().front());
        result.filterIndex = static_cast<int>(filters.indexOf(dialog.selectedNameFilter())) + 1;
        if (result.filterIndex < 1) result.filterIndex = 1;
    }
    return result;
}
} // namespace

FileDialogResult QtFileDialogs::Open(const std::string& title, const std::string& filter,
                                     const std::string& initialFolder) {
    QFileDialog dialog(parent_, QtText(title), QtPath(initialFolder));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return Run(dialog, filter);
}

FileDialogResult QtFileDialogs::Save(const std::string& title, const std::string& filter,
                                     const std::string& initialFolder,
                                     const std::string& proposedName) {
    QFileDialog dialog(parent_, QtText(title), QtPath(initialFolder));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, false);
    dialog.selectFile(QtText(proposedName));
    // A name typed without an extension gets the chosen filter's, before the
    // dialog asks about overwriting.
    dialog.setDefaultSuffix(FilterSuffix(QtNameFilters(filter).value(0)));
    QObject::connect(
        &dialog, &QFileDialog::filterSelected, &dialog,
        [&dialog](const QString& chosen) { dialog.setDefaultSuffix(FilterSuffix(chosen)); });
    return Run(dialog, filter);
}

} // namespace vantrel

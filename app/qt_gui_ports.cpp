#include "app/qt_gui_ports.h"

#include "forms/qt_text.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QUrl>

namespace vantrel {

MsgAnswer QtMessages::Show(const std::string& text, const std::string& title, MsgButtons buttons,
                           MsgIcon icon) {
    QMessageBox box(parent_);
    box.setWindowTitle(QString::fromLatin1(title.c_str()));
    box.setText(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    switch (icon) {
    case MsgIcon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case MsgIcon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case MsgIcon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case MsgIcon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case MsgIcon::None:
        break;
    }
    switch (buttons) {
    case MsgButtons::OK:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case MsgButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case MsgButtons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Yes:
        return MsgAnswer::Yes;
    case QMessageBox::No:
        return MsgAnswer::No;
    case QMessageBox::Cancel:
        return MsgAnswer::Cancel;
    default:
        return buttons == MsgButtons::OK ? MsgAnswer::OK : MsgAnswer::Cancel;
    }
}

void QtMessages::Beep() {
    QApplication::beep();
}

namespace {
const QString RestartedFlag = QStringLiteral("--restarted");
} // namespace

bool QtShell::RestartSelf() {
    QStringList args = QCoreApplication::arguments();
    if (!args.isEmpty()) args.removeFirst();
    if (!args.contains(RestartedFlag)) args << RestartedFlag;
    return QProcess::startDetached(QCoreApplication::applicationFilePath(), args);
}

bool QtShell::IsRestart() {
    return QCoreApplication::arguments().contains(RestartedFlag);
}

bool QtShell::OpenDocument(const std::string& target) {
    QString t = QtPath(target);
    QUrl url = QFileInfo::exists(t) ? QUrl::fromLocalFile(t) : QUrl(t);
    return QDesktopServices::openUrl(url);
}

} // namespace vantrel

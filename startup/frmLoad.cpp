#include "startup/frmLoad.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace vantrel {

frmLoad::frmLoad(QWidget* parent) : QDialog(parent) {
    setObjectName("frmLoad");
    setWindowTitle(QString("Vantrel v%1.%2.%3")
                       .arg(VANTREL_VERSION_MAJOR)
                       .arg(VANTREL_VERSION_MINOR)
                       .arg(VANTREL_VERSION_PATCH));
    setModal(false);
    auto* layout = new QVBoxLayout(this);
    lblStatus = new QLabel(QString::fromLatin1(Status().c_str()), this);
    lblStatus->setObjectName("lblStatus");
    lblStatus->setMinimumWidth(360);
    prbMain = new QProgressBar(this);
    prbMain->setObjectName("prbMain");
    prbMain->setRange(0, Maximum());
    prbMain->setValue(Value());
    layout->addWidget(lblStatus);
    layout->addWidget(prbMain);
}

void frmLoad::OnChange() {
    lblStatus->setText(
        QString::fromLatin1(Status().data(), static_cast<qsizetype>(Status().size())));
    prbMain->setRange(0, Maximum());
    prbMain->setValue(Value());
}

void frmLoad::Show() {
    // Over the window that is busy, and painted before the work starts.
    if (QWidget* busy = QApplication::activeWindow(); busy && busy != this)
        move(busy->geometry().center() - rect().center());
    show();
    raise();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmLoad::Repaint() {
    if (!isVisible()) return;
    if (sinceRepaint_.isValid() && sinceRepaint_.elapsed() < 50) return;
    repaint();
    sinceRepaint_.start();
}

void frmLoad::Close() {
    hide();
}

void frmLoad::ProcessEvents() {
    QApplication::processEvents();
}

} // namespace vantrel

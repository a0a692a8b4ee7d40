#include "forms/frmHelp.h"

#include <QDesktopServices>
#include <QFile>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace vantrel {

QByteArray BuiltInHelp() {
    QFile file(":/Vant1.hlp");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

frmHelp::frmHelp(QWidget* parent) : QDialog(parent) {
    setObjectName("frmHelp");
    setWindowTitle("Vantrel Help");
    txtHelp = new QTextBrowser(this);
    txtHelp->setObjectName("txtHelp");
    txtHelp->setOpenLinks(true);
    txtHelp->setOpenExternalLinks(true);
    auto* close = new QPushButton("&Close", this);
    close->setObjectName("cmdClose");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtHelp);
    layout->addWidget(close, 0, Qt::AlignRight);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    resize(640, 560);
}

void frmHelp::ShowContents(const QString& helpFile) {
    QFile file(helpFile);
    const QByteArray text =
        !helpFile.isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll() : BuiltInHelp();
    txtHelp->setHtml(QString::fromUtf8(text));
    show();
    raise();
    activateWindow();
}

} // namespace vantrel

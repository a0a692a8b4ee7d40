#include "forms/frmHelp.h"

#include <QDesktopServices>
#include <QFile>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace vantrel {

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
    if (helpFile.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        txtHelp->setPlainText(QString("The help file could not be opened: %1\n\nIt belongs in the "
                                      "program folder as Vant1.hlp.")
                                  .arg(helpFile.isEmpty() ? QString("Vant1.hlp") : helpFile));
    } else {
        txtHelp->setHtml(QString::fromUtf8(file.readAll()));
    }
    show();
    raise();
    activateWindow();
}

} // namespace vantrel

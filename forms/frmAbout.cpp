#include "forms/frmAbout.h"

#include "forms/qt_form_parts.h"
#include "forms/qt_icon.h"
#include "forms/qt_text.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace vantrel {

namespace {
QLabel* LinkLabel(const QString& text, const QString& target, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::RichText);
    label->setText(QString("<a href=\"%1\" style=\"color:#000080; text-decoration:underline\">"
                           "%2</a>")
                       .arg(target.toHtmlEscaped(), text.toHtmlEscaped()));
    label->setOpenExternalLinks(false);
    label->setCursor(Qt::PointingHandCursor);
    return label;
}
} // namespace

frmAbout::frmAbout(Shell& shell, const std::string& appDir, QWidget* parent)
    : QDialog(parent), shell_(shell) {
    setObjectName("frmAbout");
    setWindowTitle("About Vantrel");
    setModal(true);
    setAttribute(Qt::WA_DeleteOnClose, false);

    Image1 = new QLabel(this);
    Image1->setObjectName("Image1");
    Image1->setPixmap(VantrelIcon(32));
    Label1 = new QLabel(QString("Version %1.%2.%3")
                            .arg(VANTREL_VERSION_MAJOR)
                            .arg(VANTREL_VERSION_MINOR)
                            .arg(VANTREL_VERSION_PATCH),
                        this);
    Label1->setObjectName("Label1");
    Label3 = new QLabel("The Vantrel developers", this);
    Label3->setObjectName("Label3");
    Label4 = new QLabel("AI profiles for Total Annihilation, unit by unit.", this);
    Label4->setObjectName("Label4");
    Label5 = LinkLabel("Open the program folder", QtPath(appDir), this);
    Label5->setToolTip(QtPath(appDir));
    Label5->setObjectName("Label5");
    cmdOK = new QPushButton("&OK", this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);

    QFont bold = font();
    bold.setBold(true);
    bold.setPointSizeF(9.75);
    for (QLabel* label : {Label1, Label3, Label4, Label5})
        label->setFont(bold);

    auto* grid = new QGridLayout(this);
    grid->addWidget(Image1, 0, 0, 4, 1, Qt::AlignTop);
    grid->addWidget(Label1, 0, 1);
    grid->addWidget(Label3, 1, 1);
    grid->addWidget(Label4, 2, 1);
    grid->addWidget(Label5, 3, 1);
    grid->addWidget(cmdOK, 4, 1, Qt::AlignRight);
    grid->setHorizontalSpacing(16);
    FixedAndCentred(this);

    connect(Label5, &QLabel::linkActivated, this,
            [this](const QString& link) { shell_.OpenDocument(StdPath(link)); });
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

} // namespace vantrel

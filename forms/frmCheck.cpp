#include "forms/frmCheck.h"

#include "forms/qt_form_parts.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vantrel {

frmCheck::frmCheck(const std::string& name, const std::vector<CheckFinding>& findings,
                   QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmCheck");
    setWindowTitle("Check Profile");
    setModal(true);

    lblSummary = new QLabel(this);
    lblSummary->setObjectName("lblSummary");
    lblSummary->setWordWrap(true);
    lblSummary->setTextFormat(Qt::PlainText);
    lblSummary->setText(ToLatin1Text(
        findings.empty() ? name + ": every entry names a unit, every unit has its weight and "
                                  "every value is a number."
                         : name + ": " + std::to_string(findings.size()) +
                               (findings.size() == 1 ? " finding." : " findings.")));

    lstFindings = new QTreeWidget(this);
    lstFindings->setObjectName("lstFindings");
    lstFindings->setRootIsDecorated(false);
    lstFindings->setHeaderLabels({"Line", "Finding"});
    for (const CheckFinding& f : findings) {
        auto* item =
            new QTreeWidgetItem(lstFindings, {f.line > 0 ? QString::number(f.line) : QString(),
                                              ToLatin1Text(CheckSentence(f))});
        item->setTextAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
    }
    lstFindings->header()->setSectionResizeMode(QHeaderView::ResizeToContents);

    cmdOK = new QPushButton("OK", this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblSummary);
    layout->addWidget(lstFindings, 1);
    layout->addLayout(buttons);
    resize(520, 400);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

} // namespace vantrel

#include "forms/frmMerge.h"

#include "forms/qt_form_parts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vantrel {

frmMerge::frmMerge(Definitions& defs, Progress& progress, QWidget* parent)
    : QDialog(parent), defs_(defs), progress_(progress) {
    setObjectName("frmMerge");
    setWindowTitle("Merge");
    setModal(true);

    lblLoad = new QLabel("Merging", this);
    lblLoad->setObjectName("lblLoad");
    lblLoad->setWordWrap(true);
    lstMain = NewCheckList(this);
    NewOkCancel(this, cmdOK, cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblLoad);
    layout->addWidget(lstMain, 1);
    layout->addLayout(ButtonRow(cmdOK, cmdCancel));
    FixedAndCentred(this, QSize(360, 420));

    connect(cmdOK, &QPushButton::clicked, this, &frmMerge::OnOK);
    connect(cmdCancel, &QPushButton::clicked, this, &frmMerge::reject);

    // Load: the label, the rows (none checked), row 0 selected.
    QLabel* banner = parent ? parent->window()->findChild<QLabel*>("lblAIName") : nullptr;
    SetCurrentAIName(banner ? FromLatin1Text(banner->text()) : std::string());
    for (const TraitRow& row : MergeTraitRows(defs_.Races))
        AddCheckRow(lstMain, row.Text, false);
    lstMain->setCurrentRow(0);
}

void frmMerge::SetCurrentAIName(const std::string& name) {
    lblLoad->setText(ToLatin1Text(MergeLabelText(defs_.Profile.LoadedAIName, name)));
}

std::vector<TraitRow> frmMerge::Rows() const {
    std::vector<TraitRow> rows;
    for (int n = 0; n < lstMain->count(); ++n) {
        const QListWidgetItem* item = lstMain->item(n);
        rows.push_back({FromLatin1Text(item->text()), item->checkState() == Qt::Checked});
    }
    return rows;
}

void frmMerge::OnOK() {
    AcceptMerge(defs_);
    const std::vector<TraitRow> rows = Rows();
    setResult(QDialog::Accepted);
    hide();
    MergeTraits(defs_, rows, progress_);
    accept();
}

} // namespace vantrel

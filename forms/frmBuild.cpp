#include "forms/frmBuild.h"

#include "forms/build_rules.h"
#include "forms/qt_form_parts.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vantrel {

namespace {
// The busy pointer for the lifetime of the object.
struct BusyPointer {
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
};
} // namespace

frmBuild::frmBuild(Definitions& defs, QWidget* parent) : QDialog(parent), defs_(defs) {
    setObjectName("frmBuild");
    setWindowTitle("Build Set");
    setModal(true);

    cboType = new QComboBox(this);
    cboType->setObjectName("cboType");
    cboType->setToolTip("Unit category");
    Label1 = new QLabel("Check off units you do not want to include in your final profile", this);
    Label1->setObjectName("Label1");
    Label1->setWordWrap(true);
    lstMain = NewCheckList(this);
    cboType->setAccessibleName("Unit category");
    lstMain->setAccessibleName("Units of the category");
    NewOkCancel(this, cmdOK, cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(cboType);
    layout->addWidget(Label1);
    layout->addWidget(lstMain, 1);
    layout->addLayout(ButtonRow(cmdOK, cmdCancel));
    FixedAndCentred(this, QSize(360, 460));

    // Load: the categories in the dialog's order, "All" selected and listed.
    for (std::string_view caption : BuildSetCategoryOrder)
        cboType->addItem(
            QString::fromLatin1(caption.data(), static_cast<qsizetype>(caption.size())));
    cboType->setCurrentIndex(0);
    FillCategory();

    connect(cboType, &QComboBox::currentIndexChanged, this, [this] { FillCategory(); });
    connect(lstMain, &QListWidget::itemChanged, this, &frmBuild::OnRowChanged);
    connect(cmdOK, &QPushButton::clicked, this, &frmBuild::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &frmBuild::reject);
}

void frmBuild::FillCategory() {
    BusyPointer busy;
    filling_ = true;
    lstMain->clear();
    const std::vector<BuildRow> rows = BuildSetRows(defs_, FromLatin1Text(cboType->currentText()));
    for (const BuildRow& row : rows)
        AddCheckRow(lstMain, row.Text, row.Checked);
    RowUnits = RowUnitsOf(rows);
    lstMain->setCurrentRow(0);
    filling_ = false;
}

void frmBuild::OnRowChanged(QListWidgetItem* item) {
    // Only the user's checks count, not the ones made while the list fills.
    if (filling_ || !isVisible() || item == nullptr) return;
    const int row = lstMain->row(item);
    const bool checked = item->checkState() == Qt::Checked;
    const std::size_t at = static_cast<std::size_t>(row) + 1;
    const int unit = row >= 0 && at < RowUnits.size() ? RowUnits[at] : 0;
    const bool before = unit >= 1 && unit <= defs_.Units.UBound() && defs_.Units[unit].Include;
    if (SetRowInclude(defs_, RowUnits, row, checked) && before != checked && OnIncludeChanged)
        OnIncludeChanged(unit, before);
}

} // namespace vantrel

#include "mainwindow/frmTable.h"

#include "forms/qt_text.h"
#include "mainwindow/qt_edit_history.h"
#include "mainwindow/qt_unit_table.h"

#include <QAction>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace vantrel {

namespace {

// In-place editors with the card's bounds: hundredths up to WeightMax,
// whole numbers up to LimitMax.
class ValueDelegate : public QStyledItemDelegate {
  public:
    ValueDelegate(const Definitions& defs, QObject* parent)
        : QStyledItemDelegate(parent), defs_(defs) {}
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        // The editor covers the cell's own text: only the value being edited shows.
        editor->setAutoFillBackground(true);
        if (auto* weight = qobject_cast<QDoubleSpinBox*>(editor)) {
            weight->setDecimals(2);
            weight->setRange(0, defs_.Options.WeightMax);
        } else if (auto* limit = qobject_cast<QSpinBox*>(editor)) {
            limit->setRange(0, std::max(0, defs_.Options.LimitMax));
        }
        return editor;
    }
    // An editor that is only looked at writes nothing: a value above the
    // maximum, or finer than hundredths, stays as it is.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        QStyledItemDelegate::setEditorData(editor, index);
        editor->setProperty("shownValue", EditorValue(editor));
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        if (EditorValue(editor) != editor->property("shownValue"))
            QStyledItemDelegate::setModelData(editor, model, index);
    }

  private:
    static QVariant EditorValue(QWidget* editor) {
        if (auto* weight = qobject_cast<QDoubleSpinBox*>(editor)) return weight->value();
        if (auto* limit = qobject_cast<QSpinBox*>(editor)) return limit->value();
        return {};
    }
    const Definitions& defs_;
};

} // namespace

frmTable::frmTable(Definitions& defs, EditHistory& history, QWidget* parent)
    : QWidget(parent, Qt::Window), defs_(defs), history_(history) {
    setObjectName("frmTable");
    setWindowTitle("Unit Table");

    model_ = new UnitTableModel(defs_, history_, this);
    proxy_ = new UnitFilterProxy(defs_, this);
    proxy_->setSourceModel(model_);

    txtFilter = new QLineEdit(this);
    txtFilter->setObjectName("txtFilter");
    txtFilter->setPlaceholderText("Name, UnitName, Side, class or category");
    txtFilter->setClearButtonEnabled(true);
    txtFilter->installEventFilter(this);
    chkBoard = new QCheckBox("Only the board's side and type", this);
    chkBoard->setObjectName("chkBoard");

    tblUnits = new QTableView(this);
    tblUnits->setObjectName("tblUnits");
    tblUnits->setAccessibleName("Units");
    tblUnits->setModel(proxy_);
    tblUnits->setItemDelegate(new ValueDelegate(defs_, tblUnits));
    tblUnits->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblUnits->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tblUnits->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                              QAbstractItemView::AnyKeyPressed);
    tblUnits->verticalHeader()->hide();
    tblUnits->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tblUnits->verticalHeader()->setDefaultSectionSize(UnitTableModel::ThumbnailSize + 4);
    tblUnits->setIconSize(QSize(UnitTableModel::ThumbnailSize, UnitTableModel::ThumbnailSize));
    tblUnits->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder); // catalogue order
    tblUnits->setSortingEnabled(true);
    QHeaderView* header = tblUnits->horizontalHeader();
    for (int c = UnitTableModel::ColName; c < UnitTableModel::ColumnCount; ++c)
        header->resizeSection(c, std::max(80, header->sectionSizeHint(c)));
    header->resizeSection(UnitTableModel::ColPicture, UnitTableModel::ThumbnailSize + 8);
    header->resizeSection(UnitTableModel::ColName, 170);

    auto button = [this](const char* name, const char* caption) {
        auto* b = new QPushButton(QString::fromLatin1(caption), this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        return b;
    };
    cmdWeight = button("cmdWeight", "Set Build &Priority...");
    cmdLimit = button("cmdLimit", "Set &Number Produced...");
    cmdInclude = button("cmdInclude", "&Include");
    cmdExclude = button("cmdExclude", "E&xclude");

    lblCount = new QLabel(this);
    lblCount->setObjectName("lblCount");
    auto* filterRow = new QHBoxLayout;
    auto* filterLabel = new QLabel("&Filter:", this);
    filterLabel->setBuddy(txtFilter);
    filterRow->addWidget(filterLabel);
    filterRow->addWidget(txtFilter, 1);
    filterRow->addWidget(chkBoard);
    auto* buttonRow = new QHBoxLayout;
    for (QPushButton* b : {cmdWeight, cmdLimit, cmdInclude, cmdExclude})
        buttonRow->addWidget(b);
    buttonRow->addStretch(1);
    buttonRow->addWidget(lblCount);
    auto* layout = new QVBoxLayout(this);
    auto* bar = new QMenuBar(this);
    layout->setMenuBar(bar);
    layout->addLayout(filterRow);
    layout->addWidget(tblUnits, 1);
    layout->addLayout(buttonRow);
    resize(980, 560);

    // Ctrl+W and Ctrl+L work wherever the focus is in this window.
    mnuEdit = bar->addMenu("&Edit");
    mnuEdit->setObjectName("mnuTableEdit");
    actSetWeight = mnuEdit->addAction("Set Build &Priority...");
    actSetWeight->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    actSetLimit = mnuEdit->addAction("Set &Number Produced...");
    actSetLimit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));
    actInclude = mnuEdit->addAction("&Include");
    actExclude = mnuEdit->addAction("E&xclude");
    mnuEdit->addSeparator();
    // Ctrl+A selects the rows; in the filter box it selects the box's text
    // (the box takes its standard keys before the window's shortcuts).
    actSelectAll = mnuEdit->addAction("Select &All");
    actSelectAll->setShortcut(QKeySequence::SelectAll);

    askValue = [this](const QString& title, const QString& prompt, double start, double max,
                      int decimals) -> std::optional<double> {
        QInputDialog dialog(this);
        dialog.setWindowTitle(title);
        dialog.setLabelText(prompt);
        dialog.setInputMode(QInputDialog::DoubleInput);
        dialog.setDoubleRange(0, max);
        dialog.setDoubleDecimals(decimals);
        dialog.setDoubleValue(start);
        if (auto* box = dialog.findChild<QDoubleSpinBox*>()) box->setAccessibleName(title);
        // Wide enough for the whole title beside the window's buttons (the
        // dialog's layout sizes it to its contents, so the prompt is widened).
        QFont titleFont = dialog.font();
        titleFont.setBold(true);
        if (auto* prompt = dialog.findChild<QLabel*>())
            prompt->setMinimumWidth(QFontMetrics(titleFont).horizontalAdvance(title) + 140);
        if (dialog.exec() != QDialog::Accepted) return std::nullopt;
        return dialog.doubleValue();
    };

    connect(txtFilter, &QLineEdit::textChanged, this,
            [this](const QString& text) { proxy_->SetFilterText(StdText(text)); });
    connect(chkBoard, &QCheckBox::toggled, this, [this] { ApplyBoardFilter(); });
    connect(actSetWeight, &QAction::triggered, this,
            [this] { SetSelected(UnitTableModel::ColWeight); });
    connect(actSetLimit, &QAction::triggered, this,
            [this] { SetSelected(UnitTableModel::ColLimit); });
    connect(cmdWeight, &QPushButton::clicked, actSetWeight, &QAction::trigger);
    connect(cmdLimit, &QPushButton::clicked, actSetLimit, &QAction::trigger);
    connect(actInclude, &QAction::triggered, this, [this] { IncludeSelected(true); });
    connect(actExclude, &QAction::triggered, this, [this] { IncludeSelected(false); });
    connect(cmdInclude, &QPushButton::clicked, actInclude, &QAction::trigger);
    connect(cmdExclude, &QPushButton::clicked, actExclude, &QAction::trigger);
    connect(actSelectAll, &QAction::triggered, tblUnits, &QTableView::selectAll);
    for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(proxy_, signal, this, &frmTable::ShowCount);
    connect(proxy_, &QAbstractItemModel::modelReset, this, &frmTable::ShowCount);
    connect(proxy_, &QAbstractItemModel::layoutChanged, this, &frmTable::ShowCount);
    ShowCount();
}

void frmTable::ShowWithFocus() {
    show();
    raise();
    activateWindow();
    txtFilter->setFocus(Qt::OtherFocusReason);
    txtFilter->selectAll();
}

void frmTable::SetBoardChoice(const std::string& side, const std::string& keywords) {
    side_ = side;
    keywords_ = keywords;
    if (chkBoard->isChecked()) ApplyBoardFilter();
}

void frmTable::ApplyBoardFilter() {
    proxy_->SetBoardFilter(chkBoard->isChecked(), side_, keywords_);
}

void frmTable::ShowCount() {
    lblCount->setText(QString("%1 of %2 units").arg(proxy_->rowCount()).arg(model_->rowCount()));
}

QPoint frmTable::Placement(const QRect& screen, const QRect& main, const QSize& table,
                           const QRect& keepVisible) {
    const int top = std::clamp(main.top(), screen.top(),
                               std::max(screen.top(), screen.bottom() + 1 - table.height()));
    if (screen.right() - main.right() >= table.width()) return {main.right() + 1, top};
    if (main.left() - screen.left() >= table.width()) return {main.left() - table.width(), top};
    // No room beside: cascaded over the main window, above or below the
    // part to keep in view, wherever there is more room.
    const int x = std::clamp(main.left() + 32, screen.left(),
                             std::max(screen.left(), screen.right() + 1 - table.width()));
    const int below = screen.bottom() - keepVisible.bottom();
    const int above = keepVisible.top() - screen.top();
    if (below >= table.height() || below >= above)
        return {x, std::min(keepVisible.bottom() + 1,
                            std::max(screen.top(), screen.bottom() + 1 - table.height()))};
    return {x, std::max(screen.top(), keepVisible.top() - table.height())};
}

std::vector<int> frmTable::SelectedUnits() const {
    std::vector<int> units;
    const QModelIndexList rows = tblUnits->selectionModel()->selectedRows();
    units.reserve(static_cast<std::size_t>(rows.size()));
    for (const QModelIndex& row : rows)
        units.push_back(UnitTableModel::UnitOfRow(proxy_->mapToSource(row).row()));
    return units;
}

void frmTable::SetSelected(int column) {
    const std::vector<int> units = SelectedUnits();
    if (units.empty()) return;
    const bool weight = column == UnitTableModel::ColWeight;
    const QString what = weight ? "Build Priority" : "Number Produced";
    const double max = weight ? defs_.Options.WeightMax : defs_.Options.LimitMax;
    const double start = FieldValue(defs_.Units[units.front()], UnitTableModel::FieldOf(column));
    auto value = askValue("Set " + what,
                          what + QString(" of %1 unit%2:").arg(units.size()).arg(
                                     units.size() == 1 ? "" : "s"),
                          start, std::max(0.0, max), weight ? 2 : 0);
    if (!value) return;
    history_.Set(units, UnitTableModel::FieldOf(column), *value);
}

void frmTable::IncludeSelected(bool include) {
    history_.Set(SelectedUnits(), UnitField::Include, include ? 1 : 0);
}

bool frmTable::eventFilter(QObject* watched, QEvent* event) {
    if (watched != txtFilter) return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    // In the filter box Undo and Redo are the program's, not the box's own.
    if (event->type() == QEvent::ShortcutOverride &&
        (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo) ||
         key->keyCombination() == QKeyCombination(Qt::CTRL | Qt::Key_Y)))
        return true; // not accepted: the shortcut runs
    if (event->type() == QEvent::KeyPress &&
        (key->key() == Qt::Key_Down || key->key() == Qt::Key_PageDown)) {
        tblUnits->setFocus(Qt::TabFocusReason);
        if (!tblUnits->currentIndex().isValid() && proxy_->rowCount() > 0)
            tblUnits->setCurrentIndex(proxy_->index(0, UnitTableModel::ColName));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace vantrel

#include "mainwindow/qt_unit_table.h"

#include "base/text.h"
#include "forms/qt_text.h"
#include "forms/unit_card_rules.h"
#include "mainwindow/qt_edit_history.h"

#include <algorithm>

namespace vantrel {

UnitTableModel::UnitTableModel(Definitions& defs, EditHistory& history, QObject* parent)
    : QAbstractTableModel(parent), defs_(defs), history_(history) {
    connect(&history_, &EditHistory::valuesChanged, this, &UnitTableModel::ValuesChanged);
}

UnitField UnitTableModel::FieldOf(int column) {
    return column == ColWeight  ? UnitField::Weight
           : column == ColLimit ? UnitField::Limit
                                : UnitField::Include;
}

int UnitTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : defs_.Units.UBound();
}

int UnitTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant UnitTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const vtUnit& unit = defs_.Units[UnitOfRow(index.row())];
    const int column = index.column();
    if (role == Qt::DisplayRole) {
        switch (column) {
        case ColName:
            return QtText(unit.Name);
        case ColUnitName:
            return QtText(unit.UnitName);
        case ColSide:
            return QtText(unit.Side);
        case ColClass:
            return QtText(unit.TEDClass);
        case ColCategory:
            return QtText(std::string(CategoryOf(unit)));
        case ColWeight:
            return QtText(FloatText(unit.Weight));
        case ColLimit:
            return QtText(FloatText(unit.Limit));
        default:
            return {};
        }
    }
    if (role == Qt::EditRole && (column == ColWeight || column == ColLimit)) {
        if (column == ColLimit) return static_cast<int>(unit.Limit);
        return static_cast<double>(unit.Weight);
    }
    if (role == Qt::CheckStateRole && column == ColIncluded)
        return unit.Include ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DecorationRole && column == ColPicture && pictureLoader) {
        QPixmap picture = pictureLoader(unit.UnitName + ".pcx");
        if (picture.isNull()) return {};
        return picture.scaled(ThumbnailSize, ThumbnailSize, Qt::KeepAspectRatio,
                              Qt::SmoothTransformation);
    }
    if (role == Qt::TextAlignmentRole && (column == ColWeight || column == ColLimit))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && column == ColPicture)
        return QtText(unit.Name + " - " + unit.Description);
    return {};
}

QVariant UnitTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    static const char* const captions[ColumnCount] = {
        "",      "Name",           "UnitName",        "Side",    "Class",
        "Category", "Build Priority", "Number Produced", "Included"};
    if (section < 0 || section >= ColumnCount) return {};
    return QString::fromLatin1(captions[section]);
}

Qt::ItemFlags UnitTableModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.column() == ColWeight || index.column() == ColLimit) flags |= Qt::ItemIsEditable;
    if (index.column() == ColIncluded) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool UnitTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid()) return false;
    const int column = index.column();
    const int unit = UnitOfRow(index.row());
    if (role == Qt::EditRole && (column == ColWeight || column == ColLimit)) {
        bool ok = false;
        const double number = value.toDouble(&ok);
        if (!ok) return false;
        history_.Set({unit}, FieldOf(column), number);
        return true;
    }
    if (role == Qt::CheckStateRole && column == ColIncluded) {
        history_.Set({unit}, UnitField::Include, value.toInt() == Qt::Checked ? 1 : 0);
        return true;
    }
    return false;
}

void UnitTableModel::ValuesChanged(int firstUnit, int lastUnit) {
    const int first = std::max(firstUnit, 1) - 1;
    const int last = std::min(lastUnit, rowCount()) - 1;
    if (first > last) return;
    emit dataChanged(index(first, ColWeight), index(last, ColIncluded));
}

// ---------------------------------------------------------------------------

UnitFilterProxy::UnitFilterProxy(const Definitions& defs, QObject* parent)
    : QSortFilterProxyModel(parent), defs_(defs) {}

void UnitFilterProxy::SetFilterText(const std::string& text) {
    if (text == text_) return;
    text_ = text;
    invalidateRowsFilter();
}

void UnitFilterProxy::SetBoardFilter(bool on, const std::string& side,
                                     const std::string& keywords) {
    boardOnly_ = on;
    side_ = side;
    keywords_ = keywords;
    invalidateRowsFilter();
}

bool UnitFilterProxy::filterAcceptsRow(int sourceRow, const QModelIndex&) const {
    const vtUnit& unit = defs_.Units[UnitTableModel::UnitOfRow(sourceRow)];
    // The filter looks at every text column, the category too ("kbots").
    if (!MatchesUnitFilter(unit, text_) &&
        !QtText(std::string(CategoryOf(unit))).contains(QtText(text_), Qt::CaseInsensitive))
        return false;
    if (!boardOnly_) return true;
    if (keywords_.empty()) return SameSide(unit.Side, side_);
    return OnBoard(unit, side_, keywords_);
}

bool UnitFilterProxy::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const vtUnit& a = defs_.Units[UnitTableModel::UnitOfRow(left.row())];
    const vtUnit& b = defs_.Units[UnitTableModel::UnitOfRow(right.row())];
    auto text = [](const std::string& x, const std::string& y) {
        return NaturalCompare(x, y) < 0;
    };
    switch (left.column()) {
    case UnitTableModel::ColPicture:
    case UnitTableModel::ColName:
        return UnitOrderLess(a, b);
    case UnitTableModel::ColUnitName:
        return text(a.UnitName, b.UnitName);
    case UnitTableModel::ColSide:
        return text(a.Side, b.Side);
    case UnitTableModel::ColClass:
        return text(a.TEDClass, b.TEDClass);
    case UnitTableModel::ColCategory:
        return CategoryOf(a) < CategoryOf(b);
    case UnitTableModel::ColWeight:
        return a.Weight < b.Weight;
    case UnitTableModel::ColLimit:
        return a.Limit < b.Limit;
    default:
        return a.Include < b.Include;
    }
}

} // namespace vantrel

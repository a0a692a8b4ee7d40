// The unit table's model: one row per catalogue unit (row r is unit r + 1),
// read from and written to Definitions; edits go through the edit history.
// The proxy in front of it filters and sorts the rows.
#pragma once

#include "catalogue/definitions.h"
#include "forms/unit_edits.h"

#include <QAbstractTableModel>
#include <QPixmap>
#include <QSortFilterProxyModel>

#include <functional>
#include <string>

namespace vantrel {

class EditHistory;

class UnitTableModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Column {
        ColPicture,
        ColName,
        ColUnitName,
        ColSide,
        ColClass,
        ColCategory,
        ColWeight,
        ColLimit,
        ColIncluded,
        ColumnCount
    };
    static constexpr int ThumbnailSize = 32; // pixels

    UnitTableModel(Definitions& defs, EditHistory& history, QObject* parent = nullptr);

    // Given "UnitName.pcx", the unit's picture or a null pixmap; asked only
    // for rows in view.
    std::function<QPixmap(const std::string& fileName)> pictureLoader;

    static int UnitOfRow(int row) { return row + 1; }
    static UnitField FieldOf(int column);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  private:
    void ValuesChanged(int firstUnit, int lastUnit);

    Definitions& defs_;
    EditHistory& history_;
};

// Keeps the rows whose unit matches the filter text and, when asked, only
// the units of the board's side and category; sorts on the unit's values.
class UnitFilterProxy : public QSortFilterProxyModel {
    Q_OBJECT
  public:
    explicit UnitFilterProxy(const Definitions& defs, QObject* parent = nullptr);

    void SetFilterText(const std::string& text);
    // The second filter: the board's side and the keywords of its category
    // (empty keywords: no category is chosen, the side alone counts).
    void SetBoardFilter(bool on, const std::string& side, const std::string& keywords);

  protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

  private:
    const Definitions& defs_;
    std::string text_;
    bool boardOnly_ = false;
    std::string side_;
    std::string keywords_;
};

} // namespace vantrel

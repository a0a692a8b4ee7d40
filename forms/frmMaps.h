// File, Maps...: every map of the game with the AI profile each of its game
// types (schemas) uses and whether the game has that profile; the selected
// maps can be pointed at the current profile or taken back to the game's own.
#pragma once

#include "base/ports.h"
#include "startup/game_maps.h"

#include <QAbstractTableModel>
#include <QWidget>

#include <string>
#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace vantrel {

// One row per map.
class MapTableModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Column { ColMap, ColMission, ColDescription, ColPlayers, ColProfiles, ColFound, ColFile,
                  ColumnCount };
    using QAbstractTableModel::QAbstractTableModel;

    void SetMaps(std::vector<GameMap> maps);
    const GameMap& Map(int row) const { return maps_[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::vector<GameMap> maps_;
};

// "DEFAULT" when every schema names the same profile, else each schema's
// type with its profile ("Network 1: DEFAULT, Easy: urban").
std::string ProfilesText(const GameMap& map);
// "yes", "missing: urban, rush", or "no schema".
std::string FoundText(const GameMap& map);

class frmMaps : public QWidget {
    Q_OBJECT
  public:
    frmMaps(Messages& messages, QWidget* parent = nullptr);

    // Lists the maps of the game in `gameDir` again (the selection is kept by name).
    void Reload(const std::string& gameDir);
    // Names of the maps of the selected rows, in row order.
    std::vector<std::string> SelectedMaps() const;
    void SelectMaps(const std::vector<std::string>& names);
    // Takes the selected maps back to the game's own profiles.
    void RestoreSelected();

    MapTableModel& Model() { return *model_; }

    QLabel* lblGame = nullptr;
    QLineEdit* txtFilter = nullptr;
    QTableView* tblMaps = nullptr;
    QPushButton* cmdUse = nullptr;     // "Use Current Profile"
    QPushButton* cmdRestore = nullptr; // "Restore"
    QPushButton* cmdClose = nullptr;

  signals:
    // "Use Current Profile" on these maps; the main window installs and writes.
    void useCurrentProfile(const std::vector<std::string>& maps);
    // What was written or removed, for the main window's status bar.
    void written(const QString& what);

  private:
    void SelectionChanged();

    Messages& messages_;
    std::string gameDir_;
    MapTableModel* model_ = nullptr;
    QSortFilterProxyModel* proxy_ = nullptr;
};

} // namespace vantrel

#include "forms/frmMaps.h"

#include "base/paths.h"
#include "forms/qt_text.h"

#include <QBrush>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace vantrel {

std::string ProfilesText(const GameMap& map) {
    auto profileOf = [](const MapSchema& s) { return s.namesProfile ? s.aiprofile : "(none)"; };
    bool same = !map.schemas.empty();
    for (const MapSchema& s : map.schemas)
        same = same && profileOf(s) == profileOf(map.schemas.front());
    if (same) return profileOf(map.schemas.front());
    std::string text;
    for (const MapSchema& s : map.schemas)
        text += (text.empty() ? "" : ", ") + s.type + ": " + profileOf(s);
    return text;
}

std::string FoundText(const GameMap& map) {
    if (!map.read) return "not read";
    if (map.schemas.empty()) return "no schema";
    std::string missing;
    for (const MapSchema& s : map.schemas)
        if (s.namesProfile && s.profileSource.empty() &&
            (", " + missing + ",").find(", " + s.aiprofile + ",") == std::string::npos)
            missing += (missing.empty() ? "" : ", ") + s.aiprofile;
    return missing.empty() ? "yes" : "missing: " + missing;
}

void MapTableModel::SetMaps(std::vector<GameMap> maps) {
    beginResetModel();
    maps_ = std::move(maps);
    endResetModel();
}

int MapTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(maps_.size());
}

int MapTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MapTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const GameMap& map = Map(index.row());
    if (role == Qt::DisplayRole) {
        switch (index.column()) {
        case ColMap:
            return QtText(map.name);
        case ColMission:
            return QtText(map.missionName);
        case ColDescription:
            return QtText(map.missionDescription);
        case ColPlayers:
            return QtText(map.numPlayers);
        case ColProfiles:
            return QtText(ProfilesText(map));
        case ColFound:
            return QtText(FoundText(map));
        case ColFile:
            return QtPath(map.file);
        default:
            return {};
        }
    }
    if (role == Qt::ForegroundRole && index.column() == ColFound && FoundText(map) != "yes")
        return QBrush(Qt::darkRed);
    if (role == Qt::ToolTipRole) {
        // Every schema with the file the game reads for it, then what could not be read.
        std::string tip;
        for (const MapSchema& s : map.schemas) {
            tip += "Schema " + std::to_string(s.number) + " (" + s.type + "): ";
            if (!s.namesProfile)
                tip += "names no profile";
            else
                tip += s.aiprofile + ", " +
                       (s.profileSource.empty() ? "missing" : "read from " + s.profileSource);
            tip += "\n";
        }
        for (const std::string& note : map.notes)
            tip += note + "\n";
        if (!tip.empty()) tip.pop_back();
        return QtText(tip);
    }
    return {};
}

QVariant MapTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    static const char* const captions[ColumnCount] = {
        "Map", "Mission", "Description", "Players", "AI Profile", "Profile Found", "File"};
    if (section < 0 || section >= ColumnCount) return {};
    return QString::fromLatin1(captions[section]);
}

frmMaps::frmMaps(Messages& messages, QWidget* parent)
    : QWidget(parent, Qt::Window), messages_(messages) {
    setObjectName("frmMaps");
    setWindowTitle("Maps");

    model_ = new MapTableModel(this);
    proxy_ = new QSortFilterProxyModel(this);
    proxy_->setSourceModel(model_);
    proxy_->setFilterKeyColumn(-1); // any column
    proxy_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    proxy_->setSortCaseSensitivity(Qt::CaseInsensitive);

    lblGame = new QLabel(this);
    lblGame->setObjectName("lblGame");
    lblGame->setTextFormat(Qt::PlainText);
    lblGame->setWordWrap(true);
    txtFilter = new QLineEdit(this);
    txtFilter->setObjectName("txtFilter");
    txtFilter->setPlaceholderText("Map, mission, profile or file");
    txtFilter->setClearButtonEnabled(true);

    tblMaps = new QTableView(this);
    tblMaps->setObjectName("tblMaps");
    tblMaps->setAccessibleName("Maps of the game");
    tblMaps->setModel(proxy_);
    tblMaps->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblMaps->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tblMaps->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblMaps->verticalHeader()->hide();
    tblMaps->setWordWrap(false);
    tblMaps->setSortingEnabled(true);
    tblMaps->sortByColumn(MapTableModel::ColMap, Qt::AscendingOrder);
    QHeaderView* header = tblMaps->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->resizeSection(MapTableModel::ColMap, 130);
    header->resizeSection(MapTableModel::ColMission, 130);
    header->resizeSection(MapTableModel::ColDescription, 220);
    header->resizeSection(MapTableModel::ColPlayers, 60);
    header->resizeSection(MapTableModel::ColProfiles, 200);
    header->resizeSection(MapTableModel::ColFound, 110);
    header->setStretchLastSection(true);

    cmdUse = new QPushButton("&Use Current Profile", this);
    cmdUse->setObjectName("cmdUse");
    cmdRestore = new QPushButton("&Restore", this);
    cmdRestore->setObjectName("cmdRestore");
    cmdClose = new QPushButton("&Close", this);
    cmdClose->setObjectName("cmdClose");

    auto* filterRow = new QHBoxLayout;
    auto* filterLabel = new QLabel("&Filter:", this);
    filterLabel->setBuddy(txtFilter);
    filterRow->addWidget(filterLabel);
    filterRow->addWidget(txtFilter, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdUse);
    buttons->addWidget(cmdRestore);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblGame);
    layout->addLayout(filterRow);
    layout->addWidget(tblMaps, 1);
    layout->addLayout(buttons);
    resize(1000, 480);

    connect(txtFilter, &QLineEdit::textChanged, proxy_,
            &QSortFilterProxyModel::setFilterFixedString);
    connect(tblMaps->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmMaps::SelectionChanged);
    connect(cmdUse, &QPushButton::clicked, this, [this] {
        const std::vector<std::string> maps = SelectedMaps();
        if (!maps.empty()) emit useCurrentProfile(maps);
    });
    connect(cmdRestore, &QPushButton::clicked, this, &frmMaps::RestoreSelected);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    // A window of its own: Escape closes it as it would a dialog.
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this,
            &QWidget::close);
    SelectionChanged();
}

void frmMaps::Reload(const std::string& gameDir) {
    gameDir_ = gameDir;
    const std::vector<std::string> selected = SelectedMaps();
    MapListing listing;
    if (IsDirectory(gameDir)) listing = ListGameMaps(gameDir);
    const std::size_t count = listing.maps.size();
    model_->SetMaps(std::move(listing.maps));
    std::string text;
    if (!IsDirectory(gameDir))
        text = "The game's folder was not found.";
    else if (count == 0)
        text = "The game in " + gameDir + " has no maps.";
    else
        text = std::to_string(count) + " maps of the game in " + gameDir +
               ". A loose file in its \"maps\" folder takes the place of the archived map.";
    if (!listing.skipped.empty())
        text += " Skipped: " + std::to_string(listing.skipped.size()) + " (" +
                listing.skipped.front() + (listing.skipped.size() > 1 ? ", ...)" : ")");
    lblGame->setText(QtPath(text));
    lblGame->setToolTip(QtPath([&] {
        std::string all;
        for (const std::string& s : listing.skipped)
            all += (all.empty() ? "" : "\n") + s;
        return all;
    }()));
    SelectMaps(selected);
    SelectionChanged();
}

std::vector<std::string> frmMaps::SelectedMaps() const {
    std::vector<std::string> names;
    for (const QModelIndex& row : tblMaps->selectionModel()->selectedRows())
        names.push_back(model_->Map(proxy_->mapToSource(row).row()).name);
    return names;
}

void frmMaps::SelectMaps(const std::vector<std::string>& names) {
    QItemSelection selection;
    for (int row = 0; row < proxy_->rowCount(); ++row) {
        const std::string& name = model_->Map(proxy_->mapToSource(proxy_->index(row, 0)).row()).name;
        if (std::find(names.begin(), names.end(), name) != names.end())
            selection.select(proxy_->index(row, 0), proxy_->index(row, MapTableModel::ColumnCount - 1));
    }
    tblMaps->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void frmMaps::RestoreSelected() {
    const std::vector<std::string> maps = SelectedMaps();
    if (maps.empty()) return;
    std::string removed, leftAlone;
    for (const RestoreOutcome& out : RestoreMaps(gameDir_, maps)) {
        if (out.removed) removed += (removed.empty() ? "" : ", ") + out.map;
        if (!out.restored) leftAlone += out.message + "\n";
    }
    Reload(gameDir_);
    emit written(QtPath(removed.empty() ? "No loose map was removed."
                                        : "Restored the game's own profiles for " + removed + "."));
    if (!leftAlone.empty()) {
        messages_.Inform(leftAlone, "Restore", MsgIcon::Exclamation);
        raise(); // above the main window the message brought forward
    }
}

void frmMaps::SelectionChanged() {
    const bool any = tblMaps->selectionModel()->hasSelection();
    cmdUse->setEnabled(any);
    cmdRestore->setEnabled(any);
}

} // namespace vantrel

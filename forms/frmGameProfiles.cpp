#include "forms/frmGameProfiles.h"

#include "base/paths.h"
#include "forms/qt_form_parts.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vantrel {

frmGameProfiles::frmGameProfiles(const std::string& gameDir, QWidget* parent) : QDialog(parent) {
    setObjectName("frmGameProfiles");
    setWindowTitle("Open from Game");
    setModal(true);

    GameProfileList list;
    if (IsDirectory(gameDir)) list = ListGameProfiles(gameDir);
    profiles_ = list.profiles;
    lblGame = new QLabel(this);
    lblGame->setObjectName("lblGame");
    lblGame->setWordWrap(true);
    lblGame->setTextFormat(Qt::PlainText);
    if (!IsDirectory(gameDir))
        lblGame->setText("The game's folder was not found.");
    else if (profiles_.empty())
        lblGame->setText(ToLatin1Text("The game in " + gameDir + " has no AI profiles."));
    else
        lblGame->setText(ToLatin1Text("AI profiles of the game in " + gameDir + ":"));
    for (const UnreadableArchive& a : list.unreadable)
        lblGame->setText(lblGame->text() +
                         ToLatin1Text("\nNot read: " + a.path + " (" + a.reason + ")."));

    lstProfiles = new QTreeWidget(this);
    lstProfiles->setObjectName("lstProfiles");
    lstProfiles->setRootIsDecorated(false);
    lstProfiles->setHeaderLabels({"Source", "Name", "Size"});
    for (const GameProfile& p : profiles_) {
        auto* item = new QTreeWidgetItem(
            lstProfiles, {ToLatin1Text(p.source), ToLatin1Text(p.name), QString::number(p.size)});
        item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    }
    lstProfiles->header()->setStretchLastSection(false);
    lstProfiles->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    lstProfiles->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    if (!profiles_.empty()) lstProfiles->setCurrentItem(lstProfiles->topLevelItem(0));

    NewOkCancel(this, cmdOK, cmdCancel);
    cmdOK->setText("&Open");
    cmdOK->setEnabled(!profiles_.empty());

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblGame);
    layout->addWidget(lstProfiles, 1);
    layout->addLayout(ButtonRow(cmdOK, cmdCancel));
    resize(480, 380);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(lstProfiles, &QTreeWidget::itemActivated, this, &QDialog::accept);
}

std::string frmGameProfiles::ChosenPath() const {
    const int row = lstProfiles->indexOfTopLevelItem(lstProfiles->currentItem());
    return row >= 0 ? profiles_[static_cast<std::size_t>(row)].path : std::string();
}

} // namespace vantrel

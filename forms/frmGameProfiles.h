// File, Open from Game...: the profiles the game has, inside its archives and
// in its "ai" folder; the chosen one is opened as File, Open opens a file.
#pragma once

#include "startup/game_profiles.h"

#include <QDialog>

#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace vantrel {

class frmGameProfiles : public QDialog {
    Q_OBJECT
  public:
    frmGameProfiles(const std::string& gameDir, QWidget* parent = nullptr);

    // The reader's path of the chosen profile ("" when none is chosen).
    std::string ChosenPath() const;

    QLabel* lblGame = nullptr;
    QTreeWidget* lstProfiles = nullptr; // Source, Name, Size
    QPushButton* cmdOK = nullptr;       // "Open"
    QPushButton* cmdCancel = nullptr;

  private:
    std::vector<GameProfile> profiles_;
};

} // namespace vantrel

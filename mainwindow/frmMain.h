// The main window: the banner with the AI's name, the unit board, and the
// File, View, Side, Type and Help menus.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "mainwindow/file_commands.h"
#include "mainwindow/picture_cache.h"

#include <QMainWindow>

#include <functional>
#include <memory>
#include <vector>

class QAction;
class QDialog;
class QLabel;
class QMenu;
class QTemporaryDir;

namespace vantrel {

class EditHistory;
class UnitBoard;
class frmSettings;
class frmTable;
class frmHelp;

struct MainWindowPorts {
    Messages& messages;
    SettingsStore& settings;
    Shell& shell;
    Progress& progress; // frmLoad
    Clock& clock;
    RandomSource& random;
    FileDialogs& dialogs;
    ProfileIO& profiles;
};

class frmMain : public QMainWindow, public MainWindowHooks {
    Q_OBJECT
  public:
    frmMain(Definitions& defs, MainWindowPorts ports, QWidget* parent = nullptr);
    ~frmMain() override;

    // Form load: Side menu, current side, show the window, then the Settings dialog.
    void Load();

    // Dialogs written elsewhere; each is shown modally and returns exec()'s
    // result. Until they are set they answer QDialog::Rejected.
    std::function<int()> showMerge;
    std::function<int()> showOptions;
    std::function<int()> showBuildSet;
    // Runs a modal dialog (Settings, About). Tests replace it to script the dialog.
    std::function<void(QDialog&)> runModal;

    frmSettings& Settings() { return *settings_; }
    FileCommands& Commands() { return *commands_; }
    frmHelp* HelpViewer() { return help_; }
    EditHistory& History() { return *history_; }
    frmTable* Table() { return table_; } // nullptr until View, Table... first opens it

    // Menu handlers (menu clicks and re-selection call them).
    void mnuTypes_Click(int index);
    void mnuSideOptionA_Click(int index);
    void mnuSideOption_Click(int index);
    void mnuFileExit_Click();
    void mnuViewExternal_Click();
    void mnuFileOpenGame_Click();
    void mnuFileInstall_Click();
    void mnuFileMaps_Click();
    void mnuViewCheck_Click();
    void mnuViewOptions_Click();
    void mnuViewIncludes_Click();
    void mnuViewSettings_Click() { ShowSettings(false); }
    void mnuViewRandomize_Click();
    void mnuViewTable_Click();
    void mnuHelpContents_Click();
    void mnuHelpAbout_Click();

    QWidget* picBorder = nullptr;
    QLabel* lblAIName = nullptr;
    QLabel* lblStatus = nullptr; // in the status bar: what the last file command did
    UnitBoard* board = nullptr;

    QMenu* mnuFile = nullptr;
    QAction* mnuFileNew = nullptr;
    QAction* mnuFileOpen = nullptr;
    QAction* mnuFileSave = nullptr;
    QAction* mnuFileSaveAs = nullptr;
    QAction* mnuFileSep1 = nullptr;
    QAction* mnuFileMerge = nullptr;
    QAction* mnuFileSep2 = nullptr;
    QAction* mnuFileExit = nullptr;
    QAction* mnuFileOpenGame = nullptr;
    QAction* mnuFileInstall = nullptr;
    QAction* mnuFileMaps = nullptr;
    QMenu* mnuEdit = nullptr;
    QAction* mnuEditUndo = nullptr;
    QAction* mnuEditRedo = nullptr;
    QMenu* mnuView = nullptr;
    QAction* mnuViewOptions = nullptr;
    QAction* mnuVIewSep1 = nullptr;
    QAction* mnuViewIncludes = nullptr;
    QAction* mnuViewSettings = nullptr;
    QAction* mnuViewExternal = nullptr;
    QAction* mnuViewRandomize = nullptr;
    QAction* mnuViewCheck = nullptr;
    QAction* mnuViewTable = nullptr;
    QMenu* mnuSide = nullptr;
    std::vector<QAction*> mnuSideOptionA; // [1] Arm, [2] Core, [3] separator ([0] unused)
    std::vector<QAction*> mnuSideOption;  // [0] hidden template, [1..] further sides
    QMenu* mnuType = nullptr;
    std::vector<QAction*> mnuTypes; // [0] All, [1] separator, [2..11] categories
    QMenu* mnuHelp = nullptr;
    QAction* mnuHelpContents = nullptr;
    QAction* mnuHelpAbout = nullptr;

    // MainWindowHooks (the re-select step of Open, Merge, New, Options and Build Set)
    void ReselectCurrentSide() override;
    void SetInUse(bool inUse) override;
    bool ShowSettings(bool forNewAI) override;
    bool ShowMerge() override;
    void StartFreshHistory() override;
    void ValuesSaved() override;
    void FileStateChanged() override;
    void ShowStatus(const std::string& text) override;

    // The private folder of this run that View, External writes into (created
    // at its first use, removed with the window); "" before that.
    QString ExternalFolder() const;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    PictureCache pictures_; // unit pictures, decoded once per file version
    // A picture of the Units folder ("UnitName.pcx"), through the cache.
    QPixmap UnitPicture(const std::string& fileName, Messages& messages);
    void BuildMenus();
    void BuildBanner();
    QAction* AddItem(QMenu* menu, const char* name, const char* caption,
                     std::function<void()> handler);
    QAction* AddSeparator(QMenu* menu, const char* name);
    // A control-array item: a click runs `handler` with the item's index; the
    // handler, not the click, decides the check mark.
    QAction* AddArrayItem(QMenu* menu, const char* name, const QString& caption,
                          std::vector<QAction*>& array, void (frmMain::*handler)(int));
    // Runs `command` and records what it changed in the units as one step.
    template <class Command> void Recorded(const std::string& name, Command command);
    // The table's second filter follows the Side and Type menus.
    void BoardChoiceChanged();
    // `refresh`: the re-select step after a command; the board is rebuilt
    // without asking the "&All" question again.
    void SelectSide(std::vector<QAction*>& chosen, std::vector<QAction*>& other, int first,
                    int index, bool refresh = false);
    void ChooseType(int index, bool refresh);

    Definitions& defs_;
    MainWindowPorts ports_;
    frmSettings* settings_ = nullptr;
    frmHelp* help_ = nullptr;
    EditHistory* history_ = nullptr;
    frmTable* table_ = nullptr;
    std::unique_ptr<FileCommands> commands_;
    std::unique_ptr<QTemporaryDir> externalDir_;
};

} // namespace vantrel

#include "mainwindow/frmMain.h"

#include "base/paths.h"
#include "base/text.h"
#include "forms/frmAbout.h"
#include "forms/frmCheck.h"
#include "forms/frmGameProfiles.h"
#include "forms/frmHelp.h"
#include "forms/frmMaps.h"
#include "forms/frmSettings.h"
#include "forms/qt_form_parts.h"
#include "forms/qt_icon.h"
#include "forms/qt_text.h"
#include "mainwindow/frmTable.h"
#include "mainwindow/game_commands.h"
#include "mainwindow/help_file.h"
#include "mainwindow/qt_board.h"
#include "mainwindow/qt_edit_history.h"
#include "mainwindow/qt_picture.h"
#include "mainwindow/qt_unit_table.h"
#include "mainwindow/randomize.h"
#include "profile/profile_numbers.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QVBoxLayout>

namespace vantrel {

namespace {
constexpr int BannerHeight = 20; // pixels, with room for the bold font

class SilentMessages : public Messages {
  public:
    MsgAnswer Show(const std::string&, const std::string&, MsgButtons, MsgIcon) override {
        return MsgAnswer::OK;
    }
};

// The caption a control-array item stands for ('&' kept as typed).
QString ItemCaption(const QAction* action) {
    return action->data().toString();
}

// The platform's keys for a standard command; `fallback` where the platform
// has none (Save As and Quit have none under some keyboard schemes).
void SetStandardShortcut(QAction* action, QKeySequence::StandardKey key, QKeySequence fallback) {
    QList<QKeySequence> keys = QKeySequence::keyBindings(key);
    if (keys.isEmpty()) keys = {fallback};
    action->setShortcuts(keys);
}
} // namespace

frmMain::frmMain(Definitions& defs, MainWindowPorts ports, QWidget* parent)
    : QMainWindow(parent), defs_(defs), ports_(ports) {
    setObjectName("frmMain");
    setWindowTitle("Vantrel");
    setWindowIcon(QIcon(VantrelIcon(64)));

    auto* central = new QWidget(this);
    central->setObjectName("frmMainClient");
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    BuildBanner();
    board = new UnitBoard(defs_, ports_.messages, ports_.progress, central);
    layout->addWidget(picBorder);
    layout->addWidget(board, 1);
    // Unit pictures come from the Units folder through the decoder's cache.
    board->pictureLoader = [this](const std::string& fileName) {
        return UnitPicture(fileName, ports_.messages);
    };
    setCentralWidget(central);

    // One history of value edits for the board and the table.
    history_ = new EditHistory(defs_, ports_.clock, this);
    connect(board, &UnitBoard::valueCommitted, history_, &EditHistory::RecordEdit);
    connect(history_, &EditHistory::valuesChanged, board, &UnitBoard::RefreshValues);

    settings_ = new frmSettings(defs_, this);
    settings_->SetBannerLabel(lblAIName);
    history_->SetFields(settings_);
    // The title's modified mark follows every edit, undo and redo.
    connect(&history_->Stack(), &QUndoStack::indexChanged, this, &frmMain::FileStateChanged);

    auto cancelled = [] { return int(QDialog::Rejected); };
    showMerge = cancelled;
    showOptions = cancelled;
    showBuildSet = cancelled;
    runModal = [](QDialog& dialog) { dialog.exec(); };

    commands_ = std::make_unique<FileCommands>(
        FileCommandPorts{defs_, ports_.messages, ports_.settings, ports_.shell, ports_.progress,
                         *settings_, ports_.clock, ports_.dialogs, ports_.profiles},
        *this);
    BuildMenus();
    // A label of the status bar, not a passing message: pointing at menu
    // items clears those, and the confirmation should stay until the next one.
    lblStatus = new QLabel(statusBar());
    lblStatus->setObjectName("lblStatus");
    lblStatus->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(lblStatus, 1);
    FileStateChanged();
    resize(820, 600);
}

frmMain::~frmMain() {
    // The table's open editor writes through the history as it closes, so
    // the table goes before the history does.
    delete table_;
    // The history empties its stack as it goes; the title is gone by then.
    disconnect(&history_->Stack(), nullptr, this, nullptr);
}

QPixmap frmMain::UnitPicture(const std::string& fileName, Messages& messages) {
    return ToQPixmap(pictures_.LoadUnitPicture(defs_.UnitFiles, fileName, messages));
}

void frmMain::BuildBanner() {
    picBorder = new QWidget(this);
    picBorder->setObjectName("picBorder");
    picBorder->setFixedHeight(BannerHeight);
    picBorder->setAutoFillBackground(true);
    QPalette palette = picBorder->palette();
    palette.setColor(QPalette::Window, palette.color(QPalette::Active, QPalette::Highlight));
    palette.setColor(QPalette::WindowText, Qt::white);
    picBorder->setPalette(palette);

    lblAIName = new QLabel("New AI", picBorder);
    lblAIName->setObjectName("lblAIName");
    QFont bold = lblAIName->font();
    bold.setBold(true);
    lblAIName->setFont(bold);
    lblAIName->setTextFormat(Qt::PlainText);
    // The layout keeps the label centred whenever its text or the banner changes.
    auto* row = new QHBoxLayout(picBorder);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(lblAIName, 0, Qt::AlignCenter);
}

QAction* frmMain::AddItem(QMenu* menu, const char* name, const char* caption,
                          std::function<void()> handler) {
    QAction* action = menu->addAction(QString::fromLatin1(caption));
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [handler = std::move(handler)] { handler(); });
    return action;
}

QAction* frmMain::AddSeparator(QMenu* menu, const char* name) {
    QAction* action = menu->addSeparator();
    action->setObjectName(name);
    return action;
}

QAction* frmMain::AddArrayItem(QMenu* menu, const char* name, const QString& caption,
                               std::vector<QAction*>& array, void (frmMain::*handler)(int)) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    action->setData(caption);
    action->setCheckable(true);
    const int index = static_cast<int>(array.size());
    array.push_back(action);
    connect(action, &QAction::triggered, this, [this, action, handler, index](bool checked) {
        action->setChecked(!checked); // undo Qt's own toggle: the handler checks
        (this->*handler)(index);
    });
    return action;
}

void frmMain::BuildMenus() {
    QMenuBar* bar = menuBar();
    mnuFile = bar->addMenu("&File");
    mnuFile->setObjectName("mnuFile");
    mnuFileNew = AddItem(mnuFile, "mnuFileNew", "&New", [this] { commands_->New(); });
    SetStandardShortcut(mnuFileNew, QKeySequence::New, Qt::CTRL | Qt::Key_N);
    mnuFileOpen = AddItem(mnuFile, "mnuFileOpen", "&Open...", [this] { commands_->Open(); });
    SetStandardShortcut(mnuFileOpen, QKeySequence::Open, Qt::CTRL | Qt::Key_O);
    mnuFileOpenGame = AddItem(mnuFile, "mnuFileOpenGame", "Open from &Game...",
                              [this] { mnuFileOpenGame_Click(); });
    mnuFileSave = AddItem(mnuFile, "mnuFileSave", "&Save", [this] { commands_->Save(); });
    SetStandardShortcut(mnuFileSave, QKeySequence::Save, Qt::CTRL | Qt::Key_S);
    mnuFileSaveAs =
        AddItem(mnuFile, "mnuFileSaveAs", "Save &As...", [this] { commands_->SaveAs(); });
    SetStandardShortcut(mnuFileSaveAs, QKeySequence::SaveAs, Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    mnuFileInstall = AddItem(mnuFile, "mnuFileInstall", "&Install into Game...",
                             [this] { mnuFileInstall_Click(); });
    mnuFileMaps = AddItem(mnuFile, "mnuFileMaps", "Ma&ps...", [this] { mnuFileMaps_Click(); });
    mnuFileSep1 = AddSeparator(mnuFile, "mnuFileSep1");
    mnuFileMerge = AddItem(mnuFile, "mnuFileMerge", "&Merge...", [this] { commands_->Merge(); });
    mnuFileMerge->setShortcut(Qt::CTRL | Qt::Key_M);
    mnuFileSep2 = AddSeparator(mnuFile, "mnuFileSep2");
    mnuFileExit = AddItem(mnuFile, "mnuFileExit", "&Exit", [this] { mnuFileExit_Click(); });
    SetStandardShortcut(mnuFileExit, QKeySequence::Quit, Qt::CTRL | Qt::Key_Q);

    mnuEdit = bar->addMenu("&Edit");
    mnuEdit->setObjectName("mnuEdit");
    mnuEditUndo = history_->Stack().createUndoAction(this, "&Undo");
    mnuEditUndo->setObjectName("mnuEditUndo");
    SetStandardShortcut(mnuEditUndo, QKeySequence::Undo, Qt::CTRL | Qt::Key_Z);
    mnuEditRedo = history_->Stack().createRedoAction(this, "&Redo");
    mnuEditRedo->setObjectName("mnuEditRedo");
    // Both usual keys, whatever the platform's scheme names first.
    QList<QKeySequence> redo = QKeySequence::keyBindings(QKeySequence::Redo);
    for (QKeySequence key :
         {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)})
        if (!redo.contains(key)) redo << key;
    mnuEditRedo->setShortcuts(redo);
    mnuEdit->addAction(mnuEditUndo);
    mnuEdit->addAction(mnuEditRedo);

    mnuView = bar->addMenu("&View");
    mnuView->setObjectName("mnuView");
    mnuViewOptions =
        AddItem(mnuView, "mnuViewOptions", "&Options...", [this] { mnuViewOptions_Click(); });
    mnuVIewSep1 = AddSeparator(mnuView, "mnuVIewSep1");
    mnuViewIncludes =
        AddItem(mnuView, "mnuViewIncludes", "&Build Set...", [this] { mnuViewIncludes_Click(); });
    mnuViewSettings =
        AddItem(mnuView, "mnuViewSettings", "&Settings...", [this] { mnuViewSettings_Click(); });
    mnuViewExternal =
        AddItem(mnuView, "mnuViewExternal", "&External...", [this] { mnuViewExternal_Click(); });
    mnuViewRandomize =
        AddItem(mnuView, "mnuViewRandomize", "&Randomize...", [this] { mnuViewRandomize_Click(); });
    mnuViewCheck =
        AddItem(mnuView, "mnuViewCheck", "&Check Profile...", [this] { mnuViewCheck_Click(); });
    mnuViewTable = AddItem(mnuView, "mnuViewTable", "&Table...", [this] { mnuViewTable_Click(); });
    mnuViewTable->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));

    mnuSide = bar->addMenu("&Side");
    mnuSide->setObjectName("mnuSide");
    mnuSideOptionA.push_back(nullptr); // the array starts at 1
    for (const char* side : {"Arm", "Core"})
        AddArrayItem(mnuSide, "mnuSideOptionA", side, mnuSideOptionA,
                     &frmMain::mnuSideOptionA_Click);
    mnuSideOptionA.push_back(AddSeparator(mnuSide, "mnuSideOptionA"));
    AddArrayItem(mnuSide, "mnuSideOption", "&Units", mnuSideOption, &frmMain::mnuSideOption_Click)
        ->setVisible(false);

    mnuType = bar->addMenu("&Type");
    mnuType->setObjectName("mnuType");
    for (std::size_t c = 0; c < Categories.size(); ++c) {
        QAction* item = AddArrayItem(mnuType, "mnuTypes",
                                     QtText(std::string(Categories[c].MenuCaption)), mnuTypes,
                                     &frmMain::mnuTypes_Click);
        if (c == 0) item->setText(QStringLiteral("A&ll")); // "&Aircraft" has the A
        if (c == 0) mnuTypes.push_back(AddSeparator(mnuType, "mnuTypes"));
    }

    mnuHelp = bar->addMenu("&Help");
    mnuHelp->setObjectName("mnuHelp");
    mnuHelpContents =
        AddItem(mnuHelp, "mnuHelpContents", "&Contents...", [this] { mnuHelpContents_Click(); });
    mnuHelpAbout = AddItem(mnuHelp, "mnuHelpAbout", "&About...", [this] { mnuHelpAbout_Click(); });
}

void frmMain::Load() {
    commands_->Load();
    // One Side menu item for every further side, made from the hidden template.
    for (const std::string& caption : FurtherSideCaptions(defs_)) {
        QString text = QtText(caption);
        QAction* item = AddArrayItem(mnuSide, "mnuSideOption", QString(text).replace("&", "&&"),
                                     mnuSideOption, &frmMain::mnuSideOption_Click);
        item->setData(text);
        item->setVisible(true);
    }
    // Every side a letter of its own, where its name has one left.
    std::string taken;
    for (QAction* item : mnuSide->actions())
        if (!item->isSeparator() && item->isVisible())
            item->setText(QtText(WithMnemonic(StdText(item->data().toString()), taken)));
    defs_.CurrentSide = UCase(StdText(ItemCaption(mnuSideOptionA[1])));
    mnuSideOptionA[1]->setChecked(true);
    // The window is placed before it is shown, so the Settings dialog that
    // follows at once can be centred on it.
    CentreOnParent(this);
    show();
    defs_.CurrentSideIndex = 1;
    ShowSettings(false);
}

// ---------------------------------------------------------------------------
// Type and Side menus
// ---------------------------------------------------------------------------
void frmMain::mnuTypes_Click(int index) {
    ChooseType(index, false);
}

void frmMain::ChooseType(int index, bool refresh) {
    if (index < 0 || index >= static_cast<int>(mnuTypes.size()) || mnuTypes[index]->isSeparator())
        return;
    QAction* chosen = mnuTypes[static_cast<std::size_t>(index)];
    if (chosen->isChecked()) return; // choosing the checked category does nothing
    for (QAction* item : mnuTypes)
        item->setChecked(false);
    chosen->setChecked(true);
    board->BuildForCategory(StdText(ItemCaption(chosen)),
                            refresh ? UnitBoard::Build::Refresh : UnitBoard::Build::Choice);
    BoardChoiceChanged();
}

void frmMain::SelectSide(std::vector<QAction*>& chosen, std::vector<QAction*>& other, int first,
                         int index, bool refresh) {
    defs_.CurrentSideIndex = index;
    // A separator or a missing item is skipped, as with any failing step.
    auto isItem = [](const std::vector<QAction*>& array, int i) {
        return i >= 1 && i < static_cast<int>(array.size()) && array[i] &&
               !array[static_cast<std::size_t>(i)]->isSeparator();
    };
    for (int i = 1; i < static_cast<int>(other.size()); ++i)
        if (isItem(other, i)) other[static_cast<std::size_t>(i)]->setChecked(false);
    for (int i = first; i < static_cast<int>(chosen.size()); ++i)
        if (isItem(chosen, i)) chosen[static_cast<std::size_t>(i)]->setChecked(false);
    if (isItem(chosen, index)) {
        QAction* item = chosen[static_cast<std::size_t>(index)];
        item->setChecked(true);
        defs_.CurrentSide = UCase(StdText(ItemCaption(item)));
    }
    // Rebuild the board for the checked category, when there is one.
    for (int i = 0; i < static_cast<int>(mnuTypes.size()); ++i) {
        if (!mnuTypes[static_cast<std::size_t>(i)]->isChecked()) continue;
        mnuTypes[static_cast<std::size_t>(i)]->setChecked(false);
        ChooseType(i, refresh);
        break;
    }
    BoardChoiceChanged();
}

void frmMain::BoardChoiceChanged() {
    if (!table_) return;
    std::string keywords;
    for (QAction* item : mnuTypes)
        if (item->isChecked())
            keywords = std::string(KeywordsForMenuCaption(StdText(ItemCaption(item))));
    table_->SetBoardChoice(defs_.CurrentSide, keywords);
}

void frmMain::mnuSideOptionA_Click(int index) {
    SelectSide(mnuSideOptionA, mnuSideOption, 1, index);
}
void frmMain::mnuSideOption_Click(int index) {
    SelectSide(mnuSideOption, mnuSideOptionA, 1, index);
}

void frmMain::ReselectCurrentSide() {
    if (IsStandardSide(defs_.CurrentSide))
        SelectSide(mnuSideOptionA, mnuSideOption, 1, defs_.CurrentSideIndex, true);
    else
        SelectSide(mnuSideOption, mnuSideOptionA, 1, defs_.CurrentSideIndex, true);
}

// ---------------------------------------------------------------------------
// Commands
// ---------------------------------------------------------------------------
void frmMain::SetInUse(bool inUse) {
    // Menus and board only: disabling the window itself would disable its
    // dialogs and message boxes too.
    menuBar()->setEnabled(inUse);
    centralWidget()->setEnabled(inUse);
    if (inUse) {
        activateWindow();
        board->FocusActiveCard(); // the keys go on to the card the player was at
    }
}

bool frmMain::ShowSettings(bool forNewAI) {
    if (forNewAI) settings_->Tag = "New";
    settings_->setResult(QDialog::Rejected);
    auto run = [this] {
        runModal(*settings_);
        return settings_->result() == QDialog::Accepted;
    };
    // A new AI starts a fresh history; a renamed one is a step of it.
    if (forNewAI) return run();
    bool accepted = false;
    Recorded("Settings", [&] { return accepted = run(); });
    return accepted;
}

bool frmMain::ShowMerge() {
    bool accepted = false;
    Recorded("Merge", [&] { return accepted = showMerge() == QDialog::Accepted; });
    return accepted;
}

template <class Command> void frmMain::Recorded(const std::string& name, Command command) {
    const std::vector<UnitValues> before = SnapshotValues(defs_);
    const HeaderTexts header = history_->Header();
    if (command()) history_->Record(name, ChangesSince(defs_, before), header);
}

void frmMain::StartFreshHistory() {
    history_->Reset();
}

void frmMain::ValuesSaved() {
    history_->MarkSaved();
}

void frmMain::FileStateChanged() {
    const std::string& file = commands_ ? commands_->CurrentFile() : std::string();
    setWindowTitle(file.empty() ? QString("Vantrel[*]")
                                : QtPath(DisplayFileName(file)) + "[*] - Vantrel");
    setWindowModified(defs_.Profile.Changed);
}

void frmMain::ShowStatus(const std::string& text) {
    FileStateChanged();
    lblStatus->setText(QtPath(text));
}

QString frmMain::ExternalFolder() const {
    return externalDir_ ? externalDir_->path() : QString();
}

void frmMain::mnuFileExit_Click() {
    close();
}

void frmMain::mnuFileOpenGame_Click() {
    frmGameProfiles dialog(defs_.GameDir, this);
    runModal(dialog);
    if (dialog.result() == QDialog::Accepted && !dialog.ChosenPath().empty())
        commands_->OpenGameProfile(dialog.ChosenPath());
}

void frmMain::mnuFileInstall_Click() {
    if (auto installed = InstallIntoGame(*commands_, ports_.messages, defs_.GameDir))
        ShowStatus("Installed into " + *installed);
}

void frmMain::mnuViewExternal_Click() {
    if (!externalDir_) externalDir_ = std::make_unique<QTemporaryDir>();
    if (!externalDir_->isValid()) {
        ports_.messages.Inform("Vantrel could not make a temporary folder for the profile: " +
                                   StdText(externalDir_->errorString()),
                               "External", MsgIcon::Exclamation);
        externalDir_.reset();
        return;
    }
    commands_->External(StdPath(externalDir_->path()));
}

void frmMain::mnuFileMaps_Click() {
    auto* maps = findChild<frmMaps*>();
    if (!maps) {
        maps = new frmMaps(ports_.messages, this);
        connect(maps, &frmMaps::useCurrentProfile, this,
                [this, maps](const std::vector<std::string>& names) {
                    const std::string done =
                        UseCurrentProfileOnMaps(*commands_, ports_.messages, defs_.GameDir, names);
                    maps->Reload(defs_.GameDir);
                    if (!done.empty()) ShowStatus(done);
                    maps->raise(); // above the main window its questions brought forward
                });
        connect(maps, &frmMaps::written, this,
                [this](const QString& what) { ShowStatus(StdText(what)); });
        CentreOnParent(maps);
    }
    maps->Reload(defs_.GameDir);
    maps->show();
    maps->raise();
    maps->activateWindow();
}

void frmMain::mnuViewCheck_Click() {
    FileDialogResult chosen =
        ports_.dialogs.Open("Check Profile", OpenFilter, commands_->InitialFolder());
    if (!chosen.accepted) return;
    try {
        ProfileText profile = ReadProfileAt(chosen.path);
        // As in Open, the filter decides the format.
        frmCheck dialog(chosen.path,
                        CheckProfile(defs_, profile, chosen.filterIndex != 1, DecimalSeparator()),
                        this);
        runModal(dialog);
    } catch (const ProfileError& e) {
        ports_.messages.Inform(e.what(), "Check Profile", MsgIcon::Exclamation);
    }
}

void frmMain::mnuViewOptions_Click() {
    if (showOptions() == QDialog::Accepted) ReselectCurrentSide();
}

void frmMain::mnuViewIncludes_Click() {
    // The dialog writes every tick at once, also when it is cancelled; each
    // tick is a step of the edit history of its own.
    if (showBuildSet() == QDialog::Accepted) ReselectCurrentSide();
}

void frmMain::mnuViewRandomize_Click() {
    bool changed = false;
    Recorded("Randomize", [&] {
        return changed = Randomize(defs_, ports_.messages, ports_.clock, ports_.random);
    });
    if (changed) ReselectCurrentSide();
}

void frmMain::mnuViewTable_Click() {
    if (!table_) {
        table_ = new frmTable(defs_, *history_, this);
        // The table paints thumbnails as rows scroll by: a picture without
        // its palette stays blank there, with no message each time it is painted.
        table_->Model().pictureLoader = [this](const std::string& fileName) {
            static SilentMessages silent;
            return UnitPicture(fileName, silent);
        };
        // Undo and Redo work from the table's window too.
        QAction* first = table_->mnuEdit->actions().value(0);
        table_->mnuEdit->insertActions(first, {mnuEditUndo, mnuEditRedo});
        table_->mnuEdit->insertSeparator(first);
        BoardChoiceChanged();
        const QRect screen = this->screen()->availableGeometry();
        table_->resize(table_->size().boundedTo(screen.size() - QSize(16, 48)));
        QRect card = board->rect();
        if (frmUnit* active = board->CardAt(board->ActiveRow()))
            card = QRect(active->mapToGlobal(QPoint(0, 0)), active->size());
        table_->move(frmTable::Placement(screen, frameGeometry(),
                                         table_->size() + QSize(16, 48), card));
    }
    table_->ShowWithFocus();
}

void frmMain::mnuHelpContents_Click() {
    const QByteArray builtIn = BuiltInHelp();
    const std::string file =
        EnsureHelpFile(defs_.AppDir, std::string_view(builtIn.constData(),
                                                      static_cast<std::size_t>(builtIn.size())));
    if (!help_) help_ = new frmHelp(this);
    help_->ShowContents(QtPath(file));
}

void frmMain::mnuHelpAbout_Click() {
    frmAbout about(ports_.shell, defs_.AppDir, this);
    runModal(about);
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (!commands_->Closing()) {
        event->ignore(); // Cancel: the window stays open
        return;
    }
    // Every other window of the program goes with the main window.
    for (QDialog* dialog : findChildren<QDialog*>())
        dialog->hide();
    event->accept();
}

} // namespace vantrel

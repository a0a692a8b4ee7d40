#include "base/paths.h"
#include "forms/frmHelp.h"
#include "forms/frmMaps.h"
#include "forms/frmSettings.h"
#include "forms/frmUnit.h"
#include "forms/qt_text.h"
#include "formats/hpi_archive.h"
#include "gui/gui_app.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/frmTable.h"
#include "mainwindow/qt_board.h"
#include "mainwindow/qt_edit_history.h"
#include "mainwindow/qt_file_dialogs.h"
#include "mainwindow/qt_unit_table.h"
#include "startup/frmLoad.h"
#include "support/command_fakes.h"
#include "support/hpi_writer.h"
#include "support/map_fixtures.h"
#include "support/test_support.h"
#include "support/unit_fixtures.h"

#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using namespace vantrel::testing;

class MainWindowTest : public GuiTest {
  protected:
    void SetUp() override {
        defs.AppDir = appDir;
        const char* sides[] = {"ARM", "CORE", "ronin", "AR", "Voss"};
        defs.Races.Dim(5);
        defs.Units.Dim(3);
        for (int i = 0; i < 5; ++i)
            defs.Races[i + 1].Name = sides[i];
        for (int i = 1; i <= 3; ++i)
            defs.Units[i] =
                vtUnit{"U", "U" + std::to_string(i), "KBOT", "ARM", "", 2.5f, 4.0f, true, false};
        window =
            std::make_unique<frmMain>(defs, MainWindowPorts{messages, settings, shell, progress,
                                                            clock, random, dialogs, profiles});
        window->runModal = [this](QDialog& d) {
            modals << d.objectName();
            if (script) script(d);
        };
    }
    void Load() {
        window->Load();
        modals.clear();
    }
    // A game folder whose first archive is `archive`.
    void GameWith(HpiWriter& archive) {
        defs.GameDir = folder.path() + "/game";
        MakeDirectory(defs.GameDir);
        test::WriteText(defs.GameDir + "/TOTALA1.HPI", archive.Build().bytes);
    }
    static FileDialogResult Chosen(const std::string& path) {
        return FileDialogResult{true, path, 1, FolderPart(path)};
    }
    static void PressOk(QDialog& d) { static_cast<frmSettings&>(d).cmdOK->click(); }

    test::TempDir folder;
    std::string appDir = folder.path() + "/";
    Definitions defs;
    test::ScriptedMessages messages;
    MemorySettingsStore settings;
    test::RecordingShell shell;
    frmLoad progress;
    FixedClock clock;
    DefaultRandom random;
    ScriptedFileDialogs dialogs;
    FakeProfileIO profiles;
    std::unique_ptr<frmMain> window;
    QStringList modals;
    std::function<void(QDialog&)> script;
};

TEST_F(MainWindowTest, LoadOpensSettingsAndTheSideAndTypeMenusKeepOneCheckEach) {
    window->Load();
    EXPECT_EQ(modals, QStringList({"frmSettings"}));
    EXPECT_TRUE(window->isVisible());
    ASSERT_EQ(window->mnuSideOption.size(), 3u); // template, Ronin, Voss
    EXPECT_FALSE(window->mnuSideOption[0]->isVisible());
    EXPECT_EQ(window->mnuSideOption[2]->text(), "&Voss");
    EXPECT_EQ(defs.CurrentSide, "ARM");
    EXPECT_TRUE(window->mnuSideOptionA[1]->isChecked());
    // The Merge dialog finds the banner by its name.
    EXPECT_EQ(window->findChild<QLabel*>("lblAIName")->text(), "New AI");

    window->mnuSideOption[2]->trigger(); // Voss, through the menu item
    EXPECT_EQ(defs.CurrentSide, "VOSS");
    EXPECT_EQ(defs.CurrentSideIndex, 2);
    EXPECT_FALSE(window->mnuSideOptionA[1]->isChecked());
    window->mnuTypes[5]->trigger(); // Kbots
    window->mnuTypes[5]->trigger(); // the checked category: stays checked
    EXPECT_TRUE(window->mnuTypes[5]->isChecked());
    window->mnuTypes[2]->trigger();
    EXPECT_FALSE(window->mnuTypes[5]->isChecked());

    // Re-selection goes back through the side handler and keeps the category.
    window->mnuSideOptionA[2]->trigger();
    EXPECT_EQ(defs.CurrentSide, "CORE");
    window->ReselectCurrentSide();
    EXPECT_TRUE(window->mnuSideOptionA[2]->isChecked());
    EXPECT_FALSE(window->mnuSideOption[2]->isChecked());
    EXPECT_TRUE(window->mnuTypes[2]->isChecked());
}

// The answers of the save question are the file commands' (pinned there);
// here the window's close, New and Exit reach it, and Settings guards the name.
TEST_F(MainWindowTest, CloseNewAndExitGoThroughTheSaveQuestionAndSettings) {
    Load();
    defs.Profile.Changed = true;
    messages.answers = {MsgAnswer::Cancel};
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());

    frmSettings& s = window->Settings();
    s.txtAIname->setText("   ");
    EXPECT_FALSE(s.cmdOK->isEnabled());
    s.txtAIname->setText(" x");
    EXPECT_TRUE(s.cmdOK->isEnabled());
    s.SetAIName("Ru\x01sh\x1b"); // no control characters from a file
    s.SetBanner("Ru\x01sh AI\r\n");
    EXPECT_EQ(s.txtAIname->text(), "Rush");
    EXPECT_EQ(window->lblAIName->text(), "Rush AI");
    s.show();
    EXPECT_EQ(s.txtAIname->selectedText(), "Rush") << "typing replaces the name";
    s.hide();

    messages.answers = {MsgAnswer::No, MsgAnswer::No};
    script = [](QDialog& d) {
        auto& settings = static_cast<frmSettings&>(d);
        settings.txtAuthor->setText("Edited");
        settings.cmdCancel->click();
    };
    window->mnuFileNew->trigger();
    EXPECT_EQ(defs.Units[2].Weight, 2.5f);
    EXPECT_EQ(s.Author(), "Edited"); // kept for the next save
    script = PressOk;
    window->mnuFileNew->trigger();
    EXPECT_EQ(defs.Units[2].Weight, 0.0f);

    defs.Profile.Changed = true;
    messages.answers = {MsgAnswer::Yes};
    dialogs.saves = {Chosen(appDir + "Mine.txt")};
    window->mnuFileExit->trigger();
    ASSERT_FALSE(profiles.calls.empty());
    EXPECT_EQ(profiles.calls.back().path, appDir + "Mine.txt");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowTest, OpenFromGameReadsTheChosenProfileAndCheckListsFindings) {
    Load();
    HpiWriter archive;
    archive.AddFile("ai/a.txt", "Weight U1 1\r\n", hpi::Stored);
    archive.AddFile("ai/b.txt", "Weight U1 2\r\n", hpi::Stored);
    GameWith(archive);
    int rows = 0;
    script = [&](QDialog& d) {
        auto* list = d.findChild<QTreeWidget*>();
        rows = list->topLevelItemCount();
        list->setCurrentItem(list->topLevelItem(rows - 1));
        d.accept();
    };
    window->mnuFileOpenGame->trigger();
    EXPECT_EQ(rows, 2);
    ASSERT_FALSE(profiles.calls.empty());
    EXPECT_EQ(profiles.calls.back().path, defs.GameDir + "/TOTALA1.HPI#ai/b.txt");

    test::WriteText(folder.path() + "/c.txt", "Weight U1 1\r\nWeight U9 x\r\n");
    dialogs.opens = {Chosen(folder.path() + "/c.txt")};
    QStringList findings;
    script = [&](QDialog& d) {
        auto* list = d.findChild<QTreeWidget*>();
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            findings << list->topLevelItem(i)->text(0) + " " + list->topLevelItem(i)->text(1);
    };
    window->mnuViewCheck->trigger();
    EXPECT_EQ(modals.back(), "frmCheck");
    EXPECT_EQ(findings,
              QStringList({"2 U9 names no unit: ignored", "2 'x' is not a number: read as 0"}));
}

// The map files themselves are pinned by the game maps tests; here the
// window's filter, columns and status lines.
TEST_F(MainWindowTest, MapsWindowPointsSelectedMapsAtTheProfileAndBack) {
    Load();
    HpiWriter archive;
    archive.AddFile("maps/Alpha.ota", test::MapOta("Alpha", {"Network 1:DEFAULT"}), hpi::Stored);
    archive.AddFile("maps/Beta.ota", test::MapOta("Beta", {"Network 1:DEFAULT", "Easy:gone"}),
                    hpi::Lz77);
    archive.AddFile("ai/DEFAULT.TXT", "profile", hpi::Stored);
    GameWith(archive);
    window->mnuFileMaps->trigger();
    auto* maps = window->findChild<frmMaps*>();
    ASSERT_TRUE(maps);
    auto shown = [maps](int column) {
        return maps->tblMaps->model()->index(0, column).data().toString();
    };
    maps->txtFilter->setText("BETA");
    ASSERT_EQ(maps->tblMaps->model()->rowCount(), 1);
    EXPECT_EQ(shown(MapTableModel::ColProfiles), "Network 1: DEFAULT, Easy: gone");
    EXPECT_EQ(shown(MapTableModel::ColFound), "missing: gone");

    maps->tblMaps->selectAll();
    dialogs.saves = {Chosen(folder.path() + "/Rush.txt")};
    maps->cmdUse->click();
    EXPECT_TRUE(IsRegularFile(defs.GameDir + "/maps/Beta.ota"));
    EXPECT_EQ(window->lblStatus->text(),
              "1 map now uses the profile Rush (written: Beta.ota).");
    EXPECT_EQ(shown(MapTableModel::ColFound), "yes");
    EXPECT_EQ(maps->SelectedMaps(), std::vector<std::string>{"Beta"});

    maps->cmdRestore->click();
    EXPECT_FALSE(IsRegularFile(defs.GameDir + "/maps/Beta.ota"));
    EXPECT_EQ(window->lblStatus->text(), "Restored the game's own profiles for Beta.");
    EXPECT_EQ(shown(MapTableModel::ColProfiles), "Network 1: DEFAULT, Easy: gone");
}

// After an Open, Ctrl+S writes that file without a dialog; the title names
// it and carries the modified mark; the status bar confirms each step.
TEST_F(MainWindowTest, CurrentFileTitleStatusAndShortcuts) {
    Load();
    ASSERT_TRUE(ShowActive(*window));
    EXPECT_EQ(window->windowTitle(), "Vantrel[*]");
    const std::string merged = appDir + "Merged.txt";
    test::WriteText(merged, "Name: Merged\r\n");
    dialogs.opens = {Chosen(merged)};
    QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(window->windowTitle(), "Merged.txt[*] - Vantrel");
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(window->lblStatus->text(), QString::fromStdString("Opened " + merged));

    window->History().Set({1}, UnitField::Weight, 7);
    EXPECT_TRUE(window->isWindowModified());
    ASSERT_TRUE(ShowActive(*window)); // the progress form may have taken the activation
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(dialogs.saveCalls.empty());
    ASSERT_EQ(profiles.calls.back().op, "save");
    EXPECT_EQ(profiles.calls.back().path, merged);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(window->lblStatus->text(),
              QString::fromStdString("Saved " + merged + " (3 units, 3 excluded)"));
    window->mnuEditUndo->trigger();
    EXPECT_TRUE(window->isWindowModified());

    ASSERT_TRUE(ShowActive(*window));
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(dialogs.saveCalls.size(), 1u);
    EXPECT_EQ(dialogs.saveCalls[0].proposedName, "Merged.txt");
    QTest::keyClick(window.get(), Qt::Key_M, Qt::ControlModifier);
    EXPECT_EQ(dialogs.openCalls.back().title, "Merge");
    for (QAction* item : {window->mnuFileNew, window->mnuFileExit, window->mnuEditRedo})
        EXPECT_FALSE(item->shortcut().isEmpty()) << item->objectName().toStdString();

    // New has no file: the title goes back to the program's name.
    messages.answers = {MsgAnswer::No};
    script = PressOk;
    window->mnuFileNew->trigger();
    EXPECT_EQ(window->windowTitle(), "Vantrel[*]");
    EXPECT_FALSE(window->isWindowModified());
}

// A rename in Settings is a step of the edit history; the same name is none.
TEST_F(MainWindowTest, SettingsRenameIsAnUndoableStep) {
    Load();
    script = [](QDialog& d) {
        static_cast<frmSettings&>(d).txtAIname->setText("Flash");
        static_cast<frmSettings&>(d).txtAuthor->setText("Someone else");
        PressOk(d);
    };
    const std::string author = window->Settings().Author();
    defs.Units[2].Weight = 1.5f;
    window->mnuViewSettings->trigger();
    window->mnuViewSettings->trigger();
    EXPECT_TRUE(defs.Profile.Changed);
    EXPECT_EQ(window->History().Stack().count(), 1);
    EXPECT_EQ(defs.Units[2].Weight, 1.5f); // Settings only renames
    window->mnuEditUndo->trigger();
    EXPECT_EQ(window->Settings().AIName(), "New");
    EXPECT_EQ(window->Settings().Author(), author);
    EXPECT_EQ(window->lblAIName->text(), "New AI");
    EXPECT_FALSE(defs.Profile.Changed);
    window->mnuEditRedo->trigger();
    EXPECT_EQ(window->lblAIName->text(), "Flash AI");
}

// View, External writes into a folder of this run, never the program folder,
// and that folder goes when the program does.
TEST_F(MainWindowTest, ExternalWritesIntoAPrivateFolderRemovedAtExit) {
    Load();
    window->mnuViewExternal->trigger();
    const QString folder = window->ExternalFolder();
    ASSERT_FALSE(folder.isEmpty());
    EXPECT_FALSE(folder.startsWith(QString::fromStdString(appDir)));
    EXPECT_EQ(shell.opened, std::vector<std::string>{StdPath(folder) + "/AI.txt"});
    EXPECT_TRUE(QFile::exists(folder + "/AI.set"));
    EXPECT_EQ(window->windowTitle(), "Vantrel[*]"); // the copy is not the current file
    window.reset();
    EXPECT_FALSE(QFile::exists(folder));
}

// A bare program folder (the executable copied beside Units/) gets the help
// the program carries.
TEST_F(MainWindowTest, HelpContentsWorksInABareProgramFolder) {
    Load();
    window->mnuHelpContents->trigger();
    ASSERT_NE(window->HelpViewer(), nullptr);
    EXPECT_TRUE(window->HelpViewer()->isVisible());
    EXPECT_TRUE(window->HelpViewer()->txtHelp->toPlainText().contains("The File menu"));
}

// The desktop's save dialog: a full path typed without an extension gets
// the first filter's ".txt".
TEST_F(MainWindowTest, SaveDialogAddsTxtToATypedPath) {
    test::TempDir elsewhere;
    const QString typed = QString::fromStdString(elsewhere.path() + "/Rusher");
    QtFileDialogs desktop;
    QTimer::singleShot(0, [typed] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(typed);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    FileDialogResult chosen = desktop.Save("Save", SaveFilter, appDir, "Mine.txt");
    ASSERT_TRUE(chosen.accepted);
    EXPECT_EQ(chosen.path, elsewhere.path() + "/Rusher.txt");
}

// ---------------------------------------------------------------------------
// The unit table and the edit history
// ---------------------------------------------------------------------------
class TableTest : public MainWindowTest {
  protected:
    void SetUp() override {
        MainWindowTest::SetUp();
        test::AddUnit(defs, "CORE", "Thud", "KBOT", 1, 5);      // 4
        test::AddUnit(defs, "CORE", "Goliath", "TANK", 7.5, 2); // 5
        Load();
        ASSERT_TRUE(ShowActive(*window));
    }
    // Ctrl+T on the main window; the table's window becomes the active one.
    frmTable& OpenTable() {
        EXPECT_TRUE(ShowActive(*window)); // the progress form may have taken the activation
        window->setFocus();
        QTest::keyClick(window.get(), Qt::Key_T, Qt::ControlModifier);
        frmTable* table = window->Table();
        if (!table) throw std::runtime_error("Ctrl+T opened no table");
        ShowActive(*table);
        return *table;
    }
    QString Shown(frmTable& table, int unit, int column) {
        return table.Model().index(unit - 1, column).data().toString();
    }
    QString UndoText() { return window->mnuEditUndo->text(); }
    // Core Kbots: Thud's card alone.
    void ShowThud() {
        window->mnuSideOptionA[2]->trigger();
        window->mnuTypes[5]->trigger();
    }
};

TEST_F(TableTest, KeyboardFlowFilterSelectAllBulkSetAndUndo) {
    frmTable& table = OpenTable();
    ASSERT_EQ(QApplication::focusWidget(), table.txtFilter);
    QTest::keyClicks(table.txtFilter, "kbots"); // the category column
    EXPECT_EQ(table.Proxy().rowCount(), 4);
    // Ctrl+A in the filter box selects its text: typing replaces it.
    QTest::keyClick(table.txtFilter, Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(table.SelectedUnits().empty());
    QTest::keyClicks(table.txtFilter, "cOrE");
    EXPECT_EQ(table.txtFilter->text(), "cOrE");
    EXPECT_EQ(table.lblCount->text(), "2 of 5 units");
    table.actSelectAll->trigger();
    EXPECT_EQ(table.SelectedUnits().size(), 2u);

    QString prompt;
    table.askValue = [&](const QString&, const QString& label, double, double max, int decimals) {
        prompt = label + QString(" %1 %2").arg(max).arg(decimals);
        return std::optional<double>(12.345); // above WeightMax 10
    };
    QTest::keyClick(table.txtFilter, Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(prompt, "Build Priority of 2 units: 10 2");
    EXPECT_EQ(defs.Units[4].Weight, 10.0f);
    EXPECT_EQ(defs.Units[1].Weight, 2.5f);
    EXPECT_EQ(Shown(table, 4, UnitTableModel::ColWeight), "10");
    EXPECT_EQ(UndoText(), "&Undo Set Build Priority of 2 units");
    EXPECT_EQ(window->History().Stack().count(), 1); // one step for the whole set

    // Ctrl+Z in the filter box undoes the edit, not the typing.
    QTest::keyClick(table.txtFilter, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(table.txtFilter->text(), "cOrE");
    EXPECT_EQ(defs.Units[5].Weight, 7.5f);
    EXPECT_FALSE(defs.Profile.Changed) << "back at the values of the fresh history";
    QTest::keyClick(table.txtFilter, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(defs.Units[5].Weight, 10.0f);

    // The board's side and type as a second filter.
    table.txtFilter->clear();
    ShowThud();
    table.chkBoard->setChecked(true);
    ASSERT_EQ(table.Proxy().rowCount(), 1);
    EXPECT_EQ(table.Proxy().index(0, UnitTableModel::ColName).data().toString(), "Thud");
}

TEST_F(TableTest, CardAndTableShowEachOthersEditsAndShareOneHistory) {
    ShowThud();
    frmUnit* card = window->board->CardAt(0);
    ASSERT_NE(card, nullptr);
    auto* txtWeight = card->findChild<QLineEdit*>("txtWeight");
    auto* lblLimit = card->findChild<QLabel*>("lblLimit");
    frmTable& table = OpenTable();
    EXPECT_EQ(window->History().Stack().count(), 0) << "showing the board is no edit";

    // A typed value committed with Enter is one step, whatever the slider does.
    card->activateWindow();
    txtWeight->setFocus();
    txtWeight->setText("4.5");
    QTest::keyClick(txtWeight, Qt::Key_Return);
    EXPECT_EQ(defs.Units[4].Weight, 4.5f);
    EXPECT_EQ(window->History().Stack().count(), 1);
    EXPECT_EQ(UndoText(), "&Undo Set Build Priority of Thud");
    EXPECT_EQ(Shown(table, 4, UnitTableModel::ColWeight), "4.5");

    // An edit in the table shows on the card at once.
    table.Model().setData(table.Model().index(3, UnitTableModel::ColLimit), 60, Qt::EditRole);
    EXPECT_EQ(defs.Units[4].Limit, 50.0f); // LimitMax
    EXPECT_EQ(lblLimit->text(), "50");
    // A click on Included, as the view's delegate sends it.
    table.Model().setData(table.Model().index(3, UnitTableModel::ColIncluded), Qt::Unchecked,
                          Qt::CheckStateRole);
    EXPECT_FALSE(defs.Units[4].Include);
    EXPECT_EQ(UndoText(), "&Undo Exclude Thud");

    for (int i = 0; i < 3; ++i)
        window->mnuEditUndo->trigger();
    EXPECT_TRUE(defs.Units[4].Include);
    EXPECT_EQ(lblLimit->text(), "5");
    EXPECT_EQ(defs.Units[4].Weight, 1.0f);
    EXPECT_EQ(Shown(table, 4, UnitTableModel::ColWeight), "1");
}

TEST_F(TableTest, KeyStepsOfOneGestureAreOneStepUntilASecondPasses) {
    ShowThud(); // Weight 1
    ASSERT_TRUE(ShowActive(*window)); // the progress form may have taken the activation
    auto* slider = window->board->CardAt(0)->findChild<QSlider*>("sldPriority");
    ASSERT_EQ(QApplication::focusWidget(), slider);
    for (int i = 0; i < 5; ++i) { // a held key
        QTest::keyClick(slider, Qt::Key_Right);
        clock.seconds += 0.2;
    }
    EXPECT_FLOAT_EQ(defs.Units[4].Weight, 1.5f);
    EXPECT_EQ(window->History().Stack().count(), 1);
    clock.seconds += 1.5; // a pause: a step of its own
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(window->History().Stack().count(), 2);
    window->mnuEditUndo->trigger();
    window->mnuEditUndo->trigger();
    EXPECT_FLOAT_EQ(defs.Units[4].Weight, 1.0f);

    // Away and back within the gesture: the step goes.
    QTest::keyClick(slider, Qt::Key_Right);
    QTest::keyClick(slider, Qt::Key_Left);
    EXPECT_EQ(window->History().Stack().index(), 0);
    EXPECT_FALSE(defs.Profile.Changed);

    // Open keeps the keys on the active card.
    dialogs.opens = {Chosen("/x/One.txt")};
    window->mnuFileOpen->trigger();
    frmUnit* active = window->board->CardAt(window->board->ActiveRow());
    ASSERT_NE(active, nullptr);
    EXPECT_EQ(active->UnitIndex(), 4);
    EXPECT_EQ(window->focusWidget(), active->findChild<QSlider*>("sldPriority"));
}

TEST(TablePlacement, BesideWhereThereIsRoomElseClearOfTheActiveCard) {
    const QRect screen(0, 0, 1920, 1080);
    const QRect card(0, 300, 800, 90);
    const struct {
        QRect main, card;
        QPoint expected;
    } rows[] = {
        {QRect(100, 50, 820, 600), card, QPoint(920, 50)},        // room on the right
        {QRect(100, 50, 920, 600), card, QPoint(1020, 50)},       // just room on the right
        {QRect(1000, 50, 820, 600), card, QPoint(100, 50)},       // room on the left only
        {screen, card, QPoint(32, 390)},                          // full screen: below the card
        {screen, QRect(0, 900, 800, 90), QPoint(32, 400)},        // little room below: above
    };
    for (const auto& r : rows)
        EXPECT_EQ(frmTable::Placement(screen, r.main, QSize(900, 500), r.card), r.expected)
            << r.main.x() << " " << r.card.y();
}

TEST_F(TableTest, RandomizeMergeAndBuildSetAreStepsAndOpenStartsAfresh) {
    window->mnuViewRandomize->trigger();
    EXPECT_NE(defs.Units[5].Weight, 7.5f);
    EXPECT_EQ(UndoText(), "&Undo Randomize");
    window->mnuEditUndo->trigger();
    EXPECT_EQ(defs.Units[5].Weight, 7.5f);
    EXPECT_EQ(defs.Units[4].Limit, 5.0f);

    window->showBuildSet = [&] { // a tick, as the dialog reports it, then Cancel
        defs.Units[4].Include = false;
        window->History().RecordEdit(4, UnitField::Include, 1.0);
        return QDialog::Rejected;
    };
    window->mnuViewIncludes->trigger();
    EXPECT_EQ(UndoText(), "&Undo Exclude Thud");

    defs.Profile.ParentAIs = "Old AI, ";
    window->showMerge = [&] {
        // The window is out of use, its dialogs are not.
        EXPECT_FALSE(progress.isVisible());
        EXPECT_FALSE(window->menuBar()->isEnabled());
        EXPECT_FALSE(window->centralWidget()->isEnabled());
        EXPECT_TRUE(window->Settings().isEnabled());
        defs.Units[5].Limit = 9;
        defs.Profile.ParentAIs += "Friend AI, ";
        return QDialog::Accepted;
    };
    dialogs.opens = {Chosen("/x/Two.txt")};
    window->mnuFileMerge->trigger();
    EXPECT_TRUE(window->menuBar()->isEnabled());
    EXPECT_EQ(UndoText(), "&Undo Merge");
    EXPECT_EQ(window->lblStatus->text(), "Merged /x/Two.txt");
    window->mnuEditUndo->trigger();
    EXPECT_EQ(defs.Profile.ParentAIs, "Old AI, ");
    window->mnuEditUndo->trigger();
    EXPECT_EQ(defs.Units[5].Limit, 2.0f);
    EXPECT_TRUE(defs.Units[4].Include);

    window->mnuEditRedo->trigger();
    dialogs.opens = {Chosen("/x/One.txt")};
    messages.answers = {MsgAnswer::No}; // no save first
    frmTable& table = OpenTable();
    table.Proxy().sort(UnitTableModel::ColWeight, Qt::DescendingOrder);
    profiles.onRead = [](Definitions& d) { d.Units[5].Weight = 0.5f; };
    window->mnuFileOpen->trigger();
    EXPECT_FALSE(window->mnuEditUndo->isEnabled());
    EXPECT_FALSE(window->mnuEditRedo->isEnabled());
    // The table shows what was read, sorted anew.
    for (int row = 1; row < table.Proxy().rowCount(); ++row)
        EXPECT_GE(table.Proxy().index(row - 1, UnitTableModel::ColWeight).data().toDouble(),
                  table.Proxy().index(row, UnitTableModel::ColWeight).data().toDouble());
}

} // namespace
} // namespace vantrel

// The dialogs' rules (rows, what OK writes, the key filter) are pinned by
// the forms rules tests; these pin their lists, keys and buttons.
#include "forms/frmBuild.h"
#include "forms/frmFirstStart.h"
#include "forms/frmMerge.h"
#include "forms/frmOptions.h"
#include "gui/gui_app.h"
#include "startup/frmLoad.h"
#include "support/command_fakes.h"
#include "support/unit_fixtures.h"
#include "support/test_support.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

using namespace vantrel;
using namespace vantrel::testing;
using namespace vantrel::test;

namespace {
class BuildDialogTest : public GuiTest {
  protected:
    void SetUp() override {
        commander = AddUnit(defs, "ARM", "Commander", "COMMANDER");
        plant = AddUnit(defs, "CORE", "KBOT LAB", "PLANT");
        energy = AddUnit(defs, "ARM", "solar collector", "ENERGY");
        kbot = AddUnit(defs, "CORE", "AK", "KBOT");
    }
    Definitions defs;
    int commander = 0, plant = 0, energy = 0, kbot = 0;
};
} // namespace

TEST_F(BuildDialogTest, TicksWriteThroughAtOnceAndCancelKeepsThem) {
    defs.Units[commander].Include = false;
    frmBuild dlg(defs);
    dlg.lstMain->item(1)->setCheckState(Qt::Unchecked); // not shown yet: not written
    EXPECT_TRUE(defs.Units[energy].Include);
    EXPECT_FALSE(defs.Units[commander].Include); // selecting row 0 on load changes nothing

    std::vector<std::pair<int, bool>> ticks; // each change once, with the earlier value
    dlg.OnIncludeChanged = [&](int unit, bool before) { ticks.emplace_back(unit, before); };
    dlg.show();
    dlg.lstMain->item(3)->setCheckState(Qt::Unchecked);
    dlg.lstMain->item(0)->setCheckState(Qt::Checked);
    dlg.lstMain->item(0)->setText("Arm Commander!"); // no tick: nothing to record
    dlg.cmdCancel->click();
    EXPECT_EQ(ticks, (std::vector<std::pair<int, bool>>{{plant, true}, {commander, false}}));
    EXPECT_EQ(dlg.result(), QDialog::Rejected);
    EXPECT_FALSE(defs.Units[plant].Include);
    EXPECT_TRUE(defs.Units[commander].Include);
}

TEST_F(BuildDialogTest, ListFollowsTheCategoryWithCurrentFlags) {
    frmBuild dlg(defs);
    // By side, then name; each row says its UnitName.
    EXPECT_EQ(dlg.lstMain->item(1)->text(), "Arm Solar Collector (U3)");
    EXPECT_EQ(dlg.RowUnits, (std::vector<std::int32_t>{0, commander, energy, kbot, plant}));
    dlg.show();
    dlg.lstMain->item(2)->setCheckState(Qt::Unchecked); // Core Ak
    dlg.cboType->setCurrentText("Kbots");
    EXPECT_EQ(dlg.RowUnits, (std::vector<std::int32_t>{0, kbot}));
    EXPECT_EQ(dlg.lstMain->item(0)->text(), "Core Ak (U4)");
    EXPECT_EQ(dlg.lstMain->item(0)->checkState(), Qt::Unchecked);
    dlg.cmdOK->click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_FALSE(defs.Units[kbot].Include);
}

TEST(MergeDialogTest, OkMergesCheckedRowsOnTheProgressFormAndCancelChangesNothing) {
    GuiApp();
    Definitions defs;
    const int armKbot = AddUnit(defs, "ARM", "Peewee", "KBOT", 1, 2);
    const int coreKbot = AddUnit(defs, "CORE", "AK", "KBOT", 1, 2);
    AddUnit(defs, "GOK", "Grunt", "KBOT", 1, 2);
    SetSavedValues(defs, 8, 40);
    defs.Profile.LoadedAIName = "Rush";
    defs.Profile.ParentAIs = "Turtle, ";
    QWidget mainWindow;
    (new QLabel("Turtle AI", &mainWindow))->setObjectName("lblAIName");

    RecordingProgress unused;
    frmMerge cancelled(defs, unused, &mainWindow);
    cancelled.show();
    cancelled.lstMain->item(13)->setCheckState(Qt::Checked);
    cancelled.cmdCancel->click();
    EXPECT_EQ(cancelled.result(), QDialog::Rejected);
    EXPECT_FLOAT_EQ(defs.Units[coreKbot].Weight, 1);
    EXPECT_EQ(unused.shows, 0);

    frmLoad progress;
    frmMerge dlg(defs, progress, &mainWindow);
    // The label names the banner the main window shows.
    EXPECT_NE(dlg.lblLoad->text().indexOf("with Turtle AI."), -1);
    ASSERT_EQ(dlg.lstMain->count(), 30); // twenty fixed rows and ten for GOK
    EXPECT_EQ(dlg.lstMain->item(13)->text(), "Core Kbots");
    dlg.show();
    dlg.lstMain->item(13)->setCheckState(Qt::Checked);
    dlg.cmdOK->click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_FLOAT_EQ(defs.Units[coreKbot].Weight, 8);
    EXPECT_FLOAT_EQ(defs.Units[armKbot].Weight, 1);
    EXPECT_EQ(progress.lblStatus->text(), "Merging Hybrid AI...");
    EXPECT_EQ(progress.prbMain->value(), 30);
    EXPECT_FALSE(progress.isVisible());
}

TEST(OptionsDialogTest, BoxesShowTheOptionsTakeThreeDigitsAndEnterPressesOk) {
    GuiApp();
    Definitions defs;
    MemorySettingsStore store;
    defs.Options = {40, 60, 90, 12, 30, true, false};
    frmOptions dlg(defs, store);
    EXPECT_EQ(dlg.txtHard->text(), "90");
    EXPECT_EQ(dlg.txtLimitMax->text(), "30");
    EXPECT_TRUE(dlg.chkLoad->isChecked());
    EXPECT_FALSE(dlg.chkRandom->isChecked());

    dlg.show();
    QLineEdit* box = dlg.txtWeightMax;
    box->clear();
    TypeText(box, "1.-a254"); // digits only, and the fourth does not fit
    EXPECT_EQ(box->text(), "125");
    PressKey(box, Qt::Key_Backspace, "\b");
    EXPECT_EQ(box->text(), "12");
    PressKey(dlg.txtEasy, Qt::Key_Return, "\r");
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(store.Get("WeightMax", "?"), "12");
    EXPECT_EQ(store.Get("Extract", "?"), "1");
}

TEST(OptionsDialogTest, EscapeLeavesOptionsAndStoreAndBrowseFillsTheGameFolder) {
    GuiApp();
    Definitions defs;
    MemorySettingsStore store;
    frmOptions cancelled(defs, store);
    cancelled.show();
    cancelled.txtEasy->setText("9");
    cancelled.txtGameDir->setText("/games/ta");
    PressKey(&cancelled, Qt::Key_Escape);
    EXPECT_EQ(cancelled.result(), QDialog::Rejected);
    EXPECT_EQ(defs.Options, Options{});
    EXPECT_FALSE(store.Has("EasyLimit"));
    EXPECT_FALSE(store.Has("GameDir"));

    defs.GameDir = "/found/ta";
    store.Set("GameDir", "/old/ta");
    frmOptions dlg(defs, store);
    EXPECT_EQ(dlg.txtGameDir->text(), "/old/ta");
    EXPECT_EQ(dlg.txtGameDir->placeholderText(), "/found/ta");
    ScriptedPicker picker;
    dlg.SetFolderPicker(&picker);
    dlg.cmdBrowse->click(); // cancelled
    EXPECT_EQ(picker.offered, "/old/ta");
    EXPECT_EQ(dlg.txtGameDir->text(), "/old/ta");
    dlg.txtGameDir->clear();
    picker.answer = "/new/ta";
    dlg.cmdBrowse->click();
    EXPECT_EQ(picker.offered, "/found/ta");
    dlg.cmdOK->click();
    EXPECT_EQ(store.Get("GameDir", "?"), "/new/ta");
}

// Each button is a way on; Browse... fills the field that Extract takes.
TEST(FirstStartWindow, EachButtonIsAWayOnAndExtractTakesTheField) {
    GuiApp();
    test::TempDir game;
    struct Case {
        const char* button;
        NoUnitsChoice choice;
        std::string gameDir; // defs.GameDir afterwards
    } cases[] = {
        {"cmdExtract", NoUnitsChoice::Extract, game.path()},
        {"cmdContinue", NoUnitsChoice::Continue, ""},
        {"cmdQuit", NoUnitsChoice::Quit, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.button);
        frmFirstStart window;
        ScriptedPicker picker;
        picker.answer = game.path();
        window.SetFolderPicker(&picker);
        Definitions defs; // no game folder found
        QTimer::singleShot(0, &window, [&] {
            EXPECT_TRUE(window.lblFound->text().startsWith("No game folder was found"));
            EXPECT_TRUE(window.cmdExtract->isEnabled()); // the zip packages alone
            window.txtGameDir->setText("/no/such/folder");
            EXPECT_FALSE(window.cmdExtract->isEnabled());
            window.cmdBrowse->click();
            window.findChild<QPushButton*>(c.button)->click();
        });
        EXPECT_EQ(window.Ask(defs, "/p/Units/", false), c.choice);
        EXPECT_EQ(defs.GameDir, c.gameDir);
        EXPECT_TRUE(window.lblLooked->text().contains("/p/Units/"));
    }
}

#include "forms/frmMerge.h"

#include "gui/gui_app.h"
#include "startup/frmLoad.h"
#include "support/dialog_fixtures.h"

#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace vantrel;
using namespace vantrel::testing;

// The rows and what a merge takes are pinned by the merge rules tests; here
// the dialog's list, buttons and progress form.
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
    EXPECT_TRUE(unused.calls.empty());

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

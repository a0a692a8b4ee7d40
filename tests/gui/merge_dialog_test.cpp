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

namespace {
class MergeDialogTest : public GuiTest {
  protected:
    void SetUp() override {
        armKbot = AddUnit(defs, "ARM", "Peewee", "KBOT", 1, 2);
        coreKbot = AddUnit(defs, "CORE", "AK", "KBOT", 1, 2);
        AddUnit(defs, "GOK", "Grunt", "KBOT", 1, 2);
        SetSavedValues(defs, 8, 40);
        defs.Profile.LoadedAIName = "Rush";
        defs.Profile.ParentAIs = "Turtle, ";
        auto* banner = new QLabel("Turtle AI", &mainWindow);
        banner->setObjectName("lblAIName");
    }
    Definitions defs;
    QWidget mainWindow;
    int armKbot = 0, coreKbot = 0;
};
} // namespace

TEST_F(MergeDialogTest, OkMergesCheckedRowsOnTheProgressForm) {
    frmLoad progress;
    frmMerge dlg(defs, progress, &mainWindow);
    // The label names the banner the main window shows.
    EXPECT_NE(dlg.lblLoad->text().indexOf("with Turtle AI."), -1);
    QListWidget* list = dlg.lstMain;
    ASSERT_EQ(list->count(), 30); // twenty fixed rows and ten for GOK
    EXPECT_EQ(list->item(13)->text(), "Core Kbots");

    dlg.show();
    list->item(13)->setCheckState(Qt::Checked);
    dlg.cmdOK->click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_FLOAT_EQ(defs.Units[coreKbot].Weight, 8);
    EXPECT_FLOAT_EQ(defs.Units[armKbot].Weight, 1);
    EXPECT_EQ(progress.lblStatus->text(), "Merging Hybrid AI...");
    EXPECT_EQ(progress.prbMain->value(), 30);
    EXPECT_FALSE(progress.isVisible());
}

TEST_F(MergeDialogTest, CancelChangesNothing) {
    RecordingProgress progress;
    frmMerge dlg(defs, progress, &mainWindow);
    dlg.show();
    dlg.lstMain->item(13)->setCheckState(Qt::Checked);
    dlg.cmdCancel->click();
    EXPECT_EQ(dlg.result(), QDialog::Rejected);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_FLOAT_EQ(defs.Units[coreKbot].Weight, 1);
    EXPECT_TRUE(progress.calls.empty());
}

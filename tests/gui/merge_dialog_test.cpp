#include "forms/frmMerge.h"

#include "gui/dialog_app.h"
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

class MergeDialogTest : public ::testing::Test {
  protected:
    void SetUp() override {
        DialogTestApp();
        armKbot = AddUnit(defs, "ARM", "Peewee", "KBOT", 1, 2);
        coreKbot = AddUnit(defs, "CORE", "AK", "KBOT", 1, 2);
        coreTank = AddUnit(defs, "CORE", "Raider", "TANK", 1, 2);
        gokKbot = AddUnit(defs, "GOK", "Grunt", "KBOT", 1, 2);
        SetSavedValues(defs, 8, 40);
        defs.LoadedAIName = "Rush";
        defs.ParentAIs = "Turtle, ";
    }

    static void Check(frmMerge& dlg, const QString& text) {
        auto found = dlg.lstMain->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << text.toStdString();
        found.front()->setCheckState(Qt::Checked);
    }

    Definitions defs;
    int armKbot = 0, coreKbot = 0, coreTank = 0, gokKbot = 0;
};

} // namespace

TEST_F(MergeDialogTest, LoadShowsLabelAndUncheckedRows) {
    QWidget mainWindow;
    auto* banner = new QLabel("Turtle AI", &mainWindow);
    banner->setObjectName("lblAIName");
    RecordingProgress progress;
    frmMerge dlg(defs, progress, &mainWindow);

    EXPECT_EQ(dlg.windowTitle(), "Merge");
    auto* label = dlg.findChild<QLabel*>("lblLoad");
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(),
              "Merging Rush with Turtle AI.  Please select the traits you would like to use.");
    auto* list = dlg.findChild<QListWidget*>("lstMain");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 30); // twenty fixed rows and ten for GOK
    EXPECT_EQ(list->item(0)->text(), "Arm Commanders");
    EXPECT_EQ(list->item(20)->text(), "Gok Commanders");
    EXPECT_EQ(list->currentRow(), 0);
    for (int n = 0; n < list->count(); ++n)
        EXPECT_EQ(list->item(n)->checkState(), Qt::Unchecked);
    EXPECT_EQ(list->toolTip(), "Check off units you do not want to include in your AI");
    EXPECT_EQ(dlg.findChild<QPushButton*>("cmdOK")->text(), "&OK");
    EXPECT_EQ(dlg.findChild<QPushButton*>("cmdCancel")->text(), "&Cancel");
}

TEST_F(MergeDialogTest, OkMergesCheckedTraitsOnTheProgressForm) {
    frmLoad progress;
    frmMerge dlg(defs, progress);
    dlg.show();
    Check(dlg, "Core Kbots");
    Check(dlg, "Gok Kbots");
    dlg.cmdOK->click();

    EXPECT_TRUE(defs.DialogOK);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(defs.ParentAIs, "Turtle, Rush, ");
    for (int i : {coreKbot, gokKbot}) {
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 8) << i;
        EXPECT_FLOAT_EQ(defs.Units[i].Limit, 40) << i;
    }
    for (int i : {armKbot, coreTank})
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 1) << i;
    EXPECT_EQ(progress.lblStatus->text(), "Merging Hybrid AI...");
    EXPECT_EQ(progress.prbMain->maximum(), 30);
    EXPECT_EQ(progress.prbMain->value(), 30);
    EXPECT_FALSE(progress.isVisible());
}

TEST_F(MergeDialogTest, SameProfileTwiceIsListedOnce) {
    RecordingProgress progress;
    for (int pass = 0; pass < 2; ++pass) {
        frmMerge dlg(defs, progress);
        dlg.show();
        // Every opening starts with nothing checked.
        EXPECT_EQ(dlg.lstMain->item(13)->checkState(), Qt::Unchecked);
        Check(dlg, "Core Kbots");
        dlg.cmdOK->click();
    }
    EXPECT_EQ(defs.ParentAIs, "Turtle, Rush, ");
    EXPECT_FLOAT_EQ(defs.Units[coreKbot].Weight, 8);
}

TEST_F(MergeDialogTest, CancelChangesNothing) {
    RecordingProgress progress;
    frmMerge dlg(defs, progress);
    dlg.show();
    defs.DialogOK = true;
    Check(dlg, "Core Kbots");
    dlg.cmdCancel->click();
    EXPECT_FALSE(defs.DialogOK);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(defs.ParentAIs, "Turtle, ");
    EXPECT_FLOAT_EQ(defs.Units[coreKbot].Weight, 1);
    EXPECT_TRUE(progress.calls.empty());
}

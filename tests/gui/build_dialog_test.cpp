#include "forms/frmBuild.h"

#include "gui/gui_app.h"
#include "support/dialog_fixtures.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace vantrel;
using namespace vantrel::testing;

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
    EXPECT_EQ(dlg.lstMain->item(1)->text(), "Arm Solar Collector (solar collector)");
    EXPECT_EQ(dlg.RowUnits, (std::vector<std::int32_t>{0, commander, energy, kbot, plant}));
    dlg.show();
    dlg.lstMain->item(2)->setCheckState(Qt::Unchecked); // Core Ak
    dlg.cboType->setCurrentText("Kbots");
    EXPECT_EQ(dlg.RowUnits, (std::vector<std::int32_t>{0, kbot}));
    EXPECT_EQ(dlg.lstMain->item(0)->text(), "Core Ak (AK)");
    EXPECT_EQ(dlg.lstMain->item(0)->checkState(), Qt::Unchecked);
    dlg.cmdOK->click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_FALSE(defs.Units[kbot].Include);
}

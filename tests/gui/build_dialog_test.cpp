#include "forms/frmBuild.h"

#include "gui/dialog_app.h"
#include "support/dialog_fixtures.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace vantrel;
using namespace vantrel::testing;

namespace {

class BuildDialogTest : public ::testing::Test {
  protected:
    void SetUp() override {
        DialogTestApp();
        commander = AddUnit(defs, "ARM", "Commander", "COMMANDER");
        plant = AddUnit(defs, "CORE", "KBOT LAB", "PLANT");
        energy = AddUnit(defs, "ARM", "solar collector", "ENERGY");
        kbot = AddUnit(defs, "CORE", "AK", "KBOT");
        AddUnit(defs, "ARM", "Flash", "tank");
    }

    static QStringList Texts(const QListWidget* list) {
        QStringList out;
        for (int n = 0; n < list->count(); ++n)
            out << list->item(n)->text();
        return out;
    }

    Definitions defs;
    int commander = 0, plant = 0, energy = 0, kbot = 0;
};

} // namespace

TEST_F(BuildDialogTest, LoadListsAllWithPlantsAndEnergy) {
    frmBuild dlg(defs);
    EXPECT_EQ(dlg.windowTitle(), "Build Set");
    auto* type = dlg.findChild<QComboBox*>("cboType");
    ASSERT_NE(type, nullptr);
    ASSERT_EQ(type->count(), 11);
    const QStringList expected{"All",      "Commanders", "Aircraft",  "Defenses",
                               "Kbots",    "Plants",     "Resources", "Navy",
                               "Specials", "Vehicles",   "Workers"};
    for (int n = 0; n < 11; ++n)
        EXPECT_EQ(type->itemText(n), expected[n]);
    EXPECT_EQ(type->currentText(), "All");
    EXPECT_EQ(type->toolTip(), "Unit category");
    EXPECT_EQ(dlg.findChild<QLabel*>("Label1")->text(),
              "Check off units you do not want to include in your final profile");

    auto* list = dlg.findChild<QListWidget*>("lstMain");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(Texts(list),
              (QStringList{"Arm Commander", "Core Kbot Lab", "Arm Solar Collector", "Core Ak"}));
    EXPECT_EQ(dlg.RowUnits, (std::vector<std::int32_t>{0, commander, plant, energy, kbot}));
    EXPECT_EQ(list->currentRow(), 0);
    for (int n = 0; n < list->count(); ++n)
        EXPECT_EQ(list->item(n)->checkState(), Qt::Checked);
}

TEST_F(BuildDialogTest, UncheckThenCancelKeepsUnitExcluded) {
    defs.Units[commander].Include = false;
    frmBuild dlg(defs);
    EXPECT_EQ(dlg.lstMain->item(0)->checkState(), Qt::Unchecked);
    EXPECT_FALSE(defs.Units[commander].Include); // selecting row 0 on load changes nothing

    dlg.show();
    defs.DialogOK = true;
    dlg.lstMain->item(2)->setCheckState(Qt::Unchecked);
    EXPECT_FALSE(defs.Units[energy].Include);
    dlg.lstMain->item(0)->setCheckState(Qt::Checked);
    EXPECT_TRUE(defs.Units[commander].Include);
    dlg.cmdCancel->click();
    EXPECT_FALSE(defs.DialogOK);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_FALSE(defs.Units[energy].Include);
    EXPECT_TRUE(defs.Units[commander].Include);
}

TEST_F(BuildDialogTest, CategoryChangeShowsCurrentFlags) {
    frmBuild dlg(defs);
    dlg.show();
    dlg.lstMain->item(3)->setCheckState(Qt::Unchecked); // Core Ak
    dlg.cboType->setCurrentText("Kbots");
    EXPECT_EQ(Texts(dlg.lstMain), QStringList{"Core Ak"});
    EXPECT_EQ(dlg.RowUnits, (std::vector<std::int32_t>{0, kbot}));
    EXPECT_EQ(dlg.lstMain->item(0)->checkState(), Qt::Unchecked);
    dlg.cboType->setCurrentText("Vehicles"); // the lower-case tank is not a vehicle
    EXPECT_EQ(dlg.lstMain->count(), 0);
    EXPECT_EQ(dlg.RowUnits, std::vector<std::int32_t>{0});
    dlg.cmdOK->click();
    EXPECT_TRUE(defs.DialogOK);
    EXPECT_FALSE(defs.Units[kbot].Include);
}

TEST_F(BuildDialogTest, ChecksBeforeShowingAreNotWritten) {
    frmBuild dlg(defs);
    dlg.lstMain->item(1)->setCheckState(Qt::Unchecked);
    EXPECT_TRUE(defs.Units[plant].Include);
}

#include "forms/frmOptions.h"

#include "gui/gui_app.h"
#include "support/command_fakes.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace vantrel;
using namespace vantrel::testing;

namespace {

// What OK writes, and the key filter itself, are pinned by the options rules
// tests; these pin the boxes, the keys and the buttons that reach them.
class OptionsDialogTest : public GuiTest {
  protected:
    Definitions defs;
    MemorySettingsStore store;
};

} // namespace

TEST_F(OptionsDialogTest, BoxesShowTheOptionsTakeThreeDigitsAndEnterPressesOk) {
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

TEST_F(OptionsDialogTest, EscapeLeavesOptionsAndStoreAndBrowseFillsTheGameFolder) {
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

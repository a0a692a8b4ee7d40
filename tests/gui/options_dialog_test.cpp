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

class OptionsDialogTest : public GuiTest {
  protected:
    Definitions defs;
    MemorySettingsStore store;
};

const char* const SevenKeys[] = {"EasyLimit", "MediumLimit", "HardLimit", "WeightMax",
                                 "LimitMax",  "Extract",     "Random"};

} // namespace

TEST_F(OptionsDialogTest, BoxesShowTheOptionsAndEnterPressesOk) {
    defs.Options = {40, 60, 90, 12, 30, true, false};
    frmOptions dlg(defs, store);
    EXPECT_EQ(dlg.txtHard->text(), "90");
    EXPECT_EQ(dlg.txtLimitMax->text(), "30");
    EXPECT_TRUE(dlg.chkLoad->isChecked()); // stored -1
    EXPECT_FALSE(dlg.chkRandom->isChecked());

    dlg.show();
    dlg.txtEasy->setText("12");
    PressKey(dlg.txtEasy, Qt::Key_Return, "\r");
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_FALSE(dlg.isVisible());
    const char* values[] = {"12", "60", "90", "12", "30", "1", "0"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(store.Get(SevenKeys[i], "?"), values[i]) << SevenKeys[i];
}

TEST_F(OptionsDialogTest, BoxesTakeThreeDigitsOnlyAndCancelLeavesOptionsAndStore) {
    frmOptions dlg(defs, store);
    dlg.show();
    QLineEdit* box = dlg.txtWeightMax;
    box->clear();
    TypeText(box, "1254"); // the fourth digit does not fit
    EXPECT_EQ(box->text(), "125");
    box->setCursorPosition(3);
    TypeText(box, ".-a ");
    PressKey(box, Qt::Key_V, QString(QChar(22)), Qt::ControlModifier); // paste is a character too
    EXPECT_EQ(box->text(), "125");
    PressKey(box, Qt::Key_Backspace, "\b");
    EXPECT_EQ(box->text(), "12");
    box->setCursorPosition(0);
    PressKey(box, Qt::Key_Delete, QString(QChar(127)));
    EXPECT_EQ(box->text(), "2");
    // A full box is replaced by selecting it all and typing.
    box->setText("125");
    PressKey(box, Qt::Key_A, QString(QChar(1)), Qt::ControlModifier);
    TypeText(box, "40");
    EXPECT_EQ(box->text(), "40");

    dlg.txtEasy->setText("9");
    dlg.chkRandom->setChecked(true);
    dlg.txtGameDir->setText("/games/ta");
    PressKey(&dlg, Qt::Key_Escape);
    EXPECT_EQ(dlg.result(), QDialog::Rejected);
    EXPECT_FALSE(dlg.isVisible());
    EXPECT_EQ(defs.Options, Options{});
    for (const char* key : SevenKeys)
        EXPECT_FALSE(store.Has(key)) << key;
    EXPECT_FALSE(store.Has("GameDir"));
}

TEST_F(OptionsDialogTest, BrowseFillsTheGameFolder) {
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
    EXPECT_EQ(dlg.txtGameDir->text(), "/new/ta");
    dlg.cmdOK->click();
    EXPECT_EQ(store.Get("GameDir", "?"), "/new/ta");
}

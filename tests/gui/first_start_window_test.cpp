#include "forms/frmFirstStart.h"
#include "gui/gui_app.h"
#include "support/command_fakes.h"
#include "support/test_support.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using namespace vantrel::testing;

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
        frmFirstStart window;
        ScriptedPicker picker;
        picker.answer = game.path();
        window.SetFolderPicker(&picker);
        Definitions defs; // no game folder found
        bool extractWhileEmpty = false, extractForMissing = true;
        QString found;
        QTimer::singleShot(0, &window, [&] {
            found = window.lblFound->text();
            extractWhileEmpty = window.cmdExtract->isEnabled(); // the zip packages alone
            window.txtGameDir->setText("/no/such/folder");
            extractForMissing = window.cmdExtract->isEnabled();
            window.cmdBrowse->click();
            window.findChild<QPushButton*>(c.button)->click();
        });
        EXPECT_EQ(window.Ask(defs, "/p/Units/", false), c.choice) << c.button;
        EXPECT_EQ(defs.GameDir, c.gameDir);
        EXPECT_TRUE(window.lblLooked->text().contains("/p/Units/"));
        EXPECT_TRUE(found.startsWith("No game folder was found"));
        EXPECT_TRUE(extractWhileEmpty);
        EXPECT_FALSE(extractForMissing);
    }
}

} // namespace
} // namespace vantrel

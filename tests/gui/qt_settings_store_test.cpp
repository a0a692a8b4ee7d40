#include "app/qt_settings_store.h"
#include "base/paths.h"
#include "startup/game_archives.h"
#include "startup/main_sequence.h"

#include "gui/gui_app.h"
#include "support/scratch_folder.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

using namespace vantrel;

namespace {

// A game folder typed into the settings file in UTF-8, with letters outside
// Latin-1 and a path of more than 254 bytes, is found as it stands.
TEST(QtSettingsStoreTest, LongNonAsciiGameFolderIsFoundWhole) {
    vantrel::testing::GuiApp();
    vantrel::testing::ScratchFolder tmp;
    std::string game = tmp / "Игры ÉTÉ";
    while (game.size() <= 300)
        game = JoinPath(game, "Total Annihilation Ünits");
    ASSERT_TRUE(std::filesystem::create_directories(game));
    const std::string file = tmp / "vantrel.conf";
    std::ofstream(file) << "[Options]\nGameDir=" << game << "\n";

    QtSettingsStore store(file);
    EXPECT_EQ(FindGameDirectory(GameSearchEnvFromProcess(store)), game);

    store.Set("LastDir", game); // written back as UTF-8 and read the same
    EXPECT_EQ(QtSettingsStore(file).Get("LastDir", ""), game);
}

// A store whose file cannot be written keeps nothing, so that reading a value
// back tells start-up it did not stick.
TEST(QtSettingsStoreTest, AValueThatCannotBeWrittenIsNotKept) {
    vantrel::testing::GuiApp();
    vantrel::testing::ScratchFolder tmp;
    std::ofstream(tmp / "file") << "not a folder";
    QtSettingsStore store(tmp / "file/vantrel/vantrel.conf");
    store.Set("Extract", "-1");
    EXPECT_EQ(store.Get("Extract", "0"), "0");
    EXPECT_EQ(store.Location(), tmp / "file/vantrel/vantrel.conf");

    // Once the file can be written again, the next value is kept.
    std::filesystem::remove(tmp / "file");
    store.Set("LastDir", "/profiles/");
    EXPECT_EQ(store.Get("LastDir", ""), "/profiles/");
    EXPECT_EQ(QtSettingsStore(tmp / "file/vantrel/vantrel.conf").Get("LastDir", ""), "/profiles/");
}

} // namespace

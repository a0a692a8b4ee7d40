#include "forms/options_rules.h"

#include <gtest/gtest.h>

#include <utility>

using namespace vantrel;

TEST(OptionsRules, KeyFilterAndNumbers) {
    for (char c = '0'; c <= '9'; ++c)
        EXPECT_TRUE(OptionKeyAccepted(c)) << c;
    EXPECT_TRUE(OptionKeyAccepted(8)); // Backspace corrects a value
    for (int c : std::initializer_list<int>{'.', '-', '+', ' ', 'a', '/', ':', 13, 22, 0, 0x663})
        EXPECT_FALSE(OptionKeyAccepted(c)) << c;
    EXPECT_EQ(OptionFromText("125", 10), 125);
    EXPECT_EQ(OptionFromText("007", 10), 7);
    EXPECT_EQ(OptionFromText("0", 10), 0);
    EXPECT_EQ(OptionFromText("", 10), 10); // an empty box keeps the old value
}

// The dialog starts from the options and the stored game folder; OK writes
// every key, an empty box keeping its old value.
TEST(OptionsRules, OkStoresEveryKey) {
    Definitions defs;
    defs.Options = {40, 60, 90, 12, 30, true, false};
    MemorySettingsStore store;
    store.Set(GameDirKey, "/games/ta");
    OptionsInput input = LoadOptionsInput(defs, store);
    EXPECT_EQ(input.Numbers, (std::array<std::string, 5>{"40", "60", "90", "12", "30"}));
    EXPECT_TRUE(input.Load);
    EXPECT_FALSE(input.Random);
    EXPECT_EQ(input.GameDir, "/games/ta");

    input.Numbers = {"", "80", "100", "0", "999"};
    input.Load = false;
    input.Random = true;
    input.GameDir = "  /mnt/ta  ";
    AcceptOptions(defs, input, store);
    EXPECT_EQ(defs.Options, (Options{40, 80, 100, 0, 999, false, true}));
    const std::pair<const char*, const char*> stored[] = {
        {"EasyLimit", "40"}, {"MediumLimit", "80"}, {"HardLimit", "100"}, {"WeightMax", "0"},
        {"LimitMax", "999"}, {"Extract", "0"},      {"Random", "1"},      {"GameDir", "/mnt/ta"}};
    for (const auto& [key, value] : stored)
        EXPECT_EQ(store.Get(key, "?"), value) << key;
}

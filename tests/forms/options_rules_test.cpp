#include "forms/options_rules.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace vantrel;

namespace {
// A store that remembers the order of its writes.
class OrderedStore : public MemorySettingsStore {
  public:
    void Set(const std::string& key, const std::string& value) override {
        writes.emplace_back(key, value);
        MemorySettingsStore::Set(key, value);
    }
    std::vector<std::pair<std::string, std::string>> writes;
};
} // namespace

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

TEST(OptionsRules, OkWritesAllSevenKeysInOrder) {
    Definitions defs;
    defs.Options = {40, 60, 90, 12, 30, true, false};
    OrderedStore store;
    store.Set(GameDirKey, "/games/ta");
    store.writes.clear();

    OptionsInput input = LoadOptionsInput(defs, store);
    EXPECT_EQ(input.Numbers, (std::array<std::string, 5>{"40", "60", "90", "12", "30"}));
    EXPECT_TRUE(input.Load);
    EXPECT_FALSE(input.Random);
    EXPECT_EQ(input.GameDir, "/games/ta");

    AcceptOptions(defs, input, store);
    const std::vector<std::pair<std::string, std::string>> expected{
        {"EasyLimit", "40"}, {"MediumLimit", "60"}, {"HardLimit", "90"}, {"WeightMax", "12"},
        {"LimitMax", "30"},  {"Extract", "1"},      {"Random", "0"},     {"GameDir", "/games/ta"}};
    EXPECT_EQ(store.writes, expected);
    EXPECT_TRUE(defs.Options.Extract);
}

TEST(OptionsRules, OkTakesEditedValues) {
    Definitions defs;
    MemorySettingsStore store;
    OptionsInput input = LoadOptionsInput(defs, store);
    input.Numbers = {"", "80", "100", "0", "999"};
    input.Load = false;
    input.Random = true;
    input.GameDir = "  /mnt/ta  ";
    AcceptOptions(defs, input, store);
    EXPECT_EQ(defs.Options, (Options{50, 80, 100, 0, 999, false, true}));
    EXPECT_EQ(store.Get("EasyLimit", "?"), "50");
    EXPECT_EQ(store.Get("WeightMax", "?"), "0");
    EXPECT_EQ(store.Get("Random", "?"), "1");
    EXPECT_EQ(store.Get("GameDir", "?"), "/mnt/ta");
}

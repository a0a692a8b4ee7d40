#include "forms/build_rules.h"

#include "support/dialog_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;
using vantrel::testing::AddUnit;

namespace {
std::vector<std::string> RowTexts(const Definitions& defs, std::string_view caption) {
    std::vector<std::string> out;
    for (const BuildRow& r : BuildSetRows(defs, caption))
        out.push_back(r.Text);
    return out;
}
} // namespace

TEST(BuildSetRows, EveryKeywordIsInTheAllList) {
    for (const Category& c : Categories) {
        std::string_view list = c.Keywords;
        while (!list.empty()) {
            const std::size_t semi = std::min(list.find(';'), list.size());
            if (semi > 0) EXPECT_TRUE(InCategory(list.substr(0, semi), BuildSetKeywords("All")));
            list.remove_prefix(std::min(semi + 1, list.size()));
        }
    }
}

TEST(BuildSetRows, RowsOfACategory) {
    Definitions defs;
    AddUnit(defs, "ARM", "COMMANDER", "COMMANDER");
    const int lab = AddUnit(defs, "CORE", "kbot lab", "PLANT");
    const int solar = AddUnit(defs, "ARM", "Solar", "ENERGY");
    AddUnit(defs, "CORE", "Commander", "COMMANDER");
    AddUnit(defs, "ARM", "Flash", "tank");
    AddUnit(defs, "GOK", "Odd", "");
    AddUnit(defs, "ARM", "Ship", "SHIP");
    AddUnit(defs, "ARM", "Sonar", "WATER");
    AddUnit(defs, "ARM", "Extractor", "METAL");
    defs.Units[solar].Include = false;

    const auto all = BuildSetRows(defs, "All");
    ASSERT_EQ(all.size(), 8u); // everything but the lower-case tank, in index order
    EXPECT_EQ(all[0].Text, "Arm Commander");
    EXPECT_EQ(all[1].Text, "Core Kbot Lab");
    EXPECT_EQ(all[1].Unit, lab);
    EXPECT_TRUE(all[1].Checked);
    EXPECT_FALSE(all[2].Checked);
    EXPECT_EQ(all[3].Text, "Core Commander");
    EXPECT_EQ(RowTexts(defs, "Vehicles"), (std::vector<std::string>{"Gok Odd"}));
    EXPECT_EQ(RowTexts(defs, "Resources"),
              (std::vector<std::string>{"Arm Solar", "Gok Odd", "Arm Extractor"}));
    EXPECT_EQ(RowTexts(defs, "Navy"),
              (std::vector<std::string>{"Gok Odd", "Arm Ship", "Arm Sonar"}));
    // An unknown caption lists nothing, not even the unit without a class.
    EXPECT_TRUE(BuildSetRows(defs, "Tanks").empty());
}

TEST(BuildSetRows, IncludeWriteThroughIgnoresBadRows) {
    Definitions defs;
    AddUnit(defs, "ARM", "Peewee", "KBOT");
    const int kbot = AddUnit(defs, "CORE", "AK", "KBOT");
    const auto rowUnits = RowUnitsOf(BuildSetRows(defs, "Kbots"));
    EXPECT_EQ(rowUnits, (std::vector<std::int32_t>{0, 1, kbot}));
    EXPECT_TRUE(SetRowInclude(defs, rowUnits, 1, false));
    EXPECT_FALSE(defs.Units[kbot].Include);
    EXPECT_FALSE(SetRowInclude(defs, rowUnits, -1, false));
    EXPECT_FALSE(SetRowInclude(defs, rowUnits, 2, false));
    EXPECT_FALSE(SetRowInclude(defs, {0, 99}, 0, false));
    EXPECT_EQ(defs.Units.UBound(), 2);
    EXPECT_TRUE(defs.Units[1].Include);
}

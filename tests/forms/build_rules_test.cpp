#include "forms/build_rules.h"

#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;
using vantrel::test::AddUnit;

namespace {
std::vector<std::string> RowTexts(const Definitions& defs, std::string_view caption) {
    std::vector<std::string> out;
    for (const BuildRow& r : BuildSetRows(defs, caption))
        out.push_back(r.Text);
    return out;
}
} // namespace

// The board's and the build set's "All" lists hold every keyword of the table.
TEST(BuildSetRows, EveryKeywordIsInTheAllLists) {
    for (const Category& c : Categories) {
        std::string_view list = c.Keywords;
        while (!list.empty()) {
            const std::size_t semi = std::min(list.find(';'), list.size());
            const std::string_view keyword = list.substr(0, semi);
            if (semi > 0) EXPECT_TRUE(InCategory(keyword, BuildSetKeywords("All"))) << keyword;
            if (semi > 0) EXPECT_TRUE(InCategory(keyword, CategoryKeywords("All"))) << keyword;
            list.remove_prefix(std::min(semi + 1, list.size()));
        }
    }
}

TEST(BuildSetRows, RowsOfACategory) {
    Definitions defs;
    AddUnit(defs, "ARM", "COMMANDER", "COMMANDER");
    const int lab = AddUnit(defs, "CORE", "kbot lab", "PLANT");
    defs.Units[lab].UnitName = "kbot lab"; // shown as it stands, unlike the name
    const int solar = AddUnit(defs, "ARM", "Solar", "ENERGY");
    AddUnit(defs, "CORE", "Commander", "COMMANDER");
    AddUnit(defs, "ARM", "Flash", "tank");
    AddUnit(defs, "GOK", "Odd", "");
    AddUnit(defs, "ARM", "Ship", "SHIP");
    AddUnit(defs, "ARM", "Sonar", "WATER");
    AddUnit(defs, "ARM", "Extractor", "METAL");
    defs.Units[solar].Include = false;

    const auto all = BuildSetRows(defs, "All");
    // Everything but the lower-case tank, by side, then name and UnitName.
    ASSERT_EQ(all.size(), 8u);
    EXPECT_EQ(all[0].Text, "Arm Commander (U1)");
    EXPECT_EQ(all[3].Text, "Arm Solar (U3)");
    EXPECT_FALSE(all[3].Checked);
    EXPECT_EQ(all[6].Text, "Core Kbot Lab (kbot lab)");
    EXPECT_EQ(all[6].Unit, lab);
    EXPECT_TRUE(all[6].Checked);
    EXPECT_EQ(RowTexts(defs, "Vehicles"), (std::vector<std::string>{"Gok Odd (U6)"}));
    EXPECT_EQ(RowTexts(defs, "Resources"),
              (std::vector<std::string>{"Arm Extractor (U9)", "Arm Solar (U3)",
                                        "Gok Odd (U6)"}));
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

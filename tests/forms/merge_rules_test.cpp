#include "forms/merge_rules.h"

#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;
using namespace vantrel::test;

TEST(MergeRows, FixedRowsThenTenPerFurtherSide) {
    Definitions defs;
    for (const char* side : {"ARM", "GOK", "core", "COR", "M", "Arm", "", "Big side"}) {
        defs.Races.Preserve(defs.Races.UBound() + 1);
        defs.Races[defs.Races.UBound()].Name = side;
    }
    const auto rows = MergeTraitRows(defs.Races);
    ASSERT_EQ(rows.size(), 40u);
    const char* expected[][2] = {{"0", "Arm Commanders"}, {"2", "Arm Aircraft"},
                                 {"9", "Arm Workers"},    {"10", "Core Commanders"},
                                 {"19", "Core Workers"},  {"20", "Gok Commanders"},
                                 {"29", "Gok Workers"},   {"34", "Big Side Navy"}};
    for (auto& e : expected)
        EXPECT_EQ(rows[std::stoul(e[0])].Text, e[1]);
    for (const auto& r : rows)
        EXPECT_FALSE(r.Checked);
    EXPECT_EQ(MergeLabelText("Rush", "Turtle AI"),
              "Merging Rush with Turtle AI.  Please select the traits you would like to use.");
}

TEST(MergeRows, SideWordEndsAtTheFirstBlank) {
    Trait t = SplitTraitRow("Big Side Kbots");
    EXPECT_EQ(t.Side, "Big");
    EXPECT_EQ(t.Category, "Side Kbots");
    t = SplitTraitRow("Gok  Commanders"); // a side name ending in a blank
    EXPECT_EQ(t.Side, "Gok");
    EXPECT_EQ(t.Category, "Commanders");
    EXPECT_EQ(MergeKeywords("Side Kbots"), "Side Kbots");
    EXPECT_EQ(MergeKeywords("All"), "All"); // not a trait
}

TEST(Merge, CheckedTraitsTakeOnlyWeightAndLimit) {
    Definitions defs;
    const int coreKbots[] = {AddUnit(defs, "CORE", "AK", "KBOT", 1, 2),
                             AddUnit(defs, "core", "Storm", "KBOT", 1, 2),
                             AddUnit(defs, "CORE", "Crasher", "kbot", 1, 2)};
    const int armKbot = AddUnit(defs, "ARM", "Peewee", "KBOT", 1, 2);
    const int coreTank = AddUnit(defs, "CORE", "Raider", "TANK", 1, 2);
    const int gok = AddUnit(defs, "GOK", "Grunt", "KBOT", 1, 2);
    const int gokLower = AddUnit(defs, "gok", "Runt", "KBOT", 1, 2); // the same side
    const int big = AddUnit(defs, "Big Side", "Walker", "KBOT", 1, 2);
    SetSavedValues(defs, 7.5f, 30);
    defs.SavedUnits[coreKbots[0]].Include = false;
    defs.SavedUnits[coreKbots[0]].Name = "Other";

    std::vector<TraitRow> rows = MergeTraitRows(defs.Races);
    for (auto& row : rows)
        row.Checked =
            row.Text == "Core Kbots" || row.Text == "Gok Kbots" || row.Text == "Big Side Kbots";
    RecordingProgress progress;
    progress.SetMaximum(500);
    progress.SetValue(123); // left over from an earlier use of the form
    MergeTraits(defs, rows, progress);

    for (int i : {coreKbots[0], coreKbots[1], coreKbots[2], gok, gokLower}) {
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 7.5f) << i;
        EXPECT_FLOAT_EQ(defs.Units[i].Limit, 30) << i;
    }
    // The side word of "Big Side Kbots" is only "Big": no unit comes over.
    for (int i : {armKbot, coreTank, big}) {
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 1) << i;
        EXPECT_FLOAT_EQ(defs.Units[i].Limit, 2) << i;
    }
    EXPECT_TRUE(defs.Units[coreKbots[0]].Include);
    EXPECT_EQ(defs.Units[coreKbots[0]].Name, "AK");
    // One step per row, checked or not.
    EXPECT_EQ(progress.Status(), "Merging Hybrid AI...");
    EXPECT_EQ(progress.Maximum(), 40);
    EXPECT_EQ(progress.Value(), 40);
    EXPECT_EQ(progress.repaints, 40);
    EXPECT_EQ(progress.shows, 1);
    EXPECT_FALSE(progress.visible);
}

TEST(Merge, ResourcesAndNavyKeywords) {
    Definitions defs;
    const int taken[] = {
        AddUnit(defs, "ARM", "Solar", "ENERGY"), AddUnit(defs, "ARM", "Extractor", "METAL"),
        AddUnit(defs, "ARM", "Ship", "SHIP"), AddUnit(defs, "ARM", "Sonar", "WATER")};
    const int kept[] = {AddUnit(defs, "ARM", "Lab", "PLANT"),
                        AddUnit(defs, "CORE", "Solar", "ENERGY")};
    SetSavedValues(defs, 3, 4);
    EXPECT_EQ(MergeTrait(defs, "Arm Resources"), 2);
    EXPECT_EQ(MergeTrait(defs, "Arm Navy"), 2);
    for (int i : taken)
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 3) << i;
    for (int i : kept)
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 0) << i;
}

TEST(Merge, ParentAIsGrowOncePerName) {
    Definitions defs;
    defs.Profile.LoadedAIName = "BigAI";
    AcceptMerge(defs);
    EXPECT_EQ(defs.Profile.ParentAIs, "BigAI, ");
    AcceptMerge(defs);         // the same profile again
    defs.Profile.LoadedAIName = "big"; // part of a listed name, in another case
    AcceptMerge(defs);
    EXPECT_EQ(defs.Profile.ParentAIs, "BigAI, ");
    defs.Profile.LoadedAIName = "Rush";
    AcceptMerge(defs);
    EXPECT_EQ(defs.Profile.ParentAIs, "BigAI, Rush, ");
}

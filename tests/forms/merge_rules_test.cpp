#include "forms/merge_rules.h"

#include "support/dialog_fixtures.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vantrel;
using vantrel::testing::AddUnit;
using vantrel::testing::RecordingProgress;
using vantrel::testing::SetSavedValues;

namespace {

std::vector<TraitRow> Checked(const Definitions& defs, std::initializer_list<const char*> texts) {
    std::vector<TraitRow> rows = MergeTraitRows(defs.Races);
    for (const char* text : texts) {
        auto it = std::find_if(rows.begin(), rows.end(),
                               [&](const TraitRow& r) { return r.Text == text; });
        EXPECT_NE(it, rows.end()) << text;
        if (it != rows.end()) it->Checked = true;
    }
    return rows;
}

std::vector<std::string> Texts(const std::vector<TraitRow>& rows) {
    std::vector<std::string> out;
    for (const auto& r : rows)
        out.push_back(r.Text);
    return out;
}

} // namespace

TEST(MergeRows, FixedRowsThenTenPerFurtherSide) {
    Definitions defs;
    for (const char* side : {"ARM", "GOK", "core", "COR", "M", "Arm", "", "Big side"})
        defs.Races[defs.Races.UBound() + 1].Name = side;
    const auto rows = MergeTraitRows(defs.Races);
    ASSERT_EQ(rows.size(), 40u);
    const auto texts = Texts(rows);
    EXPECT_EQ(texts[0], "Arm Commanders");
    EXPECT_EQ(texts[1], "Arm Defenses");
    EXPECT_EQ(texts[2], "Arm Aircraft");
    EXPECT_EQ(texts[9], "Arm Workers");
    EXPECT_EQ(texts[10], "Core Commanders");
    EXPECT_EQ(texts[19], "Core Workers");
    EXPECT_EQ(texts[20], "Gok Commanders");
    EXPECT_EQ(texts[29], "Gok Workers");
    EXPECT_EQ(texts[30], "Big Side Commanders");
    EXPECT_EQ(texts[34], "Big Side Navy");
    EXPECT_TRUE(
        std::none_of(rows.begin(), rows.end(), [](const TraitRow& r) { return r.Checked; }));
}

TEST(MergeRows, LabelAndSplit) {
    EXPECT_EQ(MergeLabelText("Rush", "Turtle AI"),
              "Merging Rush with Turtle AI.  Please select the traits you would like to use.");
    Trait t = SplitTraitRow("Big Side Kbots");
    EXPECT_EQ(t.Side, "Big");
    EXPECT_EQ(t.Category, "Side Kbots");
    t = SplitTraitRow("Gok  Commanders"); // side name ending in a blank
    EXPECT_EQ(t.Side, "Gok");
    EXPECT_EQ(t.Category, "Commanders");
    EXPECT_EQ(MergeKeywords("Resources"), "ENERGY;METAL;");
    EXPECT_EQ(MergeKeywords("Navy"), "SHIP;WATER");
    EXPECT_EQ(MergeKeywords("Side Kbots"), "Side Kbots");
    EXPECT_EQ(MergeKeywords("All"), "All");
}

TEST(Merge, CoreKbotsOnly) {
    Definitions defs;
    const int coreKbot = AddUnit(defs, "CORE", "AK", "KBOT", 1, 2);
    const int lowerSide = AddUnit(defs, "core", "Storm", "KBOT", 1, 2);
    const int lowerClass = AddUnit(defs, "CORE", "Crasher", "kbot", 1, 2);
    const int armKbot = AddUnit(defs, "ARM", "Peewee", "KBOT", 1, 2);
    const int coreTank = AddUnit(defs, "CORE", "Raider", "TANK", 1, 2);
    SetSavedValues(defs, 7.5f, 30);
    defs.SavedUnits[coreKbot].Include = false;
    defs.SavedUnits[coreKbot].Name = "Other";

    RecordingProgress progress;
    MergeTraits(defs, Checked(defs, {"Core Kbots"}), progress);

    for (int i : {coreKbot, lowerSide, lowerClass}) {
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 7.5f) << i;
        EXPECT_FLOAT_EQ(defs.Units[i].Limit, 30) << i;
    }
    for (int i : {armKbot, coreTank}) {
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 1) << i;
        EXPECT_FLOAT_EQ(defs.Units[i].Limit, 2) << i;
    }
    // Only the two numbers come over.
    EXPECT_TRUE(defs.Units[coreKbot].Include);
    EXPECT_EQ(defs.Units[coreKbot].Name, "AK");
}

TEST(Merge, ArmResourcesAndNavy) {
    Definitions defs;
    std::vector<int> taken = {
        AddUnit(defs, "ARM", "Solar", "ENERGY"), AddUnit(defs, "ARM", "Extractor", "METAL"),
        AddUnit(defs, "ARM", "Ship", "SHIP"), AddUnit(defs, "ARM", "Sonar", "WATER")};
    std::vector<int> kept = {AddUnit(defs, "ARM", "Lab", "PLANT"),
                             AddUnit(defs, "CORE", "Solar", "ENERGY"),
                             AddUnit(defs, "ARM", "Jeffy", "TANK")};
    SetSavedValues(defs, 3, 4);
    RecordingProgress progress;
    EXPECT_EQ(MergeTrait(defs, "Arm Resources"), 2);
    EXPECT_EQ(MergeTrait(defs, "Arm Navy"), 2);
    for (int i : taken)
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 3) << i;
    for (int i : kept)
        EXPECT_FLOAT_EQ(defs.Units[i].Weight, 0) << i;
}

TEST(Merge, FurtherSides) {
    Definitions defs;
    const int gok = AddUnit(defs, "GOK", "Grunt", "KBOT");
    const int big = AddUnit(defs, "Big Side", "Walker", "KBOT");
    SetSavedValues(defs, 5, 6);
    RecordingProgress progress;
    MergeTraits(defs, Checked(defs, {"Gok Kbots", "Big Side Kbots"}), progress);
    EXPECT_FLOAT_EQ(defs.Units[gok].Weight, 5);
    // The row's side word is only "Big": no unit of "Big Side" is taken over.
    EXPECT_FLOAT_EQ(defs.Units[big].Weight, 0);
    EXPECT_FLOAT_EQ(defs.Units[big].Limit, 0);
}

TEST(Merge, ParentAIsGrowOncePerName) {
    Definitions defs;
    const int unit = AddUnit(defs, "ARM", "Peewee", "KBOT", 1, 1);
    SetSavedValues(defs, 2, 2);
    defs.LoadedAIName = "BigAI";

    // OK with nothing checked: no unit changes, the name is still recorded.
    RecordingProgress progress;
    AcceptMerge(defs);
    MergeTraits(defs, MergeTraitRows(defs.Races), progress);
    EXPECT_TRUE(defs.DialogOK);
    EXPECT_EQ(defs.ParentAIs, "BigAI, ");
    EXPECT_FLOAT_EQ(defs.Units[unit].Weight, 1);

    defs.DialogOK = false;
    AcceptMerge(defs); // the same profile again
    EXPECT_TRUE(defs.DialogOK);
    EXPECT_EQ(defs.ParentAIs, "BigAI, ");
    defs.LoadedAIName = "big"; // part of a listed name, another case
    AcceptMerge(defs);
    EXPECT_EQ(defs.ParentAIs, "BigAI, ");
    defs.LoadedAIName = "Rush";
    AcceptMerge(defs);
    EXPECT_EQ(defs.ParentAIs, "BigAI, Rush, ");
}

TEST(Merge, ProgressCountsEveryRow) {
    Definitions defs;
    AddUnit(defs, "GOK", "Grunt", "KBOT");
    SetSavedValues(defs, 1, 1);
    RecordingProgress progress;
    progress.SetMaximum(500);
    progress.SetValue(123); // left over from an earlier use of the form
    const auto rows = Checked(defs, {"Arm Kbots"});
    MergeTraits(defs, rows, progress);
    EXPECT_EQ(progress.Status(), "Merging Hybrid AI...");
    EXPECT_EQ(progress.Maximum(), 30);
    EXPECT_EQ(progress.Value(), 30);
    EXPECT_EQ(progress.repaints, 30);
    EXPECT_EQ(progress.calls, (std::vector<std::string>{"Show", "Close"}));
}

#include "mainwindow/board_rules.h"

#include "support/test_support.h"
#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;
using test::AddUnit;

namespace {

struct BuildFixture : ::testing::Test {
    Definitions defs;
    test::ScriptedMessages messages;
    test::RecordingProgress progress;
    test::FixedGauge gauge;

    BoardBuild Build(const std::string& caption) {
        return BuildBoard(defs, caption, messages, progress, gauge);
    }
};

} // namespace

TEST(BoardRules, CandidatesOfTheSideInNaturalOrderThenUnitNameAndSharedNamesTitled) {
    Definitions defs;
    const char* names[] = {"Unit 10", "Peewee Vulcan", "commander", "Unit 2", "Peewee",
                           "Commander", "Rogue II", "Rogue", "Zeus"};
    for (const char* name : names)
        AddUnit(defs, "ARM", name, "KBOT");
    AddUnit(defs, "CORE", "Ak", "KBOT");
    defs.Units[9].Side = "arm";
    const std::vector<int> units = CollectCandidates(defs, "KBOT", "ARM");
    std::vector<std::string> titles = BoardTitles(defs, units);
    EXPECT_EQ(titles, (std::vector<std::string>{"commander (U3)", "Commander (U6)", "Peewee",
                                                "Peewee Vulcan", "Rogue", "Rogue II", "Unit 2",
                                                "Unit 10", "Zeus"}));
    EXPECT_EQ(KeywordsForMenuCaption("Vehicles"), "") << "menu captions carry the '&'";
}

TEST(BoardRules, MenuCaptionsGetTheFirstFreeLetter) {
    std::string taken;
    const std::pair<const char*, const char*> rows[] = {
        {"Arm", "&Arm"}, {"Core", "&Core"}, {"Cyborgs", "C&yborgs"}, {"R&D", "&R&&D"},
        {"Aryd", "Ary&d"}, {"ACR", "ACR"}};
    for (const auto& [caption, expected] : rows)
        EXPECT_EQ(WithMnemonic(caption, taken), expected) << caption;
}

TEST(BoardRules, MembershipIsASubstringOfTheKeywordList) {
    Definitions defs;
    int empty = AddUnit(defs, "ARM", "Blank", "");
    int tan = AddUnit(defs, "ARM", "Tan", "TAN");
    int energy = AddUnit(defs, "ARM", "Solar", "ENERGY");
    AddUnit(defs, "ARM", "Low", "kbot");
    auto indices = [&](std::string_view caption) {
        std::vector<int> out;
        for (int unit : CollectCandidates(defs, KeywordsForMenuCaption(caption), "ARM"))
            out.push_back(unit);
        std::sort(out.begin(), out.end());
        return out;
    };
    for (const Category& c : Categories) {
        std::vector<int> members = indices(c.MenuCaption);
        EXPECT_NE(std::count(members.begin(), members.end(), empty), 0) << c.MenuCaption;
    }
    EXPECT_EQ(indices("&Vehicles"), (std::vector<int>{empty, tan}));
    EXPECT_EQ(indices("&Resources"), (std::vector<int>{empty, energy}));
    EXPECT_EQ(indices("&Kbots"), (std::vector<int>{empty}));
}

TEST_F(BuildFixture, OnlyTheCurrentSideInAnyCaseGetsCards) {
    defs.CurrentSide = "ARM";
    int a = AddUnit(defs, "ARM", "Flash", "TANK", 2.5f, 4);
    int lower = AddUnit(defs, "arm", "Lower", "TANK", 1, 1);
    AddUnit(defs, "CORE", "Other", "TANK", 1, 1);
    int b = AddUnit(defs, "Arm", "Bulldog", "TANK");
    AddUnit(defs, "ARM", "Peewee", "KBOT");
    BoardBuild build = Build("&Vehicles");
    EXPECT_EQ(build.unitIndices, (std::vector<int>{b, a, lower}));
    EXPECT_FALSE(build.stoppedEarly);
    EXPECT_FALSE(defs.Profile.Changed) << "showing a unit never writes it";
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(progress.statuses.back(), "Getting units...");
    EXPECT_EQ(progress.Maximum(), 3);
    EXPECT_EQ(progress.Value(), 3) << "one step per card";
    EXPECT_EQ(progress.shows, 1);
}

TEST_F(BuildFixture, LowResourcesAskNoHalvesTheThresholdAndYesStops) {
    defs.CurrentSide = "ARM";
    for (int i = 0; i < 8; ++i)
        AddUnit(defs, "ARM", "U" + std::to_string(i), "KBOT");
    gauge.free = 1;
    // 20, 10, 5 and 2 are above 1: four questions, then the threshold is 1
    // and the figure is at it: a fifth; then 0 stops the asking.
    messages.answers = std::vector<MsgAnswer>(5, MsgAnswer::No);
    BoardBuild build = Build("&Kbots");
    EXPECT_FALSE(build.stoppedEarly);
    EXPECT_EQ(build.unitIndices.size(), 8u);
    ASSERT_EQ(messages.shown.size(), 5u);
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::YesNo);

    // Threshold 20 asks (No: 10), 10 is below 20: no more questions.
    gauge.free = 20;
    messages.shown.clear();
    messages.answers = {MsgAnswer::No, MsgAnswer::No, MsgAnswer::Yes};
    EXPECT_FALSE(Build("&Kbots").stoppedEarly);
    EXPECT_EQ(messages.shown.size(), 1u);

    gauge.free = 0;
    messages.shown.clear();
    messages.answers = {MsgAnswer::No, MsgAnswer::Yes};
    build = Build("&Kbots");
    EXPECT_TRUE(build.stoppedEarly);
    EXPECT_EQ(build.unitIndices.size(), 1u);
    ASSERT_EQ(messages.shown.size(), 3u);
    EXPECT_EQ(messages.shown[2].buttons, MsgButtons::OK); // the closing notice
    EXPECT_GE(progress.closes, 1);
}

TEST(BoardRules, RowsInViewAndTheScrollThatShowsARow) {
    struct Row {
        int top, height, rows;
        int first, last;
    };
    const Row cases[] = {{0, 400, 100, 0, 4},     {90, 90, 100, 1, 1},
                         {8700, 400, 100, 96, 99}, {0, 400, 0, 0, -1},
                         {9000, 400, 100, 0, -1}, {0, 0, 100, 0, -1}};
    for (const Row& c : cases) {
        RowSpan s = VisibleRows(c.top, c.height, 90, c.rows);
        EXPECT_EQ(s.first, c.first) << c.top << ", " << c.rows;
        EXPECT_EQ(s.last, c.last) << c.top << ", " << c.rows;
    }
    // Bringing a row into view scrolls as little as needed.
    EXPECT_EQ(ScrollShowingRow(4, 0, 90, 400), 5 * 90 - 400) << "to the bottom edge";
    EXPECT_EQ(ScrollShowingRow(2, 500, 90, 400), 180) << "to the top edge";
    EXPECT_EQ(ScrollShowingRow(1, 0, 90, 400), 0) << "already in view";
    EXPECT_EQ(ScrollShowingRow(3, 0, 90, 60), 270) << "taller than the view: its top";
    EXPECT_EQ(StepRow(11, CardStep::Next, 12), 11);
    EXPECT_EQ(StepRow(0, CardStep::Previous, 12), 0);
    EXPECT_EQ(StepRow(3, CardStep::Last, 12), 11);
    EXPECT_EQ(StepRow(0, CardStep::First, 0), -1);
}

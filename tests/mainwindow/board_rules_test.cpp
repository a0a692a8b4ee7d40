#include "mainwindow/board_rules.h"

#include "support/test_support.h"
#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;
using test::AddUnit;

namespace {

std::vector<std::string> Texts(const std::vector<SortedEntry>& entries) {
    std::vector<std::string> out;
    for (const auto& e : entries)
        out.push_back(e.text);
    return out;
}

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

TEST(BoardRules, EntriesNameSideNameAndIndex) {
    vtUnit u;
    u.Side = "ARM";
    u.Name = "FLASH";
    EXPECT_EQ(SortEntry(u, 12), "Arm Flash;12");
    EXPECT_EQ(EntryUnitIndex("Arm Flash;12"), 12);
    EXPECT_EQ(EntryUnitIndex("Arm Big;Gun;7"), 0) << "a ';' in a name is not provided for";
    EXPECT_EQ(EntryUnitIndex("no index"), 0);
    EXPECT_EQ(KeywordsForMenuCaption("Vehicles"), "") << "menu captions carry the '&'";
}

TEST(BoardRules, CandidatesSortBySideThenNameIgnoringCaseThenIndexText) {
    Definitions defs;
    for (int i = 1; i <= 8; ++i)
        AddUnit(defs, "filler", "CORE", "SHIP");
    AddUnit(defs, "Zeus", "CORE", "KBOT");  // 9
    AddUnit(defs, "Peewee", "ARM", "KBOT"); // 10
    AddUnit(defs, "peewee", "ARM", "KBOT"); // 11
    AddUnit(defs, "ak", "CORE", "KBOT");    // 12
    AddUnit(defs, "Rocko", "arm", "KBOT");  // 13
    defs.Units[9].Name = "Peewee";
    defs.Units[9].Side = "ARM";
    EXPECT_EQ(Texts(CollectCandidates(defs, "KBOT")),
              (std::vector<std::string>{"Arm Peewee;10", "Arm Peewee;11", "Arm Peewee;9",
                                        "Arm Rocko;13", "Core Ak;12"}));
}

TEST(BoardRules, MembershipIsASubstringOfTheKeywordList) {
    Definitions defs;
    int empty = AddUnit(defs, "Blank", "ARM", "");
    int tan = AddUnit(defs, "Tan", "ARM", "TAN");
    int energy = AddUnit(defs, "Solar", "ARM", "ENERGY");
    int lower = AddUnit(defs, "Low", "ARM", "kbot");
    auto indices = [&](std::string_view caption) {
        std::vector<int> out;
        for (const auto& e : CollectCandidates(defs, KeywordsForMenuCaption(caption)))
            out.push_back(e.unitIndex);
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
    (void)lower;
}

TEST_F(BuildFixture, OnlyTheCurrentSideInAnyCaseGetsCards) {
    defs.CurrentSide = "ARM";
    int a = AddUnit(defs, "Flash", "ARM", "TANK", 2.5f, 4);
    int lower = AddUnit(defs, "Lower", "arm", "TANK", 1, 1);
    AddUnit(defs, "Other", "CORE", "TANK", 1, 1);
    int b = AddUnit(defs, "Bulldog", "Arm", "TANK");
    AddUnit(defs, "Peewee", "ARM", "KBOT");
    BoardBuild build = Build("&Vehicles");
    EXPECT_EQ(build.unitIndices, (std::vector<int>{b, a, lower}));
    EXPECT_FALSE(build.declined);
    EXPECT_FALSE(build.stoppedEarly);
    EXPECT_EQ(defs.BoardTop, 3 * 1365);
    EXPECT_FALSE(defs.Changed) << "showing a unit never writes it";
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(progress.statuses.back(), "Getting units...");
    EXPECT_EQ(progress.Maximum(), 5);
    EXPECT_EQ(progress.Value(), 4) << "one step per candidate of every side";
    EXPECT_EQ(progress.shows, 1);
}

TEST_F(BuildFixture, AllAsksFirstAndNoLeavesEverythingAlone) {
    defs.CurrentSide = "ARM";
    AddUnit(defs, "Flash", "ARM", "TANK", 0.125f, 2);
    messages.answers = {MsgAnswer::No};
    BoardBuild build = Build("&All");
    EXPECT_TRUE(build.declined);
    EXPECT_TRUE(build.unitIndices.empty());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(progress.shows, 0);
    EXPECT_FLOAT_EQ(defs.Units[1].Weight, 0.125f);
    EXPECT_FALSE(defs.Changed);

    BoardBuild yes = Build("&All");
    EXPECT_EQ(yes.unitIndices, (std::vector<int>{1}));
    EXPECT_FLOAT_EQ(defs.Units[1].Weight, 0.125f) << "shown as it is";

    // A refresh of the board the player accepted does not ask again.
    messages.shown.clear();
    EXPECT_EQ(BuildBoard(defs, "&All", messages, progress, gauge, false).unitIndices.size(), 1u);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(BuildFixture, LowResourcesAskNoHalvesTheThresholdAndYesStops) {
    defs.CurrentSide = "ARM";
    for (int i = 0; i < 8; ++i)
        AddUnit(defs, "U" + std::to_string(i), "ARM", "KBOT");
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

TEST(BoardRules, TwelveCardsInAWindow6000HighAndTheirScrolling) {
    EXPECT_EQ(LaidOutBoardTop(12), 16200);
    ScrollSettings s = BoardScroll(LaidOutBoardTop(12), 6000);
    EXPECT_EQ(s.Min, -255);
    EXPECT_EQ(s.Max, 10455);
    EXPECT_EQ(s.Value, -255);
    EXPECT_TRUE(s.Enabled);
    EXPECT_EQ(s.CardAreaHeight, 32400);

    // A board that fits below the banner (or is empty) has no range.
    for (int cards : {0, 1, 3}) {
        ScrollSettings fits = BoardScroll(LaidOutBoardTop(cards), 9000, 300);
        EXPECT_EQ(fits.Max, -300) << cards;
        EXPECT_FALSE(fits.Enabled) << cards;
    }
    EXPECT_TRUE(BoardScroll(LaidOutBoardTop(7), 9000, 300).Enabled) << "9450 is taller than 8700";

    // Scroll value 0 shows the first card at the banner.
    EXPECT_EQ(CardAreaTop(-255), 255);
    EXPECT_EQ(CardAreaTop(0), -255);
    EXPECT_EQ(CardAreaTop(1), -1);

    // Bringing a row into view scrolls as little as needed, within the range.
    EXPECT_EQ(ScrollShowingRow(4, -255, s, 6000), 4 * 1350 + 1350 - 6000) << "to the bottom edge";
    EXPECT_EQ(ScrollShowingRow(2, 5000, s, 6000), 2 * 1350 - 255) << "to the banner";
    EXPECT_EQ(ScrollShowingRow(1, -255, s, 6000), -255) << "already in view";
    EXPECT_EQ(ScrollShowingRow(0, 5000, s, 6000), -255);
    EXPECT_EQ(ScrollShowingRow(11, -255, s, 6000), 12 * 1350 - 6000);
    EXPECT_EQ(StepRow(11, CardStep::Next, 12), 11);
    EXPECT_EQ(StepRow(0, CardStep::Previous, 12), 0);
    EXPECT_EQ(StepRow(3, CardStep::Last, 12), 11);
    EXPECT_EQ(StepRow(0, CardStep::First, 0), -1);
}

TEST(BoardRules, VisibleRowsMeetTheWindowAndTheArea) {
    struct Row {
        int top, height, rows, area;
        int first, last;
    };
    const Row cases[] = {
        {0, 6000, 100, 270000, 0, 4},    {-255, 6000, 100, 270000, 0, 4},
        {1350, 1350, 100, 270000, 1, 1}, {130000, 6000, 100, 270000, 96, 99},
        {0, 6000, 100, 2000, 0, 1}, // the area clips its rows
    };
    for (const Row& c : cases) {
        RowSpan s = VisibleRows(c.top, c.height, 1350, c.rows, c.area);
        EXPECT_EQ(s.first, c.first) << c.top << ", " << c.area;
        EXPECT_EQ(s.last, c.last) << c.top << ", " << c.area;
    }
    RowSpan none = VisibleRows(0, 6000, 1350, 0, 2000);
    EXPECT_GT(none.first, none.last);
}

TEST(BoardRules, SystemFiguresArePercentages) {
    for (int v : {MemoryFreePercent(), HandlesFreePercent()}) {
        EXPECT_GE(v, 0);
        EXPECT_LE(v, 100);
    }
    SystemResourceGauge gauge;
    EXPECT_EQ(gauge.FreePercent(ResourceKind::Graphics), 100);
}

#include "mainwindow/randomize.h"

#include "support/command_fakes.h"
#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using namespace vantrel;

namespace {

struct RandomizeFixture : ::testing::Test {
    Definitions defs;
    test::ScriptedMessages messages;
    vantrel::testing::FixedClock clock;
    DefaultRandom random;

    void AddUnits(int n) {
        for (int i = 0; i < n; ++i)
            test::AddUnit(defs, i % 3 ? "ARM" : "CORE", "U" + std::to_string(i),
                          i % 2 ? "KBOT" : "NOTHING", 0.0f, 0.0f, i % 5 != 0);
    }
};

} // namespace

TEST_F(RandomizeFixture, EveryUnitGetsAWeightAndLimitInRange) {
    AddUnits(4000);
    EXPECT_TRUE(Randomize(defs, messages, clock, random));
    EXPECT_FALSE(defs.Profile.Changed);
    std::map<int, int> limits;
    float lowest = 100, highest = 0;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& u = defs.Units[i];
        ASSERT_GE(u.Weight, 1.0f) << i;
        ASSERT_LE(u.Weight, 10.0f) << i;
        double hundredths = static_cast<double>(u.Weight) * 100.0;
        ASSERT_NEAR(hundredths, std::round(hundredths), 1e-3) << u.Weight;
        ASSERT_EQ(u.Limit, std::floor(u.Limit));
        ASSERT_GE(u.Limit, 1.0f);
        ASSERT_LE(u.Limit, 11.0f);
        ++limits[static_cast<int>(u.Limit)];
        lowest = std::min(lowest, u.Weight);
        highest = std::max(highest, u.Weight);
    }
    // Spread over the whole range although the clock never moved.
    EXPECT_LT(lowest, 1.1f);
    EXPECT_GT(highest, 9.9f);
    EXPECT_EQ(limits.size(), 11u);
    for (const auto& [value, count] : limits)
        if (value != 6) EXPECT_LT(count, limits[6]) << value << " beats 6";
}

TEST_F(RandomizeFixture, ValuesStayWithinTheMaximaOfTheOptions) {
    AddUnits(50);
    defs.Options.WeightMax = 2;
    defs.Options.LimitMax = 6;
    test::SequenceRandom scripted({0.0, 0.999, 0.0, 0.5, 0.5, 0.5, 0.999999, 0.0, 0.999});
    messages.answers = {MsgAnswer::No}; // No leaves every value as it was
    EXPECT_FALSE(Randomize(defs, messages, clock, scripted));
    EXPECT_EQ(messages.shown.at(0).buttons, MsgButtons::YesNo);
    EXPECT_FLOAT_EQ(defs.Units[1].Limit, 0.0f);
    EXPECT_TRUE(scripted.seeds.empty());
    ASSERT_TRUE(Randomize(defs, messages, clock, scripted));
    EXPECT_FLOAT_EQ(defs.Units[1].Weight, 1.0f);
    EXPECT_FLOAT_EQ(defs.Units[1].Limit, 6.0f); // 0 * 6 + 5.994 -> 0 + 5 + 1
    EXPECT_FLOAT_EQ(defs.Units[2].Weight, 1.5f);
    EXPECT_FLOAT_EQ(defs.Units[2].Limit, 6.0f) << "7 is above LimitMax";
    EXPECT_FLOAT_EQ(defs.Units[3].Weight, 2.0f) << "the top is WeightMax";
    EXPECT_FLOAT_EQ(defs.Units[3].Limit, 6.0f);
    ASSERT_EQ(scripted.seeds.size(), 50u);
    EXPECT_NE(scripted.seeds[1], scripted.seeds[2]) << "equal clock readings, different seeds";
}

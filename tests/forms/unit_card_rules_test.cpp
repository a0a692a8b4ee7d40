#include "forms/unit_card_rules.h"

#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

using namespace vantrel;

TEST(UnitCardRules, SlidersStepAHundredthAndATenthOfTheirRangeAndPositionsAreClamped) {
    struct Row {
        SliderSettings s;
        int max, large, small;
    };
    // 15 / 10 = 1.5 and 25 / 10 = 2.5 go to the even neighbour; no step is 0.
    const Row rows[] = {{PrioritySettings(10), 1000, 100, 10}, {PrioritySettings(1), 100, 10, 1},
                        {PrioritySettings(0), 0, 1, 1},        {NumbersSettings(50), 50, 5, 1},
                        {NumbersSettings(15), 15, 2, 1},       {NumbersSettings(25), 25, 2, 1},
                        {NumbersSettings(3), 3, 1, 1}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.max);
        EXPECT_EQ(r.s.Max, r.max);
        EXPECT_EQ(r.s.LargeChange, r.large);
        EXPECT_EQ(r.s.SmallChange, r.small);
        EXPECT_EQ(r.s.TickFrequency, r.large);
    }
    // Positions are hundredths of the weight and whole limits, within range.
    const SliderSettings p = PrioritySettings(10);
    const std::pair<float, int> weights[] = {
        {2.5f, 250}, {0.125f, 12}, {0.375f, 38}, {15.0f, 1000}, {-3.0f, 0}};
    for (const auto& [weight, position] : weights)
        EXPECT_EQ(PriorityPosition(weight, p), position) << weight;
    EXPECT_EQ(NumbersPosition(12.5f, NumbersSettings(50)), 12);
    EXPECT_EQ(NumbersPosition(80.0f, NumbersSettings(50)), 50);
    // A wheel notch is a small step, kept within the range.
    EXPECT_EQ(SliderWheelPosition(250, 2, p), 270);
    EXPECT_EQ(SliderWheelPosition(5, -1, p), 0);
    EXPECT_EQ(SliderWheelPosition(995, 3, p), 1000);
    EXPECT_EQ(RoundHalfEven(-0.5), 0);
    EXPECT_EQ(RoundHalfEven(1e30), std::numeric_limits<int>::max());
}

TEST(UnitCardRules, EditsWriteOnlyAChangedValueAndThenSetChanged) {
    Definitions defs;
    int a = test::AddUnit(defs, "ARM", "A", "KBOT", 0.125f, 3.0f);
    EXPECT_FALSE(ApplyNumbersPosition(defs, defs.Units[a], 3));
    EXPECT_FALSE(defs.Profile.Changed) << "the same value is no change";
    EXPECT_TRUE(ApplyPriorityPosition(defs, defs.Units[a], 12));
    EXPECT_TRUE(defs.Profile.Changed);
    EXPECT_FLOAT_EQ(defs.Units[a].Weight, 0.12f);
}

TEST(UnitCardRules, EntryNumbersAreDecimalsWithAPoint) {
    EXPECT_DOUBLE_EQ(*EntryNumber("2.35"), 2.35);
    EXPECT_DOUBLE_EQ(*EntryNumber(".5"), 0.5);
    EXPECT_DOUBLE_EQ(*EntryNumber("12."), 12.0);
    for (const char* none : {"", ".", "1.2.3", "1e5", "-3", "abc", " 4"})
        EXPECT_FALSE(EntryNumber(none)) << none;
}

TEST(UnitCardRules, CommitsCapTruncateOrRoundAndRewriteTheText) {
    const SliderSettings p = PrioritySettings(10);
    const SliderSettings n = NumbersSettings(50);
    enum Field { Weight, LimitOnEnter, LimitOnLeaving };
    struct Row {
        Field field;
        std::string text;
        int expected; // -1: nothing to commit
        std::string textAfter;
    };
    const Row rows[] = {{Weight, "30", 1000, "10"},           {Weight, "2.35", 235, "2.35"},
                        {Weight, "0.125", 12, "0.125"},       {Weight, ".", -1, "."},
                        {LimitOnEnter, "12.7", 12, "12"},     {LimitOnEnter, "", -1, ""},
                        {LimitOnLeaving, "12.7", 13, "12.7"}, {LimitOnLeaving, "12.5", 12, "12.5"},
                        {LimitOnLeaving, "80.5", 50, "50"}};
    for (const Row& r : rows) {
        SCOPED_TRACE(::testing::Message() << "field " << r.field << ", text " << r.text);
        std::string text = r.text;
        const std::optional<int> got = r.field == Weight
                                           ? CommitWeightText(text, p)
                                           : CommitLimitText(text, n, r.field == LimitOnEnter);
        EXPECT_EQ(got.value_or(-1), r.expected);
        EXPECT_EQ(text, r.textAfter);
    }
}

TEST(UnitCardRules, ManualPriorityIsLimitedTo0Through255) {
    const std::pair<const char*, int> rows[] = {{"300", 255}, {"12", 12},  {" 7 ", 7},
                                                {"0.4", 0},   {"-5", 0},   {"1e9", 255},
                                                {"", -1},     {"abc", -1}, {"12abc", -1}};
    for (const auto& [answer, expected] : rows)
        EXPECT_EQ(ManualPriority(answer).value_or(-1), expected) << answer;
}

TEST(UnitCardRules, NamesCompareWithoutCaseAndDigitRunsAsNumbers) {
    const std::tuple<const char*, const char*, int> rows[] = {
        {"Peewee", "Peewee Vulcan", -1}, {"Rogue", "Rogue II", -1}, {"Unit 2", "Unit 10", -1},
        {"unit 10", "Unit 10", 0},       {"Unit 007", "Unit 7", 0}, {"Unit 9", "Unit 08", 1},
        {"Zeus", "ak", 1},               {"A2b", "A2a", 1},         {"", "A", -1},
        {"99999999999999999999", "100000000000000000000", -1}};
    for (const auto& [a, b, expected] : rows) {
        EXPECT_EQ(NaturalCompare(a, b), expected) << a << " : " << b;
        EXPECT_EQ(NaturalCompare(b, a), -expected) << b << " : " << a;
    }
}

TEST(UnitCardRules, TextKeepsItsColourOnlyWhereItReads) {
    EXPECT_NEAR(ContrastRatio(Black, White), 21.0, 1e-9);
    const Rgb mid{160, 160, 160}, face{239, 239, 239}, dark{32, 93, 132};
    EXPECT_EQ(ReadableText(mid, face), Black) << "light grey on grey is about 1.9:1";
    EXPECT_EQ(ReadableText(dark, White), White);
    EXPECT_EQ(ReadableText(dark, Black), White);
}

#include "forms/unit_card_rules.h"

#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

using namespace vantrel;

TEST(UnitCardRules, RoundingGoesToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-0.5), 0);
    EXPECT_EQ(RoundHalfEven(1e30), std::numeric_limits<int>::max());
}

TEST(UnitCardRules, SliderStepsAreTenthsRoundedHalfToEvenAndPositionsAreClamped) {
    struct Row {
        SliderSettings s;
        int max, large, small, tick;
    };
    // 25 / 10 = 2.5 gives 2, 15 / 10 = 1.5 gives 2, 5 / 10 = 0.5 gives 0.
    const Row rows[] = {{PrioritySettings(10), 1000, 1, 0, 100},
                        {PrioritySettings(25), 2500, 2, 0, 250},
                        {NumbersSettings(50), 50, 5, 0, 5},
                        {NumbersSettings(15), 15, 2, 0, 2},
                        {NumbersSettings(150), 150, 15, 2, 15}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.max);
        EXPECT_EQ(r.s.Max, r.max);
        EXPECT_EQ(r.s.LargeChange, r.large);
        EXPECT_EQ(r.s.SmallChange, r.small);
        EXPECT_EQ(r.s.TickFrequency, r.tick);
    }
    // Positions are hundredths of the weight and whole limits, within range.
    const SliderSettings p = PrioritySettings(10);
    const std::pair<float, int> weights[] = {
        {2.5f, 250}, {0.125f, 12}, {0.375f, 38}, {15.0f, 1000}, {-3.0f, 0}};
    for (const auto& [weight, position] : weights)
        EXPECT_EQ(PriorityPosition(weight, p), position) << weight;
    EXPECT_EQ(NumbersPosition(12.5f, NumbersSettings(50)), 12);
    EXPECT_EQ(NumbersPosition(80.0f, NumbersSettings(50)), 50);
}

TEST(UnitCardRules, EditsWriteOnlyAChangedValueAndThenSetChanged) {
    Definitions defs;
    int a = test::AddUnit(defs, "A", "ARM", "KBOT", 0.125f, 3.0f);
    EXPECT_FALSE(ApplyNumbersPosition(defs, defs.Units[a], 3));
    EXPECT_FALSE(defs.Changed) << "the same value is no change";
    EXPECT_TRUE(ApplyPriorityPosition(defs, defs.Units[a], 12));
    EXPECT_TRUE(defs.Changed);
    EXPECT_FLOAT_EQ(defs.Units[a].Weight, 0.12f);
}

TEST(UnitCardRules, SliderKeysAddTheTableStepThenTheTrackbarStep) {
    SliderSettings p = PrioritySettings(10);
    auto press = [](int value, int key, bool priority, const SliderSettings& s) {
        return SliderKeyPosition(value, key, priority, s);
    };
    EXPECT_EQ(press(250, KeyPageUp, true, p), 350);
    EXPECT_EQ(press(250, KeyPageDown, true, p), 150);
    EXPECT_EQ(press(250, KeyUp, true, p), 260);
    EXPECT_EQ(press(250, KeyRight, true, p), 251);
    EXPECT_EQ(press(995, KeyPageUp, true, p), 999);
    EXPECT_EQ(press(5, KeyDown, true, p), 0);
    SliderSettings n = NumbersSettings(50);
    EXPECT_EQ(press(20, KeyPageUp, false, n), 25); // +10 then the page step of 5 back
    EXPECT_EQ(press(20, KeyPageDown, false, n), 15);
    EXPECT_EQ(SliderKeyDelta(36, true), 0); // Home: the slider's own handling only
}

TEST(UnitCardRules, EntryFilterTakesDigitsOneDotBackspaceAndEnter) {
    const std::tuple<int, const char*, KeyVerdict> rows[] = {{8, "12", KeyVerdict::Accept},
                                                             {13, "12", KeyVerdict::Commit},
                                                             {'7', "12", KeyVerdict::Accept},
                                                             {'.', "12", KeyVerdict::Accept},
                                                             {'.', "1.5", KeyVerdict::Cancel}};
    for (const auto& [key, text, verdict] : rows)
        EXPECT_EQ(FilterEntryKey(key, text), verdict) << key << " after " << text;
    for (int c : {'-', '+', 'a', 'e', ',', ' '})
        EXPECT_EQ(FilterEntryKey(c, ""), KeyVerdict::Cancel);
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

TEST(UnitCardRules, LayoutStretchesTheTopRowAndSlidersToTheCard) {
    CardLayout c = LayOutCard(6000, 1350);
    EXPECT_EQ(c.lblPriority.Left, 6000 - 855 - 250);
    EXPECT_EQ(c.sldNumbers.Width, 6000 - 1200);
    EXPECT_EQ(c.lblExclude.Left, (6000 - 1200) / 2);
    // Too narrow for the sliders: their width step is skipped, the rest runs.
    CardLayout narrow = LayOutCard(900, 1350, c);
    EXPECT_EQ(narrow.sldPriority.Width, 4800);
    EXPECT_EQ(narrow.sldPriority.Left, 900 - 4800);
    EXPECT_EQ(narrow.lblUnitName.Width, 900);
}

TEST(UnitCardRules, TwipsConvertAtFifteenPerPixel) {
    EXPECT_EQ(TwipsToPixels(1365), 91);
    EXPECT_EQ(TwipsToPixels(255), 17);
    EXPECT_EQ(PixelsToTwips(400), 6000);
}

TEST(UnitCardRules, TextKeepsItsColourOnlyWhereItReads) {
    EXPECT_NEAR(ContrastRatio(Black, White), 21.0, 1e-9);
    const Rgb mid{160, 160, 160}, face{239, 239, 239}, dark{32, 93, 132};
    EXPECT_EQ(ReadableText(mid, face), Black) << "light grey on grey is about 1.9:1";
    EXPECT_EQ(ReadableText(dark, White), White);
    EXPECT_EQ(ReadableText(dark, Black), White);
}

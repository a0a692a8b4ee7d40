#include "forms/unit_card_rules.h"

#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;

TEST(UnitCardRules, RoundingGoesToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-0.5), 0);
    EXPECT_EQ(RoundHalfEven(1e30), std::numeric_limits<int>::max());
}

TEST(UnitCardRules, SliderSettingsFollowTheOptions) {
    SliderSettings p = PrioritySettings(10);
    EXPECT_EQ(p.Max, 1000);
    EXPECT_EQ(p.LargeChange, 1);
    EXPECT_EQ(p.SmallChange, 0);
    EXPECT_EQ(p.TickFrequency, 100);
    SliderSettings n = NumbersSettings(50);
    EXPECT_EQ(n.Max, 50);
    EXPECT_EQ(n.LargeChange, 5);
    EXPECT_EQ(n.SmallChange, 0); // 0.5 rounds to 0
    EXPECT_EQ(n.TickFrequency, 5);
    // Halves to even: 25 / 10 = 2.5 gives 2; 15 / 10 = 1.5 gives 2.
    EXPECT_EQ(PrioritySettings(25).LargeChange, 2);
    EXPECT_EQ(PrioritySettings(25).TickFrequency, 250);
    EXPECT_EQ(NumbersSettings(15).LargeChange, 2);
    EXPECT_EQ(NumbersSettings(15).TickFrequency, 2);
    EXPECT_EQ(NumbersSettings(150).SmallChange, 2);
}

TEST(UnitCardRules, PositionsComeInHundredthsAndWithinRange) {
    SliderSettings p = PrioritySettings(10);
    EXPECT_EQ(PriorityPosition(2.5f, p), 250);
    EXPECT_EQ(PriorityPosition(0.125f, p), 12);
    EXPECT_EQ(PriorityPosition(0.375f, p), 38);
    EXPECT_EQ(PriorityPosition(15.0f, p), 1000);
    EXPECT_EQ(PriorityPosition(-3.0f, p), 0);
    EXPECT_EQ(NumbersPosition(12.5f, NumbersSettings(50)), 12);
    EXPECT_EQ(NumbersPosition(80.0f, NumbersSettings(50)), 50);
}

TEST(UnitCardRules, FillBringsTheUnitToTheSlidersAndSetsChanged) {
    Definitions defs;
    int a = test::AddUnit(defs, "A", "ARM", "KBOT", 0.125f, 3.0f);
    int b = test::AddUnit(defs, "B", "ARM", "KBOT", 0.375f, 70.0f);
    int z = test::AddUnit(defs, "Z", "ARM", "KBOT", 0.0f, 0.0f);
    FillUnit(defs, z, PrioritySettings(defs), NumbersSettings(defs));
    EXPECT_FALSE(defs.Changed) << "sliders that stay at 0 do not notify";
    FillUnit(defs, a, PrioritySettings(defs), NumbersSettings(defs));
    EXPECT_TRUE(defs.Changed);
    EXPECT_FLOAT_EQ(defs.Units[a].Weight, 0.12f);
    EXPECT_FLOAT_EQ(defs.Units[a].Limit, 3.0f);
    FillUnit(defs, b, PrioritySettings(defs), NumbersSettings(defs));
    EXPECT_FLOAT_EQ(defs.Units[b].Weight, 0.38f);
    EXPECT_FLOAT_EQ(defs.Units[b].Limit, 50.0f);
}

TEST(UnitCardRules, SliderKeysAddTheTableStepThenTheTrackbarStep) {
    SliderSettings p = PrioritySettings(10);
    auto press = [&](int value, int key, bool priority, const SliderSettings& s) {
        value = s.Clamp(value + SliderKeyDelta(key, priority));
        return s.Clamp(value + TrackbarStep(key, s));
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
    EXPECT_EQ(FilterEntryKey(8, "12"), KeyVerdict::Accept);
    EXPECT_EQ(FilterEntryKey(13, "12"), KeyVerdict::Commit);
    EXPECT_EQ(FilterEntryKey('7', "12"), KeyVerdict::Accept);
    EXPECT_EQ(FilterEntryKey('.', "12"), KeyVerdict::Accept);
    EXPECT_EQ(FilterEntryKey('.', "1.5"), KeyVerdict::Cancel);
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

TEST(UnitCardRules, WeightCommitCapsAtTheSliderMax) {
    SliderSettings p = PrioritySettings(10);
    std::string text = "30";
    EXPECT_EQ(CommitWeightText(text, p), 1000);
    EXPECT_EQ(text, "10");
    text = "2.35";
    EXPECT_EQ(CommitWeightText(text, p), 235);
    EXPECT_EQ(text, "2.35");
    text = "0.125";
    EXPECT_EQ(CommitWeightText(text, p), 12);
    text = ".";
    EXPECT_FALSE(CommitWeightText(text, p));
    text = "";
    EXPECT_FALSE(CommitWeightText(text, p));
}

TEST(UnitCardRules, LimitCommitTruncatesOnEnterAndRoundsOnLeaving) {
    SliderSettings n = NumbersSettings(50);
    std::string text = "12.7";
    EXPECT_EQ(CommitLimitText(text, n, true), 12);
    EXPECT_EQ(text, "12");
    text = "12.7";
    EXPECT_EQ(CommitLimitText(text, n, false), 13);
    EXPECT_EQ(text, "12.7");
    text = "12.5";
    EXPECT_EQ(CommitLimitText(text, n, false), 12);
    text = "80.5";
    EXPECT_EQ(CommitLimitText(text, n, false), 50);
    EXPECT_EQ(text, "50");
    text = "";
    EXPECT_FALSE(CommitLimitText(text, n, true));
}

TEST(UnitCardRules, ManualPriorityIsLimitedTo0Through255) {
    EXPECT_EQ(ManualPriority("300"), 255);
    EXPECT_EQ(ManualPriority("12"), 12);
    EXPECT_EQ(ManualPriority(" 7 "), 7);
    EXPECT_EQ(ManualPriority("0.4"), 0);
    EXPECT_EQ(ManualPriority("-5"), 0);
    EXPECT_EQ(ManualPriority("1e9"), 255);
    EXPECT_FALSE(ManualPriority(""));
    EXPECT_FALSE(ManualPriority("abc"));
    EXPECT_FALSE(ManualPriority("12abc"));
}

TEST(UnitCardRules, LayoutStretchesTheTopRowAndSlidersToTheCard) {
    CardLayout c = LayOutCard(6000, 1350);
    EXPECT_EQ(c.Frame1.Width, 6000);
    EXPECT_EQ(c.Frame1.Height, 1350);
    EXPECT_EQ(c.Frame1.Top, 0);
    EXPECT_EQ(c.lblUnitName.Width, 6000);
    EXPECT_EQ(c.lblPriority.Left, 6000 - 855 - 250);
    EXPECT_EQ(c.lblNumbers.Left, 6000 - 1290 - 250);
    EXPECT_EQ(c.sldPriority.Width, 6000 - 1200);
    EXPECT_EQ(c.sldNumbers.Width, 6000 - 1200);
    EXPECT_EQ(c.sldPriority.Left, 1200);
    EXPECT_EQ(c.lblExclude.Left, (6000 - 1200) / 2);
    EXPECT_EQ(c.lblExclude.Top, 675);
    // Too narrow for the sliders: their width step is skipped, the rest runs.
    CardLayout narrow = LayOutCard(900, 1350, c);
    EXPECT_EQ(narrow.sldPriority.Width, 4800);
    EXPECT_EQ(narrow.sldPriority.Left, 900 - 4800);
    EXPECT_EQ(narrow.lblUnitName.Width, 900);
}

TEST(UnitCardRules, TwipsConvertAtFifteenPerPixel) {
    EXPECT_EQ(TwipsToPixels(1350), 90);
    EXPECT_EQ(TwipsToPixels(1365), 91);
    EXPECT_EQ(TwipsToPixels(255), 17);
    EXPECT_EQ(PixelsToTwips(400), 6000);
}

#include "startup/options.h"

#include <gtest/gtest.h>

using namespace vantrel;

TEST(Options, DefaultsOnAFreshInstallation) {
    Definitions defs;
    defs.AppDir = "/opt/v/";
    MemorySettingsStore store;
    ReadOptions(defs, store);
    std::array<std::int32_t, 8> expected{0, 50, 75, 100, 10, 50, 0, 0};
    EXPECT_EQ(defs.OptionValues, expected);
    EXPECT_EQ(defs.LastDir, "/opt/v/");
}

TEST(Options, StoredValuesAndFallbacks) {
    Definitions defs;
    MemorySettingsStore store;
    store.Set("EasyLimit", "-1");      // negative numbers are fine
    store.Set("MediumLimit", "40000"); // out of 16-bit range: default
    store.Set("HardLimit", "12.5");    // not whole: default
    store.Set("WeightMax", " 20 ");
    store.Set("LimitMax", "abc");
    store.Set("Extract", "1");
    store.Set("Random", "-1");
    store.Set("LastDir", "/data/ai/");
    ReadOptions(defs, store);
    EXPECT_EQ(defs.OptionValues[optEasyLimit], -1);
    EXPECT_EQ(defs.OptionValues[optMediumLimit], 75);
    EXPECT_EQ(defs.OptionValues[optHardLimit], 100);
    EXPECT_EQ(defs.OptionValues[optWeightMax], 20);
    EXPECT_EQ(defs.OptionValues[optLimitMax], 50);
    EXPECT_TRUE(defs.OptionOn(optExtract));
    EXPECT_TRUE(defs.OptionOn(optRandom));
    EXPECT_EQ(defs.LastDir, "/data/ai/");
    EXPECT_EQ(ParseOption16("-32768"), -32768);
    EXPECT_EQ(ParseOption16("32768"), std::nullopt);
    EXPECT_EQ(ParseOption16(""), std::nullopt);
}

TEST(Options, WriteStoresAllSevenAsDecimalText) {
    Definitions defs;
    defs.OptionValues = {0, 1, 2, 3, 4, 5, 1, 0};
    MemorySettingsStore store;
    WriteOptions(defs, store);
    EXPECT_EQ(store.Get("EasyLimit", ""), "1");
    EXPECT_EQ(store.Get("Extract", ""), "1");
    EXPECT_EQ(store.Get("Random", ""), "0");
}

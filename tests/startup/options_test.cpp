#include "startup/options.h"

#include <gtest/gtest.h>

using namespace vantrel;

TEST(Options, StoredValuesAndFallbacks) {
    Definitions defs;
    defs.AppDir = "/opt/v/";
    MemorySettingsStore store;
    ReadOptions(defs, store);
    EXPECT_EQ(defs.LastDir, "/opt/v/"); // nothing stored yet: the program folder
    store.Set("EasyLimit", "-1");       // negative numbers are fine
    store.Set("MediumLimit", "40000");  // out of 16-bit range: default
    store.Set("HardLimit", "12.5");     // not whole: default
    store.Set("WeightMax", " 20 ");
    store.Set("LimitMax", "abc");
    store.Set("Extract", "1");
    store.Set("Random", "-1");
    store.Set("LastDir", "/data/ai/");
    defs.Options = {7, 7, 7, 7, 7, false, false}; // fallbacks come from the defaults
    ReadOptions(defs, store);
    EXPECT_EQ(defs.Options, (Options{-1, 75, 100, 20, 50, true, true}));
    EXPECT_EQ(defs.LastDir, "/data/ai/");
    EXPECT_EQ(ParseOption16("-32768"), -32768);
    EXPECT_EQ(ParseOption16("32768"), std::nullopt);
    EXPECT_EQ(ParseOption16(""), std::nullopt);
}

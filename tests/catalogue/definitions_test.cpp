#include "base/text.h"
#include "catalogue/definitions.h"

#include <gtest/gtest.h>

using namespace vantrel;

TEST(Catalogue, RecordArraysGrowOnlyThroughDimAndPreserve) {
    Definitions defs;
    EXPECT_EQ(defs.Units.UBound(), 0);
    const auto& saved = defs.SavedUnits;
    EXPECT_EQ(saved[5].Name, "");
    EXPECT_FALSE(saved[5].Include);
    EXPECT_EQ(saved.UBound(), 0); // reading does not grow
    defs.Units.Dim(2);
    defs.Units[2].Name = "X";
    // A write past the end is a programming error: it asserts in debug builds;
    // in release builds it lands in a scratch record and the array keeps its size.
    EXPECT_DEBUG_DEATH(defs.Units[3].Name = "stray", "outside 0..2");
    EXPECT_DEBUG_DEATH(defs.Units[-1].Name = "stray", "outside 0..2");
    EXPECT_EQ(defs.Units.UBound(), 2);
    defs.Units.Preserve(3);
    EXPECT_EQ(defs.Units[2].Name, "X");
    EXPECT_EQ(defs.Units[3].Name, ""); // the stray write went nowhere
    defs.Units.Dim(3);                 // clears what was there
    EXPECT_EQ(defs.Units[2].Name, "");
}

TEST(Text, ProperCaseStartsWordsAfterEveryBlankKind) {
    EXPECT_EQ(ProperCase("a\tb\nc\vd\fe\rf"), "A\tB\nC\vD\fE\rF");
    EXPECT_EQ(ProperCase(std::string("x\0y", 3)), std::string("X\0Y", 3));
    EXPECT_EQ(ProperCase("o'NEIL-SMITH 2nd"), "O'neil-smith 2nd");
    EXPECT_EQ(ProperCase("ARMCOMMANDER@[`{Z\xC4\xE4 LONGNAME_WITH_99"),
              "Armcommander@[`{z\xC4\xE4 Longname_with_99");

}

TEST(Text, ShortestFloatText) {
    EXPECT_EQ(FloatText(10.0f), "10");
    EXPECT_EQ(FloatText(0.12f), "0.12");
    EXPECT_EQ(FloatText(-0.0f), "0");
}

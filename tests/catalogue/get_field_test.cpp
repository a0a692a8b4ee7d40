#include "catalogue/load_units.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using namespace vantrel;

TEST(GetField, ValuesOccurrencesAndMissingDelimiters) {
    // The value between the delimiters, untrimmed.
    EXPECT_EQ(GetFieldInText("Side= ARM ;", "Side=", 1, "=", ";"), " ARM ");
    EXPECT_EQ(GetFieldInText("Auth: Joe // rest", "Auth:", 1, ":", "//"), " Joe ");
    const std::string text = "UnitName=ARMCOM;\r\nName=Commander;\r\n";
    // The first "Name=" is the tail of "UnitName=".
    EXPECT_EQ(GetFieldInText(text, "Name=", 1, "=", ";"), "ARMCOM");
    EXPECT_EQ(GetFieldInText(text, "Name=", 2, "=", ";"), "Commander");
    // Found once: the second search fails, the third starts over from the beginning.
    EXPECT_EQ(GetFieldInText("Side=ARM;", "Side=", 2, "=", ";"), "");
    EXPECT_EQ(GetFieldInText("Side=ARM;", "Side=", 3, "=", ";"), "ARM");
    // Occurrence 0 counts as 1.
    EXPECT_EQ(GetFieldInText("Side=ARM;", "Side=", 0, "=", ";"), "ARM");
    // A missing key is empty, a missing delimiter fails.
    EXPECT_EQ(GetFieldInText("Side=ARM;", "TEDClass=", 1, "=", ";"), "");
    EXPECT_EQ(GetFieldInText("Side=ARM", "Side=", 1, "=", ";"), std::nullopt);
    EXPECT_EQ(GetFieldInText("Auth: nobody", "Auth:", 1, ":", "//"), std::nullopt);
    // The key is matched case-sensitively, also inside longer keys.
    EXPECT_EQ(GetFieldInText("Objectname=X;", "Name=", 1, "=", ";"), "");
    // A field without its semicolon runs to the next one.
    EXPECT_EQ(GetFieldInText("Side=ARM\r\nTEDClass=KBOT;", "Side=", 1, "=", ";"),
              "ARM\r\nTEDClass=KBOT");
}

TEST(GetField, ReadsFilesAndFailsOnUnreadableOnes) {
    test::TempDir dir;
    test::WriteText(dir / "a.fbi", "Side=CORE;");
    EXPECT_EQ(GetField(dir / "a.fbi", "Side=", 1, "=", ";"), "CORE");
    EXPECT_EQ(GetField(dir / "missing.fbi", "Side=", 1, "=", ";"), std::nullopt);
    EXPECT_EQ(GetField(dir.path(), "Side=", 1, "=", ";"), std::nullopt); // a folder
}

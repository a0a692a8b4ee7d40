#include "base/paths.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace vantrel;

TEST(Paths, TrimNullAndStripPathCleanNameBuffers) {
    EXPECT_EQ(TrimNull(std::string(255, ' ')), "");
    EXPECT_EQ(TrimNull(std::string("abc\0   ", 7)), "abc");
    EXPECT_EQ(TrimNull("abc  "), "abc");
    EXPECT_EQ(TrimNull(std::string("a b\0c", 5)), "a b");
    // StripPath removes NULs and keeps the tail.
    std::string s = "no separator";
    EXPECT_EQ(StripPath(s), "no separator");
    s = "C:\\AI\\";
    EXPECT_EQ(StripPath(s), "");
    s = std::string(" inflating: Units\\armcom.fbi\0", 29);
    EXPECT_EQ(StripPath(s), "armcom.fbi");
    EXPECT_EQ(s, " inflating: Units\\armcom.fbi"); // the argument is cleaned in place
    s = "/home/me/Rusher.txt";
    EXPECT_EQ(StripPath(s), "Rusher.txt");
}

TEST(Paths, WildcardsIgnoreCaseAndListingIsSortedWithoutFolders) {
    EXPECT_TRUE(WildcardMatch("*.fbi", "ARMCOM.FBI"));
    EXPECT_TRUE(WildcardMatch("*.gp?", "x.gp3"));
    EXPECT_FALSE(WildcardMatch("*.gp?", "x.gp"));
    EXPECT_FALSE(WildcardMatch("*.fbi", "armcom.fbi.bak"));
    EXPECT_TRUE(WildcardMatch("*", ""));
    EXPECT_TRUE(WildcardMatch("a*b*c", "aXXbYYc"));

    test::TempDir dir;
    for (const char* n : {"b.fbi", "B.FBI", "a.fbi", "_x.fbi", "Z.fbi"})
        test::WriteText(dir / n, "");
    std::filesystem::create_directory(dir / "c.fbi");
    // Letters compared as upper case ('_' sorts after 'Z'), ties in byte order.
    EXPECT_EQ(ListFiles(dir.path(), "*.fbi"),
              (std::vector<std::string>{"a.fbi", "B.FBI", "b.fbi", "Z.fbi", "_x.fbi"}));
    EXPECT_TRUE(ListFiles(dir / "missing", "*").empty());
}

TEST(Paths, ProgramFolderHasExactlyOneTrailingSeparator) {
    EXPECT_EQ(WithTrailingSep("/"), "/");
    EXPECT_EQ(WithTrailingSep("/opt/vantrel/"), "/opt/vantrel/");
    EXPECT_EQ(ChooseProgramFolder("/opt/v", true, "", "/home/u"), "/opt/v/");
    EXPECT_EQ(ChooseProgramFolder("/usr/bin", false, "", "/home/u"),
              "/home/u/.local/share/vantrel/");
    EXPECT_EQ(ChooseProgramFolder("/usr/bin", false, "/xdg", "/home/u"), "/xdg/vantrel/");
    // Installed programs never write beside themselves, even as root.
    EXPECT_EQ(ChooseProgramFolder("/usr/bin", true, "", "/root"), "/root/.local/share/vantrel/");
    EXPECT_EQ(ChooseProgramFolder("/usr/local/bin", true, "/xdg", "/root"), "/xdg/vantrel/");
    EXPECT_EQ(ChooseProgramFolder("/usrx/v", true, "", "/home/u"), "/usrx/v/");
}

#include "base/paths.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

using namespace vantrel;

TEST(Paths, TrimNullAndStripPathCleanNameBuffers) {
    EXPECT_EQ(TrimNull(std::string(255, ' ')), "");
    EXPECT_EQ(TrimNull(std::string("abc\0   ", 7)), "abc");
    EXPECT_EQ(TrimNull("abc  "), "abc");
    EXPECT_EQ(TrimNull(std::string("a b\0c", 5)), "a b");
    // StripPath keeps the tail and cleans its argument in place.
    const std::pair<std::string, std::string> rows[] = {
        {"no separator", "no separator"},
        {"C:\\AI\\", ""},
        {std::string(" inflating: Units\\armcom.fbi\0", 29), "armcom.fbi"},
        {"/home/me/Rusher.txt", "Rusher.txt"}};
    for (auto [path, tail] : rows)
        EXPECT_EQ(StripPath(path), tail) << path;
    std::string s(" inflating: Units\\armcom.fbi\0", 29);
    StripPath(s);
    EXPECT_EQ(s, " inflating: Units\\armcom.fbi");
}

TEST(Paths, WildcardsIgnoreCaseAndListingIsSortedWithoutFolders) {
    const std::tuple<const char*, const char*, bool> rows[] = {
        {"*.fbi", "ARMCOM.FBI", true}, {"*.gp?", "x.gp3", true}, {"*.gp?", "x.gp", false},
        {"*.fbi", "armcom.fbi.bak", false}, {"*", "", true}, {"a*b*c", "aXXbYYc", true}};
    for (const auto& [pattern, name, match] : rows)
        EXPECT_EQ(WildcardMatch(pattern, name), match) << pattern << " " << name;

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

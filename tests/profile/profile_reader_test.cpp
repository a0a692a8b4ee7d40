#include "profile/profile.h"
#include "profile/profile_reader.h"
#include "support/profile_support.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using test::Crlf;
using test::WriteBytes;

class Reader : public ::testing::Test {
  protected:
    void Units(const std::vector<test::UnitSpec>& units) { test::FillCatalogue(rig.defs, units); }
    std::string Write(const std::string& name, const std::string& lfText) {
        std::string path = dir / name;
        WriteBytes(path, Crlf(lfText));
        return path;
    }
    vtUnit& U(int i) { return rig.defs.Units[i]; }
    vtUnit& S(int i) { return rig.defs.SavedUnits[i]; }

    test::ScratchDir dir;
    test::ProfileRig rig;
};

TEST_F(Reader, SavedProfileOpensAgainWithItsBuildSet) {
    Units({{"ARMCOM", "COMMANDER", true, 1.5f, 1},
           {"ARMCK", "CNSTR", true, 2, 10},
           {"ARMSOLAR", "ENERGY", false, 1, 5},
           {"ARMLLT", "FORT", true, 0.75f, 25}});
    rig.fields.SetBanner("Test AI");
    SaveAI(rig.ctx, dir / "Test.txt");
    for (int i = 1; i <= 4; ++i)
        U(i) = {U(i).Name, U(i).UnitName, U(i).TEDClass, "", "", 9, 9, true, true};
    ReadAI(rig.ctx, dir / "Test.txt", false);
    EXPECT_EQ(U(1).Weight, 1.5f);
    EXPECT_EQ(U(1).Limit, 1.0f);
    EXPECT_EQ(U(2).Weight, 2.0f);
    EXPECT_EQ(U(2).Limit, 10.0f);
    EXPECT_EQ(U(3).Weight, 0.0f); // excluded: in no section, but still excluded
    EXPECT_EQ(U(3).Limit, 0.0f);
    EXPECT_FALSE(U(3).Include);
    EXPECT_TRUE(U(4).Include);
    EXPECT_EQ(U(4).Limit, 25.0f);
    EXPECT_EQ(rig.defs.LoadedAIName, "Test AI");
    EXPECT_EQ(rig.fields.AIName(), "Test");
    EXPECT_EQ(rig.fields.Banner(), "Test AI");
    EXPECT_EQ(rig.fields.Author(), "N/A");
}

// The name index is kept between reads: renaming, adding or reordering
// units must not leave a read looking up the old names.
TEST_F(Reader, ReadsFollowTheCatalogueAsItChanges) {
    Write("p.txt", "Weight ARMCK 2\nWeight ARMLLT 3\nWeight CORAK 4\nplan hard\n"
                   "Limit ARMCK 5\nLimit ARMLLT 6\nLimit CORAK 7\n");
    Units({{"ARMCK", "CNSTR", true, 0, 0}, {"ARMLLT", "FORT", true, 0, 0}});
    ReadAI(rig.ctx, dir / "p.txt", false);
    EXPECT_EQ(U(2).Weight, 3.0f);
    U(2).UnitName = "CORAK";
    ReadAI(rig.ctx, dir / "p.txt", false);
    EXPECT_EQ(U(2).Weight, 4.0f);
    EXPECT_EQ(U(2).Limit, 7.0f);
    Units({{"CORAK", "KBOT", true, 0, 0}, {"ARMLLT", "FORT", true, 0, 0},
           {"ARMCK", "CNSTR", true, 0, 0}});
    ReadAI(rig.ctx, dir / "p.txt", true);
    EXPECT_EQ(S(1).Weight, 4.0f);
    EXPECT_EQ(S(2).Limit, 6.0f);
    EXPECT_EQ(S(3).Limit, 5.0f);
}

TEST_F(Reader, HardPlanValueIsWhatComesBack) {
    Units({{"ARMCK", "CNSTR", true, 2, 10}});
    rig.defs.OptionValues[optHardLimit] = 90;
    SaveAI(rig.ctx, dir / "A.txt");
    ReadAI(rig.ctx, dir / "A.txt", false);
    EXPECT_EQ(U(1).Limit, 9.0f);
    SaveAI(rig.ctx, dir / "A.txt");
    ReadAI(rig.ctx, dir / "A.txt", false);
    EXPECT_FLOAT_EQ(U(1).Limit, 8.1f);
}

TEST_F(Reader, ClampsInBothModes) {
    Units({{"A", "KBOT"}, {"B", "KBOT"}, {"C", "KBOT"}});
    std::string path = Write("c.txt", "Weight A 12\nWeight B 10\nWeight C -3\n"
                                      "plan hard\nLimit A 60\nLimit B 50\nLimit C -1.5\n");
    for (bool merge : {false, true}) {
        ReadAI(rig.ctx, path, merge);
        RecordArray<vtUnit>& got = merge ? rig.defs.SavedUnits : rig.defs.Units;
        EXPECT_EQ(got[1].Weight, 10.0f);
        EXPECT_EQ(got[2].Weight, 10.0f);
        EXPECT_EQ(got[3].Weight, -3.0f); // values at or below the bound stand as read
        EXPECT_EQ(got[1].Limit, 50.0f);
        EXPECT_EQ(got[2].Limit, 50.0f);
        EXPECT_EQ(got[3].Limit, -1.5f);
    }
    std::string seven = Write("w.txt", "Weight A 7\nWeight B 15\n");
    rig.defs.OptionValues[optWeightMax] = 5;
    ReadAI(rig.ctx, seven, false);
    ReadAI(rig.ctx, seven, true);
    EXPECT_EQ(U(1).Weight, 5.0f);
    EXPECT_EQ(S(1).Weight, 5.0f);
    rig.defs.OptionValues[optWeightMax] = 20;
    ReadAI(rig.ctx, seven, false);
    EXPECT_EQ(U(2).Weight, 15.0f);
}

TEST_F(Reader, LookUpRules) {
    Units({{"ARMCOM", "COMMANDER"}, {"armllt", "FORT"}, {"CORAK", "KBOT"}, {"MISSING", "KBOT"}});
    // Prefix match in the hard plan; a lower-case name found only before the
    // hard plan is not found by the exact fallback, an upper-case one is.
    std::string path = Write("p.txt", "plan easy\nLimit Armllt 4\nLimit Corak 6\n"
                                      "Plan Hard\nLimit Armcomx 3\nLimit Armcom 2\n"
                                      "weight corak 1.5;\nWEIGHT ARMLLT abc\n");
    ReadAI(rig.ctx, path, false);
    EXPECT_EQ(U(1).Limit, 3.0f);
    EXPECT_EQ(U(2).Limit, 0.0f);
    EXPECT_EQ(U(3).Limit, 6.0f);
    EXPECT_EQ(U(3).Weight, 10.0f); // "1.5;" is not numeric: 15, clamped to 10
    EXPECT_EQ(U(2).Weight, 0.0f);  // "abc"
    EXPECT_EQ(U(4).Weight, 0.0f);

    // Without "PLAN HARD" the first LIMIT anywhere counts.
    ReadAI(rig.ctx, Write("n.txt", "Limit ARMCOM 4\nLimit ARMCOM 5\n"), false);
    EXPECT_EQ(U(1).Limit, 4.0f);

    // "plan hard" in the header moves the start of the search there: every
    // limit then comes from the easy plan.
    Units({{"ARMCK", "CNSTR", true, 2, 10}});
    rig.fields.SetBanner("My Plan Hard AI");
    SaveAI(rig.ctx, dir / "h.txt");
    ReadAI(rig.ctx, dir / "h.txt", false);
    EXPECT_EQ(U(1).Limit, 5.0f);
    EXPECT_EQ(rig.fields.AIName(), "My Plan Hard");
}

TEST_F(Reader, HeaderFieldsAndNames) {
    Units({});
    // "//" ends the field; opening keeps the first line, merging joins lines.
    std::string path = Write("h.txt", "Auth:  Ann \nNext // rest\nName: MAIN AI\n");
    ReadAI(rig.ctx, path, true);
    EXPECT_EQ(rig.defs.LoadedAIName, "MAIN AI");
    EXPECT_EQ(rig.fields.Author(), "N/A"); // merging leaves the fields alone
    EXPECT_EQ(HeaderField(test::ReadBytes(path), "Auth:", HeaderForm::Joined), "Ann Next");
    ReadAI(rig.ctx, path, false);
    EXPECT_EQ(rig.fields.Author(), "Ann");
    EXPECT_EQ(rig.fields.AIName(), "MN");
    EXPECT_EQ(rig.fields.Banner(), "MN AI");
    EXPECT_EQ(HeaderField("auth: x\r\nAuth:", "Auth:", HeaderForm::FirstLine), "");
    EXPECT_EQ(HeaderField("Name:a//b", "Name:", HeaderForm::FirstLine), "a");

    // No "Name:" and an empty author: the file-name default and "N/A".
    ReadAI(rig.ctx, Write("Rusher.txt", "Auth:   \nWeight X 1\n"), false);
    EXPECT_EQ(rig.defs.LoadedAIName, "Rusher");
    EXPECT_EQ(rig.fields.Banner(), "Rusher AI");
    EXPECT_EQ(rig.fields.Author(), "N/A");
    ReadAI(rig.ctx, Write("ab", ""), true);
    EXPECT_EQ(rig.defs.LoadedAIName, "");
    EXPECT_EQ(FileNameDefault("C:\\Profiles\\Rusher.txt"), "Rusher");
}

TEST_F(Reader, MergeFillsSavedUnitsOnly) {
    Units({{"ARMCOM", "COMMANDER", true, 1, 2}, {"ARMCK", "CNSTR", false, 3, 4}});
    WriteBytes(dir / "m.set", Crlf("[ARMCOM]\nSet=Don't Build;\n"));
    ReadAI(rig.ctx, Write("m.txt", "Name: Other AI\nWeight ARMCOM 5\nplan hard\nLimit ARMCK 7\n"),
           true);
    EXPECT_EQ(rig.defs.SavedUnits.UBound(), 2);
    EXPECT_EQ(S(1).Weight, 5.0f);
    EXPECT_EQ(S(1).Limit, 0.0f);
    EXPECT_EQ(S(2).Limit, 7.0f);
    EXPECT_EQ(S(2).TEDClass, "CNSTR");
    EXPECT_FALSE(S(2).Include);
    EXPECT_TRUE(U(1).Include); // the build set is not read when merging
    EXPECT_EQ(U(1).Weight, 1.0f);
    EXPECT_EQ(rig.defs.LoadedAIName, "Other AI");
    EXPECT_EQ(rig.fields.AIName(), "New");
}

TEST_F(Reader, ProgressAndStatus) {
    std::vector<test::UnitSpec> ten(10, {"X", "KBOT"});
    Units(ten);
    ReadAI(rig.ctx, Write("p.txt", ""), false);
    EXPECT_EQ(rig.progress.Status(), "Processing... 'p.txt'");
    EXPECT_EQ(rig.progress.Maximum(), 10);
    EXPECT_EQ(rig.progress.values, (std::vector<int>{0, 2, 5, 9, 10}));
}

TEST_F(Reader, TessalyFiles) {
    Units({{"ARMCOM", "COMMANDER", false}, {"ARMCK", "CNSTR"}, {"CORAK", "KBOT"}});
    std::string path = Write("t.tsy", "// Name: Tess AI //\n"
                                      "[armcom;]\nweight=2.5\nLIMIT=7\n"
                                      "[ARMCK]\nWeight=3\nLimit=3\n"
                                      "[CORAK;]\nWeight=x1y\nLimit=99\n");
    ReadTessalyAI(rig.ctx, path, false);
    EXPECT_EQ(U(1).Weight, 2.5f);
    EXPECT_EQ(U(1).Limit, 7.0f);
    EXPECT_EQ(U(2).Weight, 0.0f); // "[ARMCK]" lacks the ";"
    EXPECT_EQ(U(2).Limit, 0.0f);
    EXPECT_EQ(U(3).Weight, 1.0f); // not a number: its digits
    EXPECT_EQ(U(3).Limit, 50.0f);
    EXPECT_FALSE(U(1).Include); // no t.set: flags stay
    EXPECT_EQ(rig.fields.AIName(), "Tess");

    WriteBytes(dir / "t.set", Crlf("[ARMCOM]\nSet=Build;\n[ARMCK]\nSet=don't build;\n"
                                   "[CORAK]\nSet=Don't Build\n"));
    ReadTessalyAI(rig.ctx, path, false);
    EXPECT_TRUE(U(1).Include);
    EXPECT_FALSE(U(2).Include);
    EXPECT_TRUE(U(3).Include); // without ";" the unit is included
    ReadTessalyAI(rig.ctx, path, true);
    EXPECT_EQ(S(1).Weight, 2.5f);
    EXPECT_EQ(rig.defs.LoadedAIName, "Tess AI");
}

TEST_F(Reader, BuildSetPathsAndSharedSections) {
    EXPECT_EQ(BuildSetPath("C:\\AI\\Rusher.txt"), "C:\\AI\\Rusher.set");
    EXPECT_EQ(BuildSetPath("/ai/MyAI"), "/ai/.set");
    EXPECT_EQ(BuildSetPath("/ai/AB"), "/a.set");
    EXPECT_EQ(BuildSetPath("AB"), ".set");
    Units({{"ARMCOM", "COMMANDER"}, {"ARMCOM", "COMMANDER"}, {"CORAK", "KBOT", false}});
    WriteBytes(dir / ".set", Crlf("[ARMCOM]\nSet=DON'T BUILD;\n[ARMCOM]\nSet=Build;\n"));
    ReadAI(rig.ctx, Write("MyAI", ""), false);
    EXPECT_FALSE(U(1).Include);
    EXPECT_FALSE(U(2).Include);
    EXPECT_TRUE(U(3).Include); // no section: included
}

TEST_F(Reader, UnreadableFileChangesNothing) {
    Units({{"ARMCOM", "COMMANDER", false, 3, 4}});
    WriteBytes(dir / "gone.set", Crlf("[ARMCOM]\nSet=Build;\n"));
    try {
        ReadAI(rig.ctx, dir / "gone.txt", false);
        FAIL() << "no error";
    } catch (const ProfileError& e) {
        EXPECT_EQ(std::string(e.what()),
                  "Cannot read '" + (dir / "gone.txt") + "': No such file or directory.");
    }
    EXPECT_THROW(ReadTessalyAI(rig.ctx, dir.path(), true), ProfileError);
    EXPECT_FALSE(U(1).Include);
    EXPECT_EQ(U(1).Weight, 3.0f);
}

TEST_F(Reader, NoUnitsStillTakesTheHeader) {
    Units({});
    ReadAI(rig.ctx, Write("z.txt", "Name: Zed AI\nAuth: Zoe"), false);
    EXPECT_EQ(rig.fields.AIName(), "Zed");
    EXPECT_EQ(rig.fields.Author(), "Zoe");
}

TEST_F(Reader, BadBytesNeverBreakTheReaders) {
    Units({{"ARMCOM", "COMMANDER"}, {"", "KBOT"}, {std::string("A\0B", 3), "KBOT"}});
    std::string binary;
    for (int i = 0; i < 4096; ++i)
        binary.push_back(static_cast<char>((i * 37) ^ (i >> 3)));
    binary += std::string("WEIGHT A\0B 4\0\r\nPLAN HARD LIMIT  9", 32);
    WriteBytes(dir / "bin.txt", binary);
    ReadAI(rig.ctx, dir / "bin.txt", false);
    EXPECT_EQ(U(3).Weight, 4.0f); // "4\0" is not numeric: its digit
    ReadTessalyAI(rig.ctx, dir / "bin.txt", true);

    // 100 MB without a single line end.
    std::string big;
    big.reserve(100u << 20);
    while (big.size() < (100u << 20))
        big += "weight armcom 1e999 limit ARMCOM ";
    WriteBytes(dir / "big.txt", big);
    ReadAI(rig.ctx, dir / "big.txt", false);
    EXPECT_EQ(U(1).Weight, 10.0f);
    EXPECT_EQ(U(1).Limit, 50.0f);
}

} // namespace
} // namespace vantrel

#include "base/staged_file.h"
#include "profile/profile.h"
#include "profile/profile_numbers.h"
#include "profile/profile_writer.h"
#include "support/profile_support.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace vantrel {
namespace {

using test::Crlf;
using test::ReadBytes;
using test::WriteBytes;

// The catalogue and settings of the worked example of the profile format.
void WorkedExample(test::ProfileRig& rig) {
    test::FillCatalogue(rig.defs, {{"ARMCOM", "COMMANDER", true, 1.5f, 1},
                                   {"ARMCK", "CNSTR", true, 2, 10},
                                   {"ARMSOLAR", "ENERGY", false, 1, 5},
                                   {"ARMLLT", "FORT", true, 0.75f, 25}});
    rig.defs.Options.EasyLimit = 50;
    rig.defs.Options.MediumLimit = 75;
    rig.defs.Options.HardLimit = 100;
    rig.fields.SetAuthor("N/A");
    rig.fields.SetBanner("Test AI");
}

std::string PlanBlock(const std::string& heading, const std::string& ck, const std::string& com,
                      const std::string& llt) {
    return "\n\n" + heading + "\n\n/ Workers /\n\nLimit Armck " + ck +
           "\n\n/ Commanders /\n\nLimit Armcom " + com +
           "\n\n/ Aircraft /\n\n\n/ Tanks /\n\n\n/ Kbots /\n\n\n"
           "/ Ships, Sub, And Water-units /\n\n\n/ Defense /\n\nLimit Armllt " +
           llt + "\n\n/ Resources /\n\n\n/ Plants /\n\n\n/ Specialized Units /\n";
}

const std::string ExampleFile =
    Crlf("/ -----------------------------------------------------\n"
         "Date: 11-19-2026\n"
         "Auth: N/A\n"
         "Name: Test AI\n"
         "Used: Vantrel Build 1.1.0\n"
         " -----------------------------------------------------/\n"
         "\n"
         "/ Build Priorities  /\n"
         "/ Workers /\n\nWeight Armck 2\n\n"
         "/ Commanders /\n\nWeight Armcom 1.5\n\n"
         "/ Aircraft /\n\n\n/ Tanks /\n\n\n/ Kbots /\n\n\n"
         "/ Ships, Sub, And Water-units /\n\n\n"
         "/ Defense /\n\nWeight Armllt 0.75\n\n"
         "/ Resources /\n\n\n/ Plants /\n\n\n/ Specialized Units /\n" +
         PlanBlock("Plan Easy", "5", "0", "12") + PlanBlock("Plan Medium", "7", "0", "18") +
         PlanBlock("Plan Hard", "10", "1", "25") + "\n");

const std::string ExampleBuildSet = Crlf("[BUILD SET]\nAiName=Test AI;\n"
                                         "[ARMCOM]\nSet=Build;\n\n"
                                         "[ARMCK]\nSet=Build;\n\n"
                                         "[ARMSOLAR]\nSet=Don't Build;\n\n"
                                         "[ARMLLT]\nSet=Build;\n\n");

TEST(SaveAI, WritesTheWorkedExampleByteForByte) {
    // 145 lines, each ending in CR LF, the last one empty.
    ASSERT_EQ(std::count(ExampleFile.begin(), ExampleFile.end(), '\n'), 145);
    test::ScratchDir dir;
    test::ProfileRig rig;
    WorkedExample(rig);
    SaveAI(rig.ctx, dir / "Test.txt");
    EXPECT_EQ(ReadBytes(dir / "Test.txt"), ExampleFile);
    EXPECT_EQ(ReadBytes(dir / "Test.set"), ExampleBuildSet);
    // No temporary file is left behind, and a second save gives the same bytes.
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"Test.set", "Test.txt"}));
    SaveAI(rig.ctx, dir / "Test.txt");
    EXPECT_EQ(ReadBytes(dir / "Test.txt"), ExampleFile);

    // Progress of both saves; the writer changes nothing in the catalogue.
    EXPECT_EQ(rig.progress.values, (std::vector<int>{20, 40, 60, 80, 100, 20, 40, 60, 80, 100}));
    EXPECT_EQ(rig.progress.Status(), "Saving ... 'Test.txt'");
    EXPECT_EQ(rig.progress.Maximum(), 100);
    EXPECT_EQ(rig.progress.closes, 2);
    EXPECT_EQ(rig.defs.Units[3].Weight, 1.0f);
    EXPECT_FALSE(rig.defs.Units[3].Include);

    // Opened again, it gives back the values of the units it lists, and the
    // build set the flags; an excluded unit is in no section and reads 0.
    for (vtUnit& u : rig.defs.Units)
        u = {u.Name, u.UnitName, u.TEDClass, "", "", 9, 9, true, !u.Include};
    ReadAI(rig.ctx, dir / "Test.txt", false);
    std::vector<std::tuple<float, float, bool>> read;
    for (int i = 1; i <= 4; ++i)
        read.emplace_back(rig.defs.Units[i].Weight, rig.defs.Units[i].Limit,
                          rig.defs.Units[i].Include);
    EXPECT_EQ(read, (std::vector<std::tuple<float, float, bool>>{
                        {1.5f, 1, true}, {2, 10, true}, {0, 0, false}, {0.75f, 25, true}}));
    EXPECT_EQ(rig.fields.Banner(), "Test AI");
}

TEST(ProfileFileText, EmptyCatalogueGivesTheSkeletonAndParentsLine) {
    Definitions defs;
    defs.Profile.ParentAIs = "Alpha AI, Beta AI, ";
    std::string text = ProfileFileText(defs, {"01-02-2026", "me", "X AI"}, ".");
    EXPECT_NE(text.find("\r\nUsed: Vantrel Build 1.1.0\r\n Parent AIs: Alpha AI, Beta AI\r\n -"),
              std::string::npos);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 134);
    EXPECT_EQ(text.find("Weight"), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 25), "/ Specialized Units /\r\n\r\n");

    defs.Profile.ParentAIs.clear();
    text = ProfileFileText(defs, {"01-02-2026", "me", "X AI"}, ".");
    EXPECT_EQ(text.find("Parent"), std::string::npos);
    EXPECT_NE(text.find("1.1.0\r\n -"), std::string::npos);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 133);
}

TEST(ProfileFileText, SectionsCaseAndExclusions) {
    Definitions defs;
    test::FillCatalogue(defs, {{"ARM_FIDO", "WATER", true, 1, 1},
                               {"2ND", "SHIP", true, 2, 2},
                               {"LOWER", "cnstr", true, 3, 3},
                               {"NONE", "", true, 4, 4},
                               {"OTHER", "BOAT", true, 5, 5},
                               {"SOL", "METAL", true, 6, 6},
                               {"WIND", "ENERGY", true, 7, 7}});
    std::string text = ProfileFileText(defs, {"01-02-2026", "MiXeD Author", "ALL CAPS AI"}, ".");
    EXPECT_NE(text.find("Auth: MiXeD Author\r\nName: ALL CAPS AI\r\n"), std::string::npos);
    EXPECT_NE(text.find("/ Ships, Sub, And Water-units /\r\n\r\nWeight Arm_fido 1\r\n"
                        "Weight 2nd 2\r\n\r\n/ Defense /"),
              std::string::npos);
    EXPECT_NE(text.find("/ Resources /\r\n\r\nWeight Sol 6\r\nWeight Wind 7\r\n"),
              std::string::npos);
    for (const char* absent : {"Lower", "None", "Other"})
        EXPECT_EQ(text.find(absent), std::string::npos) << absent;
    // Every unit is listed in the build set, whatever its class.
    EXPECT_NE(BuildSetText(defs, "A AI").find("[LOWER]\r\nSet=Build;\r\n\r\n[NONE]"),
              std::string::npos);
    EXPECT_EQ(BuildSetText(Definitions{}, "A AI"), "[BUILD SET]\r\nAiName=A AI;\r\n");
}

TEST(ProfileSection, EveryKeywordExactlyAndNothingElse) {
    const std::pair<const char*, int> cases[] = {
        {"CNSTR", 0},     {"COMMANDER", 1}, {"VTOL", 2},    {"TANK", 3},    {"KBOT", 4},
        {"SHIP", 5},      {"WATER", 5},     {"FORT", 6},    {"ENERGY", 7},  {"METAL", 7},
        {"PLANT", 8},     {"SPECIAL", 9},   {"", -1},       {"tank", -1},   {"TANKS", -1},
        {"TAN", -1},      {"COMMANDE", -1}, {"CNSTRX", -1}, {"SPECIA", -1}, {"_SHIP", -1},
        {"\xC9NERGY", -1}};
    for (auto [tedClass, section] : cases)
        EXPECT_EQ(ProfileSection(tedClass), section) << tedClass;
}

// Weights keep seven significant digits; plan limits are rounded down, the
// hard plan's kept to fifteen digits; the separator is the one given.
TEST(NumberForms, WeightsAndPlanLimits) {
    const std::pair<std::string, const char*> cases[] = {
        {WeightText(2, "."), "2"},
        {WeightText(1.5f, "."), "1.5"},
        {WeightText(0.1f, "."), "0.1"},
        {WeightText(3.33f, "."), "3.33"},
        {WeightText(1234567.8f, "."), "1234568"},
        {WeightText(-0.0f, "."), "0"},
        {WeightText(1.5f, ","), "1,5"},
        {WeightText(1e20f, ","), "1e+20"},
        {EasyLimitText(58, 50, "."), "28"}, // 28.999999999999996
        {HardLimitText(58, 50, "."), "29"},
        {HardLimitText(90, 25, "."), "22.5"},
        {HardLimitText(90, 25, ","), "22,5"},
        {EasyLimitText(50, 1, "."), "0"},
        {EasyLimitText(50, 25, "."), "12"},
        {EasyLimitText(50, -3, "."), "-2"}, // toward minus infinity
        {HardLimitText(90, 9, "."), "8.1"},
        {HardLimitText(100, 8.1f, "."), "8.10000038146973"},
        {HardLimitText(0, 7, "."), "0"}};
    for (const auto& [got, want] : cases)
        EXPECT_EQ(got, want);
    // Tests run in the C locale unless the environment says otherwise.
    EXPECT_EQ(DecimalSeparator(), ".");
    EXPECT_EQ(ProfileDate(test::FixedClock(2026, 1, 5).Now()), "01-05-2026");
}

// Under a locale whose separator is "," (built for the test, as none may be
// installed) the profile is written with "," and read back to the same values.
TEST(NumberForms, CommaLocaleWritesAndReadsBack) {
    test::ScratchDir dir;
    std::string cmd =
        "localedef -c -i de_DE -f UTF-8 '" + (dir / "de_DE.UTF-8") + "' >/dev/null 2>&1";
    [[maybe_unused]] int built = std::system(cmd.c_str()); // warnings give a non-zero status
    ::setenv("LOCPATH", dir.path().c_str(), 1);
    const bool german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    struct Restore {
        ~Restore() {
            std::setlocale(LC_NUMERIC, "C");
            ::unsetenv("LOCPATH");
        }
    } restore;
    if (!german) GTEST_SKIP() << "no de_DE locale could be built here (localedef missing?)";

    EXPECT_EQ(DecimalSeparator(), ",");
    test::ProfileRig rig;
    test::FillCatalogue(rig.defs, {{"ARMCOM", "COMMANDER", true, 2.5f, 7.5f}});
    SaveAI(rig.ctx, dir / "A.txt");
    std::string text = test::ReadBytes(dir / "A.txt");
    EXPECT_NE(text.find("Weight Armcom 2,5\r\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("2.5"), std::string::npos) << text;
    rig.defs.Units[1].Weight = 0;
    rig.defs.Units[1].Limit = 0;
    ReadAI(rig.ctx, dir / "A.txt", false);
    EXPECT_EQ(rig.defs.Units[1].Weight, 2.5f);
    EXPECT_EQ(rig.defs.Units[1].Limit, 7.5f);
}

// ---------------------------------------------------------------------------
// Failed saves leave the previous files alone.
// ---------------------------------------------------------------------------
class FailedSave : public ::testing::Test {
  protected:
    void SetUp() override { WorkedExample(rig); }
    test::ScratchDir dir;
    test::ProfileRig rig;
};

TEST_F(FailedSave, MissingFolderParentFileOrTargetFolder) {
    std::string path = dir / "missing/AI.txt";
    try {
        SaveAI(rig.ctx, path);
        FAIL() << "no error";
    } catch (const ProfileError& e) {
        EXPECT_EQ(std::string(e.what()), "Cannot write '" + path + "': No such file or directory.");
    }
    EXPECT_EQ(rig.progress.closes, 1);

    WriteBytes(dir / "plain", "x");
    ASSERT_EQ(::mkdir((dir / "Folder.txt").c_str(), 0777), 0);
    // The last two: names whose build-set file would land on the profile or outside its folder.
    for (const char* name : {"plain/AI.txt", "Folder.txt", "AI.SET", "x.b"})
        EXPECT_THROW(SaveAI(rig.ctx, dir / name), ProfileError) << name;
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"Folder.txt", "plain"}));
}

TEST_F(FailedSave, BuildSetFailureKeepsTheOldProfileToo) {
    WriteBytes(dir / "AI.txt", "old profile");
    // The build set's name is taken by a folder, so only it cannot be written.
    ASSERT_EQ(::mkdir((dir / "AI.set").c_str(), 0777), 0);
    try {
        SaveAI(rig.ctx, dir / "AI.txt");
        FAIL() << "no error";
    } catch (const ProfileError& e) {
        EXPECT_NE(std::string(e.what()).find("AI.set"), std::string::npos);
    }
    EXPECT_EQ(ReadBytes(dir / "AI.txt"), "old profile");
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"AI.set", "AI.txt"}));
}

// The second file's name is taken by a (non-empty) folder only after both
// were staged, so the first rename succeeds and the second fails: the first
// is put back, or removed again when it did not exist before.
TEST(CommitTogether, SecondFailurePutsTheFirstBack) {
    test::ScratchDir dir;
    auto commit = [&](const std::string& first, const std::string& second, bool blocked) {
        StagedFile a(dir / first, "new profile");
        StagedFile b(dir / second, "new set");
        if (blocked) {
            ASSERT_EQ(::mkdir((dir / second).c_str(), 0777), 0);
            ASSERT_EQ(::mkdir((dir / (second + "/x")).c_str(), 0777), 0);
            EXPECT_THROW(CommitTogether(a, b), ProfileError);
        } else {
            CommitTogether(a, b);
        }
    };
    WriteBytes(dir / "AI.txt", "old profile");
    commit("AI.txt", "AI.set", true);
    EXPECT_EQ(ReadBytes(dir / "AI.txt"), "old profile");
    commit("New.txt", "C.set", true);
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"AI.set", "AI.txt", "C.set"}));
    // When both succeed, nothing but the two files is left.
    commit("AI.txt", "B.set", false);
    EXPECT_EQ(ReadBytes(dir / "AI.txt"), "new profile");
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"AI.set", "AI.txt", "B.set", "C.set"}));
}

TEST_F(FailedSave, ReplacementKeepsPermissions) {
    WriteBytes(dir / "AI.txt", "old");
    ASSERT_EQ(::chmod((dir / "AI.txt").c_str(), 0640), 0);
    SaveAI(rig.ctx, dir / "AI.txt");
    struct stat st {};
    ASSERT_EQ(::stat((dir / "AI.txt").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
}

TEST(WriteAll, FullDiskIsReported) {
    int fd = ::open("/dev/full", O_WRONLY);
    if (fd < 0) GTEST_SKIP() << "/dev/full is not available";
    errno = 0;
    EXPECT_FALSE(WriteAll(fd, std::string(100000, 'x')));
    EXPECT_EQ(errno, ENOSPC);
    ::close(fd);
    // A device is never replaced by a regular file.
    EXPECT_THROW(ReplaceFile("/dev/full", "x"), ProfileError);
}

} // namespace
} // namespace vantrel

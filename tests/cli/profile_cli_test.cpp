// vantrel-cli save and show, run as a user would run them.
#include "demo/demo_units.h"
#include "formats/hpi_archive.h"
#include "support/hpi_writer.h"
#include "support/profile_support.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {
namespace {

using test::CliResult;
using test::ReadBytes;
using test::RunCli;
using test::WriteBytes;

class ProfileCli : public ::testing::Test {
  protected:
    void SetUp() override {
        // The stored options live in a settings file of our own.
        ::setenv("HOME", dir.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (dir / "config").c_str(), 1);
        std::filesystem::create_directories(dir / "Units");
        for (auto [unit, cls] :
             {std::pair{"ARMCOM", "COMMANDER"}, {"ARMCK", "CNSTR"}, {"CORAK", "KBOT"}}) {
            demo::DemoUnit u{unit, unit, "ARM", cls, "d", 0};
            WriteBytes(dir / ("Units/" + std::string(unit) + ".fbi"), demo::UnitFileText(u));
        }
    }

    std::string Units() { return Q(dir / "Units") + " "; }
    static std::string Q(const std::string& path) { return "'" + path + "'"; }

    test::ScratchDir dir;
};

TEST_F(ProfileCli, SaveThenShowAndMerge) {
    WriteBytes(dir / "in.txt", "Auth: Ann\r\nName: Brute AI\r\nWeight ARMCK 2.5\r\n"
                               "Plan Hard\r\nLimit ARMCK 8\r\n");
    WriteBytes(dir / "in.set", "[CORAK]\r\nSet=Don't Build;\r\n");
    CliResult r = RunCli("save " + Units() + Q(dir / "out.txt") + " --open " + Q(dir / "in.txt") +
                         " --hard 50 --name Rush");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string out = ReadBytes(dir / "out.txt");
    EXPECT_NE(out.find("\r\nAuth: Ann\r\nName: Rush AI\r\n"), std::string::npos);
    EXPECT_NE(out.find("\r\nLimit Armck 4\r\n"), std::string::npos); // the hard plan at 50%
    EXPECT_NE(ReadBytes(dir / "out.set").find("[CORAK]\r\nSet=Don't Build;"), std::string::npos);

    r = RunCli("show " + Units() + Q(dir / "out.txt"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\tARMCK\tCNSTR\td\t2.5\t4\t1\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t0\t0\t0\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("LoadedAIName\tRush AI\nAuthor\tAnn\nName\tRush\n"), std::string::npos);

    // Merging shows the merged copy and leaves out the Settings fields.
    r = RunCli("show " + Units() + Q(dir / "out.txt") + " --merge");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t0\t0\t1\n"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.substr(r.out.size() - 22), "\nLoadedAIName\tRush AI\n");
}

TEST_F(ProfileCli, TessalyNamesAndStoredOptions) {
    std::filesystem::create_directories(dir / "config/vantrel");
    WriteBytes(dir / "config/vantrel/vantrel.conf", "[Options]\nWeightMax=3\n");
    WriteBytes(dir / "t.tsy", "[ARMCOM;]\r\nWeight=7\r\nLimit=2\r\n");
    CliResult r = RunCli("save " + Units() + Q(dir / "a.txt") + " --open " + Q(dir / "t.tsy") +
                         " --tessaly --author Zed");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string out = ReadBytes(dir / "a.txt");
    EXPECT_NE(out.find("\r\nAuth: Zed\r\nName: t AI\r\n"), std::string::npos); // file-name default
    EXPECT_NE(out.find("Weight Armcom 7\r\n"), std::string::npos); // above WeightMax, kept
    EXPECT_NE(r.err.find("1 value is above the maxima"), std::string::npos) << r.err;

    // Control characters never reach the header: CR LF in a name cannot add entries.
    r = RunCli(
        "save " + Units() + Q(dir / "b.txt") +
        " --name \"$(printf 'Rush\\r\\nWeight ARMCK 9')\" --author \"$(printf 'A\\tB\\001')\"");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string b = ReadBytes(dir / "b.txt");
    EXPECT_NE(b.find("\r\nAuth: AB\r\nName: RushWeight ARMCK 9 AI\r\n"), std::string::npos);
    EXPECT_EQ(b.find("\nWeight ARMCK 9"), std::string::npos);

    // A settings file that is a FIFO is never read.
    std::filesystem::remove(dir / "config/vantrel/vantrel.conf");
    ASSERT_EQ(::mkfifo((dir / "config/vantrel/vantrel.conf").c_str(), 0600), 0);
    r = RunCli("save " + Units() + Q(dir / "c.txt"), "timeout 20 ");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("is not a regular file"), std::string::npos) << r.err;
}

TEST_F(ProfileCli, BulkSetsApplyInOrderAfterOpen) {
    WriteBytes(dir / "in.txt", "Name: B AI\r\nWeight ARMCK 2.5\r\nWeight CORAK 2.5\r\n");
    CliResult r = RunCli("save " + Units() + Q(dir / "out.txt") + " --open " + Q(dir / "in.txt") +
                         " --set '*:limit=99' --set KBOT:weight=7.125 --set nothing:weight=1");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("--set nothing: no unit matches"), std::string::npos) << r.err;
    r = RunCli("show " + Units() + Q(dir / "out.txt"));
    EXPECT_NE(r.out.find("\tARMCK\tCNSTR\td\t2.5\t50\t1\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t7.12\t50\t1\n"), std::string::npos) << r.out;
}

TEST_F(ProfileCli, ErrorsAndExitStatuses) {
    const std::string out = Q(dir / "x.txt");
    const std::pair<std::string, int> cases[] = {
        {"save " + Units() + out + " --set core:speed=2", 2},
        {"save " + Units(), 2},
        {"save " + Units() + out + " --easy lots", 2},
        {"save " + Units() + out + " --tessaly", 2},
        {"save " + Units() + out + " --open " + Q(dir / "none.txt"), 2},
        {"save " + Q(dir / "NoUnits") + " " + out, 2},
        {"show " + Units() + Q(dir.path()), 1},
        {"check " + Units(), 2},
        {"game-profiles " + Q(dir / "nogame"), 2},
        {"install " + Q(dir / "Units/ARMCK.fbi") + " " + Q(dir / "nogame"), 2}};
    for (const auto& [args, status] : cases)
        EXPECT_EQ(RunCli(args).status, status) << args;
    CliResult r = RunCli("save " + Units() + Q(dir / "missing/x.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("Cannot write '" + (dir / "missing/x.txt") + "'"), std::string::npos);
}

// A game folder: archives with "ai" folders written in several cases, in
// every pattern's turn, and loose profiles in an "AI" folder.
TEST_F(ProfileCli, GameProfilesAndProfilesInsideArchives) {
    const std::string game = dir / "game";
    std::filesystem::create_directories(game + "/AI");
    auto archive = [&](const std::string& name,
                       std::vector<std::pair<std::string, std::string>> files) {
        testing::HpiWriter w;
        for (auto& [path, data] : files)
            w.AddFile(path, data, hpi::Zlib);
        WriteBytes(game + "/" + name, w.Build().bytes);
    };
    archive("b.ufo", {{"Ai/Ufo.txt", "Weight ARMCK 1\r\n"}});
    archive("A.gp3", {{"AI/rush.txt", "Weight ARMCK 2\r\n"}, {"AI/readme.doc", "x"}});
    archive("TOTALA1.HPI", {{"ai/DEFAULT.TXT", "Name: Stock AI\r\nWeight ARMCK 3\r\n"},
                            {"ai/DEFAULT.SET", "[CORAK]\r\nSet=Don't Build;\r\n"},
                            {"units/ARMCK.fbi", "x"}});
    WriteBytes(game + "/AI/mine.txt", "Weight ARMCK 4\r\n");
    WriteBytes(game + "/AI/mine.set", "");
    WriteBytes(game + "/AI/a#b.txt", "Weight ARMCK 5\r\n");

    CliResult r = RunCli("game-profiles " + Q(game));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "TOTALA1.HPI\tai/DEFAULT.TXT\t32\nA.gp3\tAI/rush.txt\t16\n"
                     "b.ufo\tAi/Ufo.txt\t16\nAI\ta#b.txt\t16\nAI\tmine.txt\t16\n");
    // Every name listed opens back the very file it names.
    std::istringstream lines(r.out);
    for (std::string source, name, size; std::getline(lines, source, '\t') &&
                                         std::getline(lines, name, '\t') &&
                                         std::getline(lines, size);) {
        const bool loose = source == "AI";
        CliResult shown =
            RunCli("show " + Units() + Q(game + "/" + source + (loose ? "/" : "#") + name));
        EXPECT_EQ(shown.status, 0) << source << " " << name << ": " << shown.err;
        EXPECT_NE(shown.out.find("\tARMCK\tCNSTR\td\t"), std::string::npos);
    }
    // Names no path can give back and archives that cannot be read are said on stderr.
    archive("c.hpi", {{"ai/x#y.txt", "Weight ARMCK 6\r\n"}});
    WriteBytes(game + "/bad.hpi", "not an archive");
    r = RunCli("game-profiles " + Q(game));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("unreachable (no path names it): c.hpi\tai/x#y.txt"), std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("not read: " + game + "/bad.hpi: not an archive of the game"),
              std::string::npos)
        << r.err;
    std::filesystem::remove(game + "/c.hpi");
    std::filesystem::remove(game + "/bad.hpi");

    // Read in place, names matched in any case, its build set from the archive.
    r = RunCli("show " + Units() + Q(game + "/totala1.hpi#AI/default.txt"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\tARMCK\tCNSTR\td\t3\t0\t1\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t0\t0\t0\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("LoadedAIName\tStock AI\n"), std::string::npos);
    r = RunCli("save " + Units() + Q(dir / "out.txt") + " --open " +
               Q(game + "/A.gp3#ai/RUSH.TXT"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(ReadBytes(dir / "out.txt").find("Name: rush AI\r\n"), std::string::npos);
    EXPECT_EQ(test::FolderEntries(game),
              (std::vector<std::string>{"A.gp3", "AI", "TOTALA1.HPI", "b.ufo"}));

    // A missing archive or entry is named; nothing is left behind.
    r = RunCli("show " + Units() + Q(game + "/TOTALA2.HPI#ai/DEFAULT.TXT"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("there is no such file, nor an archive '" + game + "/TOTALA2.HPI'"),
              std::string::npos)
        << r.err;
    // A folder whose name holds '#' is a folder, not an archive.
    std::filesystem::create_directories(game + "/prof#dir");
    r = RunCli("show " + Units() + Q(game + "/prof#dir"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("it is a folder"), std::string::npos) << r.err;
    r = RunCli("show " + Units() + Q(game + "/TOTALA1.HPI#ai/NONE.TXT"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("the archive has no file 'ai/NONE.TXT'"), std::string::npos) << r.err;
}

TEST_F(ProfileCli, InstallReplacesAFileOfAnyCaseOnlyWhenForced) {
    const std::string game = dir / "game";
    std::filesystem::create_directories(game + "/Ai");
    WriteBytes(game + "/Ai/RUSH.TXT", "old");
    WriteBytes(dir / "Rush.txt", "new");
    CliResult r = RunCli("install " + Q(dir / "Rush.txt") + " " + Q(game));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(game + "/Ai/RUSH.TXT"), std::string::npos) << r.err;
    EXPECT_EQ(ReadBytes(game + "/Ai/RUSH.TXT"), "old");

    r = RunCli("install " + Q(dir / "Rush.txt") + " " + Q(game) + " --force");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, game + "/Ai/RUSH.TXT\n");
    EXPECT_EQ(test::FolderEntries(game + "/Ai"), std::vector<std::string>{"RUSH.TXT"});
    EXPECT_EQ(ReadBytes(game + "/Ai/RUSH.TXT"), "new");

    // With several spellings there, the exact name is the one replaced.
    WriteBytes(game + "/Ai/Rush.txt", "exact");
    r = RunCli("install " + Q(dir / "Rush.txt") + " " + Q(game) + " --force");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(ReadBytes(game + "/Ai/Rush.txt"), "new");
    EXPECT_EQ(ReadBytes(game + "/Ai/RUSH.TXT"), "new"); // from before
    WriteBytes(game + "/Ai/RUSH.TXT", "other");
    ASSERT_EQ(RunCli("install " + Q(dir / "Rush.txt") + " " + Q(game) + " --force").status, 0);
    EXPECT_EQ(ReadBytes(game + "/Ai/RUSH.TXT"), "other");
}

// A folder that can be written but not listed hides what is there: nothing
// is replaced. Root lists any folder, so this runs as an ordinary user only.
TEST_F(ProfileCli, InstallStopsWhenTheAiFolderCannotBeListed) {
    if (::geteuid() == 0) GTEST_SKIP() << "root lists every folder";
    const std::string game = dir / "game";
    std::filesystem::create_directories(game + "/ai");
    WriteBytes(game + "/ai/rush.txt", "old");
    WriteBytes(dir / "Rush.txt", "new");
    ::chmod((game + "/ai").c_str(), 0300);
    CliResult r = RunCli("install " + Q(dir / "Rush.txt") + " " + Q(game) + " --force");
    ::chmod((game + "/ai").c_str(), 0700);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("Cannot list the folder '" + game + "/ai': Permission denied"),
              std::string::npos)
        << r.err;
    EXPECT_EQ(ReadBytes(game + "/ai/rush.txt"), "old");
    EXPECT_EQ(test::FolderEntries(game + "/ai"), std::vector<std::string>{"rush.txt"});
}

TEST_F(ProfileCli, CheckPrintsEachKindOfFindingAndSetsTheStatus) {
    WriteBytes(dir / "p.txt", "Weight armcomx 3\r\nWeight ARMCK t\two\x01\r\nWeight CORAK 1\r\n"
                              "Weight No\\body 1\r\nplan hard\r\nLimit ARMCK 1\r\n");
    CliResult r = RunCli("check " + Units() + Q(dir / "p.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "unknown\tNo\\\\body\nshadowed\tarmcomx\tARMCOM\n"
                     "not-a-number\t2\tWeight ARMCK t\\two\\x01\n");

    ASSERT_EQ(RunCli("save " + Units() + Q(dir / "clean.txt")).status, 0);
    r = RunCli("check " + Units() + Q(dir / "clean.txt"));
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out, "");
}

} // namespace
} // namespace vantrel

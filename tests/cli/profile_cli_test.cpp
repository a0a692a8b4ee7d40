// vantrel-cli save and show, run as a user would run them.
#include "demo/demo_units.h"
#include "formats/hpi_archive.h"
#include "support/hpi_writer.h"
#include "support/profile_support.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace vantrel {
namespace {

using test::ReadBytes;
using test::WriteBytes;

struct Result {
    int status;
    std::string out;
    std::string err;
};

class ProfileCli : public ::testing::Test {
  protected:
    void SetUp() override {
        const char* cli = std::getenv("VANTREL_CLI");
        if (!cli) GTEST_SKIP() << "VANTREL_CLI is not set";
        cli_ = cli;
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

    Result Run(const std::string& args) {
        std::string cmd = "'" + cli_ + "' " + args + " 2>'" + (dir / "err") + "'";
        Result r{};
        FILE* p = ::popen(cmd.c_str(), "r");
        char buf[4096];
        while (std::size_t n = std::fread(buf, 1, sizeof buf, p))
            r.out.append(buf, n);
        int raw = ::pclose(p);
        r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        r.err = ReadBytes(dir / "err");
        return r;
    }
    std::string Units() { return Q(dir / "Units") + " "; }
    static std::string Q(const std::string& path) { return "'" + path + "'"; }

    test::ScratchDir dir;
    std::string cli_;
};

TEST_F(ProfileCli, SaveThenShowAndMerge) {
    WriteBytes(dir / "in.txt", "Auth: Ann\r\nName: Brute AI\r\nWeight ARMCK 2.5\r\n"
                               "Plan Hard\r\nLimit ARMCK 8\r\n");
    WriteBytes(dir / "in.set", "[CORAK]\r\nSet=Don't Build;\r\n");
    Result r = Run("save " + Units() + Q(dir / "out.txt") + " --open " + Q(dir / "in.txt") +
                   " --hard 50 --name Rush");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string out = ReadBytes(dir / "out.txt");
    EXPECT_NE(out.find("\r\nAuth: Ann\r\nName: Rush AI\r\n"), std::string::npos);
    EXPECT_NE(out.find("\r\nLimit Armck 4\r\n"), std::string::npos); // the hard plan at 50%
    EXPECT_NE(ReadBytes(dir / "out.set").find("[CORAK]\r\nSet=Don't Build;"), std::string::npos);

    r = Run("show " + Units() + Q(dir / "out.txt"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\tARMCK\tCNSTR\td\t2.5\t4\t1\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t0\t0\t0\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("LoadedAIName\tRush AI\nAuthor\tAnn\nName\tRush\n"), std::string::npos);

    // Merging shows the merged copy and leaves out the Settings fields.
    r = Run("show " + Units() + Q(dir / "out.txt") + " --merge");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t0\t0\t1\n"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.substr(r.out.size() - 22), "\nLoadedAIName\tRush AI\n");
}

TEST_F(ProfileCli, TessalyNamesAndStoredOptions) {
    std::filesystem::create_directories(dir / "config/vantrel");
    WriteBytes(dir / "config/vantrel/vantrel.conf", "[Options]\nWeightMax=3\n");
    WriteBytes(dir / "t.tsy", "[ARMCOM;]\r\nWeight=7\r\nLimit=2\r\n");
    Result r = Run("save " + Units() + Q(dir / "a.txt") + " --open " + Q(dir / "t.tsy") +
                   " --tessaly --author Zed");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string out = ReadBytes(dir / "a.txt");
    EXPECT_NE(out.find("\r\nAuth: Zed\r\nName: t AI\r\n"), std::string::npos); // file-name default
    EXPECT_NE(out.find("Weight Armcom 3\r\n"), std::string::npos); // capped by the stored WeightMax
}

TEST_F(ProfileCli, BulkSetsApplyInOrderAfterOpen) {
    WriteBytes(dir / "in.txt", "Name: B AI\r\nWeight ARMCK 2.5\r\nWeight CORAK 2.5\r\n");
    Result r = Run("save " + Units() + Q(dir / "out.txt") + " --open " + Q(dir / "in.txt") +
                   " --set '*:limit=99' --set KBOT:weight=7.125 --set nothing:weight=1");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("--set nothing: no unit matches"), std::string::npos) << r.err;
    r = Run("show " + Units() + Q(dir / "out.txt"));
    EXPECT_NE(r.out.find("\tARMCK\tCNSTR\td\t2.5\t50\t1\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t7.12\t50\t1\n"), std::string::npos) << r.out;
}

TEST_F(ProfileCli, ErrorsAndExitStatuses) {
    const std::string out = Q(dir / "x.txt");
    EXPECT_EQ(Run("save " + Units() + out + " --set core:speed=2").status, 2);
    EXPECT_EQ(Run("save " + Units()).status, 2);
    EXPECT_EQ(Run("save " + Units() + out + " --easy lots").status, 2);
    EXPECT_EQ(Run("save " + Units() + out + " --tessaly").status, 2);
    EXPECT_EQ(Run("save " + Units() + out + " --open " + Q(dir / "none.txt")).status, 2);
    EXPECT_EQ(Run("save " + Q(dir / "NoUnits") + " " + out).status, 2);
    EXPECT_EQ(Run("show " + Units() + Q(dir.path())).status, 1);
    Result r = Run("save " + Units() + Q(dir / "missing/x.txt"));
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

    Result r = Run("game-profiles " + Q(game));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "TOTALA1.HPI\tai/DEFAULT.TXT\t32\nA.gp3\tAI/rush.txt\t16\n"
                     "b.ufo\tAi/Ufo.txt\t16\nai\tmine.txt\t16\n");
    EXPECT_EQ(Run("game-profiles " + Q(dir / "nogame")).status, 2);

    // Read in place, names matched in any case, its build set from the archive.
    r = Run("show " + Units() + Q(game + "/totala1.hpi#AI/default.txt"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\tARMCK\tCNSTR\td\t3\t0\t1\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\tCORAK\tKBOT\td\t0\t0\t0\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("LoadedAIName\tStock AI\n"), std::string::npos);
    r = Run("save " + Units() + Q(dir / "out.txt") + " --open " + Q(game + "/A.gp3#ai/RUSH.TXT"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(ReadBytes(dir / "out.txt").find("Name: rush AI\r\n"), std::string::npos);
    EXPECT_EQ(test::FolderEntries(game),
              (std::vector<std::string>{"A.gp3", "AI", "TOTALA1.HPI", "b.ufo"}));

    // A missing archive or entry is named; nothing is left behind.
    r = Run("show " + Units() + Q(game + "/TOTALA2.HPI#ai/DEFAULT.TXT"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("there is no archive '" + game + "/TOTALA2.HPI'"), std::string::npos)
        << r.err;
    r = Run("show " + Units() + Q(game + "/TOTALA1.HPI#ai/NONE.TXT"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("the archive has no file 'ai/NONE.TXT'"), std::string::npos) << r.err;
}

TEST_F(ProfileCli, InstallReplacesAFileOfAnyCaseOnlyWhenForced) {
    const std::string game = dir / "game";
    std::filesystem::create_directories(game + "/Ai");
    WriteBytes(game + "/Ai/RUSH.TXT", "old");
    WriteBytes(dir / "Rush.txt", "new");
    Result r = Run("install " + Q(dir / "Rush.txt") + " " + Q(game));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(game + "/Ai/RUSH.TXT"), std::string::npos) << r.err;
    EXPECT_EQ(ReadBytes(game + "/Ai/RUSH.TXT"), "old");

    r = Run("install " + Q(dir / "Rush.txt") + " " + Q(game) + " --force");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, game + "/Ai/RUSH.TXT\n");
    EXPECT_EQ(test::FolderEntries(game + "/Ai"), std::vector<std::string>{"RUSH.TXT"});
    EXPECT_EQ(ReadBytes(game + "/Ai/RUSH.TXT"), "new");

    // Without an ai folder, one is made.
    std::filesystem::create_directories(dir / "fresh");
    r = Run("install " + Q(dir / "Rush.txt") + " " + Q(dir / "fresh"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(ReadBytes(dir / "fresh/ai/Rush.txt"), "new");
    EXPECT_EQ(Run("install " + Q(dir / "Rush.txt") + " " + Q(dir / "nogame")).status, 2);
}

TEST_F(ProfileCli, CheckPrintsEachKindOfFindingAndSetsTheStatus) {
    WriteBytes(dir / "p.txt", "Weight armcomx 3\r\nWeight ARMCK two\r\nWeight CORAK 1\r\n"
                              "Weight Nobody 1\r\nplan hard\r\nLimit ARMCK 1\r\n");
    Result r = Run("check " + Units() + Q(dir / "p.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "unknown\tNobody\nshadowed\tarmcomx\tARMCOM\nmissing\tARMCOM\n"
                     "not-a-number\t2\tWeight ARMCK two\n");

    ASSERT_EQ(Run("save " + Units() + Q(dir / "clean.txt")).status, 0);
    r = Run("check " + Units() + Q(dir / "clean.txt"));
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(Run("check " + Units()).status, 2);
}

} // namespace
} // namespace vantrel

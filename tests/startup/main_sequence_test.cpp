#include "startup/main_sequence.h"
#include "startup/paths.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

using namespace vantrel;

namespace {

// Lists two entries per folder in every archive and records each call.
class RecordingLibrary : public ArchiveLibrary {
  public:
    std::string gameDir;
    std::vector<std::string> calls;
    void GetTADirectory(std::string& buffer) override { FillNameBuffer(buffer, gameDir); }
    std::int32_t HPIOpen(const std::string& f) override {
        calls.push_back("open " + std::filesystem::path(f).filename().string());
        return 7;
    }
    std::int32_t HPIDir(std::int32_t, std::int32_t pos, const std::string& folder, std::string& buf,
                        std::int32_t&, std::int32_t&) override {
        if (pos >= 2) return 0;
        FillNameBuffer(buf, folder == "units" ? (pos == 0 ? "ARMX.FBI" : "readme.txt")
                                              : (pos == 0 ? "armx.pcx" : "../evil.pcx"));
        return pos + 1;
    }
    std::int32_t HPIExtractFile(std::int32_t, const std::string& inside,
                                const std::string& dest) override {
        calls.push_back("extract " + inside + " -> " +
                        std::filesystem::path(dest).filename().string());
        return 1;
    }
    std::int32_t HPIClose(std::int32_t) override { return 0; }
};

class RecordingZips : public ZipSteps {
  public:
    std::vector<std::string>& calls;
    explicit RecordingZips(std::vector<std::string>& c) : calls(c) {}
    void CreateUnzip(const Definitions&, Progress&) override { calls.push_back("zip create"); }
    void CountZipFiles(const Definitions&, Progress&) override { calls.push_back("zip count"); }
    void UnpackZips(const Definitions&, Progress&) override { calls.push_back("zip unpack"); }
};

struct Fixture {
    test::TempDir app, game;
    test::RecordingProgress progress;
    test::ScriptedMessages messages;
    MemorySettingsStore settings;
    test::RecordingShell shell;
    DefaultRandom random;
    RecordingLibrary archives;
    RecordingZips zips{archives.calls};
    StartupPorts ports{progress, messages, settings, shell, random, archives, zips};
    Definitions defs;
    Fixture() {
        archives.gameDir = game.path();
        for (const char* n : {"TOTALA1.HPI", "b.ccx", "c.gp3", "d.gp", "e.swx"})
            test::WriteText(game / n, "");
    }
};

} // namespace

TEST(MainSequence, CountingPassesRunBeforeExtractionPassesAndZipsAfterArchives) {
    Fixture f;
    f.settings.Set("Extract", "-1");
    std::filesystem::create_directories(f.app / "Units");
    test::WriteText(f.app / "Units/pre.fbi", "UnitName=PRE;Side=ARM;");
    ASSERT_EQ(Main(f.defs, f.ports, f.app.path()), LoadOutcome::Loaded);

    const auto& c = f.archives.calls;
    // 4 archives match (x.gp does not match *.gp?), 8 counting opens then 8 extraction passes.
    auto first = [&](const std::string& s) { return std::find(c.begin(), c.end(), s) - c.begin(); };
    ASSERT_EQ(std::count_if(c.begin(), c.end(), [](auto& s) { return s.starts_with("open "); }),
              16);
    EXPECT_EQ(std::count(c.begin(), c.end(), "open d.gp"), 0);
    EXPECT_LT(first("zip create"), first("zip count"));
    EXPECT_EQ(first("zip count"), 8 + 1); // after the eight counting opens and zip create
    EXPECT_EQ(c.back(), "zip unpack");
    // Only names containing the extension are extracted, into the Units folder; unsafe names never.
    EXPECT_EQ(std::count(c.begin(), c.end(), "extract units\\ARMX.FBI -> ARMX.FBI"), 4);
    EXPECT_EQ(std::count(c.begin(), c.end(), "extract unitpics\\armx.pcx -> armx.pcx"), 4);
    EXPECT_EQ(std::count_if(c.begin(), c.end(), [](auto& s) { return s.find("evil") != s.npos; }),
              0);
    // Two entries per folder per archive: 4 archives x 2 folders x 2 = 16 counted,
    // 4 fbi + 8 pcx names match (the unsafe one is counted but never written), plus 2
    // for the one loaded unit.
    EXPECT_EQ(f.progress.Maximum(), 100 + 16);
    EXPECT_EQ(f.progress.Value(), 12 + 2);
    EXPECT_EQ(f.defs.GameDir, f.game.path());
}

TEST(MainSequence, NothingIsExtractedWhenExtractIsOff) {
    Fixture f;
    std::filesystem::create_directories(f.app / "Units");
    test::WriteText(f.app / "Units/pre.fbi", "UnitName=PRE;Side=ARM;");
    EXPECT_EQ(Main(f.defs, f.ports, f.app.path()), LoadOutcome::Loaded);
    EXPECT_TRUE(f.archives.calls.empty());
    EXPECT_EQ(f.defs.AppDir, f.app.path() + "/");
}

TEST(MainSequence, EmptyUnitsFolderRestartsWithExtractOn) {
    Fixture f;
    EXPECT_EQ(Main(f.defs, f.ports, f.app.path()), LoadOutcome::Restarted);
    EXPECT_TRUE(std::filesystem::is_directory(f.app / "Units")); // created
    EXPECT_EQ(f.settings.Get("Extract", ""), "-1");
    EXPECT_EQ(f.shell.restarts, 1);
    EXPECT_TRUE(f.messages.shown.empty());
}

TEST(MainSequence, EmptyUnitsFolderWithExtractOnEndsWithTheMessage) {
    Fixture f;
    f.settings.Set("Extract", "1");
    f.archives.gameDir = ""; // no game: the archive passes are skipped, start-up goes on
    EXPECT_EQ(Main(f.defs, f.ports, f.app.path()), LoadOutcome::Abort);
    ASSERT_EQ(f.messages.shown.size(), 1u);
    EXPECT_EQ(f.messages.shown[0].title, "Abort");
    EXPECT_EQ(f.messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(f.messages.shown[0].text,
              "No units found. Please extract all available unit files to your '" + f.app.path() +
                  "/Units/' folder.");
    EXPECT_EQ(f.shell.restarts, 0);
    // Only the zip steps ran.
    std::vector<std::string> zipOnly{"zip create", "zip count", "zip unpack"};
    EXPECT_EQ(f.archives.calls, zipOnly);
}

TEST(GameFolder, StoredOptionThenWinePrefixThenUsualFolders) {
    test::TempDir home, prefix, stored;
    std::filesystem::create_directories(prefix / "drive_c/Cavedog/TotalA");
    std::filesystem::create_directories(prefix / "dosdevices");
    std::filesystem::create_directory_symlink("../drive_c", prefix / "dosdevices/c:");
    test::WriteText(
        prefix / "system.reg",
        "WINE REGISTRY Version 2\n\n"
        "[Software\\\\Wow6432Node\\\\Cavedog Entertainment\\\\Total Annihilation] 1700000000\n"
        "#time=1d9\n\"Dir\"=\"C:\\\\Cavedog\\\\Totala\"\n\"Other\"=\"x\"\n");
    GameSearchEnv env{stored.path(), prefix.path(), home.path()};
    EXPECT_EQ(FindGameDirectory(env), stored.path());
    env.storedGameDir = stored / "missing";
    // The folder is found whatever the case of its name on disk.
    EXPECT_EQ(FindGameDirectory(env), prefix.path() + "/dosdevices/c:/Cavedog/TotalA");
    env.winePrefix = "";
    EXPECT_EQ(FindGameDirectory(env), "");
    std::filesystem::create_directories(home /
                                        ".local/share/Steam/steamapps/common/Total Annihilation");
    EXPECT_EQ(FindGameDirectory(env),
              home / ".local/share/Steam/steamapps/common/Total Annihilation");
}

#include "base/paths.h"
#include "base/text.h"
#include "demo/demo_units.h"
#include "startup/main_sequence.h"
#include "startup/zip_steps.h"
#include "support/hpi_writer.h"
#include "support/scratch_folder.h"
#include "support/zip_maker.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vantrel {
namespace {

using testing::FolderContent;
using testing::HpiWriter;

// What the start-up asks of the library, the zip steps and the form, in order.
using Log = std::vector<std::string>;

class RecordingZips : public ZipSteps {
  public:
    explicit RecordingZips(Log& log) : log_(log) {}
    void CountZipFiles(const Definitions&, Progress&) override { log_.push_back("zip count"); }
    void UnpackZips(Definitions&, Progress&) override { log_.push_back("zip unpack"); }

  private:
    Log& log_;
};

class StartUp : public ::testing::Test {
  protected:
    StartUp() {
        MakeDirectory(tmp / "app");
        MakeDirectory(game);
        defs.AppDir = WithTrailingSep(tmp / "app");
        defs.GameDir = game;
    }
    void Write(const std::string& name, const HpiWriter& writer) {
        ASSERT_TRUE(demo::WriteFile(JoinPath(game, name), writer.Build().bytes));
    }
    struct Entry {
        const char* path;
        const char* data;
        std::uint8_t method;
    };
    void Write(const std::string& name, std::initializer_list<Entry> entries) {
        HpiWriter writer;
        for (const Entry& e : entries)
            writer.AddFile(e.path, e.data, e.method);
        Write(name, writer);
    }
    std::string Unit(const std::string& name) const {
        return JoinPath(UnitsDir(defs.AppDir), name);
    }
    static Log Starting(const Log& events, const std::string& prefix) {
        Log out;
        for (const std::string& e : events)
            if (e.starts_with(prefix)) out.push_back(e.substr(prefix.size()));
        return out;
    }

    testing::ScratchFolder tmp;
    std::string game = tmp / "game";
    Definitions defs;
    Log log;
    test::RecordingProgress progress;
    test::ScriptedMessages messages;
    MemorySettingsStore settings;
    test::RecordingShell shell;
    DefaultRandom random;
    ArchiveReading archives{game};
    RecordingZips zips{log};
    StartupPorts ports{progress, messages, settings, shell, random, archives, zips};
};

TEST_F(StartUp, CountThenExtractEveryArchiveFamilyIntoUnits) {
    HpiWriter totala;
    totala.AddFile("UNITS/ARMCOM.FBI", "armcom", hpi::Lz77);
    totala.AddFile("units/arm.fbi.bak", "bak", hpi::Stored);
    totala.AddFile("units/readme.txt", "readme", hpi::Zlib);
    totala.AddFile("units/sub/hidden.fbi", "hidden", hpi::Stored);
    totala.AddFile("units/corcom.fbi", "old corcom", hpi::Stored);
    totala.AddFile("unitpics/ARMCOM.PCX", "pcx", hpi::Zlib);
    totala.AddFile("unitsx/near.fbi", "a near miss", hpi::Zlib);
    Write("TOTALA1.HPI", totala);
    HpiWriter ccx(testing::HpiWriterOptions{0x33, true});
    ccx.AddFile("units/corcom.fbi", "new corcom", hpi::Lz77);
    for (const char* bad : {"../evil.fbi", "a\\b.fbi", "C:x.fbi", "/abs.fbi"})
        ccx.AddEntry("units", bad, "bad", hpi::Stored);
    Write("b.ccx", ccx);
    Write("x.gp3", {{"units/gp3unit.fbi", "gp3", hpi::Zlib}});
    Write("x.gp", {{"units/gpunit.fbi", "gp", hpi::Zlib}});
    Write("y.swx", {{"Units/swx.fbi", "swx", hpi::Stored},
                    {"UnitPics/swx.pcx", "swxpcx", hpi::Lz77}});
    ASSERT_TRUE(demo::WriteFile(JoinPath(game, "broken.hpi"), "HAPI\x01"));
    ASSERT_TRUE(MakeDirectory(JoinPath(game, "folder.hpi")));
    ASSERT_TRUE(MakeDirectory(UnitsDir(defs.AppDir)));

    const ExtractionFailures failures = RunExtraction(defs, ports);

    EXPECT_EQ(failures.files,
              (Log{"broken.hpi: data ends early", "b.ccx: ../evil.fbi: unsafe name",
                   "b.ccx: a\\b.fbi: unsafe name", "b.ccx: C:x.fbi: unsafe name",
                   "b.ccx: /abs.fbi: unsafe name"}));
    // Zip count first, unpacking last; each written file is named.
    EXPECT_EQ(log, (Log{"zip count", "zip unpack"}));
    EXPECT_EQ(progress.shows, 1);
    EXPECT_EQ(progress.statuses[1], "Reading Total Annihilation Directory...");
    EXPECT_EQ(progress.statuses.back(), failures.Summary());
    EXPECT_EQ(Starting(progress.statuses, "Extracting "),
              (Log{"units/ARMCOM.FBI from TOTALA1.HPI", "units/arm.fbi.bak from TOTALA1.HPI",
                   "units/corcom.fbi from TOTALA1.HPI", "units/corcom.fbi from b.ccx",
                   "units/gp3unit.fbi from x.gp3", "units/swx.fbi from y.swx",
                   "unitpics/ARMCOM.PCX from TOTALA1.HPI", "unitpics/swx.pcx from y.swx"}));
    // 12 entries below "units" (sub-folder and refused names too), 2 below "unitpics".
    EXPECT_EQ(progress.Maximum(), 100 + 14);
    EXPECT_EQ(progress.Value(), 12);

    EXPECT_EQ(FolderContent(UnitsDir(defs.AppDir)),
              (Log{"ARMCOM.FBI", "ARMCOM.PCX", "arm.fbi.bak", "corcom.fbi", "gp3unit.fbi",
                   "swx.fbi", "swx.pcx"}));
    EXPECT_EQ(ReadWholeFile(Unit("corcom.fbi")), "new corcom"); // the later pass replaces
    EXPECT_EQ(FolderContent(tmp / "app"), Log{"Units"});
}

TEST_F(StartUp, UnitsIsOneNameSpaceWithoutLetterCase) {
    ASSERT_TRUE(MakeDirectory(UnitsDir(defs.AppDir)));
    // Unpacked from a package at an earlier start.
    test::WriteText(Unit("armfido.fbi"), "from the pack");
    ASSERT_TRUE(testing::WriteZip(JoinPath(defs.AppDir, "fido.zip"),
                                  {{"units/armfido.fbi", "from the pack"},
                                   {"unitpics/ArmCom.pcx", "pack picture"},
                                   {"unitpics/armfido.pcx", "fido picture"}}));
    Write("TOTALA1.HPI", {{"units/ARMCOM.FBI", "old armcom", hpi::Lz77},
                          {"unitpics/ARMCOM.PCX", "game picture", hpi::Zlib}});
    Write("TOTALA2.HPI", {{"units/armcom.fbi", "new armcom", hpi::Zlib},
                          {"units/ARMFIDO.FBI", "from the game", hpi::Stored}});
    LibzipSteps libzip;
    StartupPorts real{progress, messages, settings, shell, random, archives, libzip};

    RunExtraction(defs, real);

    // One file per name, in the spelling that was there first; an archive
    // replaces the content, a package never does.
    EXPECT_EQ(FolderContent(UnitsDir(defs.AppDir)),
              (Log{"ARMCOM.FBI", "ARMCOM.PCX", "armfido.fbi", "armfido.pcx"}));
    EXPECT_EQ(ReadWholeFile(Unit("ARMCOM.FBI")), "new armcom");
    EXPECT_EQ(ReadWholeFile(Unit("armfido.fbi")), "from the game");
    EXPECT_EQ(ReadWholeFile(Unit("ARMCOM.PCX")), "game picture");
    EXPECT_EQ(defs.UnitFiles.Find("ArmFido.PCX"), Unit("armfido.pcx")); // noted as unpacked
}

TEST_F(StartUp, MainExtractsOnlyWhenTheOptionIsOn) {
    HpiWriter totala;
    totala.AddFile("units/ARMCOM.FBI", "UnitName=ARMCOM;Side=ARM;", hpi::Lz77);
    Write("TOTALA1.HPI", totala);
    ASSERT_TRUE(MakeDirectory(UnitsDir(defs.AppDir)));
    test::WriteText(Unit("pre.fbi"), "UnitName=PRE;Side=ARM;");
    for (const bool on : {false, true}) {
        SCOPED_TRACE(on);
        log.clear();
        settings.Set("Extract", on ? "-1" : "0");
        Definitions loaded;
        ASSERT_EQ(Main(loaded, ports, tmp / "app"), LoadOutcome::Loaded);
        EXPECT_EQ(log.size(), on ? 2u : 0u);
        EXPECT_EQ(loaded.Units.UBound(), on ? 2 : 1);
    }
}

TEST_F(StartUp, EmptyUnitsFolderRestartsOnceWithExtractOnThenEndsWithTheMessage) {
    archives.gameDir = ""; // no game: the archive passes are skipped, start-up goes on
    EXPECT_EQ(Main(defs, ports, tmp / "app"), LoadOutcome::Restarted);
    EXPECT_TRUE(IsDirectory(UnitsDir(defs.AppDir))); // created
    EXPECT_EQ(settings.Get("Extract", ""), "-1");
    EXPECT_EQ(shell.restarts, 1);
    EXPECT_TRUE(messages.shown.empty());

    // The restarted program extracts, still finds no units and gives up.
    log.clear();
    EXPECT_EQ(Main(defs, ports, tmp / "app"), LoadOutcome::Abort);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages.shown[0].text, "No units found. Please extract all available unit files "
                                      "to your '" +
                                          defs.AppDir + "Units/' folder.");
    EXPECT_EQ(shell.restarts, 1);
    EXPECT_EQ(log, (Log{"zip count", "zip unpack"})); // only the zip steps ran
    EXPECT_TRUE(Starting(progress.statuses, "Extracting").empty());

    // Only once: Extract reads as off in a restarted instance, and still no restart.
    settings.Set("Extract", "0");
    shell.restarted = true;
    EXPECT_EQ(Main(defs, ports, tmp / "app"), LoadOutcome::Abort);
    EXPECT_EQ(shell.restarts, 1);
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_TRUE(messages.shown[1].text.starts_with("No units found."));

    // Only when Extract sticks.
    struct RefusingStore : MemorySettingsStore {
        void Set(const std::string&, const std::string&) override {}
        std::string Location() override { return "/ro/vantrel.conf"; }
    } refusing;
    shell.restarted = false;
    StartupPorts refused{progress, messages, refusing, shell, random, archives, zips};
    EXPECT_EQ(Main(defs, refused, tmp / "app"), LoadOutcome::Abort);
    EXPECT_EQ(shell.restarts, 1);
    EXPECT_NE(messages.shown.back().text.find("cannot store its settings in '/ro/vantrel.conf'"),
              std::string::npos);
}

// The window shown over an empty Units folder decides how start-up goes on;
// it never restarts the program and shows no message of its own.
TEST_F(StartUp, EmptyUnitsFolderAsksTheWindowWhatToDo) {
    // Each answer comes with the game folder the player leaves in the field.
    struct ScriptedWindow : NoUnitsWindow {
        std::vector<std::pair<NoUnitsChoice, std::string>> answers;
        Log asked; // "[again ]GAMEDIR UNITS"
        NoUnitsChoice Ask(Definitions& d, const std::string& units, bool afterExtract) override {
            asked.push_back((afterExtract ? "again " : "") + d.GameDir + " " + units);
            auto [choice, gameDir] = answers.at(asked.size() - 1);
            d.GameDir = gameDir;
            return choice;
        }
    };
    archives.gameDir = ""; // none found
    const std::string units = UnitsDir(tmp / "app/");
    Write("TOTALA1.HPI", {{"units/ARMCOM.FBI", "UnitName=ARMCOM;Side=ARM;", hpi::Stored}});
    struct Case {
        std::vector<std::pair<NoUnitsChoice, std::string>> answers;
        LoadOutcome outcome;
        int units;
        Log asked;
    } cases[] = {
        {{{NoUnitsChoice::Quit, ""}}, LoadOutcome::Abort, 0, {" " + units}},
        {{{NoUnitsChoice::Continue, ""}}, LoadOutcome::Loaded, 0, {" " + units}},
        // A folder without archives extracts nothing and asks again.
        {{{NoUnitsChoice::Extract, tmp / "app"}, {NoUnitsChoice::Extract, game}},
         LoadOutcome::Loaded,
         1,
         {" " + units, "again " + (tmp / "app") + " " + units}},
    };
    for (const Case& c : cases) {
        ScriptedWindow window;
        window.answers = c.answers;
        ports.noUnits = &window;
        Definitions loaded;
        EXPECT_EQ(Main(loaded, ports, tmp / "app"), c.outcome);
        EXPECT_EQ(loaded.Units.UBound(), c.units);
        EXPECT_EQ(window.asked, c.asked);
    }
    EXPECT_EQ(settings.Get("GameDir", ""), game); // stored by Extract
    EXPECT_EQ(shell.restarts, 0);
    EXPECT_TRUE(messages.shown.empty());
}

// A folder in a unit file's place, and a bomb of three names sharing one
// 17 MiB stream: both reported, the rest lands.
TEST_F(StartUp, FilesThatCannotBeWrittenAreCountedReportedAndNothingIsLost) {
    HpiWriter totala;
    totala.AddFile("units/ARMCOM.FBI", "UnitName=ARMCOM;Side=ARM;", hpi::Stored);
    totala.AddFile("units/BOMB1.FBI", std::string(17u << 20, '\0'), hpi::Zlib);
    totala.AddFile("units/BOMB2.FBI", "", hpi::Zlib);
    totala.AddFile("units/BOMB3.FBI", "", hpi::Zlib);
    totala.AddFile("units/CORCOM.FBI", "new", hpi::Stored);
    testing::BuiltArchive built = totala.Build();
    testing::ShareFileData(built, "units/BOMB1.FBI", {"units/BOMB2.FBI", "units/BOMB3.FBI"});
    ASSERT_LT(built.bytes.size(), 64u * 1024u);
    ASSERT_TRUE(demo::WriteFile(JoinPath(game, "TOTALA1.HPI"), built.bytes));
    ASSERT_TRUE(MakeDirectory(UnitsDir(defs.AppDir)) && MakeDirectory(Unit("CORCOM.FBI")));
    test::WriteText(Unit("CORCOM.FBI/keep.txt"), "kept");

    const ExtractionFailures failures = RunExtraction(defs, ports);
    EXPECT_EQ(failures.files, (Log{"TOTALA1.HPI: BOMB1.FBI: larger than 16 MiB",
                                   "TOTALA1.HPI: BOMB2.FBI: larger than 16 MiB",
                                   "TOTALA1.HPI: BOMB3.FBI: larger than 16 MiB",
                                   "TOTALA1.HPI: CORCOM.FBI: Is a directory"}));
    EXPECT_EQ(progress.Status(),
              "4 files could not be written (TOTALA1.HPI: BOMB1.FBI: larger than 16 MiB)");
    EXPECT_EQ(FolderContent(UnitsDir(defs.AppDir)), (Log{"ARMCOM.FBI", "CORCOM.FBI"}));
    EXPECT_EQ(ReadWholeFile(Unit("CORCOM.FBI/keep.txt")), "kept");

    settings.Set("Extract", "1");
    ASSERT_EQ(Main(defs, ports, tmp / "app"), LoadOutcome::Loaded);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text,
              failures.Summary() + " to the folder '" + UnitsDir(defs.AppDir) +
                  "'. The unit list may be incomplete or out of date.");
}

// The cap of a whole archive counts what both passes over it unpacked.
TEST_F(StartUp, TheArchiveCapSpansThePasses) {
    Write("TOTALA1.HPI", {{"units/A.FBI", std::string(6000, 'a').c_str(), hpi::Zlib},
                          {"unitpics/A.PCX", std::string(6000, 'p').c_str(), hpi::Zlib}});
    Write("TOTALA2.HPI", {{"unitpics/B.PCX", std::string(6000, 'b').c_str(), hpi::Zlib}});
    ASSERT_TRUE(MakeDirectory(UnitsDir(defs.AppDir)));
    const ArchiveReading capped{game, {hpi::MaxFileBytes, 10000}};
    StartupPorts cappedPorts{progress, messages, settings, shell, random, capped, zips};

    const ExtractionFailures failures = RunExtraction(defs, cappedPorts);

    EXPECT_EQ(failures.files,
              Log{"TOTALA1.HPI: A.PCX: past the archive's cap of 10000 bytes"});
    EXPECT_EQ(FolderContent(UnitsDir(defs.AppDir)), (Log{"A.FBI", "B.PCX"}));
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
    // Without a prefix named, the one in the home folder.
    std::filesystem::create_directory_symlink(prefix.path(), home / ".wine");
    EXPECT_EQ(FindGameDirectory(env), home / ".wine/dosdevices/c:/Cavedog/TotalA");
    std::filesystem::remove(home / ".wine");
    std::filesystem::create_directories(home /
                                        ".local/share/Steam/steamapps/common/Total Annihilation");
    EXPECT_EQ(FindGameDirectory(env),
              home / ".local/share/Steam/steamapps/common/Total Annihilation");
}

} // namespace
} // namespace vantrel

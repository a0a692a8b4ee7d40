#include "catalogue/text.h"
#include "demo/demo_units.h"
#include "startup/hpi_library.h"
#include "startup/main_sequence.h"
#include "startup/paths.h"
#include "support/hpi_writer.h"
#include "support/scratch_folder.h"

#include "support/test_support.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using testing::FolderContent;
using testing::HpiWriter;
using testing::HpiWriterOptions;
using testing::ScratchFolder;

std::string Built(const HpiWriter& writer) {
    return writer.Build().bytes;
}

std::string Read(const std::string& path) {
    return ReadWholeFile(path).value_or("<missing>");
}

// Lists `folder` with the listing protocol and returns the names.
std::vector<std::string> ListFolder(ArchiveLibrary& lib, std::int32_t handle,
                                    const std::string& folder) {
    std::vector<std::string> names;
    std::int32_t position = 0, type = 0, size = 0;
    while (names.size() < 1000) {
        std::string buffer = FreshNameBuffer();
        position = lib.HPIDir(handle, position, folder, buffer, type, size);
        if (position == 0) break;
        EXPECT_EQ(buffer.size(), NameBufferSize);
        names.push_back(TrimNull(buffer));
    }
    return names;
}

class HpiLibraryTest : public ::testing::Test {
  protected:
    void SetUp() override {
        HpiWriter writer(HpiWriterOptions{0x2A, true});
        writer.AddFile("Units/ARMCOM.FBI", "armcom", hpi::Lz77);
        writer.AddFile("Units/sub/deep.fbi", "deep", hpi::Stored);
        writer.AddFile("Units/corcom.fbi", std::string(70000, 'c'), hpi::Zlib);
        writer.AddEntry("Units", "..", "dots", hpi::Stored);
        archive = tmp / "TOTALA1.HPI";
        ASSERT_TRUE(demo::WriteFile(archive, Built(writer)));
    }
    MemorySettingsStore settings;
    HpiLibrary lib{settings};
    ScratchFolder tmp;
    std::string archive;
};

TEST_F(HpiLibraryTest, ListingProtocolWalksTheFolderThenReturnsZero) {
    const std::int32_t h = lib.HPIOpen(archive);
    ASSERT_NE(h, 0);
    std::string buffer = FreshNameBuffer();
    std::int32_t type = -1, size = -1;
    const std::int32_t first = lib.HPIDir(h, 0, "units", buffer, type, size);
    ASSERT_NE(first, 0);
    EXPECT_EQ(buffer.substr(0, 11), std::string("ARMCOM.FBI\0", 11));
    EXPECT_EQ(buffer.size(), NameBufferSize);
    EXPECT_EQ(buffer.back(), ' ');
    EXPECT_EQ(type, 0);
    EXPECT_EQ(size, 6);
    buffer = FreshNameBuffer();
    EXPECT_NE(lib.HPIDir(h, first, "UNITS", buffer, type, size), 0);
    EXPECT_EQ(TrimNull(buffer), "sub");
    EXPECT_EQ(type, 1);

    EXPECT_EQ(ListFolder(lib, h, "units"),
              (std::vector<std::string>{"ARMCOM.FBI", "sub", "corcom.fbi", ".."}));
    EXPECT_EQ(ListFolder(lib, h, "Units\\SUB"), std::vector<std::string>{"deep.fbi"});
    EXPECT_TRUE(ListFolder(lib, h, "unitpics").empty());
    EXPECT_EQ(lib.HPIDir(h, -5, "units", buffer, type, size), 0);
    EXPECT_EQ(lib.HPIDir(h, 4, "units", buffer, type, size), 0);

    const std::int32_t second = lib.HPIOpen(archive); // each open has its own handle
    EXPECT_NE(second, h);
    EXPECT_EQ(lib.HPIClose(h), 1);
    EXPECT_TRUE(ListFolder(lib, h, "units").empty());
    EXPECT_EQ(ListFolder(lib, second, "units").size(), 4u);
    EXPECT_EQ(lib.HPIClose(h), 0);
}

TEST_F(HpiLibraryTest, ArchivesThatFailToOpenListNothing) {
    ASSERT_TRUE(demo::WriteFile(tmp / "junk.hpi", "HAPI but nothing else"));
    for (const std::string& name : {tmp / "junk.hpi", tmp / "missing.hpi", tmp.path()}) {
        const std::int32_t h = lib.HPIOpen(name);
        EXPECT_EQ(h, 0) << name;
        EXPECT_TRUE(ListFolder(lib, h, "units").empty());
        EXPECT_EQ(lib.HPIExtractFile(h, "units\\ARMCOM.FBI", tmp / "out"), 0);
        lib.HPIClose(h);
    }
    EXPECT_EQ(FolderContent(tmp.path()), (std::vector<std::string>{"TOTALA1.HPI", "junk.hpi"}));
}

TEST_F(HpiLibraryTest, ExtractionReplacesTheDestinationAndLeavesNoStrayFile) {
    const std::int32_t h = lib.HPIOpen(archive);
    const std::string dest = tmp / "out.fbi";
    ASSERT_TRUE(demo::WriteFile(dest, "an older and longer file"));
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\armcom.fbi", dest), 1);
    EXPECT_EQ(Read(dest), "armcom");
    EXPECT_EQ(lib.HPIExtractFile(h, "UNITS/Sub/deep.fbi", dest), 1);
    EXPECT_EQ(Read(dest), "deep");
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\corcom.fbi", dest), 1);
    EXPECT_EQ(Read(dest), std::string(70000, 'c'));
    // Missing entries, folders and unsafe names write nothing.
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\none.fbi", tmp / "a"), 0);
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\sub", tmp / "b"), 0);
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\..", tmp / "c"), 0);
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\armcom.fbi", tmp / "no/such/folder"), 0);
    EXPECT_EQ(FolderContent(tmp.path()), (std::vector<std::string>{"TOTALA1.HPI", "out.fbi"}));
}

TEST_F(HpiLibraryTest, DamagedFileKeepsTheOldDestination) {
    HpiWriter writer;
    writer.AddFile("units/a.fbi", testing::SampleData(5000, 9), hpi::Lz77);
    auto built = writer.Build();
    const std::uint32_t data = built.fileBytes.at("units/a.fbi") + 4 + 19;
    built.bytes[data + 100] = static_cast<char>(built.bytes[data + 100] ^ 0x10);
    ASSERT_TRUE(demo::WriteFile(archive, built.bytes));
    const std::string dest = tmp / "a.fbi";
    ASSERT_TRUE(demo::WriteFile(dest, "old"));
    const std::int32_t h = lib.HPIOpen(archive);
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\a.fbi", dest), 0);
    EXPECT_EQ(Read(dest), "old");
    EXPECT_EQ(FolderContent(tmp.path()), (std::vector<std::string>{"TOTALA1.HPI", "a.fbi"}));
}

TEST(HpiExtractTree, RecreatesFoldersAndSkipsUnsafeNames) {
    ScratchFolder tmp;
    HpiWriter writer;
    writer.AddFile("units/sub/a.fbi", "A", hpi::Zlib);
    writer.AddFile("b.txt", "B", hpi::Stored);
    for (const char* bad : {"..", "../evil", "x/y", "x\\y", "C:z", "/abs"})
        writer.AddEntry("units", bad, "bad", hpi::Stored);
    writer.AddEntry("..", "up.fbi", "bad", hpi::Stored);
    const std::string bytes = Built(writer);
    auto archive = HpiArchive::Open(std::make_unique<MemorySource>(bytes));
    ASSERT_TRUE(archive);
    ASSERT_TRUE(MakeDirectory(tmp / "dest"));
    const TreeExtraction result = ExtractTree(*archive, tmp / "dest");
    EXPECT_EQ(result.written, 2);
    EXPECT_TRUE(result.failed.empty());
    EXPECT_EQ(result.skipped.size(), 7u);
    EXPECT_EQ(Read(tmp / "dest/units/sub/a.fbi"), "A");
    EXPECT_EQ(Read(tmp / "dest/b.txt"), "B");
    EXPECT_EQ(FolderContent(tmp.path()), std::vector<std::string>{"dest"});
    EXPECT_EQ(FolderContent(tmp / "dest/units"), std::vector<std::string>{"sub"});
    EXPECT_EQ(ListArchiveFiles(archive->Root()).size(), 9u);
}

// ---------------------------------------------------------------------------
// The start-up passes over a real game folder
// ---------------------------------------------------------------------------
using NoMessages = vantrel::test::ScriptedMessages;
using NoShell = vantrel::test::RecordingShell;

// Records what the passes ask of the library, the zip steps and the form.
struct Log {
    std::vector<std::string> events;
};
class RecordingLibrary : public HpiLibrary {
  public:
    RecordingLibrary(SettingsStore& s, Log& log) : HpiLibrary(s), log_(log) {}
    std::int32_t HPIOpen(const std::string& fileName) override {
        std::string copy = fileName;
        log_.events.push_back("open " + StripPath(copy));
        return HpiLibrary::HPIOpen(fileName);
    }
    std::int32_t HPIExtractFile(std::int32_t h, const std::string& path,
                                const std::string& dest) override {
        log_.events.push_back("extract " + path);
        return HpiLibrary::HPIExtractFile(h, path, dest);
    }

  private:
    Log& log_;
};
class RecordingZips : public ZipSteps {
  public:
    explicit RecordingZips(Log& log) : log_(log) {}
    void CreateUnzip(const Definitions&, Progress&) override {
        log_.events.push_back("zip create");
    }
    void CountZipFiles(const Definitions&, Progress&) override {
        log_.events.push_back("zip count");
    }
    void UnpackZips(const Definitions&, Progress&) override { log_.events.push_back("zip unpack"); }

  private:
    Log& log_;
};
class RecordingProgress : public Progress {
  public:
    explicit RecordingProgress(Log& log) : log_(log) {}
    void Show() override { log_.events.push_back("show"); }

  private:
    Log& log_;
};

class ExtractionPasses : public ::testing::Test {
  protected:
    void SetUp() override {
        defs.AppDir = WithTrailingSep(tmp / "app");
        defs.GameDir = tmp / "game";
        ASSERT_TRUE(MakeDirectory(tmp / "app") && MakeDirectory(UnitsDir(defs.AppDir)) &&
                    MakeDirectory(defs.GameDir));
    }
    void Write(const std::string& name, const HpiWriter& writer) {
        ASSERT_TRUE(demo::WriteFile(JoinPath(defs.GameDir, name), Built(writer)));
    }
    void Run() {
        StartupPorts ports{progress, messages, settings, shell, random, lib, zips};
        RunExtraction(defs, ports);
    }
    std::vector<std::string> Events(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const std::string& e : log.events)
            if (e.starts_with(prefix)) out.push_back(e.substr(prefix.size()));
        return out;
    }

    ScratchFolder tmp;
    Definitions defs;
    Log log;
    RecordingProgress progress{log};
    NoMessages messages;
    MemorySettingsStore settings;
    NoShell shell;
    DefaultRandom random;
    RecordingLibrary lib{settings, log};
    RecordingZips zips{log};
};

TEST_F(ExtractionPasses, CountThenExtractEveryArchiveFamilyIntoUnits) {
    HpiWriter totala;
    totala.AddFile("UNITS/ARMCOM.FBI", "armcom", hpi::Lz77);
    totala.AddFile("units/arm.fbi.bak", "bak", hpi::Stored);
    totala.AddFile("units/readme.txt", "readme", hpi::Zlib);
    totala.AddFile("units/sub/hidden.fbi", "hidden", hpi::Stored);
    totala.AddFile("units/corcom.fbi", "old corcom", hpi::Stored);
    totala.AddFile("unitpics/ARMCOM.PCX", "pcx", hpi::Zlib);
    Write("TOTALA1.HPI", totala);
    HpiWriter ccx(HpiWriterOptions{0x33, true});
    ccx.AddFile("units/corcom.fbi", "new corcom", hpi::Lz77);
    for (const char* bad : {"../evil.fbi", "a\\b.fbi", "C:x.fbi", "/abs.fbi"})
        ccx.AddEntry("units", bad, "bad", hpi::Stored);
    Write("b.ccx", ccx);
    HpiWriter gp3;
    gp3.AddFile("units/gp3unit.fbi", "gp3", hpi::Zlib);
    Write("x.gp3", gp3);
    HpiWriter gp;
    gp.AddFile("units/gpunit.fbi", "gp", hpi::Zlib);
    Write("x.gp", gp);
    HpiWriter swx;
    swx.AddFile("Units/swx.fbi", "swx", hpi::Stored);
    swx.AddFile("UnitPics/swx.pcx", "swxpcx", hpi::Lz77);
    Write("y.swx", swx);
    ASSERT_TRUE(demo::WriteFile(JoinPath(defs.GameDir, "broken.hpi"), "HAPI\x01"));
    ASSERT_TRUE(MakeDirectory(JoinPath(defs.GameDir, "folder.hpi")));

    Run();

    const std::vector<std::string> perPass = {"broken.hpi", "TOTALA1.HPI", "b.ccx", "x.gp3",
                                              "y.swx"};
    std::vector<std::string> opens;
    for (int pass = 0; pass < 4; ++pass)
        opens.insert(opens.end(), perPass.begin(), perPass.end());
    EXPECT_EQ(Events("open "), opens);
    // Zip steps come between the counting and the extraction passes, unpacking last.
    auto at = [&](const std::string& e) {
        return std::find(log.events.begin(), log.events.end(), e) - log.events.begin();
    };
    EXPECT_EQ(at("zip create"), 10);
    EXPECT_EQ(at("zip count"), 11);
    EXPECT_EQ(at("show"), 12);
    EXPECT_EQ(log.events.back(), "zip unpack");
    EXPECT_EQ(
        Events("extract "),
        (std::vector<std::string>{"units\\ARMCOM.FBI", "units\\arm.fbi.bak", "units\\corcom.fbi",
                                  "units\\corcom.fbi", "units\\gp3unit.fbi", "units\\swx.fbi",
                                  "unitpics\\ARMCOM.PCX", "unitpics\\swx.pcx"}));
    // 12 entries in the "units" folders (the sub-folder and unsafe names
    // included), 2 in "unitpics"; every entry with the extension is counted
    // as done, even one whose name is refused.
    EXPECT_EQ(progress.Maximum(), 100 + 14);
    EXPECT_EQ(progress.Value(), 12);
    EXPECT_EQ(progress.Status(), ArchiveStatusText);

    const std::string units = UnitsDir(defs.AppDir);
    EXPECT_EQ(FolderContent(units),
              (std::vector<std::string>{"ARMCOM.FBI", "ARMCOM.PCX", "arm.fbi.bak", "corcom.fbi",
                                        "gp3unit.fbi", "swx.fbi", "swx.pcx"}));
    EXPECT_EQ(Read(JoinPath(units, "corcom.fbi")), "new corcom"); // the later pass replaces
    EXPECT_EQ(Read(JoinPath(units, "swx.pcx")), "swxpcx");
    EXPECT_EQ(FolderContent(tmp / "app"), std::vector<std::string>{"Units"});
    EXPECT_EQ(FolderContent(tmp.path()), (std::vector<std::string>{"app", "game"}));
}

TEST_F(ExtractionPasses, ArchivesWithoutTheFoldersChangeNothing) {
    HpiWriter other;
    other.AddFile("maps/a.ota", "map", hpi::Zlib);
    other.AddFile("unitsx/a.fbi", "near miss", hpi::Zlib);
    Write("maps.hpi", other);
    Run();
    EXPECT_EQ(progress.Maximum(), 100);
    EXPECT_EQ(progress.Value(), 0);
    EXPECT_EQ(progress.Status(), ArchiveStatusText); // the form is still shown
    EXPECT_TRUE(FolderContent(UnitsDir(defs.AppDir)).empty());
    EXPECT_EQ(Events("open ").size(), 4u); // two counting and two extraction passes
}

TEST_F(ExtractionPasses, MissingGameFolderSkipsTheArchivePasses) {
    defs.GameDir = tmp / "no-game";
    Run();
    EXPECT_EQ(log.events, (std::vector<std::string>{"zip create", "zip count", "zip unpack"}));
}

} // namespace
} // namespace vantrel

#include "base/paths.h"
#include "base/text.h"
#include "demo/demo_units.h"
#include "startup/hpi_library.h"
#include "support/hpi_writer.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using testing::FolderContent;
using testing::HpiWriter;
using testing::ScratchFolder;

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
        HpiWriter writer(testing::HpiWriterOptions{0x2A, true});
        writer.AddFile("Units/ARMCOM.FBI", "armcom", hpi::Lz77);
        writer.AddFile("Units/sub/deep.fbi", "deep", hpi::Stored);
        writer.AddFile("Units/corcom.fbi", std::string(70000, 'c'), hpi::Zlib);
        writer.AddEntry("Units", "..", "dots", hpi::Stored);
        ASSERT_TRUE(demo::WriteFile(archive, writer.Build().bytes));
    }
    MemorySettingsStore settings;
    HpiLibrary lib{settings};
    ScratchFolder tmp;
    std::string archive = tmp / "TOTALA1.HPI";
};

TEST_F(HpiLibraryTest, ListingProtocolWalksTheFolderThenReturnsZero) {
    const std::int32_t h = lib.HPIOpen(archive);
    ASSERT_NE(h, 0);
    std::string buffer = FreshNameBuffer();
    std::int32_t type = -1, size = -1;
    const std::int32_t first = lib.HPIDir(h, 0, "units", buffer, type, size);
    ASSERT_NE(first, 0);
    EXPECT_EQ(buffer.substr(0, 11), std::string("ARMCOM.FBI\0", 11));
    EXPECT_EQ(buffer.back(), ' ');
    EXPECT_EQ(type, 0);
    EXPECT_EQ(size, 6);
    EXPECT_NE(lib.HPIDir(h, first, "UNITS", buffer, type, size), 0);
    EXPECT_EQ(type, 1); // "sub" is a folder

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

TEST_F(HpiLibraryTest, ExtractionReplacesTheDestinationOnlyOnSuccess) {
    const std::int32_t h = lib.HPIOpen(archive);
    const std::string dest = tmp / "out.fbi";
    ASSERT_TRUE(demo::WriteFile(dest, "an older and longer file"));
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\armcom.fbi", dest), 1);
    EXPECT_EQ(Read(dest), "armcom");
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\corcom.fbi", dest), 1);
    EXPECT_EQ(Read(dest), std::string(70000, 'c'));
    // Missing entries and unsafe names write nothing.
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\none.fbi", tmp / "a"), 0);
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\..", tmp / "c"), 0);
    EXPECT_EQ(lib.HPIExtractFile(h, "units\\armcom.fbi", tmp / "no/such/folder"), 0);

    // A file whose data is damaged keeps the old destination.
    HpiWriter writer;
    writer.AddFile("units/a.fbi", testing::SampleData(5000, 9), hpi::Lz77);
    auto built = writer.Build();
    const std::uint32_t data = built.fileBytes.at("units/a.fbi") + 4 + 19;
    built.bytes[data + 100] = static_cast<char>(built.bytes[data + 100] ^ 0x10);
    ASSERT_TRUE(demo::WriteFile(tmp / "damaged.hpi", built.bytes));
    const std::int32_t damaged = lib.HPIOpen(tmp / "damaged.hpi");
    EXPECT_EQ(lib.HPIExtractFile(damaged, "units\\a.fbi", dest), 0);
    EXPECT_EQ(Read(dest), std::string(70000, 'c'));
    EXPECT_EQ(FolderContent(tmp.path()),
              (std::vector<std::string>{"TOTALA1.HPI", "damaged.hpi", "out.fbi"}));
}

TEST(HpiExtractTree, RecreatesFoldersAndSkipsUnsafeNames) {
    ScratchFolder tmp;
    HpiWriter writer;
    writer.AddFile("units/sub/a.fbi", "A", hpi::Zlib);
    writer.AddFile("b.txt", "B", hpi::Stored);
    for (const char* bad : {"..", "../evil", "x/y", "x\\y", "C:z", "/abs"})
        writer.AddEntry("units", bad, "bad", hpi::Stored);
    writer.AddEntry("..", "up.fbi", "bad", hpi::Stored);
    const std::string bytes = writer.Build().bytes;
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

// The archive's cap counts what it has unpacked so far: once reached, the
// remaining files are refused before any of their data is read.
TEST(HpiExtractTree, StopsAtTheArchiveCap) {
    HpiWriter writer;
    for (const char* name : {"a", "b", "c", "d"})
        writer.AddFile(std::string("units/") + name, std::string(4000, *name), hpi::Zlib);
    const std::string bytes = writer.Build().bytes;
    auto archive = HpiArchive::Open(std::make_unique<MemorySource>(bytes));
    ASSERT_TRUE(archive);
    archive->SetLimits({UINT64_MAX, 10000});
    ScratchFolder tmp;
    const TreeExtraction result = ExtractTree(*archive, tmp.path());
    EXPECT_EQ(result.written, 2);
    EXPECT_EQ(result.failed, (std::vector<std::string>{
                                 "units/c: past the archive's cap of 10000 bytes",
                                 "units/d: past the archive's cap of 10000 bytes"}));
    EXPECT_EQ(archive->BytesExtracted(), 8000u);
}

} // namespace
} // namespace vantrel

#include "base/paths.h"
#include "demo/demo_units.h"
#include "formats/hpi_extract.h"
#include "support/hpi_writer.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace vantrel {
namespace {

using testing::FolderContent;
using testing::HpiWriter;
using testing::ScratchFolder;
using Lines = std::vector<std::string>;

std::string Read(const std::string& path) {
    return ReadWholeFile(path).value_or("<missing>");
}

// The archive reads `bytes` in place: they must outlive it.
std::unique_ptr<HpiArchive> Archive(const std::string& bytes) {
    return HpiArchive::Open(std::make_unique<MemorySource>(bytes));
}

TEST(HpiExtract, ReplacesTheDestinationOnlyOnSuccess) {
    ScratchFolder tmp;
    HpiWriter writer(testing::HpiWriterOptions{0x2A, true});
    writer.AddFile("units/ARMCOM.FBI", "armcom", hpi::Lz77);
    writer.AddFile("units/corcom.fbi", std::string(70000, 'c'), hpi::Zlib);
    writer.AddFile("units/a.fbi", testing::SampleData(5000, 9), hpi::Lz77);
    auto built = writer.Build();
    // One byte of a.fbi's compressed data flipped (whole-file encryption
    // keeps it a flip).
    const std::uint32_t data = built.fileBytes.at("units/a.fbi") + 4 + 19;
    built.bytes[data + 100] = static_cast<char>(built.bytes[data + 100] ^ 0x10);
    auto archive = Archive(built.bytes);
    ASSERT_TRUE(archive);
    const OpenFolder folder(tmp.path());
    ASSERT_TRUE(demo::WriteFile(tmp / "out.fbi", "an older and longer file"));
    std::string why;
    EXPECT_TRUE(ExtractToFile(*archive, *archive->FindFile("units/armcom.fbi"), folder, "out.fbi"));
    EXPECT_EQ(Read(tmp / "out.fbi"), "armcom");
    EXPECT_TRUE(ExtractToFile(*archive, *archive->FindFile("units/corcom.fbi"), folder, "out.fbi"));
    EXPECT_EQ(Read(tmp / "out.fbi"), std::string(70000, 'c'));
    EXPECT_FALSE(
        ExtractToFile(*archive, *archive->FindFile("units/a.fbi"), folder, "out.fbi", &why));
    EXPECT_EQ(why, "chunk checksum mismatch");
    EXPECT_EQ(Read(tmp / "out.fbi"), std::string(70000, 'c'));
    EXPECT_EQ(FolderContent(tmp.path()), Lines{"out.fbi"});
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
    auto archive = Archive(bytes);
    ASSERT_TRUE(archive);
    ASSERT_TRUE(MakeDirectory(tmp / "dest"));
    const TreeExtraction result = ExtractTree(*archive, tmp / "dest");
    EXPECT_EQ(result.written, 2);
    EXPECT_TRUE(result.failed.empty());
    EXPECT_EQ(result.skipped.size(), 7u);
    EXPECT_EQ(Read(tmp / "dest/units/sub/a.fbi"), "A");
    EXPECT_EQ(Read(tmp / "dest/b.txt"), "B");
    EXPECT_EQ(FolderContent(tmp.path()), Lines{"dest"});
    EXPECT_EQ(FolderContent(tmp / "dest/units"), Lines{"sub"});
    EXPECT_EQ(ListArchiveFiles(archive->Root()).size(), 9u);
}

// Symbolic links already inside the destination, where a folder or a file
// of the archive goes, are refused: nothing is written where they point.
TEST(HpiExtractTree, NeverFollowsALinkInsideTheDestination) {
    ScratchFolder tmp;
    HpiWriter writer;
    writer.AddFile("units/a.fbi", "A", hpi::Stored);
    writer.AddFile("b.txt", "B", hpi::Stored);
    writer.AddFile("c.txt", "C", hpi::Stored);
    const std::string bytes = writer.Build().bytes;
    auto archive = Archive(bytes);
    ASSERT_TRUE(archive);
    ASSERT_TRUE(MakeDirectory(tmp / "dest") && MakeDirectory(tmp / "outside"));
    ASSERT_TRUE(demo::WriteFile(tmp / "outside/b.txt", "kept"));
    std::filesystem::create_directory_symlink(tmp / "outside", tmp / "dest/units");
    std::filesystem::create_symlink(tmp / "outside/b.txt", tmp / "dest/b.txt");

    const TreeExtraction result = ExtractTree(*archive, tmp / "dest");

    EXPECT_EQ(result.failed, (Lines{"units: a symbolic link stands in the way",
                                    "b.txt: a symbolic link stands in the way"}));
    EXPECT_EQ(result.written, 1);
    EXPECT_EQ(FolderContent(tmp / "outside"), Lines{"b.txt"});
    EXPECT_EQ(Read(tmp / "outside/b.txt"), "kept");
    EXPECT_EQ(Read(tmp / "dest/c.txt"), "C");
}

// The archive's cap counts what it has unpacked so far: once reached, the
// remaining files are refused before any of their data is read.
TEST(HpiExtractTree, StopsAtTheArchiveCap) {
    HpiWriter writer;
    for (const char* name : {"a", "b", "c", "d"})
        writer.AddFile(std::string("units/") + name, std::string(4000, *name), hpi::Zlib);
    const std::string bytes = writer.Build().bytes;
    auto archive = Archive(bytes);
    ASSERT_TRUE(archive);
    archive->SetLimits({UINT64_MAX, 10000});
    ScratchFolder tmp;
    const TreeExtraction result = ExtractTree(*archive, tmp.path());
    EXPECT_EQ(result.written, 2);
    EXPECT_EQ(result.failed, (Lines{"units/c: past the archive's cap of 10000 bytes",
                                    "units/d: past the archive's cap of 10000 bytes"}));
    EXPECT_EQ(archive->BytesExtracted(), 8000u);
}

} // namespace
} // namespace vantrel

#include "formats/hpi_archive.h"
#include "support/hpi_writer.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

namespace vantrel {
namespace {

using testing::BuiltArchive;
using testing::HpiWriter;
using testing::HpiWriterOptions;
using testing::PatchByte;
using testing::PatchU32;
using testing::SampleData;

// The archive reads `bytes` in place: they must outlive it.
std::unique_ptr<HpiArchive> OpenBytes(const std::string& bytes) {
    return HpiArchive::Open(std::make_unique<MemorySource>(bytes));
}

std::optional<std::string> Unpack(const HpiArchive& archive, const std::string& path) {
    const HpiEntry* e = archive.FindFile(path);
    if (!e) return std::nullopt;
    std::string out;
    bool ok = archive.Extract(*e, [&out](const std::uint8_t* d, std::size_t n) {
        EXPECT_LE(n, hpi::ChunkSize);
        out.append(reinterpret_cast<const char*>(d), n);
        return true;
    });
    if (!ok) return std::nullopt;
    return out;
}

std::string DecodeLz77Text(const std::string& in, std::size_t outSize, bool* ok) {
    std::string out(outSize, '\0');
    *ok = hpi::DecodeLz77(reinterpret_cast<const std::uint8_t*>(in.data()), in.size(),
                          reinterpret_cast<std::uint8_t*>(out.data()), outSize);
    return out;
}

TEST(HpiEncryption, MatchesHandComputedBytes) {
    // key = ~((k * 4) | (k >> 6)): only the low byte matters.
    EXPECT_EQ(hpi::FileKey(1), 0xFB);
    EXPECT_EQ(hpi::FileKey(0x40), 0xFE); // the ">> 6" part reaches the low byte
    // plain = (pos ^ key) ^ ~stored; position 20 = 0x14, only its low byte counts.
    EXPECT_EQ(hpi::CryptByte(0xFB, 20, 0x00), 0x10);
    EXPECT_EQ(hpi::CryptByte(0xFB, 20 + 256, 0x00), 0x10);
    // chunk data: plain = (stored - i) ^ i
    EXPECT_EQ(hpi::DecryptChunkByte(0x45, 3), 0x41);
    EXPECT_EQ(hpi::EncryptChunkByte(0x41, 3), 0x45);
}

TEST(HpiLz77, DecodesHandWrittenStreamAndRejectsBadOnes) {
    // tag 0x0C: literal, literal, match, match(end). The match copies from
    // window position 1 (the first literal) four times: "ab" + "abab".
    const std::string stream("\x0C"
                             "ab"
                             "\x12\x00"
                             "\x00\x00",
                             7);
    bool ok = false;
    EXPECT_EQ(DecodeLz77Text(stream, 6, &ok), "ababab");
    EXPECT_TRUE(ok);
    // Unpacks to more than claimed, stops short of it, has no end mark, cuts a
    // match word in half, is empty.
    using Bad = std::pair<std::string, std::size_t>;
    for (const auto& [in, size] : {Bad{stream, 5}, Bad{stream, 7}, Bad{stream.substr(0, 5), 6},
                                   Bad{stream.substr(0, 4), 6}, Bad{"", 0}}) {
        DecodeLz77Text(in, size, &ok);
        EXPECT_FALSE(ok) << in.size() << " bytes for " << size;
    }
}

// Every compression with and without each encryption.
class HpiRoundTrip
    : public ::testing::TestWithParam<std::tuple<std::uint8_t, std::uint32_t, bool>> {};

TEST_P(HpiRoundTrip, EveryFileUnpacksToItsBytes) {
    const auto [method, key, encryptChunks] = GetParam();
    HpiWriter writer(HpiWriterOptions{key, encryptChunks});
    const std::map<std::string, std::string> files = {
        {"units/ARMCOM.FBI", SampleData(200000, 1)}, // four chunks, the last partial
        {"units/empty.fbi", ""},
        {"units/exact.fbi", SampleData(65536, 2)},
        {"units/zeros.fbi", std::string(70000, '\0')}, // matches overlapping their source
        {"units/sub/deep.fbi", SampleData(300, 3)},
        {"unitpics/armcom.pcx", SampleData(4097, 4)},
    };
    for (const auto& [path, data] : files)
        writer.AddFile(path, data, method);
    const std::string bytes = writer.Build().bytes;
    if (method == hpi::Lz77) EXPECT_LT(bytes.size(), 200000u); // matches, not only literals
    auto archive = OpenBytes(bytes);
    ASSERT_TRUE(archive);
    for (const auto& [path, data] : files) {
        auto got = Unpack(*archive, path);
        ASSERT_TRUE(got) << path;
        EXPECT_EQ(*got, data) << path;
    }
    // Names match without regard to case, with either separator.
    ASSERT_TRUE(archive->FindFolder("UNITS/Sub/"));
    EXPECT_EQ(archive->FindFolder("units")->children.size(), 5u);
    EXPECT_EQ(archive->FindFolder(""), &archive->Root());
    EXPECT_FALSE(archive->FindFolder("units/none"));
    EXPECT_FALSE(archive->FindFolder("units/exact.fbi")); // a file is not a folder
    EXPECT_EQ(Unpack(*archive, "units\\armcom.fbi"), files.at("units/ARMCOM.FBI"));
    EXPECT_FALSE(archive->FindFile("units"));
    EXPECT_FALSE(archive->FindFile(""));
}

INSTANTIATE_TEST_SUITE_P(AllMethods, HpiRoundTrip,
                         ::testing::Combine(::testing::Values(hpi::Stored, hpi::Lz77, hpi::Zlib),
                                            ::testing::Values(0u, 0x7F3A21B9u, 0x40u),
                                            ::testing::Bool()));

BuiltArchive SmallArchive(std::uint32_t key = 0) {
    HpiWriter writer(HpiWriterOptions{key, true});
    writer.AddFile("units/stored.fbi", SampleData(300, 1), hpi::Stored);
    writer.AddFile("units/lz.fbi", SampleData(700, 2), hpi::Lz77);
    writer.AddFile("units/sub/z.fbi", SampleData(500, 3), hpi::Zlib);
    writer.AddFile("unitpics/p.pcx", SampleData(100, 4), hpi::Lz77);
    return writer.Build();
}

std::size_t CountFiles(const HpiEntry& folder) {
    std::size_t n = 0;
    for (const HpiEntry& e : folder.children)
        n += e.isDirectory ? CountFiles(e) : 1;
    return n;
}

// Each fault refuses the archive with its own reason.
TEST(HpiMalformed, HeaderProblemsRefuseTheArchiveWithTheirReason) {
    const BuiltArchive good = SmallArchive();
    ASSERT_TRUE(OpenBytes(good.bytes));
    auto reason = [](const std::string& bytes) {
        std::string why;
        return HpiArchive::Open(std::make_unique<MemorySource>(bytes), &why) ? "opened" : why;
    };
    auto damaged = [&](std::uint32_t offset, std::uint32_t value) {
        std::string bytes = good.bytes;
        PatchU32(bytes, offset, value);
        return reason(bytes);
    };
    EXPECT_EQ(damaged(0, 0x49504149), "not an archive of the game");
    EXPECT_EQ(damaged(4, hpi::SavedGameMarker), "a saved game, not an archive");
    EXPECT_EQ(damaged(4, 0x00020000), "unknown archive version");
    EXPECT_EQ(damaged(8, static_cast<std::uint32_t>(good.bytes.size() + 1)), "data ends early");
    EXPECT_EQ(damaged(8, 24), "directory out of place");         // ends before the root header
    EXPECT_EQ(damaged(16, 4), "directory out of place");         // root inside the header
    EXPECT_EQ(damaged(16, 0xFFFFFFF0), "directory out of place"); // root past the end
    EXPECT_EQ(reason(""), "not an archive of the game");
    EXPECT_EQ(reason("plain text"), "not an archive of the game");
    EXPECT_EQ(reason("HAPI"), "data ends early");
}

TEST(HpiMalformed, DamagedChunksFailToExtract) {
    const std::uint32_t key = 0x5555;
    const BuiltArchive good = SmallArchive(key);
    const std::uint32_t chunk = good.fileBytes.at("units/lz.fbi") + 4; // one chunk
    // The reason the damaged file gives, when the archive still opens and
    // its other files are intact.
    auto fails = [&](std::uint32_t offset, std::uint32_t value, bool asByte) -> std::string {
        std::string bytes = good.bytes;
        if (asByte)
            PatchByte(bytes, offset, static_cast<std::uint8_t>(value), key);
        else
            PatchU32(bytes, offset, value, key);
        auto archive = OpenBytes(bytes);
        if (!archive || !Unpack(*archive, "units/stored.fbi")) return "archive damaged";
        std::string why;
        const bool ok = archive->Extract(*archive->FindFile("units/lz.fbi"),
                                         [](const std::uint8_t*, std::size_t) { return true; }, &why);
        return ok ? "extracted" : why;
    };
    EXPECT_EQ(fails(chunk + 15, 0, false), "chunk checksum mismatch");
    EXPECT_EQ(fails(chunk, 0x48535152, false), "chunk marker missing");
    EXPECT_EQ(fails(chunk + 11, 699, false), "chunk size does not fit the file");
    EXPECT_EQ(fails(chunk + 11, 0x100000, false), "chunk size does not fit the file");
    EXPECT_EQ(fails(chunk + 7, 0xFFFFFF00, false), "chunk runs past its end");
    EXPECT_EQ(fails(chunk - 4, 3, false), "chunk shorter than its header");
    EXPECT_EQ(fails(chunk - 4, 0xFFFFFFFF, false), "data ends early");
    EXPECT_EQ(fails(chunk + 5, 7, true), "unknown compression method");
    // The whole archive still opens and the other files are intact.
    EXPECT_TRUE(Unpack(*OpenBytes(good.bytes), "units/lz.fbi"));
}

TEST(HpiMalformed, DirectoryCyclesAndBadOffsetsDropEntries) {
    const BuiltArchive good = SmallArchive();
    const std::size_t all = CountFiles(OpenBytes(good.bytes)->Root());
    ASSERT_EQ(all, 4u);
    auto filesAfter = [&](std::uint32_t offset, std::uint32_t value) -> std::size_t {
        std::string bytes = good.bytes;
        PatchU32(bytes, offset, value);
        auto archive = OpenBytes(bytes);
        return archive ? CountFiles(archive->Root()) : 99;
    };
    const std::uint32_t sub = good.entryRecord.at("units/sub");
    EXPECT_EQ(filesAfter(sub + 4, good.folderHeader.at("")), 3u);      // back to the root
    EXPECT_EQ(filesAfter(sub + 4, good.folderHeader.at("units")), 3u); // back to its parent
    const std::uint32_t units = good.entryRecord.at("units");
    EXPECT_EQ(filesAfter(units + 4, good.folderHeader.at("")), 1u); // only unitpics remains
    const std::uint32_t lz = good.entryRecord.at("units/lz.fbi");
    EXPECT_EQ(filesAfter(lz, 0xFFFFFFF0), 3u);        // name past the end
    EXPECT_EQ(filesAfter(lz, good.directoryEnd), 3u); // name after the block
    EXPECT_EQ(filesAfter(lz + 4, 0x7FFFFFFF), 3u);    // record past the end
    const std::uint32_t lzData = good.fileRecord.at("units/lz.fbi");
    EXPECT_EQ(filesAfter(lzData, 0xFFFFFF00), 3u);     // data past the end
    EXPECT_EQ(filesAfter(lzData + 4, 0xFFFFFFF0), 3u); // absurd unpacked size
    const std::uint32_t storedData = good.fileRecord.at("units/stored.fbi");
    EXPECT_EQ(filesAfter(storedData + 4, 0xFFFFFFFF), 3u);
    const std::uint32_t root = good.folderHeader.at("");
    EXPECT_EQ(filesAfter(root, 0xFFFFFFFF), 0u);     // absurd entry count
    EXPECT_EQ(filesAfter(root + 4, 0xFFFFFFF0), 0u); // list past the end
}

TEST(HpiMalformed, FoldersNestedDeeperThan64RefuseTheArchive) {
    for (const int depth : {64, 65}) {
        std::string path;
        for (int i = 0; i < depth; ++i)
            path += "d/";
        HpiWriter writer;
        writer.AddFile(path + "x.fbi", "x", hpi::Stored);
        const std::string bytes = writer.Build().bytes;
        std::string why;
        EXPECT_EQ(HpiArchive::Open(std::make_unique<MemorySource>(bytes), &why) != nullptr,
                  depth == 64);
        EXPECT_EQ(why, depth == 64 ? "" : "directory nests deeper than 64") << depth;
    }
}

} // namespace
} // namespace vantrel

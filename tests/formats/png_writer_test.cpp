#include "formats/png_writer.h"

#include "base/paths.h"
#include "demo/demo_units.h"
#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

namespace vantrel {
namespace {

using Chunk = std::pair<std::string, std::string>; // type and data

std::string Big32(std::uint32_t v) {
    return {static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
            static_cast<char>(v)};
}

// The chunks after the signature; a chunk whose CRC does not match is typed "bad CRC".
std::vector<Chunk> Chunks(const std::string& png) {
    EXPECT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
    std::vector<Chunk> out;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        std::size_t len = 0;
        for (std::size_t i = 0; i < 4; ++i)
            len = len << 8 | static_cast<std::uint8_t>(png[at + i]);
        const auto sum =
            crc32(0, reinterpret_cast<const Bytef*>(png.data() + at + 4), static_cast<uInt>(len + 4));
        const bool good = png.substr(at + 8 + len, 4) == Big32(static_cast<std::uint32_t>(sum));
        out.push_back({good ? png.substr(at + 4, 4) : "bad CRC", png.substr(at + 8, len)});
        at += 12 + len;
    }
    return out;
}

std::string Inflate(const std::string& data, std::size_t size) {
    std::string out(size + 1, '\0');
    uLongf got = static_cast<uLongf>(out.size());
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(out.data()), &got,
                         reinterpret_cast<const Bytef*>(data.data()), static_cast<uLong>(data.size())),
              Z_OK);
    out.resize(got);
    return out;
}

// An indexed picture (8 columns with the padding one) becomes a palette PNG, a
// true-colour one an RGB PNG; every row is stored unfiltered.
TEST(PngWriterTest, PicturesBecomePngsOfTheirKind) {
    const demo::DemoUnit& unit = demo::DemoUnits().front();
    for (const PcxImage& img : {test::DecodedImage(demo::DemoPicture256(unit, 7, 5)),
                                test::DecodedImage(demo::DemoPicture24(unit, 9, 4))}) {
        const bool indexed = img.format == PcxImage::Format::Indexed8;
        SCOPED_TRACE(indexed ? "indexed" : "true colour");
        std::string header = Big32(static_cast<std::uint32_t>(img.width)) +
                             Big32(static_cast<std::uint32_t>(img.height)) + "\x08" +
                             (indexed ? "\x03" : "\x02") + std::string(3, '\0');
        std::string palette, rows;
        for (std::uint32_t c : img.colours)
            palette += Big32(c).substr(1);
        for (int y = 0; y < img.height; ++y) {
            rows.push_back('\0');
            for (int x = 0; x < img.width; ++x)
                rows += indexed ? std::string(1, static_cast<char>(img.Row(y)[x]))
                                : Big32(img.ColourAt(x, y)).substr(1);
        }
        std::vector<Chunk> chunks = Chunks(EncodePng(img));
        ASSERT_EQ(chunks.size(), indexed ? 4u : 3u);
        EXPECT_EQ(chunks.front(), Chunk("IHDR", header));
        if (indexed) EXPECT_EQ(chunks[1], Chunk("PLTE", palette));
        EXPECT_EQ(chunks[chunks.size() - 2].first, "IDAT");
        EXPECT_EQ(Inflate(chunks[chunks.size() - 2].second, rows.size()), rows);
        EXPECT_EQ(chunks.back(), Chunk("IEND", ""));
    }
}

TEST(PngWriterTest, WritePngReplacesWholeFilesAndReportsFailures) {
    test::ScratchDir dir;
    const PcxImage img = test::DecodedImage(demo::DemoPicture24(demo::DemoUnits().front(), 4, 4));
    std::string error;
    ASSERT_TRUE(demo::WriteFile(dir.File("out.png"), "old"));
    ASSERT_TRUE(WritePng(dir.File("out.png"), img, error)) << error;
    EXPECT_EQ(ReadWholeFile(dir.File("out.png")), EncodePng(img));

    EXPECT_FALSE(WritePng(dir.File("no/such/folder/out.png"), img, error));
    EXPECT_NE(error.find("cannot write"), std::string::npos) << error;
    EXPECT_FALSE(WritePng(dir.File("empty.png"), PcxImage{}, error));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

} // namespace
} // namespace vantrel

#include "formats/png_writer.h"

#include "base/paths.h"
#include "base/text.h"

#include "demo/demo_units.h"
#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

namespace vantrel {
namespace {

// A minimal PNG reader for what the writer produces: it checks the
// signature, every chunk's CRC, the chunk order and the filter bytes.
struct ReadPng {
    int width = 0, height = 0, depth = 0, colourType = 0;
    std::vector<std::uint8_t> palette; // r, g, b triples
    std::vector<std::uint8_t> rows;    // unfiltered samples
    std::vector<std::string> chunks;
    std::string error;
};

std::uint32_t Get32(const std::string& s, std::size_t at) {
    return static_cast<std::uint32_t>(static_cast<std::uint8_t>(s[at])) << 24 |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(s[at + 1])) << 16 |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(s[at + 2])) << 8 |
           static_cast<std::uint8_t>(s[at + 3]);
}

ReadPng Parse(const std::string& png) {
    ReadPng out;
    if (png.compare(0, 8, std::string("\x89PNG\r\n\x1a\n", 8)) != 0) {
        out.error = "signature";
        return out;
    }
    std::string idat;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const std::uint32_t len = Get32(png, at);
        const std::string type = png.substr(at + 4, 4);
        const std::string data = png.substr(at + 8, len);
        const auto* typeAndData = reinterpret_cast<const Bytef*>(png.data() + at + 4);
        if (crc32(0, typeAndData, len + 4) != Get32(png, at + 8 + len)) out.error = "crc " + type;
        out.chunks.push_back(type);
        if (type == "IHDR") {
            out.width = static_cast<int>(Get32(data, 0));
            out.height = static_cast<int>(Get32(data, 4));
            out.depth = data[8];
            out.colourType = data[9];
        } else if (type == "PLTE") {
            out.palette.assign(data.begin(), data.end());
        } else if (type == "IDAT") {
            idat += data;
        }
        at += 12 + len;
    }
    const std::size_t rowBytes =
        static_cast<std::size_t>(out.width) * (out.colourType == 2 ? 3 : 1);
    std::vector<std::uint8_t> raw((rowBytes + 1) * static_cast<std::size_t>(out.height));
    uLongf rawSize = static_cast<uLongf>(raw.size());
    if (uncompress(raw.data(), &rawSize, reinterpret_cast<const Bytef*>(idat.data()),
                   static_cast<uLong>(idat.size())) != Z_OK ||
        rawSize != raw.size()) {
        out.error = "inflate";
        return out;
    }
    for (std::size_t y = 0; y < static_cast<std::size_t>(out.height); ++y) {
        if (raw[y * (rowBytes + 1)] != 0) out.error = "filter";
        out.rows.insert(out.rows.end(), raw.begin() + static_cast<long>(y * (rowBytes + 1) + 1),
                        raw.begin() + static_cast<long>((y + 1) * (rowBytes + 1)));
    }
    return out;
}

TEST(PngWriterTest, IndexedPictureBecomesPalettePng) {
    const demo::DemoUnit& unit = demo::DemoUnits().front();
    const PcxImage img =
        test::DecodedImage(demo::DemoPicture256(unit, 7, 5)); // 8 columns with padding
    const ReadPng png = Parse(EncodePng(img));
    ASSERT_EQ(png.error, "");
    EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "PLTE", "IDAT", "IEND"}));
    EXPECT_EQ(png.width, 8);
    EXPECT_EQ(png.height, 5);
    EXPECT_EQ(png.depth, 8);
    EXPECT_EQ(png.colourType, 3);
    EXPECT_EQ(png.rows, img.pixels);
    ASSERT_EQ(png.palette.size(), 768u);
    for (std::size_t i = 0; i < 256; ++i)
        EXPECT_EQ(static_cast<std::uint32_t>(png.palette[3 * i] << 16 |
                                             png.palette[3 * i + 1] << 8 | png.palette[3 * i + 2]),
                  img.colours[i]);
}

TEST(PngWriterTest, TrueColourPictureBecomesRgbPng) {
    const demo::DemoUnit& unit = demo::DemoUnits().back();
    const PcxImage img = test::DecodedImage(demo::DemoPicture24(unit, 9, 4));
    const ReadPng png = Parse(EncodePng(img));
    ASSERT_EQ(png.error, "");
    EXPECT_EQ(png.chunks, (std::vector<std::string>{"IHDR", "IDAT", "IEND"}));
    EXPECT_EQ(png.width, 9);
    EXPECT_EQ(png.colourType, 2);
    ASSERT_EQ(png.rows.size(), 9u * 4u * 3u);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 9; ++x) {
            const std::size_t at =
                (static_cast<std::size_t>(y) * 9 + static_cast<std::size_t>(x)) * 3;
            EXPECT_EQ(static_cast<std::uint32_t>(png.rows[at] << 16 | png.rows[at + 1] << 8 |
                                                 png.rows[at + 2]),
                      img.ColourAt(x, y));
        }
}

TEST(PngWriterTest, WritePngReplacesWholeFilesAndReportsFailures) {
    test::ScratchDir dir;
    const PcxImage img = test::DecodedImage(demo::DemoPicture24(demo::DemoUnits().front(), 4, 4));
    std::string error;
    ASSERT_TRUE(demo::WriteFile(dir.File("out.png"), "old"));
    ASSERT_TRUE(WritePng(dir.File("out.png"), img, error)) << error;
    std::optional<std::string> written = ReadWholeFile(dir.File("out.png"));
    ASSERT_TRUE(written);
    EXPECT_EQ(Parse(*written).error, "");

    EXPECT_FALSE(WritePng(dir.File("no/such/folder/out.png"), img, error));
    EXPECT_NE(error.find("cannot write"), std::string::npos) << error;
    EXPECT_FALSE(WritePng(dir.File("empty.png"), PcxImage{}, error));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

} // namespace
} // namespace vantrel

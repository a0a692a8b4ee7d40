#include "formats/pcx.h"

#include "demo/demo_units.h"
#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using test::Bytes;
using test::Fields;
using test::Pcx24;
using test::Pcx256;
using test::ScriptedMessages;

std::vector<int> RowOf(const PcxImage& img, int y) {
    return std::vector<int>(img.Row(y), img.Row(y) + img.BytesPerRow());
}

TEST(PcxWriterTest, WriterOutputDecodesToItsColours) {
    std::vector<std::uint8_t> px;
    std::vector<demo::Rgb> rgb;
    for (int i = 0; i < 5 * 3; ++i) {
        px.push_back(static_cast<std::uint8_t>(i < 3 ? 200 : i * 37)); // a run, and run bytes
        rgb.push_back({static_cast<std::uint8_t>(i * 11), static_cast<std::uint8_t>(250 - i),
                       static_cast<std::uint8_t>(i < 4 ? 0xC8 : i)});
    }
    ScriptedMessages msgs;
    const PcxResult indexed = DecodePCX(demo::EncodePcx256(5, 3, px, test::TestPalette()), msgs);
    const PcxResult rgb24 = DecodePCX(demo::EncodePcx24(5, 3, rgb), msgs);
    ASSERT_TRUE(indexed && rgb24);
    EXPECT_EQ(indexed.image->format, PcxImage::Format::Indexed8);
    EXPECT_EQ(indexed.image->width, 6); // line bytes: the padding column shows
    EXPECT_EQ(rgb24.image->format, PcxImage::Format::Rgb32);
    EXPECT_EQ(rgb24.image->width, 5); // the padding byte of each plane is not shown
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(indexed.image->ColourAt(5, y), test::TestColour(0));
        for (int x = 0; x < 5; ++x) {
            const auto i = static_cast<std::size_t>(y * 5 + x);
            EXPECT_EQ(indexed.image->ColourAt(x, y), test::TestColour(px[i]));
            EXPECT_EQ(rgb24.image->ColourAt(x, y),
                      static_cast<std::uint32_t>(rgb[i].r << 16 | rgb[i].g << 8 | rgb[i].b));
        }
    }
    EXPECT_TRUE(msgs.shown.empty());
}

TEST(PcxStreamTest, HandMadeStreamsDecodeToTheseRows) {
    struct Row {
        const char* label;
        std::string file;
        std::vector<std::vector<int>> rows;
    };
    const Row cases[] = {
        {"the padding byte of a 3 x 2 picture shows as a fourth column",
         Pcx256(Fields(3, 2, 1, 4), Bytes({1, 2, 3, 9, 4, 5, 6, 8})),
         {{1, 2, 3, 9}, {4, 5, 6, 8}}},
        {"193 7 is one pixel; 192 5 writes nothing but takes two bytes",
         Pcx256(Fields(8, 1, 1, 8), Bytes({193, 7, 192, 5, 195, 2, 1, 63, 3, 4})),
         {{7, 2, 2, 2, 1, 63, 3, 4}}},
        // Row 0: a run of 5 at x = 1 is cut to width - x = 2, the next byte fills the
        // padding column. Row 1: at x = 3 a run of 2 has width - x = 0 and writes nothing.
        {"a run crossing the line end is cut to the width",
         Pcx256(Fields(3, 2, 1, 4), Bytes({1, 0xC5, 9, 7, 4, 5, 6, 0xC2, 9, 8})),
         {{1, 9, 9, 7}, {4, 5, 6, 8}}},
        {"width beyond the bytes per line without a crossing run",
         Pcx256(Fields(6, 1, 1, 4), Bytes({0xC4, 9})),
         {{9, 9, 9, 9}}},
        {"planes are red, green, blue stored as blue, green, red, zero",
         Pcx24(Fields(1, 1, 3, 2), Bytes({10, 99, 20, 99, 30, 99})),
         {{30, 20, 10, 0}}},
        // 12 bytes of red, green, blue lines: the first run fills row 0 and the first red
        // byte of row 1, the count-0 run writes nothing, the last run fills green and blue.
        {"24-bit data is one stream, runs cross planes and lines",
         Pcx24(Fields(2, 2, 3, 2), Bytes({0xC7, 5, 6, 0xC0, 1, 0xC4, 8})),
         {{5, 5, 5, 0, 5, 5, 5, 0}, {8, 8, 5, 0, 8, 8, 6, 0}}},
    };
    for (const Row& c : cases) {
        SCOPED_TRACE(c.label);
        ScriptedMessages msgs;
        PcxResult r = DecodePCX(c.file, msgs);
        ASSERT_TRUE(r) << r.reason;
        ASSERT_EQ(r.image->height, static_cast<int>(c.rows.size()));
        for (int y = 0; y < r.image->height; ++y)
            EXPECT_EQ(RowOf(*r.image, y), c.rows[static_cast<std::size_t>(y)]) << "row " << y;
    }
}

TEST(PcxStreamTest, BrokenOrUnsupportedFilesGiveNoPictureAndNoMessage) {
    std::vector<demo::Rgb> px(8 * 8, demo::Rgb{1, 2, 3});
    px[5] = {200, 201, 202};
    const std::string good24 = demo::EncodePcx24(8, 8, px);
    // 64 x 64 needs 4096 bytes; the 10 data bytes and the 769 palette bytes (read as
    // pixels once the data runs out) are not enough.
    std::array<demo::Rgb, 256> plain;
    plain.fill({1, 2, 3});
    const std::string short256 = demo::PcxHeader(Fields(64, 64, 1, 64)) + std::string(10, '\1') +
                                 demo::PcxPaletteBlock(plain);
    std::string runAtEnd256 = short256;
    runAtEnd256.back() = static_cast<char>(0xC1);
    struct Row {
        const char* label;
        std::string file;
        PcxFailure failure;
        const char* reason;
    };
    const Row cases[] = {
        {"empty", "", PcxFailure::Unreadable, ""},
        {"shorter than the header", std::string(100, '\x08'), PcxFailure::Corrupt, "header"},
        {"a cut run that would write past the line", Pcx256(Fields(6, 1, 1, 4), Bytes({0xC5, 9})),
         PcxFailure::Corrupt, "overruns"},
        {"256-colour data ending early", short256, PcxFailure::Corrupt, "ends early"},
        {"256-colour run byte without its value", runAtEnd256, PcxFailure::Corrupt, "inside a run"},
        {"24-bit data ending early", good24.substr(0, good24.size() - 4), PcxFailure::Corrupt,
         "ends early"},
        {"24-bit run byte without its value", good24 + Bytes({0xC1}), PcxFailure::Corrupt,
         "inside a run"},
        {"more data than the picture holds", good24 + Bytes({1, 2}), PcxFailure::Corrupt,
         "past the end"},
        {"24-bit width beyond the bytes per line would read outside the planes",
         Pcx24(Fields(4, 1, 3, 2), Bytes({1, 2, 3, 4, 5, 6})), PcxFailure::BadSize, ""},
    };
    ScriptedMessages msgs;
    for (const Row& c : cases) {
        SCOPED_TRACE(c.label);
        PcxResult r = DecodePCX(c.file, msgs);
        EXPECT_FALSE(r);
        EXPECT_EQ(r.failure, c.failure);
        EXPECT_NE(r.reason.find(c.reason), std::string::npos) << r.reason;
    }
    // Only 8 bits in one plane or in three are read.
    for (auto [bits, planes] : {std::pair{1, 1}, {1, 4}, {8, 4}, {8, 2}, {4, 1}, {24, 1}}) {
        demo::PcxHeaderFields f = Fields(4, 4, planes, 4);
        f.bitsPerPixel = bits;
        EXPECT_EQ(DecodePCX(Pcx256(f, std::string(64, '\1')), msgs).failure,
                  PcxFailure::Unsupported)
            << bits << " bits, " << planes << " planes";
    }
    // A count-0 run at the end writes nothing, so the picture is still whole.
    EXPECT_TRUE(DecodePCX(good24 + Bytes({0xC0, 9}), msgs));
    EXPECT_TRUE(msgs.shown.empty());
}

TEST(Pcx256Test, MissingPaletteMarkerShowsTheMessageOncePerCall) {
    const std::string file = Pcx256(Fields(2, 1, 1, 2), Bytes({1, 2}), 11);
    ScriptedMessages msgs;
    PcxResult r = DecodePCX(file, msgs);
    EXPECT_FALSE(r);
    EXPECT_EQ(r.failure, PcxFailure::NoPalette);
    ASSERT_EQ(msgs.shown.size(), 1u);
    EXPECT_EQ(msgs.shown[0].text,
              "The PCX that was passed didn't have a 256 colour palette! Can't read it!");
    EXPECT_FALSE(DecodePCX(file, msgs));
    EXPECT_EQ(msgs.shown.size(), 2u);

    // A file too short to hold a palette has no marker either.
    EXPECT_EQ(DecodePCX(demo::PcxHeader(Fields(2, 1, 1, 2)) + Bytes({1, 2}), msgs).failure,
              PcxFailure::NoPalette);
    EXPECT_EQ(msgs.shown.size(), 3u);
}

TEST(PcxRejectTest, AbsurdSizesGiveNoPictureWithoutAllocating) {
    ScriptedMessages msgs;
    const std::string data(64, '\1');
    auto check = [&](demo::PcxHeaderFields f, const char* what) {
        f.planes = 1;
        EXPECT_EQ(DecodePCX(Pcx256(f, data), msgs).failure, PcxFailure::BadSize) << what;
        f.planes = 3;
        EXPECT_EQ(DecodePCX(Pcx24(f, data), msgs).failure, PcxFailure::BadSize) << what;
    };
    check(Fields(16385, 2, 1, 16386), "wider than 16384");
    check(Fields(2, 16385, 1, 2), "taller than 16384");
    check(Fields(2, 2, 1, 16386), "more than 16384 bytes per line");
    demo::PcxHeaderFields negative = Fields(2, 2, 1, 2);
    negative.xMin = 10; // xMax 1: width -8
    check(negative, "negative width");
    check(Fields(2, 0, 1, 2), "zero height");
    check(Fields(2, 2, 1, 0), "zero bytes per line");
    check(Fields(2, 2, 1, -4), "negative bytes per line");
    // Sizes in range, but 64 bytes of data cannot describe 16000 x 16000.
    check(Fields(16000, 16000, 1, 16000), "more than the data could hold");

    EXPECT_TRUE(msgs.shown.empty());
}

TEST(PcxFileTest, LoadPcxPicksTheDecoderFromTheHeaderOrFindsNothing) {
    test::ScratchDir dir;
    const demo::DemoUnit& unit = demo::DemoUnits().front();
    ASSERT_TRUE(demo::WriteFile(dir.File("a.pcx"), demo::DemoPicture256(unit, 64, 64)));
    ASSERT_TRUE(demo::WriteFile(dir.File("b.pcx"), demo::DemoPicture24(unit, 33, 20)));
    ScriptedMessages msgs;

    PcxResult a = LoadPCX(dir.File("a.pcx"), msgs);
    ASSERT_TRUE(a) << a.reason;
    EXPECT_EQ(a.image->format, PcxImage::Format::Indexed8);
    EXPECT_EQ(a.image->width, 64);
    PcxResult b = LoadPCX(dir.File("b.pcx"), msgs);
    ASSERT_TRUE(b) << b.reason;
    EXPECT_EQ(b.image->format, PcxImage::Format::Rgb32);
    EXPECT_EQ(b.image->width, 33);
    EXPECT_EQ(b.image->height, 20);

    // The two decoders on their own give the same pictures.
    EXPECT_EQ(LoadPCX256(dir.File("a.pcx"), msgs).image->pixels, a.image->pixels);
    EXPECT_EQ(LoadPCX24(dir.File("b.pcx")).image->pixels, b.image->pixels);

    ASSERT_TRUE(demo::WriteFile(dir.File("empty.pcx"), ""));
    for (const std::string& path : {dir.File("missing.pcx"), dir.File("empty.pcx"), dir.path()})
        EXPECT_EQ(LoadPCX(path, msgs).failure, PcxFailure::Unreadable) << path;
    EXPECT_TRUE(msgs.shown.empty());
}

} // namespace
} // namespace vantrel

#include "mainwindow/qt_picture.h"

#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(QtPictureTest, IndexedPictureKeepsIndicesAndColourTable) {
    // 5 bytes per line, so QImage's 4-byte aligned rows differ from the packed ones.
    const PcxImage img = test::DecodedImage(
        test::Pcx256(test::Fields(5, 2, 1, 5), test::Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10})));
    const QImage q = ToQImage(img);
    ASSERT_EQ(q.format(), QImage::Format_Indexed8);
    EXPECT_EQ(q.width(), 5);
    EXPECT_EQ(q.height(), 2);
    EXPECT_EQ(q.colorCount(), 256);
    EXPECT_EQ(q.pixelIndex(4, 0), 5);
    EXPECT_EQ(q.pixelIndex(0, 1), 6);
    EXPECT_EQ(q.pixel(2, 1), 0xFF000000u | test::TestColour(8));
}

TEST(QtPictureTest, TrueColourPictureIsOpaqueRgb32) {
    std::vector<demo::Rgb> px;
    for (int i = 0; i < 3 * 2; ++i)
        px.push_back({static_cast<std::uint8_t>(40 * i), 7, static_cast<std::uint8_t>(255 - i)});
    const PcxImage img = test::DecodedImage(demo::EncodePcx24(3, 2, px));
    const QImage q = ToQImage(img);
    ASSERT_EQ(q.format(), QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            const demo::Rgb& c = px[static_cast<std::size_t>(y * 3 + x)];
            EXPECT_EQ(q.pixel(x, y), qRgb(c.r, c.g, c.b)) << x << "," << y;
        }
    EXPECT_TRUE(ToQImage(PcxImage{}).isNull());
}

} // namespace
} // namespace vantrel

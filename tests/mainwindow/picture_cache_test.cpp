#include "mainwindow/picture_cache.h"

#include "demo/demo_units.h"
#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using test::ScriptedMessages;

class PictureCacheTest : public ::testing::Test {
  protected:
    std::string Write(const std::string& name, int width, bool trueColour = false) {
        const demo::DemoUnit& unit = demo::DemoUnits().front();
        const std::string path = dir.File(name);
        EXPECT_TRUE(demo::WriteFile(path, trueColour ? demo::DemoPicture24(unit, width, 8)
                                                     : demo::DemoPicture256(unit, width, 8)));
        return path;
    }
    test::ScratchDir dir;
    ScriptedMessages msgs;
};

TEST_F(PictureCacheTest, SecondLoadDoesNotDecodeAgainUnlessTheFileChanged) {
    PictureCache cache;
    const std::string a = Write("a.pcx", 16);
    PcxResult first = cache.Load(a, msgs);
    PcxResult second = cache.Load(a, msgs);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first.image, second.image); // the very same picture
    EXPECT_EQ(cache.Decodes(), 1u);
    EXPECT_EQ(cache.Hits(), 1u);

    Write("a.pcx", 8, true); // other size and contents
    PcxResult r = cache.Load(a, msgs);
    ASSERT_TRUE(r);
    EXPECT_EQ(r.image->format, PcxImage::Format::Rgb32);
    EXPECT_EQ(cache.Decodes(), 2u);

    // Same size, only the modification time moves on.
    fs::last_write_time(a, fs::last_write_time(a) + std::chrono::seconds(5));
    EXPECT_TRUE(cache.Load(a, msgs));
    EXPECT_EQ(cache.Decodes(), 3u);
    EXPECT_EQ(cache.Entries(), 1u);
}

TEST_F(PictureCacheTest, FailuresBehaveAsWithoutTheCache) {
    PictureCache cache;
    const std::string bad = dir.File("bad.pcx");
    ASSERT_TRUE(demo::WriteFile(
        bad, test::Pcx256(test::Fields(2, 1, 1, 2), test::Bytes({1, 2}), /*marker=*/0)));
    EXPECT_EQ(cache.Load(bad, msgs).failure, PcxFailure::NoPalette);
    EXPECT_EQ(cache.Load(bad, msgs).failure, PcxFailure::NoPalette);
    EXPECT_EQ(msgs.shown.size(), 2u); // once per card that asks
    EXPECT_EQ(cache.Decodes(), 1u);

    // A missing file is not remembered: once it exists it is read.
    const std::string later = dir.File("later.pcx");
    EXPECT_EQ(cache.Load(later, msgs).failure, PcxFailure::Unreadable);
    Write("later.pcx", 4);
    EXPECT_TRUE(cache.Load(later, msgs));
}

TEST_F(PictureCacheTest, UnitPicturesAreFoundInAnySpelling) {
    // As the game's archives and a unit pack write them.
    for (const char* file : {"ARMAAS.PCX", "armcsy.pcx", "armfido.pcx", "CorAk.Pcx"})
        Write(file, 4);
    const UnitsFolder units(dir.path());
    PictureCache cache;
    for (const char* unitName : {"ARMAAS", "ARMCSY", "ARMFIDO", "corak"})
        EXPECT_TRUE(cache.LoadUnitPicture(units, std::string(unitName) + ".pcx", msgs)) << unitName;
    EXPECT_EQ(cache.LoadUnitPicture(units, "ARMNONE.pcx", msgs).failure, PcxFailure::Unreadable);
    EXPECT_TRUE(msgs.shown.empty());
}

TEST_F(PictureCacheTest, LeastRecentlyUsedGoFirst) {
    PictureCache byCount(PictureCache::DefaultMaxBytes, 2);
    const std::string a = Write("a.pcx", 4), b = Write("b.pcx", 4), c = Write("c.pcx", 4);
    byCount.Load(a, msgs);
    byCount.Load(b, msgs);
    byCount.Load(a, msgs); // a is now the most recent
    byCount.Load(c, msgs); // b goes
    EXPECT_EQ(byCount.Entries(), 2u);
    EXPECT_EQ(byCount.Decodes(), 3u);
    byCount.Load(a, msgs);
    EXPECT_EQ(byCount.Decodes(), 3u);
    byCount.Load(b, msgs);
    EXPECT_EQ(byCount.Decodes(), 4u);

    // By bytes: room for one 64 x 8 true-colour picture (2 KiB of pixels plus
    // the record), not two.
    PictureCache byBytes(4000);
    const std::string big1 = Write("big1.pcx", 64, true), big2 = Write("big2.pcx", 64, true);
    byBytes.Load(big1, msgs);
    byBytes.Load(big2, msgs);
    EXPECT_EQ(byBytes.Entries(), 1u);
    EXPECT_LE(byBytes.Bytes(), 4000u);
    byBytes.Load(big2, msgs);
    EXPECT_EQ(byBytes.Hits(), 1u);
}

} // namespace
} // namespace vantrel

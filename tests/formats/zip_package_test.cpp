#include "formats/zip_package.h"

#include "base/paths.h"
#include "base/text.h"
#include "catalogue/units_folder.h"
#include "support/zip_maker.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

namespace vantrel {
namespace {

using namespace vantrel::testing; // zip packages, scratch folders, Files

class UnzipTest : public ::testing::Test {
  protected:
    UnzipTest() : units(JoinPath(scratch.path(), "app/Units")) {
        MakeDirectory(JoinPath(scratch.path(), "app"));
        MakeDirectory(units);
    }

    // Writes the package and unpacks it all into `units`; false when it
    // cannot be opened. Files there in any letter case are kept.
    bool Unpack(const std::vector<ZipItem>& items) {
        EXPECT_TRUE(WriteZip(Zip(), items));
        return UnpackZip();
    }
    bool UnpackZip() {
        auto zip = ZipPackage::Open(Zip(), &error);
        if (!zip) return false;
        UnitsFolder there(units);
        zip->UnpackTo(
            units, [&there](const std::string& bare) { return !there.Find(bare).empty(); },
            [this](const ZipEntryReport& r) {
                reports.push_back(std::string(r.name) + " " + Result(r.result) +
                                  (r.reason.empty() ? "" : " " + std::string(r.reason)));
            });
        return true;
    }
    static std::string Result(ZipResult r) {
        static const char* names[] = {"written", "exists", "unusable", "encrypted", "too large",
                                      "failed"};
        return names[static_cast<int>(r)];
    }
    std::string Zip() const { return JoinPath(scratch.path(), "app/pack.zip"); }
    std::string Unit(const std::string& name) const {
        return ReadWholeFile(JoinPath(units, name)).value_or("<missing>");
    }

    ScratchFolder scratch;
    std::string units;
    std::string error;
    Files reports;
};

TEST_F(UnzipTest, UnpacksUnderBareNamesAndKeepsExistingFiles) {
    WriteBytes(JoinPath(units, "armx.fbi"), "old lower");
    ASSERT_TRUE(Unpack({{"units/", "", true},
                        {"units/ARMX.FBI", "new"}, // there already, in another case
                        {"unitpics/ARMX.PCX", std::string(5000, 'p')},
                        {"Extra/Deep/corx.fbi", "stored", false, false, true},
                        {"other/corx.fbi", "second"}, // the same bare name again
                        {"units/BOMB.FBI", std::string(MaxUnzipEntryBytes + 1, '\0')}}));
    EXPECT_EQ(FilesBelow(units), (Files{"ARMX.PCX", "armx.fbi", "corx.fbi"}));
    EXPECT_EQ(Unit("armx.fbi"), "old lower");
    EXPECT_EQ(Unit("ARMX.PCX"), std::string(5000, 'p'));
    EXPECT_EQ(Unit("corx.fbi"), "stored");
    // Every file entry is reported with what became of it.
    EXPECT_EQ(reports, (Files{"units/ARMX.FBI exists", "unitpics/ARMX.PCX written",
                              "Extra/Deep/corx.fbi written", "other/corx.fbi exists",
                              "units/BOMB.FBI too large"}));
}

TEST_F(UnzipTest, EncryptedEntriesAreSkipped) {
    if (!testing::CanEncryptZipEntries()) GTEST_SKIP() << "libzip cannot encrypt here";
    ASSERT_TRUE(Unpack({{"units/SECRET.FBI", "hidden", false, true}, {"units/OPEN.FBI", "open"}}));
    EXPECT_EQ(FilesBelow(units), (Files{"OPEN.FBI"}));
    EXPECT_EQ(reports, (Files{"units/SECRET.FBI encrypted", "units/OPEN.FBI written"}));
}

TEST_F(UnzipTest, HostileNamesNeverLeaveTheDestination) {
    const std::vector<ZipItem> hostile = {
        {"../evil1.fbi", "1"},   {"..\\evil2.fbi", "2"}, {"units/../../evil3.fbi", "3"},
        {"/abs/evil4.fbi", "4"}, {"..", "dots"},         {"units/..", "dots"},
        {"units\\.", "dot"},     {"units\\", "folder"},  {"a/./b//c.fbi", "c"},
    };
    ASSERT_TRUE(Unpack(hostile));
    EXPECT_EQ(FilesBelow(scratch.path()),
              (Files{"app/Units/c.fbi", "app/Units/evil1.fbi", "app/Units/evil2.fbi",
                     "app/Units/evil3.fbi", "app/Units/evil4.fbi", "app/pack.zip"}));
}

// A package that cannot be read says why; a link in the folder is not
// written through.
TEST_F(UnzipTest, UnreadablePackagesSayWhyAndLinksAreNotFollowed) {
    for (const std::string& bytes :
         {std::string(), std::string("PK\3\4 not really a zip"), std::string(4096, '\x55')}) {
        WriteBytes(Zip(), bytes);
        EXPECT_FALSE(UnpackZip());
        EXPECT_TRUE(error.starts_with("damaged zip package (")) << error;
    }
    EXPECT_FALSE(ZipPackage::Open(JoinPath(scratch.path(), "missing.zip"), &error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_FALSE(ZipPackage::Open(units, &error));
    EXPECT_EQ(error, "is a folder");
    EXPECT_TRUE(FilesBelow(units).empty());

    std::filesystem::create_symlink(JoinPath(scratch.path(), "outside.fbi"),
                                    JoinPath(units, "LINK.FBI"));
    ASSERT_TRUE(Unpack({{"units/LINK.FBI", "x"}}));
    EXPECT_FALSE(std::filesystem::exists(JoinPath(scratch.path(), "outside.fbi")));
}

// Byte offset of the first occurrence of `signature` in `bytes`.
std::size_t Find(const std::string& bytes, const char* signature) {
    std::size_t at = bytes.find(signature, 0, 4);
    EXPECT_NE(at, std::string::npos);
    return at;
}

TEST_F(UnzipTest, DamagedEntriesLeaveNoFileBehind) {
    // A stored entry whose data no longer matches its checksum.
    ASSERT_TRUE(WriteZip(Zip(), {{"units/A.FBI", std::string(100, 'a'), false, false, true},
                                 {"units/B.FBI", "fine"}}));
    std::string bytes = ReadWholeFile(Zip()).value();
    bytes[Find(bytes, "aaaa") + 50] = 'X';
    WriteBytes(Zip(), bytes);
    EXPECT_TRUE(UnpackZip());
    EXPECT_EQ(FilesBelow(units), (Files{"B.FBI"}));

    // A deflated entry that unpacks to more than its declared size.
    ASSERT_TRUE(WriteZip(Zip(), {{"units/C.FBI", std::string(100000, 'c')}}));
    bytes = ReadWholeFile(Zip()).value();
    const char small[4] = {10, 0, 0, 0};
    std::memcpy(&bytes[Find(bytes, "PK\3\4") + 22], small, 4);
    std::memcpy(&bytes[Find(bytes, "PK\1\2") + 24], small, 4);
    WriteBytes(Zip(), bytes);
    reports.clear();
    EXPECT_TRUE(UnpackZip());
    EXPECT_EQ(FilesBelow(units), (Files{"B.FBI"}));
    EXPECT_EQ(reports, Files{"units/C.FBI failed damaged data in the package"});
}

} // namespace
} // namespace vantrel

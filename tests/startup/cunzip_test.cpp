#include "startup/cUnzip.h"

#include "base/paths.h"
#include "base/text.h"
#include "support/zip_maker.h"

#include <gtest/gtest.h>

#include <cstring>

namespace vantrel {
namespace {

using namespace vantrel::testing; // zip packages, scratch folders, Files

class UnzipTest : public ::testing::Test {
  protected:
    UnzipTest() : units(JoinPath(scratch.path(), "app/Units")) {
        MakeDirectory(JoinPath(scratch.path(), "app"));
        MakeDirectory(units);
        unzip.Progress = [this](int lCount, const std::string& sMsg) {
            EXPECT_EQ(lCount, 1);
            messages.push_back(sMsg);
        };
    }

    // Writes the package, points the unzip object at it and unpacks it all.
    bool Unpack(const std::vector<ZipItem>& items) {
        EXPECT_TRUE(WriteZip(Zip(), items));
        unzip.UnzipFolder(units);
        unzip.ZipFile(Zip());
        return unzip.Unzip();
    }
    std::string Zip() const { return JoinPath(scratch.path(), "app/pack.zip"); }
    std::string Unit(const std::string& name) const {
        return ReadWholeFile(JoinPath(units, name)).value_or("<missing>");
    }
    std::vector<std::string> Inflated() const {
        std::vector<std::string> found;
        for (const std::string& m : messages)
            if (m.find("inflating:") != std::string::npos) found.push_back(m);
        return found;
    }

    ScratchFolder scratch;
    std::string units;
    cUnzip unzip;
    std::vector<std::string> messages;
};

TEST(UnzipMessageTextTest, PassesTwoTo31999BytesWithBackslashesAndANul) {
    EXPECT_FALSE(UnzipMessageText(""));
    EXPECT_FALSE(UnzipMessageText("x"));
    EXPECT_EQ(UnzipMessageText("ab"), std::string("ab\0", 3));
    EXPECT_EQ(UnzipMessageText(std::string(31999, 'x'))->size(), 32000u);
    EXPECT_FALSE(UnzipMessageText(std::string(32000, 'x')));
}

TEST_F(UnzipTest, DirectoryListsFilesAllSelectedAndOnlySelectedOnesUnpack) {
    ASSERT_TRUE(WriteZip(Zip(), {{"units/", "", true},
                                 {"units/ARMX.FBI", "[UNITINFO]"},
                                 {"unitpics/armx.pcx", "pcx", false, false, true},
                                 {"readme.txt", ""}}));
    unzip.ZipFile(Zip());
    EXPECT_EQ(unzip.Directory(), 0);
    ASSERT_EQ(unzip.FileCount(), 4); // the folder entry counts too
    EXPECT_EQ(unzip.Filename(1), "");
    EXPECT_EQ(unzip.FileDirectory(1), "units/");
    EXPECT_EQ(unzip.Filename(2), "ARMX.FBI");
    EXPECT_EQ(unzip.FileDirectory(2), "units/");
    EXPECT_EQ(unzip.FileSize(2), 10u);
    EXPECT_EQ(unzip.FileDirectory(4), "");
    for (int i = 1; i <= 4; ++i)
        EXPECT_TRUE(unzip.FileSelected(i)) << i;
    EXPECT_EQ(unzip.Filename(0), "");
    EXPECT_EQ(unzip.Filename(5), "");

    unzip.Directory(); // listing again does not add the entries twice
    EXPECT_EQ(unzip.FileCount(), 4);

    unzip.FileSelected(3, false);
    unzip.FileSelected(9, false); // out of range: ignored
    unzip.UnzipFolder(units);
    unzip.Unzip();
    EXPECT_EQ(FilesBelow(units), (Files{"ARMX.FBI", "readme.txt"}));
    ScratchFolder other; // none selected: nothing unpacked
    unzip.UnzipFolder(other.path());
    for (int i = 1; i <= 4; ++i)
        unzip.FileSelected(i, false);
    unzip.Unzip();
    EXPECT_TRUE(FilesBelow(other.path()).empty());

    unzip.ZipFile(Zip()); // a new package empties the list
    EXPECT_EQ(unzip.FileCount(), 0);
}

TEST_F(UnzipTest, UnpacksUnderBareNamesAndKeepsExistingFiles) {
    WriteBytes(JoinPath(units, "armx.fbi"), "old lower");
    ASSERT_TRUE(Unpack({{"units/", "", true},
                        {"units/ARMX.FBI", "new"}, // there already, in another case
                        {"unitpics/ARMX.PCX", std::string(5000, 'p')},
                        {"Extra/Deep/corx.fbi", "stored", false, false, true},
                        {"other/CORX.FBI", "second"}, // the same bare name again
                        {"units/BOMB.FBI", std::string(MaxUnzipEntryBytes + 1, '\0')}}));
    EXPECT_EQ(FilesBelow(units), (Files{"ARMX.PCX", "armx.fbi", "corx.fbi"}));
    EXPECT_EQ(Unit("armx.fbi"), "old lower");
    EXPECT_EQ(Unit("ARMX.PCX"), std::string(5000, 'p'));
    EXPECT_EQ(Unit("corx.fbi"), "stored");

    // Every file is reported, the skipped ones too, but only those written as
    // inflated; with backslashes and a closing NUL.
    EXPECT_EQ(messages.size(), 5u);
    const std::vector<std::string> inflated = Inflated();
    ASSERT_EQ(inflated.size(), 2u);
    EXPECT_EQ(inflated[0],
              "  inflating: " + ReplaceAll(units, "/", "\\") + "\\ARMX.PCX" + std::string(1, '\0'));
    EXPECT_EQ(inflated[1].find('/'), std::string::npos);
}

TEST_F(UnzipTest, EncryptedEntriesAreSkipped) {
    if (!testing::CanEncryptZipEntries()) GTEST_SKIP() << "libzip cannot encrypt here";
    ASSERT_TRUE(Unpack({{"units/SECRET.FBI", "hidden", false, true}, {"units/OPEN.FBI", "open"}}));
    EXPECT_EQ(FilesBelow(units), (Files{"OPEN.FBI"}));
    EXPECT_EQ(Inflated().size(), 1u);
    unzip.Directory();
    EXPECT_TRUE(unzip.FileEncrypted(1));
    EXPECT_FALSE(unzip.FileEncrypted(2));
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
    EXPECT_EQ(Inflated().size(), 5u);

    // Recreated folders lose their "..", "." and empty parts as well.
    ScratchFolder other;
    units = JoinPath(other.path(), "Units");
    unzip.UseFolderNames(true);
    ASSERT_TRUE(Unpack(hostile));
    EXPECT_EQ(FilesBelow(other.path()),
              (Files{"Units/a/b/c.fbi", "Units/abs/evil4.fbi", "Units/evil1.fbi", "Units/evil2.fbi",
                     "Units/units/evil3.fbi"}));
}

TEST_F(UnzipTest, UnreadablePackagesYieldNothing) {
    for (const std::string& bytes :
         {std::string(), std::string("PK\3\4 not really a zip"), std::string(4096, '\x55')}) {
        WriteBytes(Zip(), bytes);
        unzip.ZipFile(Zip());
        EXPECT_NE(unzip.Directory(), 0);
        EXPECT_EQ(unzip.FileCount(), 0);
        unzip.UnzipFolder(units);
        EXPECT_FALSE(unzip.Unzip());
    }
    unzip.ZipFile(JoinPath(scratch.path(), "missing.zip"));
    EXPECT_NE(unzip.Directory(), 0);
    EXPECT_FALSE(unzip.Unzip());
    EXPECT_TRUE(FilesBelow(units).empty());
    EXPECT_TRUE(Inflated().empty());
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
    unzip.UnzipFolder(units);
    unzip.ZipFile(Zip());
    EXPECT_TRUE(unzip.Unzip());
    EXPECT_EQ(FilesBelow(units), (Files{"B.FBI"}));

    // A deflated entry that unpacks to more than its declared size.
    ASSERT_TRUE(WriteZip(Zip(), {{"units/C.FBI", std::string(100000, 'c')}}));
    bytes = ReadWholeFile(Zip()).value();
    const char small[4] = {10, 0, 0, 0};
    std::memcpy(&bytes[Find(bytes, "PK\3\4") + 22], small, 4);
    std::memcpy(&bytes[Find(bytes, "PK\1\2") + 24], small, 4);
    WriteBytes(Zip(), bytes);
    unzip.ZipFile(Zip());
    unzip.Unzip();
    EXPECT_EQ(FilesBelow(units), (Files{"B.FBI"}));
    EXPECT_EQ(Inflated().size(), 1u);
}

} // namespace
} // namespace vantrel

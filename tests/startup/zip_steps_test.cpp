#include "startup/zip_steps.h"

#include "base/paths.h"
#include "base/text.h"
#include "support/test_support.h"
#include "support/zip_maker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

namespace vantrel {
namespace {

using namespace vantrel::testing; // zip packages, scratch folders, Files

class ZipStepsTest : public ::testing::Test {
  protected:
    ZipStepsTest() {
        defs.AppDir = WithTrailingSep(scratch.path());
        units = UnitsDir(defs.AppDir);
        MakeDirectory(units);
    }
    std::string App(const std::string& name) const { return JoinPath(defs.AppDir, name); }
    void MakePackages() {
        ASSERT_TRUE(WriteZip(
            App("a.zip"),
            {{"units/", "", true}, {"units/armcom.fbi", "a1"}, {"unitpics/ARMCOM.PCX", "a2"}}));
        ASSERT_TRUE(
            WriteZip(App("B.ZIP"), {{"CORX.FBI", "b1"}, {"CORY.FBI", "b2"}, {"Z.PCX", "b3"}}));
        WriteBytes(App("broken.zip"), "not a zip at all");
        WriteBytes(App("notes.txt"), "not a package");
        MakeDirectory(App("folder.zip"));
    }

    ScratchFolder scratch;
    Definitions defs;
    std::string units;
    test::RecordingProgress progress;
    LibzipSteps steps;
};

TEST_F(ZipStepsTest, CountingAddsEveryEntryThenUnpackingShowsEachFile) {
    MakePackages();
    WriteBytes(JoinPath(units, "CORY.FBI"), "kept");
    steps.CountZipFiles(defs, progress);
    EXPECT_EQ(progress.Maximum(), 106); // folder entries count too
    EXPECT_GE(progress.repaints, 3);
    EXPECT_EQ(FilesBelow(units), Files{"CORY.FBI"});

    steps.UnpackZips(defs, progress);
    EXPECT_EQ(FilesBelow(units),
              (Files{"ARMCOM.PCX", "CORX.FBI", "CORY.FBI", "Z.PCX", "armcom.fbi"}));
    EXPECT_EQ(ReadWholeFile(JoinPath(units, "CORY.FBI")), "kept");
    EXPECT_EQ(steps.Failures().files,
              Files{"broken.zip: damaged zip package (Not a zip archive)"});
    EXPECT_EQ(progress.shows, 1);
    EXPECT_EQ(progress.statuses,
              (Files{"Loading....", "Unpacking 'Armcom.fbi' from 'a.zip' ...",
                     "Unpacking 'Armcom.pcx' from 'a.zip' ...",
                     "Unpacking 'Corx.fbi' from 'B.ZIP' ...", "Unpacking 'Z.pcx' from 'B.ZIP' ...",
                     "Processing units..."}));
    EXPECT_EQ(progress.values, (std::vector<int>{0, 0, 0, 0, 1, 2, 3, 4}));
}

TEST_F(ZipStepsTest, WithoutPackagesOnlyTheFormAndTheLastStatusChange) {
    WriteBytes(App("readme.txt"), "x");
    steps.CountZipFiles(defs, progress);
    steps.UnpackZips(defs, progress);
    EXPECT_EQ(progress.shows, 1);
    EXPECT_EQ(progress.statuses, Files{"Processing units..."});
    EXPECT_EQ(progress.Maximum(), 100);
}

TEST_F(ZipStepsTest, AnUnusableUnitsFolderDoesNotStopStartUp) {
    MakePackages();
    ASSERT_EQ(::rmdir(units.c_str()), 0);
    WriteBytes(units, "a file where the folder should be");
    steps.UnpackZips(defs, progress);
    EXPECT_EQ(progress.Status(), ProcessingUnitsText);
    EXPECT_EQ(progress.Value(), 0);
}

} // namespace
} // namespace vantrel

#include "startup/zip_steps.h"

#include "base/paths.h"
#include "base/text.h"
#include "support/zip_maker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

namespace vantrel {
namespace {

using namespace vantrel::testing; // zip packages, scratch folders, Files

// A progress form that remembers what it was asked to do.
class RecordingProgress : public Progress {
  public:
    void Show() override { log.push_back("show"); }
    void Repaint() override { ++repaints; }
    void ProcessEvents() override { log.push_back("events"); }

    std::vector<std::string> log; // "show", "events", "max N", "value N", "status S"
    int repaints = 0;

  protected:
    void OnChange() override {
        if (Maximum() != max_) log.push_back("max " + std::to_string(max_ = Maximum()));
        if (Value() != value_) log.push_back("value " + std::to_string(value_ = Value()));
        if (Status() != status_) log.push_back("status " + (status_ = Status()));
    }

  private:
    int max_ = 100, value_ = 0;
    std::string status_ = "Loading....";
};

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
    RecordingProgress progress;
    LibzipSteps steps;
};

TEST_F(ZipStepsTest, CountingAddsEveryEntryThenUnpackingShowsEachFile) {
    MakePackages();
    WriteBytes(JoinPath(units, "CORY.FBI"), "kept");
    steps.CountZipFiles(defs, progress);
    // Folder entries count as entries.
    EXPECT_EQ(progress.log, (Files{"max 103", "events", "max 106", "events", "events"}));
    EXPECT_GE(progress.repaints, 3);
    EXPECT_EQ(FilesBelow(units), Files{"CORY.FBI"});

    progress.log.clear();
    steps.UnpackZips(defs, progress);
    EXPECT_EQ(FilesBelow(units),
              (Files{"ARMCOM.PCX", "CORX.FBI", "CORY.FBI", "Z.PCX", "armcom.fbi"}));
    EXPECT_EQ(ReadWholeFile(JoinPath(units, "CORY.FBI")), "kept");
    EXPECT_EQ(steps.Failures().files,
              Files{"broken.zip: damaged zip package (Not a zip archive)"});
    EXPECT_EQ(progress.log, (Files{"show", "status Unpacking 'Armcom.fbi' from 'a.zip' ...",
                                   "value 1", "status Unpacking 'Armcom.pcx' from 'a.zip' ...",
                                   "value 2", "status Unpacking 'Corx.fbi' from 'B.ZIP' ...",
                                   "value 3", "status Unpacking 'Z.pcx' from 'B.ZIP' ...",
                                   "value 4", "status Processing units..."}));
}

TEST_F(ZipStepsTest, WithoutPackagesOnlyTheFormAndTheLastStatusChange) {
    WriteBytes(App("readme.txt"), "x");
    steps.CountZipFiles(defs, progress);
    steps.UnpackZips(defs, progress);
    EXPECT_EQ(progress.log, (Files{"show", "status Processing units..."}));
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

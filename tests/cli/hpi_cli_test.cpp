#include "base/paths.h"
#include "base/text.h"
#include "demo/demo_units.h"
#include "formats/hpi_archive.h"
#include "support/hpi_writer.h"
#include "support/scratch_folder.h"
#include "support/zip_maker.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using testing::HpiWriter;
using testing::ScratchFolder;

using test::CliResult;
using test::RunCli;

std::string Q(const std::string& s) {
    return "'" + s + "'";
}

class HpiCli : public ::testing::Test {
  protected:
    void SetUp() override {
        HpiWriter writer(testing::HpiWriterOptions{0x99, true});
        writer.AddFile("units/ARMCOM.FBI", "armcom", hpi::Lz77);
        writer.AddFile("units/readme.txt", "readme!", hpi::Zlib);
        writer.AddFile("unitpics/armcom.pcx", "pcx", hpi::Stored);
        ASSERT_TRUE(MakeDirectory(tmp / "game") && MakeDirectory(tmp / "app"));
        ASSERT_TRUE(demo::WriteFile(tmp / "game/totala1.hpi", writer.Build().bytes));
    }
    ScratchFolder tmp;
};

TEST_F(HpiCli, ListPrintsPathsAndSizesExtractWritesTheTreeBadInputFails) {
    CliResult r = RunCli("hpi list " + Q(tmp / "game/totala1.hpi"));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "units/ARMCOM.FBI\t6\nunits/readme.txt\t7\nunitpics/armcom.pcx\t3\n");
    r = RunCli("hpi extract " + Q(tmp / "game/totala1.hpi") + " " + Q(tmp / "out"));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(ReadWholeFile(tmp / "out/units/readme.txt"), "readme!");

    // A file above 16 MiB is skipped unless the archive is trusted.
    HpiWriter big;
    big.AddFile("units/big.fbi", std::string(17u << 20, 'z'), hpi::Zlib);
    ASSERT_TRUE(demo::WriteFile(tmp / "big.hpi", big.Build().bytes));
    r = RunCli("hpi extract " + Q(tmp / "big.hpi") + " " + Q(tmp / "big"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "vantrel-cli: not written: units/big.fbi: larger than 16 MiB\n");
    EXPECT_FALSE(IsRegularFile(tmp / "big/units/big.fbi"));
    EXPECT_EQ(RunCli("hpi extract --trusted " + Q(tmp / "big.hpi") + " " + Q(tmp / "big")).status,
              0);
    EXPECT_TRUE(IsRegularFile(tmp / "big/units/big.fbi"));

    EXPECT_EQ(RunCli("hpi").status, 2);
    EXPECT_EQ(RunCli("hpi list " + Q(tmp / "none.hpi")).status, 2);
    ASSERT_TRUE(demo::WriteFile(tmp / "junk.hpi", "junk"));
    EXPECT_EQ(RunCli("hpi list " + Q(tmp / "junk.hpi")).status, 1);
}

TEST_F(HpiCli, ExtractRunsTheStartUpPassesThenTheZipSteps) {
    ASSERT_TRUE(testing::WriteZip(tmp / "app/extra.zip", {{"units/gokx.fbi", "gok"}}));
    const CliResult r = RunCli("extract " + Q(tmp / "game") + " " + Q(tmp / "app"));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Reading Total Annihilation Directory...\n"
                     "Extracting units/ARMCOM.FBI from totala1.hpi\n"
                     "Extracting unitpics/armcom.pcx from totala1.hpi\n"
                     "Unpacking 'Gokx.fbi' from 'extra.zip' ...\n"
                     "Processing units...\n"
                     "progress\t3\t104\n");
    EXPECT_EQ(ReadWholeFile(tmp / "app/Units/gokx.fbi"), "gok");
    EXPECT_EQ(ReadWholeFile(tmp / "app/Units/ARMCOM.FBI"), "armcom");
    EXPECT_EQ(RunCli("extract " + Q(tmp / "none") + " " + Q(tmp / "app")).status, 2);

    // A file that cannot be written is named on stderr and fails the run.
    ASSERT_TRUE(MakeDirectory(tmp / "app2") && MakeDirectory(tmp / "app2/Units") &&
                MakeDirectory(tmp / "app2/Units/ARMCOM.FBI"));
    const CliResult bad = RunCli("extract " + Q(tmp / "game") + " " + Q(tmp / "app2"));
    EXPECT_EQ(bad.status, 1);
    EXPECT_NE(bad.err.find("vantrel-cli: not written: totala1.hpi: ARMCOM.FBI: Is a directory\n"),
              std::string::npos)
        << bad.err;
    EXPECT_EQ(ReadWholeFile(tmp / "app2/Units/armcom.pcx"), "pcx");

    // So do a truncated archive and a package that is not a zip.
    const std::string archive = ReadWholeFile(tmp / "game/totala1.hpi").value_or("");
    ASSERT_TRUE(demo::WriteFile(tmp / "game/cut.hpi", archive.substr(0, 40)));
    ASSERT_TRUE(demo::WriteFile(tmp / "app/junk.zip", "junk"));
    const CliResult damaged = RunCli("extract " + Q(tmp / "game") + " " + Q(tmp / "app"));
    EXPECT_EQ(damaged.status, 1);
    for (const char* line : {"not written: cut.hpi: data ends early\n",
                             "not written: junk.zip: damaged zip package (Not a zip archive)\n"})
        EXPECT_NE(damaged.err.find(line), std::string::npos) << damaged.err;
}

} // namespace
} // namespace vantrel

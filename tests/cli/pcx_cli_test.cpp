#include "base/paths.h"
#include "demo/demo_units.h"
#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using test::RunCli;

TEST(PcxCli, WritesPngOrGivesTheReasonAndExitStatus) {
    test::ScratchDir dir;
    ASSERT_TRUE(demo::WriteFile(dir.File("in.pcx"),
                                demo::DemoPicture24(demo::DemoUnits().front(), 12, 10)));
    test::CliResult r = RunCli("pcx " + dir.File("in.pcx") + " " + dir.File("out.png"));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(ReadWholeFile(dir.File("out.png")).value_or("").substr(0, 8),
              std::string("\x89PNG\r\n\x1a\n", 8));

    // No picture: the program's message and the reason, exit status 1.
    ASSERT_TRUE(demo::WriteFile(dir.File("nopal.pcx"),
                                test::Pcx256(test::Fields(2, 1, 1, 2), test::Bytes({1, 2}), 0)));
    r = RunCli("pcx " + dir.File("nopal.pcx") + " " + dir.File("nopal.png"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("didn't have a 256 colour palette"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("marker byte 12 is missing"), std::string::npos) << r.err;
    EXPECT_FALSE(ReadWholeFile(dir.File("nopal.png")));

    EXPECT_EQ(RunCli("pcx " + dir.File("only-one.pcx")).status, 2);
    r = RunCli("pcx " + dir.File("missing.pcx") + " " + dir.File("out.png"));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("no such file"), std::string::npos) << r.err;
}

} // namespace
} // namespace vantrel

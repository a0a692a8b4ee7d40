#include "base/paths.h"
#include "base/text.h"
#include "demo/demo_units.h"
#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/wait.h>

namespace vantrel {
namespace {

struct CliRun {
    int status = -1;
    std::string err;
};

// Runs `vantrel-cli pcx ARGS`, stderr captured in a file of `dir`.
CliRun Pcx(const test::ScratchDir& dir, const std::string& args) {
    const char* cli = std::getenv("VANTREL_CLI");
    if (!cli) return {};
    const std::string errFile = dir.File("stderr.txt");
    const std::string cmd =
        std::string("'") + cli + "' pcx " + args + " >/dev/null 2>'" + errFile + "'";
    CliRun r;
    const int raw = std::system(cmd.c_str());
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.err = ReadWholeFile(errFile).value_or("");
    return r;
}

class PcxCliTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!std::getenv("VANTREL_CLI")) GTEST_SKIP() << "VANTREL_CLI is not set";
    }
    test::ScratchDir dir;
};

TEST_F(PcxCliTest, WritesPngOrGivesTheReasonAndExitStatus) {
    ASSERT_TRUE(demo::WriteFile(dir.File("in.pcx"),
                                demo::DemoPicture24(demo::DemoUnits().front(), 12, 10)));
    CliRun r = Pcx(dir, dir.File("in.pcx") + " " + dir.File("out.png"));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(ReadWholeFile(dir.File("out.png")).value_or("").substr(0, 8),
              std::string("\x89PNG\r\n\x1a\n", 8));

    // No picture: the program's message and the reason, exit status 1.
    ASSERT_TRUE(demo::WriteFile(dir.File("nopal.pcx"),
                                test::Pcx256(test::Fields(2, 1, 1, 2), test::Bytes({1, 2}), 0)));
    r = Pcx(dir, dir.File("nopal.pcx") + " " + dir.File("nopal.png"));
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("didn't have a 256 colour palette"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("marker byte 12 is missing"), std::string::npos) << r.err;
    EXPECT_FALSE(ReadWholeFile(dir.File("nopal.png")));

    EXPECT_EQ(Pcx(dir, dir.File("only-one.pcx")).status, 2);
    r = Pcx(dir, dir.File("missing.pcx") + " " + dir.File("out.png"));
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("no such file"), std::string::npos) << r.err;
}

} // namespace
} // namespace vantrel

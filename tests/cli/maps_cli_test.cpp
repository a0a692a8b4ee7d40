// vantrel-cli maps and use-profile, run as a player would run them.
#include "base/paths.h"
#include "demo/demo_units.h"
#include "support/hpi_writer.h"
#include "support/map_fixtures.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using test::RunCli;

std::string Q(const std::string& s) {
    return "'" + s + "'";
}

TEST(MapsCli, ListPointAtAProfileAndRestore) {
    testing::ScratchFolder tmp;
    const std::string game = tmp / "game";
    testing::HpiWriter writer;
    const std::string map = test::MapOta("Rivers", {"Network 1:DEFAULT", "Easy:Back\\slash"});
    writer.AddFile("maps/Two#Rivers.ota", map, 1);
    writer.AddFile("ai/DEFAULT.TXT", "profile", 0);
    ASSERT_TRUE(MakeDirectory(game) && MakeDirectory(game + "/ai"));
    ASSERT_TRUE(demo::WriteFile(game + "/totala1.hpi", writer.Build().bytes));
    ASSERT_TRUE(demo::WriteFile(game + "/ai/urban.txt", "profile"));

    test::CliResult r = RunCli("maps " + Q(game));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Two#Rivers\t0\tNetwork 1\tDEFAULT\ttotala1.hpi#ai/DEFAULT.TXT\n"
                     "Two#Rivers\t1\tEasy\tBack\\\\slash\tmissing\n");

    // A profile the game does not have is refused unless forced.
    r = RunCli("use-profile " + Q(game) + " nothere two#rivers");
    EXPECT_EQ(r.status, 1);
    EXPECT_FALSE(IsDirectory(game + "/maps"));

    r = RunCli("use-profile " + Q(game) + " urban two#rivers --schema 0");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, game + "/maps/Two#Rivers.ota\n");
    EXPECT_EQ(RunCli("maps " + Q(game)).out,
              "Two#Rivers\t0\tNetwork 1\turban\tai/urban.txt\n"
              "Two#Rivers\t1\tEasy\tBack\\\\slash\tmissing\n");

    r = RunCli("use-profile " + Q(game) + " --restore Two#Rivers");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_FALSE(IsRegularFile(game + "/maps/Two#Rivers.ota"));
    EXPECT_EQ(RunCli("use-profile " + Q(game) + " urban").status, 2);
}

} // namespace
} // namespace vantrel

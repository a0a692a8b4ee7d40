#include "demo/demo_units.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

using vantrel::test::RunCli;

TEST(CliUnits, TableWithEscapesAndExitStatuses) {
    vantrel::test::TempDir dir;
    vantrel::test::WriteText(dir / "a.fbi", "UnitName=A\\B;Side=ARM;Name=Tab\there;"
                                            "Description=two\r\nlines;TEDClass=KBOT;");
    auto r = RunCli("units " + dir.path());
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "index\tSide\tName\tUnitName\tTEDClass\tDescription\tWeight\tLimit\tInclude\n"
                     "1\tARM\tTab\\there\tA\\\\B\tKBOT\ttwo\\r\\nlines\t0\t0\t1\n");
    EXPECT_EQ(RunCli("units " + dir / "missing").status, 2);
    EXPECT_EQ(RunCli("units").status, 2);
    r = RunCli("units --help");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("Loads every *.fbi file"), std::string::npos) << r.out;
    EXPECT_EQ(RunCli("no-such-command").status, 2);
}

TEST(CliUnits, HeadlessDemoRunsOnTheDemoFolder) {
    vantrel::test::TempDir dir;
    vantrel::demo::WriteDemoProgramFolder(dir.path());
    auto r = RunCli("demo " + dir.path());
    ASSERT_EQ(r.status, 0);
    // "ARM" and "Arm" are one side.
    EXPECT_NE(r.out.find("Sides: Arm, Core, Gok\n"), std::string::npos);
    // The demo ends by saving random values; the profile names every included unit.
    const std::string profile = vantrel::test::ReadText(dir / "AI.txt");
    EXPECT_NE(profile.find("Name: Demo AI\r\n"), std::string::npos);
    EXPECT_NE(profile.find("Weight Gokroot "), std::string::npos);
    EXPECT_NE(vantrel::test::ReadText(dir / "AI.set").find("[GOKROOT]\r\nSet=Build;"),
              std::string::npos);
}

#include "base/paths.h"
#include "base/text.h"
#include "catalogue/load_units.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace vantrel;

namespace {
std::string Unit(const std::string& unitName, const std::string& name, const std::string& side,
                 const std::string& ted = "KBOT") {
    return "[UNITINFO]\r\n{\r\nUnitName=" + unitName + ";\r\nSide=" + side + ";\r\nName=" + name +
           ";\r\nDescription=d " + name + ";\r\nTEDClass=" + ted + ";\r\n}\r\n";
}
} // namespace

TEST(LoadUnits, OrderSidesAndFields) {
    test::TempDir dir;
    test::WriteText(dir / "b.fbi", Unit("CORAK", "A.K. left over", "CORE"));
    test::WriteText(dir / "B.FBI", Unit("CORAK", "A.K.", "CORE")); // the same name: one unit
    test::WriteText(dir / "A.FBI", Unit("ARMPW", "Peewee", "ARM"));
    test::WriteText(dir / "c.Fbi", Unit("GOKX", "Gok Thing", "GOK", ""));
    test::WriteText(dir / "d.fbi", Unit("GOKY", "Gok Other", "Gok")); // the same side
    test::WriteText(dir / "aa.fbi", Unit("ARMPW", "Peewee Copy", "ARM")); // same UnitName
    test::WriteText(dir / "notes.txt", "Side=ZZZ;");
    Definitions defs;
    LoadUnitsFromFolder(defs, dir.path(), nullptr, nullptr);

    ASSERT_EQ(defs.Units.UBound(), 5);
    // Names sorted with letters compared as upper case: A.FBI, aa.fbi, B.FBI, c.Fbi, d.fbi.
    EXPECT_EQ(defs.Units[1].Name, "Peewee");
    EXPECT_EQ(defs.Units[2].Name, "Peewee Copy");
    EXPECT_EQ(defs.Units[3].UnitName, "CORAK");
    EXPECT_EQ(defs.Units[4].TEDClass, "");
    EXPECT_EQ(defs.Units[3].Description, "d A.K.");
    EXPECT_TRUE(defs.Units[4].Build && defs.Units[4].Include); // every unit starts included
    ASSERT_EQ(defs.Races.UBound(), 3);
    EXPECT_EQ(defs.Races[1].Name, "ARM");
    EXPECT_EQ(defs.Races[2].Name, "CORE");
    EXPECT_EQ(defs.Races[3].Name, "GOK");
    EXPECT_EQ(defs.SavedUnits.UBound(), 5);
    EXPECT_EQ(defs.UnitFiles.Find("NOTES.TXT"), dir / "notes.txt");
}

TEST(LoadUnits, EmptyFieldsAreReadAgainAsTheGameReadsThem) {
    struct Row {
        const char* text;
        const char* name;
        const char* side;
        const char* unitName;
    };
    const Row rows[] = {
        // Keys in lower case, as thirty units of a real pack write them; an
        // "Objectname=" or "ObjectName=" before the name is never taken for it.
        {"[UNITINFO]\r\n{\r\n\tunitname=armshltx;\r\n\tversion=1;\r\n\tside=ARM;\r\n"
         "\tObjectname=armshltx;\r\n\tname=Skybus Factory;\r\n}\r\n",
         "Skybus Factory", "ARM", "armshltx"},
        {"[UnitInfo]\n{\n unitname=ARMFIDO;\n ObjectName=ARMFIDO.3do;\n name = Fido ;\n}\n",
         "Fido", "", "ARMFIDO"},
        // Found by the exact reading: kept as it stands, blanks and all.
        {"[UNITINFO]{UnitName=A;ObjectName=obj;Side= ARM;name=Ignored;}", "obj", " ARM", "A"},
        // A key inside a value, a comment, a key after the block: none is a key.
        {"[UNITINFO]\n{\nunitname=B;\nname=side=X;\n// side=CORE;\n}\n"
         "[OTHER]\n{\nside=GOK;\n}\n",
         "side=X", "", "B"},
        // A nested block's keys are not the unit's.
        {"[UNITINFO]\n{\nunitname=C;\n[SOUND]\n{\nside=CORE;\n}\nSIDE=Arm;\n}", "", "Arm", "C"},
        {"unitname=D;side=ARM;", "", "", ""}, // no [UNITINFO] block at all
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.text);
        vtUnit unit;
        ReadUnitFields(r.text, unit);
        EXPECT_EQ(unit.Name, r.name);
        EXPECT_EQ(unit.Side, r.side);
        EXPECT_EQ(unit.UnitName, r.unitName);
    }
}

TEST(LoadUnits, OddFilesGiveEmptyRecordsAndNeverStopTheLoad) {
    test::TempDir dir;
    // The display name before "UnitName=": the identifier becomes the name.
    test::WriteText(dir / "1.fbi", "Name=Shown;\r\nUnitName=ARMODD;\r\nSide=ARM;\r\n");
    // No separate "Name=": empty name. A side with a blank stays a side of its own.
    test::WriteText(dir / "2.fbi", "UnitName=ARMNONAME;\r\nSide= ARM;\r\n");
    // A missing ";" takes everything up to the next one.
    test::WriteText(dir / "3.fbi", "UnitName=X;\r\nName=Y;\r\nSide=CORE\r\nTEDClass=TANK;\r\n");
    test::WriteText(dir / "4.fbi", std::string("\0\x01\xff binary Side=\0;", 18));
    test::WriteText(dir / "5.fbi", "");
    std::filesystem::create_directory(dir / "6.fbi"); // a folder named like a unit file
    {                                                 // over 16 MiB: treated as unreadable
        test::WriteText(dir / "7.fbi", "Side=HUGE;");
        ASSERT_EQ(::truncate((dir / "7.fbi").c_str(), 17 * 1024 * 1024), 0);
    }
    Definitions defs;
    test::RecordingProgress progress;
    progress.SetMaximum(1000);
    progress.statuses.clear();
    LoadUnitsFromFolder(defs, dir.path(), nullptr, &progress);

    ASSERT_EQ(defs.Units.UBound(), 6);
    EXPECT_EQ(defs.Units[1].Name, "ARMODD");
    EXPECT_EQ(defs.Units[2].Name, "");
    EXPECT_EQ(defs.Units[2].Side, " ARM");
    EXPECT_EQ(defs.Units[3].Side, "CORE\r\nTEDClass=TANK");
    EXPECT_EQ(defs.Units[4].Side, std::string("\0", 1));
    EXPECT_EQ(defs.Units[5].UnitName, "");
    EXPECT_EQ(defs.Units[6].Side, ""); // the huge file
    EXPECT_TRUE(defs.Units[6].Include);
    // ARM, " ARM", "CORE\r\n...", NUL, "" (empty and huge share one)
    EXPECT_EQ(defs.Races.UBound(), 5);
    EXPECT_EQ(progress.Value(), 12);
    EXPECT_EQ(progress.statuses.front(), "Processing... Arm ARMODD");
}

TEST(LoadUnits, RandomStartingValues) {
    test::TempDir dir;
    test::WriteText(dir / "a.fbi", Unit("A", "A", "ARM"));
    test::WriteText(dir / "b.fbi", Unit("B", "B", "ARM"));
    Definitions defs;
    defs.Options.Random = true;
    defs.Options.WeightMax = 10;
    // unit 1: weight 0.3456*10 -> 3.46, limit int(0.99*3)+int(0.0*3)+1 = 3
    // unit 2: weight 0.0001*10 rounds to 0, limit int(0.5*3)+int(0.7*3)+1 = 4
    test::SequenceRandom random({0.3456, 0.99, 0.0, 0.0001, 0.5, 0.7});
    LoadUnitsFromFolder(defs, dir.path(), &random, nullptr);
    EXPECT_FLOAT_EQ(defs.Units[1].Weight, 3.46f);
    EXPECT_EQ(defs.Units[1].Limit, 3.0f);
    EXPECT_EQ(defs.Units[2].Weight, 0.0f);
    EXPECT_EQ(defs.Units[2].Limit, 4.0f);
    EXPECT_TRUE(random.seeds.empty()); // never seeded at start-up
}

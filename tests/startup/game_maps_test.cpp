// The game's maps: which profile each schema names and where the game reads
// it, pointing maps at a profile and back.
#include "startup/game_maps.h"

#include "base/text.h"
#include "formats/hpi_archive.h"
#include "support/hpi_writer.h"
#include "support/map_fixtures.h"
#include "support/profile_support.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vantrel {
namespace {

using test::MapOta;
using test::ReadBytes;
using test::WriteBytes;

class GameMaps : public ::testing::Test {
  protected:
    void SetUp() override {
        testing::HpiWriter first;
        first.AddFile("maps/Alpha.ota", MapOta("Alpha", {"Network 1:DEFAULT", "Easy:urban"}), 0);
        first.AddFile("maps/Beta.ota", MapOta("Old Beta", {"Network 1:DEFAULT"}), 1);
        first.AddFile("maps/Nest.ota/inside.txt", "a folder named like a map", 0);
        first.AddFile("maps/notes.txt", "not a map", 0);
        first.AddFile("ai/DEFAULT.TXT", "profile", 0);
        first.AddFile("ai/URBAN.TXT", "profile", 0);
        WriteBytes(dir / "totala1.hpi", first.Build().bytes);
        // A later archive replaces maps and profiles of the same name.
        testing::HpiWriter second;
        second.AddFile("maps/beta.ota", MapOta("Beta", {"Network 1:DEFAULT", "Easy", "Hard:rush"}),
                       2);
        second.AddFile("ai/default.txt", "profile", 0);
        WriteBytes(dir / "totala2.hpi", second.Build().bytes);
        // Loose files replace archived ones of the same name, in any case.
        std::filesystem::create_directories(dir / "MAPS/Gamma.ota");
        std::filesystem::create_directories(dir / "Ai");
        WriteBytes(dir / "MAPS/alpha.OTA", MapOta("Loose Alpha", {"Network 1:Urban"}));
        WriteBytes(dir / "MAPS/Solo.ota", MapOta("Solo", {"Network 1:nothere"}));
        WriteBytes(dir / "Ai/Urban.txt", "loose profile");
    }

    std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        for (const GameMap& m : ListGameMaps(dir.path()).maps)
            for (const MapSchema& s : m.schemas)
                lines.push_back(m.name + "|" + m.file + "|" + std::to_string(s.number) + "|" +
                                s.type + "|" + s.aiprofile + "|" + s.profileSource);
        return lines;
    }

    test::ScratchDir dir;
};

TEST_F(GameMaps, LooseFilesReplaceArchivedMapsAndProfiles) {
    const std::vector<std::string> expected = {
        "alpha|MAPS/alpha.OTA|0|Network 1|Urban|Ai/Urban.txt",
        "beta|totala2.hpi#maps/beta.ota|0|Network 1|DEFAULT|totala2.hpi#ai/default.txt",
        "beta|totala2.hpi#maps/beta.ota|1|Easy||",
        "beta|totala2.hpi#maps/beta.ota|2|Hard|rush|",
        "Solo|MAPS/Solo.ota|0|Network 1|nothere|",
    };
    EXPECT_EQ(Lines(), expected);

    const MapListing listing = ListGameMaps(dir.path());
    ASSERT_EQ(listing.maps.size(), 3u);
    EXPECT_EQ(listing.maps[1].missionName, "Beta");
    EXPECT_EQ(listing.maps[1].numPlayers, "2, 4");
    EXPECT_TRUE(listing.maps[1].notes.empty());
    EXPECT_FALSE(listing.maps[1].schemas[1].namesProfile);
    EXPECT_EQ(listing.skipped,
              (std::vector<std::string>{"totala1.hpi#maps/Nest.ota: is a folder, not a map",
                                        "MAPS/Gamma.ota: is a folder, not a map"}));
}

TEST(MapText, OnlyTheProfileValuesChange) {
    const std::string text = "// aiprofile=KEEP;\r\n[GlobalHeader]{ aiprofile=TOP;\n"
                             "[Schema 0]{ Type=A; AIProfile =  DEFAULT ; /* aiprofile=x; */ }\n"
                             "[schema 1]{aiprofile=;}\n[Schema 2]{Type=B;}\n"
                             "[Other]{aiprofile=KEEP;}}";
    const std::string one = ReplaceAll(text, "aiprofile=;", "aiprofile=mine;");
    const std::string every = ReplaceAll(one, "=  DEFAULT ", "=  mine ");
    EXPECT_EQ(WithAiProfile(text, "mine"), every);
    EXPECT_EQ(WithAiProfile(text, "mine", 1), one);
    EXPECT_TRUE(DiffersOnlyInAiProfile(every, text));
    EXPECT_TRUE(DiffersOnlyInAiProfile(one, text));
    EXPECT_THROW(WithAiProfile(text, "mine", 2), MapError); // names no profile
    EXPECT_THROW(WithAiProfile(text, "mine", 7), MapError); // no such schema
    EXPECT_THROW(WithAiProfile("[GlobalHeader]{}", "mine"), MapError);
    EXPECT_FALSE(DiffersOnlyInAiProfile(text, ReplaceAll(text, "Type=A", "Type=C")));
    EXPECT_FALSE(DiffersOnlyInAiProfile(text, ReplaceAll(text, "TOP", "TIP")));
}

TEST_F(GameMaps, UseProfileThenRestore) {
    const std::string beta = dir / "MAPS/beta.ota";
    EXPECT_EQ(UseProfileOnMaps(dir.path(), "urban", {"BETA", "alpha"}),
              (std::vector<std::string>{beta, dir / "MAPS/alpha.OTA"}));
    const std::string archived = MapOta("Beta", {"Network 1:DEFAULT", "Easy", "Hard:rush"});
    EXPECT_EQ(ReadBytes(beta), ReplaceAll(ReplaceAll(archived, "=DEFAULT", "=urban"), "=rush",
                                          "=urban"));
    EXPECT_EQ(ReadBytes(dir / "MAPS/alpha.OTA"), MapOta("Loose Alpha", {"Network 1:urban"}));

    // A map that is not there, or a schema missing from one, writes nothing at all.
    EXPECT_THROW(UseProfileOnMaps(dir.path(), "x", {"beta", "Delta"}), MapError);
    EXPECT_THROW(UseProfileOnMaps(dir.path(), "x", {"beta", "Solo"}, 2), MapError);
    EXPECT_THROW(UseProfileOnMaps(dir.path(), "bad;name", {"beta"}), MapError);
    EXPECT_NE(ReadBytes(beta).find("=urban;"), std::string::npos);

    // Restore removes a copy that differs only in profiles; a hand-edited
    // one, or one with no archived map behind it, stays.
    WriteBytes(dir / "MAPS/alpha.OTA", ReplaceAll(ReadBytes(dir / "MAPS/alpha.OTA"), "Loose ", ""));
    const auto outcomes = RestoreMaps(dir.path(), {"beta", "Beta", "alpha", "Solo", "nope"});
    const bool restored[] = {true, true, false, false, false};
    ASSERT_EQ(outcomes.size(), 5u);
    for (std::size_t i = 0; i < outcomes.size(); ++i)
        EXPECT_EQ(outcomes[i].restored, restored[i]) << outcomes[i].message;
    EXPECT_FALSE(std::filesystem::exists(beta));
    EXPECT_TRUE(std::filesystem::exists(dir / "MAPS/alpha.OTA"));
    EXPECT_NE(outcomes[2].message.find("in more than its profiles"), std::string::npos);
}

TEST_F(GameMaps, MapsFolderThatCannotBeWrittenChangesNothing) {
    std::filesystem::remove_all(dir / "MAPS");
    WriteBytes(dir / "maps", "a file in the folder's place");
    try {
        UseProfileOnMaps(dir.path(), "urban", {"beta"});
        FAIL() << "written into a file";
    } catch (const MapError& e) {
        EXPECT_NE(std::string(e.what()).find("it is a file, not a folder"), std::string::npos);
    }
    EXPECT_EQ(ReadBytes(dir / "maps"), "a file in the folder's place");
    EXPECT_EQ(ListGameMaps(dir.path()).skipped.back(), "maps: is a file, not a folder");
}

TEST(GameMapNotes, ASchemaWithoutItsNumberIsSkippedAndNoted) {
    test::ScratchDir dir;
    std::filesystem::create_directories(dir / "maps");
    WriteBytes(dir / "maps/Odd.ota",
               "[GlobalHeader]{[Schema x]{aiprofile=a;}[Schema 0]{aiprofile=b;}}");
    const MapListing listing = ListGameMaps(dir.path());
    ASSERT_EQ(listing.maps.size(), 1u);
    EXPECT_EQ(listing.maps[0].schemas.size(), 1u);
    EXPECT_EQ(listing.maps[0].notes,
              std::vector<std::string>{"[Schema x] has no schema number: skipped"});
}

} // namespace
} // namespace vantrel

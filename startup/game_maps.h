// The game's maps and the AI profile each of their game types names: the
// maps of the game's archives and the loose ones of its "maps" folder, where
// each named profile comes from, and pointing maps at another profile
// through loose copies that differ from the map only in "aiprofile".
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// A map that cannot be read, found or written; what() gives the reason.
class MapError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Map files larger than this are not read (real ones are a few kilobytes).
inline constexpr std::size_t MapFileMax = 16u * 1024u * 1024u;

// Where the profile of each name comes from, as the game reads it: the loose
// "ai/NAME.txt" (any case), else the archived one (of several, the one in
// the archive listed last), else none.
class GameProfileSources {
  public:
    explicit GameProfileSources(const std::string& gameDir);
    // "ai/urban.txt" (folder and file spelt as on disk),
    // "totala2.hpi#ai/DEFAULT.TXT", or "" when the game has no such profile.
    std::string SourceOf(std::string_view profileName) const;

  private:
    std::map<std::string, std::string> byName_; // by upper-case name
};

struct MapSchema {
    int number = 0;       // N of "[Schema N]"
    std::string type;     // "Network 1", "Easy" ...
    bool namesProfile = false;
    std::string aiprofile;     // the profile's file name without ".txt"
    std::string profileSource; // see GameProfileSources::SourceOf
};

struct GameMap {
    std::string name; // the file name without ".ota"
    // Where its text comes from: "maps/Foo.ota" (loose, spelt as on disk) or
    // "totala1.hpi#maps/Foo.ota".
    std::string file;
    bool loose = false;
    bool read = false; // false: the file could not be read (notes say why)
    std::string missionName, missionDescription, numPlayers;
    std::vector<MapSchema> schemas;
    std::vector<std::string> notes; // what could not be read or was mended
};

struct MapListing {
    std::vector<GameMap> maps;        // in listing order of their names
    std::vector<std::string> skipped; // entries named like maps that are none, with the reason
};

// Every "maps/*.ota" of the game's archives (in the order of the game's
// profiles' listing, a later archive's map replacing an earlier one of the
// same name), then the loose "*.ota" files of the game's "maps" folder
// (folder and file names in any case), each replacing an archived map of
// the same name.
MapListing ListGameMaps(const std::string& gameDir);

// What the schemas of a map's text say, without the profiles' sources.
GameMap ReadMapText(std::string_view text);

// `ota` with the value of "aiprofile" set to `profile` in every schema (or
// in schema `schema` only); every other byte stays as it is. Throws MapError
// when no schema (or schema `schema`) names a profile.
std::string WithAiProfile(std::string_view ota, std::string_view profile,
                          std::optional<int> schema = std::nullopt);
// True when the two texts differ at most in the values of their schemas' "aiprofile".
bool DiffersOnlyInAiProfile(std::string_view a, std::string_view b);

// Why `name` cannot stand as a map's "aiprofile" value ("" when it can).
std::string ProfileNameProblem(std::string_view name);

// Writes the loose map file of each of `maps` (names as listed, any case):
// the map's current text with WithAiProfile applied. Every map is read and
// changed before anything is written, so an unknown map, an unreadable one or
// a missing schema writes nothing; the "maps" folder is created when needed.
// Returns the files written. Throws MapError.
std::vector<std::string> UseProfileOnMaps(const std::string& gameDir, const std::string& profile,
                                          const std::vector<std::string>& maps,
                                          std::optional<int> schema = std::nullopt);

struct RestoreOutcome {
    std::string map;
    bool restored = false; // the map is the game's own now
    bool removed = false;  // by removing its loose file
    std::string message;   // what was done, or why the loose file was left
};
// Removes the loose file of each of `maps` when it differs from the
// archived map only in "aiprofile" values; leaves any other alone.
std::vector<RestoreOutcome> RestoreMaps(const std::string& gameDir,
                                        const std::vector<std::string>& maps);

} // namespace vantrel

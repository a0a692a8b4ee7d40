// vantrel-cli maps GAME_DIR
// vantrel-cli use-profile GAME_DIR PROFILE_NAME MAP... [--schema N] [--force]
// vantrel-cli use-profile GAME_DIR --restore MAP...
#include "cli/cli_common.h"

#include "startup/game_maps.h"

#include <charconv>
#include <iostream>

namespace vantrel::cli {
namespace {

const char* MapsUsage = "maps GAME_DIR";

const char* MapsDetails =
    "Prints one line per game type (schema) of every map of the game,\n"
    "MAP<TAB>SCHEMA<TAB>TYPE<TAB>AIPROFILE<TAB>PROFILE_SOURCE, maps by name.\n"
    "The maps are the maps/*.ota files of the game's archives (*.hpi, *.ccx,\n"
    "*.gp?, *.swx, then *.ufo; a later archive's map replaces an earlier one),\n"
    "then the loose *.ota files of GAME_DIR's \"maps\" folder (names in any case),\n"
    "each replacing the archived map of the same name. MAP is the file's name\n"
    "without .ota; AIPROFILE the profile the schema names; PROFILE_SOURCE the file\n"
    "the game reads for it: the loose one as FOLDER/FILE (ai/urban.txt), else the\n"
    "archived one as ARCHIVE#PATH (totala2.hpi#ai/DEFAULT.TXT), else \"missing\".\n"
    "A schema that names no profile has an empty AIPROFILE. What could not be read\n"
    "goes to stderr as MAP: REASON; exit status 1 when a map file could not be read.";

const char* UseUsage = "use-profile GAME_DIR PROFILE_NAME MAP... [--schema N] [--force] | "
                       "use-profile GAME_DIR --restore MAP...";

const char* UseDetails =
    "Makes each MAP (as `maps` names it, any case) use the AI profile PROFILE_NAME\n"
    "(a file name without .txt): writes the loose GAME_DIR/maps/MAP.ota, the map's\n"
    "current text with aiprofile set to PROFILE_NAME in every schema (schema N\n"
    "only with --schema N) and every other byte unchanged, and prints the files\n"
    "written. Schemas that name no profile are left as they are. Each file is\n"
    "replaced in one step; when a map is unknown or cannot be read, nothing is\n"
    "written. Without --force the command refuses (exit 1) a PROFILE_NAME for\n"
    "which the game has no profile (see `maps`).\n"
    "With --restore, removes the loose maps/MAP.ota of each MAP when it differs\n"
    "from the archived map only in aiprofile values; any other loose map is left\n"
    "alone with a message and exit status 1.";

int RunMaps(const std::vector<std::string>& args) {
    if (WantsHelp(args, MapsUsage, MapsDetails)) return ExitOk;
    if (args.size() != 1) return UsageError(MapsUsage, "expected GAME_DIR");
    if (!FolderExists(args[0])) return ExitUsage;
    const MapListing listing = ListGameMaps(args[0]);
    int status = ExitOk;
    for (const std::string& skipped : listing.skipped)
        std::cerr << "vantrel-cli: " << Escape(skipped) << " (skipped)\n";
    for (const GameMap& map : listing.maps) {
        for (const std::string& note : map.notes)
            std::cerr << Escape(map.name) << ": " << Escape(note) << "\n";
        if (!map.read) status = ExitFailed;
        for (const MapSchema& s : map.schemas)
            if (!s.namesProfile)
                std::cerr << Escape(map.name) << ": schema " << s.number << " names no aiprofile\n";
        for (const MapSchema& s : map.schemas)
            std::cout << Escape(map.name) << '\t' << s.number << '\t' << Escape(s.type) << '\t'
                      << Escape(s.aiprofile) << '\t'
                      << (s.profileSource.empty() ? "missing" : Escape(s.profileSource)) << '\n';
    }
    return status;
}

int RunUseProfile(const std::vector<std::string>& args) {
    if (WantsHelp(args, UseUsage, UseDetails)) return ExitOk;
    std::vector<std::string> rest;
    std::optional<int> schema;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] != "--schema") {
            rest.push_back(args[i]);
            continue;
        }
        int n = -1;
        const std::string value = i + 1 < args.size() ? args[i + 1] : "";
        auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), n);
        if (ec != std::errc() || end != value.data() + value.size() || n < 0)
            return UsageError(UseUsage, "--schema needs a schema number, not '" + value + "'");
        schema = n;
        ++i;
    }
    std::vector<std::string> positional;
    bool force = false, restore = false;
    if (auto status =
            SplitArgs(rest, UseUsage, {{"--force", &force}, {"--restore", &restore}}, positional))
        return *status;
    const std::size_t first = restore ? 1 : 2;
    if (positional.size() <= first)
        return UsageError(UseUsage, restore ? "expected GAME_DIR and MAP..."
                                            : "expected GAME_DIR, PROFILE_NAME and MAP...");
    if (restore && (schema || force))
        return UsageError(UseUsage, "--restore takes neither --schema nor --force");
    const std::string& gameDir = positional[0];
    if (!FolderExists(gameDir)) return ExitUsage;
    const std::vector<std::string> maps(positional.begin() + static_cast<long>(first),
                                        positional.end());

    if (restore) {
        int status = ExitOk;
        for (const RestoreOutcome& out : RestoreMaps(gameDir, maps)) {
            (out.restored ? std::cout : std::cerr) << out.message << "\n";
            if (!out.restored) status = ExitFailed;
        }
        return status;
    }
    const std::string& profile = positional[1];
    if (!force && ProfileNameProblem(profile).empty() &&
        GameProfileSources(gameDir).SourceOf(profile).empty()) {
        std::cerr << "vantrel-cli: the game has no AI profile '" << profile
                  << "' (--force writes the maps all the same)\n";
        return ExitFailed;
    }
    try {
        for (const std::string& file : UseProfileOnMaps(gameDir, profile, maps, schema))
            std::cout << Escape(file) << "\n";
    } catch (const MapError& e) {
        std::cerr << "vantrel-cli: " << e.what() << "\n";
        return ExitFailed;
    }
    return ExitOk;
}

const CommandRegistrar regMaps("maps", MapsUsage, "list the AI profile each map of the game uses",
                               RunMaps);
const CommandRegistrar regUse("use-profile", UseUsage,
                              "make maps of the game use an AI profile, or restore them",
                              RunUseProfile);

} // namespace
} // namespace vantrel::cli

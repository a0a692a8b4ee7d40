// vantrel-cli game-profiles GAME_DIR
#include "cli/cli_common.h"

#include "startup/game_profiles.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "game-profiles GAME_DIR";

const char* Details =
    "Prints one line per AI profile the game has, SOURCE<TAB>NAME<TAB>SIZE:\n"
    "first every *.txt of the \"ai\" folder of each archive of GAME_DIR (*.hpi,\n"
    "*.ccx, *.gp?, *.swx, then *.ufo; SOURCE the archive's file name, NAME the\n"
    "path inside it), then the *.txt files of GAME_DIR's own \"ai\" folder (its\n"
    "name in any case; SOURCE \"ai\", NAME the file name). SIZE is in bytes.\n"
    "An archived profile is opened as GAME_DIR/SOURCE#NAME, a loose one as\n"
    "GAME_DIR/SOURCE/NAME (SOURCE is then the folder's own spelling), with show,\n"
    "check and save --open. Fields are escaped as in `units`. An archived\n"
    "profile whose name holds '#' or '\\' cannot be named that way: it is\n"
    "listed on stderr as unreachable. An archive that cannot be read is named\n"
    "on stderr with the reason. Exit status 1 when anything was left out.";

int RunGameProfiles(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage, Details)) return ExitOk;
    if (args.size() != 1) return UsageError(Usage, "expected GAME_DIR");
    if (!FolderExists(args[0])) return ExitUsage;
    const GameProfileList list = ListGameProfiles(args[0]);
    for (const GameProfile& p : list.profiles)
        std::cout << Escape(p.source) << "\t" << Escape(p.name) << "\t" << p.size << "\n";
    for (const GameProfile& p : list.unreachable)
        std::cerr << "vantrel-cli: unreachable (no path names it): " << Escape(p.source) << "\t"
                  << Escape(p.name) << "\n";
    for (const UnreadableArchive& a : list.unreadable)
        std::cerr << "vantrel-cli: not read: " << Escape(a.path) << ": " << a.reason << "\n";
    return list.unreachable.empty() && list.unreadable.empty() ? ExitOk : ExitFailed;
}

const CommandRegistrar reg("game-profiles", Usage, "list the AI profiles the game has",
                           RunGameProfiles);

} // namespace
} // namespace vantrel::cli

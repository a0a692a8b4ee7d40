// vantrel-cli game-profiles GAME_DIR
#include "cli/cli_common.h"

#include "startup/game_profiles.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "game-profiles GAME_DIR";

const char* Details = "Prints one line per AI profile the game has, SOURCE<TAB>NAME<TAB>SIZE:\n"
                      "first every *.txt of the \"ai\" folder of each archive of GAME_DIR (*.hpi,\n"
                      "*.ccx, *.gp?, *.swx, then *.ufo; SOURCE the archive's file name, NAME the\n"
                      "path inside it), then the *.txt files of GAME_DIR's own \"ai\" folder (its\n"
                      "name in any case; SOURCE \"ai\", NAME the file name). SIZE is in bytes.\n"
                      "An archived profile is opened as GAME_DIR/SOURCE#NAME (show, save --open).";

int RunGameProfiles(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage, Details)) return ExitOk;
    if (args.size() != 1) return UsageError(Usage, "expected GAME_DIR");
    if (!FolderExists(args[0])) return ExitUsage;
    for (const GameProfile& p : ListGameProfiles(args[0]))
        std::cout << Escape(p.source) << "\t" << Escape(p.name) << "\t" << p.size << "\n";
    return ExitOk;
}

const CommandRegistrar reg("game-profiles", Usage, "list the AI profiles the game has",
                           RunGameProfiles);

} // namespace
} // namespace vantrel::cli

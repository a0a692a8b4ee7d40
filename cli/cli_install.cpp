// vantrel-cli install PROFILE GAME_DIR [--force]
#include "cli/cli_common.h"

#include "startup/game_profiles.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "install PROFILE GAME_DIR [--force]";

const char* Details =
    "Copies PROFILE into the game's \"ai\" folder (an existing one whose name is\n"
    "\"ai\" in any case, else GAME_DIR/ai, created) under its own file name and\n"
    "prints the destination. The copy replaces the destination in one step.\n"
    "A file of the same name in any letter case is replaced only with --force\n"
    "(the one of exactly that name when several spellings are there); without\n"
    "it the command stops with exit status 1. So does any failure to list the\n"
    "game's folder or its \"ai\" folder, with the reason, leaving the old file.";

int RunInstall(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage, Details)) return ExitOk;
    std::vector<std::string> positional;
    bool force = false;
    if (auto status = SplitArgs(args, Usage, {{"--force", &force}}, positional)) return *status;
    if (positional.size() != 2) return UsageError(Usage, "expected PROFILE and GAME_DIR");
    if (!FileExists(positional[0]) || !FolderExists(positional[1])) return ExitUsage;

    try {
        InstallPlan plan = PlanInstall(positional[0], positional[1]);
        if (plan.replaces && !force) {
            std::cerr << "vantrel-cli: " << plan.destination
                      << " already exists (--force replaces it)\n";
            return ExitFailed;
        }
        InstallProfile(positional[0], plan);
        std::cout << plan.destination << "\n";
    } catch (const ProfileError& e) {
        std::cerr << "vantrel-cli: " << e.what() << "\n";
        return ExitFailed;
    }
    return ExitOk;
}

const CommandRegistrar reg("install", Usage, "copy an AI profile into the game's ai folder",
                           RunInstall);

} // namespace
} // namespace vantrel::cli

// vantrel-cli show UNITS_DIR PROFILE [--tessaly] [--merge]
#include "cli/cli_profile_common.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "show UNITS_DIR PROFILE [--tessaly] [--merge]";

const char* Details =
    "Loads the units of UNITS_DIR and the stored options, opens PROFILE as File,\n"
    "Open does (a Tessaly profile with --tessaly) and prints the `units` table\n"
    "with the values read. With --merge the profile is read as Merge reads it\n"
    "and the table shows the merged copy of the units instead.\n"
    "Then follow the lines LoadedAIName<TAB>name and, when opening,\n"
    "Author<TAB>author and Name<TAB>the Settings name.\n"
    "PROFILE may name a profile inside a game archive, ARCHIVE#path/inside\n"
    "(for example TOTALA1.HPI#ai/DEFAULT.TXT; the path is matched in any case).";

int RunShow(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage, Details)) return ExitOk;
    std::vector<std::string> positional;
    bool tessaly = false, merge = false;
    if (auto status =
            SplitArgs(args, Usage, {{"--tessaly", &tessaly}, {"--merge", &merge}}, positional))
        return *status;
    if (positional.size() != 2) return UsageError(Usage, "expected UNITS_DIR and PROFILE");

    ProfileRun run;
    if (auto status = PrepareProfileRun(run, positional[0])) return *status;
    if (auto status = OpenProfile(run, positional[1], tessaly, merge)) return *status;
    PrintUnitTable(std::cout, merge ? run.defs.SavedUnits : run.defs.Units);
    std::cout << "LoadedAIName\t" << Escape(run.defs.Profile.LoadedAIName) << "\n";
    if (!merge) {
        std::cout << "Author\t" << Escape(run.fields.Author()) << "\n";
        std::cout << "Name\t" << Escape(run.fields.AIName()) << "\n";
    }
    return ExitOk;
}

const CommandRegistrar reg("show", Usage, "read an AI profile and print the units with its values",
                           RunShow);

} // namespace
} // namespace vantrel::cli

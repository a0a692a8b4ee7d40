// vantrel-cli check UNITS_DIR PROFILE [--tessaly]
#include "cli/cli_profile_common.h"

#include "profile/profile_check.h"
#include "profile/profile_numbers.h"
#include "startup/game_profiles.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "check UNITS_DIR PROFILE [--tessaly]";

const char* Details =
    "Checks PROFILE (a Tessaly profile with --tessaly; ARCHIVE#path/inside for\n"
    "one inside a game archive) against the units of UNITS_DIR, as the reader\n"
    "reads it, and prints in this order:\n"
    "  unknown<TAB>NAME             an entry's name that is no unit and is read for none\n"
    "  shadowed<TAB>NAME<TAB>UNIT    an entry the reader takes for UNIT's (UNIT is the\n"
    "                               start of NAME)\n"
    "  missing<TAB>UNIT             an included unit that the profile would list but\n"
    "                               that has no WEIGHT entry\n"
    "  not-a-number<TAB>LINE<TAB>TEXT an entry whose value is not a number\n"
    "Entries are found as the reader finds them: a WEIGHT or LIMIT anywhere in\n"
    "a line, a line ending at CR LF, LF or a lone CR. Fields are escaped as in\n"
    "`units`: \\t, \\r, \\n, \\\\ and other control bytes as \\xHH.\n"
    "The profile's build-set file decides which units are included.\n"
    "Exit status 0 when nothing is printed, 1 otherwise, 2 on bad usage.";

int RunCheck(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage, Details)) return ExitOk;
    std::vector<std::string> positional;
    bool tessaly = false;
    if (auto status = SplitArgs(args, Usage, {{"--tessaly", &tessaly}}, positional)) return *status;
    if (positional.size() != 2) return UsageError(Usage, "expected UNITS_DIR and PROFILE");

    ProfileRun run;
    if (auto status = PrepareProfileRun(run, positional[0])) return *status;
    if (!ProfileExists(positional[1])) return ExitUsage;
    std::vector<CheckFinding> findings;
    try {
        findings =
            CheckProfile(run.defs, ReadProfileAt(positional[1]), tessaly, DecimalSeparator());
    } catch (const ProfileError& e) {
        std::cerr << "vantrel-cli: " << e.what() << "\n";
        return ExitFailed;
    }
    for (const CheckFinding& f : findings)
        std::cout << CheckLine(f) << "\n";
    return findings.empty() ? ExitOk : ExitFailed;
}

const CommandRegistrar
    reg("check", Usage, "check an AI profile's unit names and values against the units", RunCheck);

} // namespace
} // namespace vantrel::cli

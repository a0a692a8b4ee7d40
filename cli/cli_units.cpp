// vantrel-cli units UNITS_DIR
#include "cli/cli_common.h"

#include <iostream>

namespace vantrel::cli {
namespace {

const char* Usage = "units UNITS_DIR";

int RunUnits(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage,
                  "Loads every *.fbi file of UNITS_DIR as the program does at start-up (one\n"
                  "unit per file name in any letter case; a field the exact keys leave empty\n"
                  "read as the game reads it) and prints one line per unit in index order,\n"
                  "fields separated by TAB:\n"
                  "index, Side, Name, UnitName, TEDClass, Description, Weight, Limit, Include.\n"
                  "TAB, CR, LF and backslash in values are written as \\t, \\r, \\n, \\\\."))
        return ExitOk;
    if (args.size() != 1) return UsageError(Usage, "expected one folder");
    Definitions defs;
    if (!LoadCatalogue(defs, args[0])) return ExitUsage;
    PrintUnitTable(std::cout, defs.Units);
    return ExitOk;
}

const CommandRegistrar reg("units", Usage, "list the units of a Units folder", RunUnits);

} // namespace
} // namespace vantrel::cli

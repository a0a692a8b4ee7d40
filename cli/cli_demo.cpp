// vantrel-cli demo APP_DIR: the headless demo that `make run` falls back to.
#include "cli/cli_common.h"

#include "base/paths.h"
#include "base/text.h"
#include "mainwindow/randomize.h"
#include "profile/profile.h"
#include "startup/main_sequence.h"

#include <iostream>
#include <map>

namespace vantrel::cli {
namespace {

const char* Usage = "demo APP_DIR";

int RunDemo(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage,
                  "Runs the start-up sequence on the program folder APP_DIR (stored options\n"
                  "are kept in memory, so the user's settings are not touched), then prints\n"
                  "the sides, the units per category and the unit table; then gives every\n"
                  "unit random values and saves them as APP_DIR/AI.txt and APP_DIR/AI.set."))
        return ExitOk;
    if (args.size() != 1) return UsageError(Usage, "expected one program folder");
    if (!FolderExists(args[0])) return ExitUsage;
    Definitions defs;
    ConsoleProgress progress(false);
    ConsoleMessages messages;
    MemorySettingsStore settings;
    ConsoleShell shell;
    DefaultRandom random;
    ArchiveReading archives{""}; // no game: no archive is read
    ZipSteps zips;
    StartupPorts ports{progress, messages, settings, shell, random, archives, zips};
    if (Main(defs, ports, args[0]) != LoadOutcome::Loaded) {
        std::cerr << "vantrel-cli: no unit files in " << UnitsDir(WithTrailingSep(args[0])) << "\n";
        return ExitFailed;
    }
    std::cout << "Vantrel " << VANTREL_VERSION_MAJOR << "." << VANTREL_VERSION_MINOR << "."
              << VANTREL_VERSION_PATCH << " headless demo\n";
    std::cout << "Program folder: " << defs.AppDir << "\n";
    std::cout << defs.Units.UBound() << " units loaded\n\nSides:";
    for (int r = 1; r <= defs.Races.UBound(); ++r)
        std::cout << (r > 1 ? ", " : " ") << ProperCase(defs.Races[r].Name);
    std::cout << "\n\nUnits per category (board rules):\n";
    for (const Category& c : Categories) {
        int n = 0;
        for (int i = 1; i <= defs.Units.UBound(); ++i)
            if (InCategory(defs.Units[i].TEDClass, c.Keywords)) ++n;
        std::cout << "  " << c.Caption << ": " << n << "\n";
    }
    std::cout << "\n";
    PrintUnitTable(std::cout, defs.Units);

    // Give the units random values (as View, Randomize does) and save them as
    // the External command would: AI.txt and AI.set in the program folder.
    ConsoleMessages yes(MsgAnswer::Yes);
    SystemClock clock;
    Randomize(defs, yes, clock, random);
    PlainSettingsFields fields;
    fields.SetAIName("Demo");
    fields.SetAuthor("Vantrel demo");
    fields.SetBanner("Demo AI");
    ProfileContext ctx{defs, progress, fields, clock};
    const std::string profile = defs.AppDir + "AI.txt";
    try {
        SaveAI(ctx, profile);
    } catch (const ProfileError& e) {
        std::cerr << "vantrel-cli: " << e.what() << "\n";
        return ExitFailed;
    }
    std::cout << "\nRandom weights and limits saved to " << profile << " and "
              << BuildSetPath(profile) << "\n";
    return ExitOk;
}

const CommandRegistrar reg("demo", Usage, "headless demo: start up on a program folder", RunDemo);

} // namespace
} // namespace vantrel::cli

// vantrel-cli extract GAME_DIR APP_DIR
#include "cli/cli_common.h"

#include "base/paths.h"
#include "startup/main_sequence.h"
#include "startup/zip_steps.h"

#include <iostream>
#include <memory>

namespace vantrel::cli {
namespace {

const char* Usage = "extract GAME_DIR APP_DIR";

// Prints each new status text once the progress form has been shown.
class StatusEcho : public Progress {
  public:
    void Show() override { shown_ = true; }

  protected:
    void OnChange() override {
        if (shown_ && Status() != last_) {
            last_ = Status();
            std::cout << last_ << "\n";
        }
    }

  private:
    bool shown_ = false;
    std::string last_;
};

// The zip steps of the run: the one place where they are chosen.
std::unique_ptr<ZipSteps> MakeZipSteps() {
    return std::make_unique<LibzipSteps>();
}

int RunExtract(const std::vector<std::string>& args) {
    if (WantsHelp(args, Usage,
                  "Runs the extraction of start-up: counts the entries of the \"units\" and\n"
                  "\"unitpics\" folders of every archive in GAME_DIR (*.hpi, *.ccx, *.gp?,\n"
                  "*.swx), then copies the unit files (.fbi) and pictures (.pcx) into\n"
                  "APP_DIR/Units, replacing files already there in any letter case (their\n"
                  "spelling stays); then unpacks the zip packages of APP_DIR (*.zip) into\n"
                  "APP_DIR/Units, keeping files already there. Prints each status text the\n"
                  "progress form would show, one per line, and at the end\n"
                  "progress<TAB>value<TAB>maximum. Stored options are not touched.\n"
                  "Files that cannot be written (a full disk, a read-only folder, damaged\n"
                  "data, a unit file above 16 MiB, an archive past 1 GiB), archives that\n"
                  "cannot be read and zip packages that are damaged are listed on stderr\n"
                  "with their reasons, and the exit status is then 1."))
        return ExitOk;
    if (args.size() != 2) return UsageError(Usage, "expected a game folder and a program folder");
    if (!FolderExists(args[0])) return ExitUsage;
    Definitions defs;
    defs.GameDir = args[0];
    defs.AppDir = WithTrailingSep(args[1]);
    if (!MakeDirectory(args[1]) || !MakeDirectory(UnitsDir(defs.AppDir))) {
        std::cerr << "vantrel-cli: cannot create the folder " << UnitsDir(defs.AppDir) << "\n";
        return ExitFailed;
    }
    StatusEcho progress;
    ConsoleMessages messages;
    MemorySettingsStore settings;
    ConsoleShell shell;
    DefaultRandom random;
    ArchiveReading archives{args[0]};
    const std::unique_ptr<ZipSteps> zips = MakeZipSteps();
    StartupPorts ports{progress, messages, settings, shell, random, archives, *zips};
    const ExtractionFailures failures = RunExtraction(defs, ports);
    std::cout << "progress\t" << progress.Value() << '\t' << progress.Maximum() << "\n";
    if (!failures.Any()) return ExitOk;
    std::cerr << "vantrel-cli: " << ExtractionFailureMessage(defs, failures) << "\n";
    for (const std::string& f : failures.files)
        std::cerr << "vantrel-cli: not written: " << Escape(f) << "\n";
    return ExitFailed;
}

const CommandRegistrar reg("extract", Usage, "extract unit files from the game's archives",
                           RunExtract);

} // namespace
} // namespace vantrel::cli

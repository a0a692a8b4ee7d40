#include "startup/main_sequence.h"

#include "base/paths.h"
#include "startup/options.h"

namespace vantrel {

ExtractionFailures RunExtraction(Definitions& defs, StartupPorts& ports) {
    ExtractionFailures failures;
    static const char* folders[] = {"units", "unitpics"};
    static const char* extensions[] = {".fbi", ".pcx"};
    // Both steps find the files already there through one index of the folder.
    defs.UnitFiles = UnitsFolder(UnitsDir(defs.AppDir));
    // With no game folder the archive passes are skipped; the zip steps still run.
    std::optional<GameArchives> game;
    if (IsDirectory(defs.GameDir)) game.emplace(defs.GameDir, ports.archives.limits);
    if (game)
        for (const char* folder : folders)
            ports.progress.AddMaximum(game->CountEntries(folder));
    ports.zips.CountZipFiles(defs, ports.progress);
    if (game) {
        ports.progress.Show();
        ports.progress.SetStatus(ArchiveStatusText);
        ports.progress.Repaint();
        failures.Add(game->OpenFailures());
        for (std::size_t f = 0; f < 2; ++f)
            game->Extract(defs.UnitFiles, ports.progress, folders[f], extensions[f], failures);
    }
    ports.zips.UnpackZips(defs, ports.progress);
    failures.Add(ports.zips.Failures());
    if (failures.Any()) ports.progress.SetStatus(failures.Summary());
    return failures;
}

std::string ExtractionFailureMessage(const Definitions& defs, const ExtractionFailures& failures) {
    return failures.Summary() + " to the folder '" + UnitsDir(defs.AppDir) +
           "'. The unit list may be incomplete or out of date.";
}

namespace {
void ExtractAndReport(Definitions& defs, StartupPorts& ports) {
    const ExtractionFailures failures = RunExtraction(defs, ports);
    if (failures.Any())
        ports.messages.Inform(ExtractionFailureMessage(defs, failures), "Vantrel",
                              MsgIcon::Exclamation);
}
} // namespace

LoadOutcome Main(Definitions& defs, StartupPorts& ports, const std::string& programFolder) {
    defs.AppDir = WithTrailingSep(programFolder);

    defs.GameDir = ports.archives.gameDir
                       ? *ports.archives.gameDir
                       : FindGameDirectory(GameSearchEnvFromProcess(ports.settings));

    ReadOptions(defs, ports.settings);

    // Make sure the Units folder exists; a failure shows later as "no units".
    const std::string units = UnitsDir(defs.AppDir);
    MakeDirectory(units);

    if (defs.Options.Extract) ExtractAndReport(defs, ports);

    LoadContext ctx{ports.progress, ports.messages, ports.settings, ports.shell, ports.random};
    if (!ports.noUnits) return LoadUnits(defs, ctx);
    for (bool afterExtract = defs.Options.Extract;; afterExtract = true) {
        LoadUnitsFromFolder(defs, units, &ports.random, &ports.progress);
        ports.progress.Close();
        if (defs.Races.UBound() >= 1) return LoadOutcome::Loaded;
        switch (ports.noUnits->Ask(defs, units, afterExtract)) {
        case NoUnitsChoice::Quit:
            return LoadOutcome::Abort;
        case NoUnitsChoice::Continue:
            return LoadOutcome::Loaded;
        case NoUnitsChoice::Extract:
            ports.settings.Set("GameDir", defs.GameDir);
            ExtractAndReport(defs, ports);
            break;
        }
    }
}

} // namespace vantrel

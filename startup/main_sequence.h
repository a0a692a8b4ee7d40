// The start-up sequence: options, game folder, extraction, unit loading.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "catalogue/load_units.h"
#include "startup/game_archives.h"

#include <string>

namespace vantrel {

// The zip steps of start-up (unpacking packages of extra units).
class ZipSteps {
  public:
    virtual ~ZipSteps() = default;
    virtual void CountZipFiles(const Definitions&, Progress&) {}
    // Unpacks into the Units folder indexed in defs.UnitFiles, noting there
    // every file written.
    virtual void UnpackZips(Definitions&, Progress&) {}
    // Files the last UnpackZips could not write.
    virtual ExtractionFailures Failures() const { return {}; }
};

// What the player chose when the Units folder holds no unit.
enum class NoUnitsChoice { Extract, Continue, Quit };

// The window start-up shows when the Units folder holds no unit. It shows
// where it looked and defs.GameDir, and may change defs.GameDir before it
// answers Extract. `afterExtract`: an extraction has just found nothing.
class NoUnitsWindow {
  public:
    virtual ~NoUnitsWindow() = default;
    virtual NoUnitsChoice Ask(Definitions& defs, const std::string& unitsFolder,
                              bool afterExtract) = 0;
};

struct StartupPorts {
    Progress& progress;
    Messages& messages;
    SettingsStore& settings;
    Shell& shell;
    RandomSource& random;
    const ArchiveReading& archives;
    ZipSteps& zips;
    // Without one, no units end start-up with a message (the command line).
    NoUnitsWindow* noUnits = nullptr;
};

inline constexpr const char* ArchiveStatusText = "Reading Total Annihilation Directory...";

// Runs the start-up sequence for the program folder `programFolder`. Returns
// Loaded when the main window should be shown. With no unit in the Units
// folder, ports.noUnits is asked: Extract stores the game folder (GameDir),
// extracts and loads again; Continue goes on with an empty catalogue
// (Loaded); Quit ends start-up (Abort).
LoadOutcome Main(Definitions& defs, StartupPorts& ports, const std::string& programFolder);

// The extraction part alone (counting, zip count, extraction passes,
// unpacking), as run when "Extract" is on. Each archive is opened once. Returns the files that could not
// be written; when there are any, the progress form's status says how many
// and why.
ExtractionFailures RunExtraction(Definitions& defs, StartupPorts& ports);

// The message start-up shows when extraction could not write every file.
std::string ExtractionFailureMessage(const Definitions& defs, const ExtractionFailures& failures);

} // namespace vantrel

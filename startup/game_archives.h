// Finding the game, and the passes over its archives that fill the Units
// folder.
#pragma once

#include "base/ports.h"
#include "catalogue/units_folder.h"
#include "formats/hpi_archive.h"
#include "startup/extraction_failures.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantrel {

// Where the game is installed: the stored option "GameDir" when it names a
// folder; else the "Dir" value of the game's key in a Wine prefix's registry
// ($WINEPREFIX or ~/.wine); else the usual Steam and GOG folders; else "".
struct GameSearchEnv {
    std::string storedGameDir;
    std::string winePrefix; // $WINEPREFIX, may be empty
    std::string home;       // $HOME
};
GameSearchEnv GameSearchEnvFromProcess(SettingsStore& settings);
std::string FindGameDirectory(const GameSearchEnv& env);
// The game folder recorded in a Wine prefix ("" when none or not a folder).
std::string GameDirFromWinePrefix(const std::string& prefix);

// The archive patterns searched directly in the game folder.
inline constexpr const char* ArchivePatterns[] = {"*.hpi", "*.ccx", "*.gp?", "*.swx"};

// How start-up reads the game's archives.
struct ArchiveReading {
    // The game folder to use; when unset, FindGameDirectory searches for it.
    std::optional<std::string> gameDir;
    // What an archive may unpack (each archive is opened once per start, so
    // its cap holds for all passes over it).
    HpiLimits limits = DiskLimits;
};

// The archives of the game folder for one start: each opened, and its
// directory read, once.
class GameArchives {
  public:
    // Opens every archive of `gameDir` matching ArchivePatterns, pattern by
    // pattern. Those that cannot be opened are kept with their reasons.
    GameArchives(const std::string& gameDir, const HpiLimits& limits);

    // The entries of `folder` in every archive (sub-folders included).
    int CountEntries(const std::string& folder) const;
    // Extracts the entries of `folder` whose lower-cased names contain
    // `extension` from every archive into the folder that `units` indexes:
    // a name there in another case is replaced under its spelling on disk,
    // and every file written is noted in the index. The progress form names
    // each file ("Extracting units/ARMCOM.FBI from TOTALA1.HPI"); files that
    // could not be written are added to `failures` with their reasons.
    void Extract(UnitsFolder& units, Progress& progress, const std::string& folder,
                 const std::string& extension, ExtractionFailures& failures) const;
    // The archives that could not be opened ("NAME: reason").
    const ExtractionFailures& OpenFailures() const { return openFailures_; }

  private:
    struct Archive {
        std::string name;
        std::unique_ptr<HpiArchive> hpi;
    };
    std::vector<Archive> archives_;
    ExtractionFailures openFailures_;
};

} // namespace vantrel

#include "cli/cli_profile_common.h"

#include "app/qt_settings_store.h"
#include "startup/game_profiles.h"
#include "startup/options.h"

#include <clocale>
#include <iostream>
#include <sys/stat.h>

namespace vantrel::cli {

std::optional<int> PrepareProfileRun(ProfileRun& run, const std::string& unitsDir) {
    std::setlocale(LC_NUMERIC, "");
    if (!LoadCatalogue(run.defs, unitsDir)) return ExitUsage;
    QtSettingsStore store;
    if (!store.Problem().empty()) std::cerr << "vantrel-cli: " << store.Problem() << "\n";
    ReadOptions(run.defs, store);
    return std::nullopt;
}

bool ProfileExists(const std::string& path) {
    struct stat st {};
    if (SplitArchivePath(path) || ::stat(path.c_str(), &st) == 0) return true;
    std::cerr << "vantrel-cli: no such file: " << path << "\n";
    return false;
}

std::optional<int> OpenProfile(ProfileRun& run, const std::string& path, bool tessaly, bool merge) {
    // A path that exists but cannot be read as a profile (a folder, say) is
    // failed work, reported by the reader; only a missing one is bad input.
    // A profile inside an archive that cannot be found is failed work too.
    if (!ProfileExists(path)) return ExitUsage;
    try {
        ProfileText profile = ReadProfileAt(path);
        if (tessaly)
            ReadTessalyAI(run.ctx, profile, merge);
        else
            ReadAI(run.ctx, profile, merge);
    } catch (const ProfileError& e) {
        std::cerr << "vantrel-cli: " << e.what() << "\n";
        return ExitFailed;
    }
    const int above = ValuesAboveMaxima(run.defs, merge ? run.defs.SavedUnits : run.defs.Units);
    if (above > 0) std::cerr << "vantrel-cli: " << path << ": " << AboveMaximaText(above) << "\n";
    return std::nullopt;
}

} // namespace vantrel::cli

// What the `save` and `show` commands share: the catalogue, the stored
// options and the ports of a profile run, and opening a profile.
#pragma once

#include "cli/cli_common.h"
#include "profile/profile.h"

#include <optional>
#include <string>

namespace vantrel::cli {

struct ProfileRun {
    Definitions defs;
    ConsoleProgress progress{false};
    PlainSettingsFields fields;
    SystemClock clock;
    ProfileContext ctx{defs, progress, fields, clock};
};

// Uses the user's regional number settings, loads the catalogue of
// `unitsDir` and reads the stored options as the desktop program does.
// Returns an exit status when that fails.
std::optional<int> PrepareProfileRun(ProfileRun& run, const std::string& unitsDir);

// A profile path names a file or folder (read, or reported with its reason)
// or "ARCHIVE#inner"; otherwise "no such file" is said and false returned.
bool ProfileExists(const std::string& path);

// Opens (or merges) a profile as File, Open (or Merge) does; `path` may name
// a profile inside an archive ("ARCHIVE#path/inside"). Returns an exit status
// when that fails: 2 for a missing file, 1 when it cannot be read or the
// archive or the file inside it is missing. Values above the maxima are kept
// and counted on stderr.
std::optional<int> OpenProfile(ProfileRun& run, const std::string& path, bool tessaly, bool merge);

} // namespace vantrel::cli

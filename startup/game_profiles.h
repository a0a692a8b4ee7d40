// The game's own AI profiles: those inside its archives (their "ai" folders)
// and the loose ones in its "ai" folder; reading one from inside an archive
// without extracting it; installing a profile where the game reads it.
#pragma once

#include "profile/profile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantrel {

// "ARCHIVE#path/inside/archive": an archive file and the path of a file in it.
struct ArchivePath {
    std::string archive;
    std::string inner;
};
// Splits `path` at its last '#', unless it names an existing file or folder as it stands.
std::optional<ArchivePath> SplitArchivePath(const std::string& path);

// Reads the file `inner` of `archive` (both names matched without letter case)
// and the build-set file beside it in the archive, when there is one. The
// profile's name is "ARCHIVE#inner" with the file name as the archive has it. Throws ProfileError
// naming the archive when it is missing or no archive, or the entry when the archive lacks it.
ProfileText ReadArchivedProfile(const ArchivePath& where);

// The profile at `path`, a file or "ARCHIVE#inner", with its build-set text
// (beside it on disk or in the archive). Throws ProfileError.
ProfileText ReadProfileAt(const std::string& path);

// The archives of `gameDir` in the order the game's files are listed from
// them: the archive patterns of the extraction, then "*.ufo"; file names.
std::vector<std::string> GameArchiveFiles(const std::string& gameDir);

struct GameProfile {
    std::string source; // the archive's file name, or the "ai" folder's name as spelt on disk
    std::string name;   // the path inside the archive ("/" separators), or the file name
    std::uint64_t size = 0;
    std::string path; // what the readers take: "ARCHIVE#inner" or the loose file's path
};
// An archive that could not be read, and why.
struct UnreadableArchive {
    std::string path;
    std::string reason;
};
struct GameProfileList {
    // Those whose path opens exactly the listed file: GAME_DIR/SOURCE#NAME
    // (archived) or GAME_DIR/SOURCE/NAME (loose).
    std::vector<GameProfile> profiles;
    // Archived profiles that no path can name ('#' or '\' in the name).
    std::vector<GameProfile> unreachable;
    std::vector<UnreadableArchive> unreadable;
};
// Every "*.txt" in the "ai" folder of each archive of `gameDir` (the archive
// patterns of the extraction, then "*.ufo"; archives in listing order), then
// the "*.txt" files of `gameDir`'s own "ai" folder (its name in any case).
// The one place that says which profiles the game has.
GameProfileList ListGameProfiles(const std::string& gameDir);

// The game's "ai" folder: an existing one whose name is "ai" in any case,
// else `gameDir`/ai (which may not exist yet).
std::string GameAiFolder(const std::string& gameDir);
// The same for any folder of the game ("maps").
std::string GameSubfolder(const std::string& gameDir, const std::string& name);

struct InstallPlan {
    std::string destination; // the file to write
    bool replaces = false;   // a file of that name (any case) is already there
};
// Where installing `profilePath` into the game writes it: under the
// profile's own file name in the game's "ai" folder: over the file of that
// very name when there is one, else over the first whose name differs only
// in letter case. Throws ProfileError with the reason when the game's folder
// or its "ai" folder cannot be listed (nothing is written then).
InstallPlan PlanInstall(const std::string& profilePath, const std::string& gameDir);
// Copies the profile to the plan's destination, creating the "ai" folder
// when needed; the file is replaced in one step, so a failure leaves the old
// one. Throws ProfileError with the reason.
void InstallProfile(const std::string& profilePath, const InstallPlan& plan);

} // namespace vantrel

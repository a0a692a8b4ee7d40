// AI profiles: the writer, the two readers and the build-set files.
#pragma once

#include "base/paths.h"
#include "base/ports.h"
#include "base/staged_file.h"
#include "catalogue/definitions.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// A profile or build-set file that could not be read or written; what()
// names the file and the reason.
using ProfileError = FileError;

// The largest profile, build-set or Tessaly file the readers take (256 MiB).
inline constexpr std::size_t ProfileFileMax = 256u * 1024u * 1024u;

// A profile, build-set or Tessaly file whole, or the reason it could not be read.
inline FileText ReadProfileFile(const std::string& path) {
    return ReadFileText(path, ProfileFileMax);
}

// What the writer and the readers work with besides the catalogue.
struct ProfileContext {
    Definitions& defs;
    Progress& progress;     // frmLoad
    SettingsFields& fields; // txtAIname, txtAuthor, lblAIName
    Clock& clock;
};

// Writes the profile at `path` and its build-set file beside it. Each file is
// written to a temporary file in the same folder and renamed over the target,
// so a failure leaves the previous files as they were. Throws ProfileError.
void SaveAI(ProfileContext& ctx, const std::string& path);

// Reads a profile in our own format (merge = false: into Units, with its build
// set; merge = true: into SavedUnits). Throws ProfileError when the file
// cannot be read.
void ReadAI(ProfileContext& ctx, const std::string& path, bool merge);
// The same for the INI-style profiles of the Tessaly tool (".tsy").
void ReadTessalyAI(ProfileContext& ctx, const std::string& path, bool merge);

// A profile whose bytes are already in memory (for example one inside a game archive).
// `name` stands for the file in messages and in the header's defaults; `buildSet` holds
// the text of its build-set file when it has one.
struct ProfileText {
    std::string name;
    std::string text;
    std::optional<std::string> buildSet;
};
void ReadAI(ProfileContext& ctx, const ProfileText& profile, bool merge);
void ReadTessalyAI(ProfileContext& ctx, const ProfileText& profile, bool merge);

// Where ReadAI takes each unit's values from in the upper-cased text of a
// profile of our own format: the positions of the "WEIGHT " and "LIMIT "
// entries it reads (std::string::npos for none). Unit i is at [i - 1].
struct EntriesRead {
    std::size_t weight;
    std::size_t limit;
};
std::vector<EntriesRead> EntriesReadFor(const Definitions& defs, std::string_view upper);

// The readers keep values above WeightMax and LimitMax as read. How many
// weights and limits of `units` (Units after Open, SavedUnits after Merge)
// are above the current maxima, and the sentence that says so ("" for none).
int ValuesAboveMaxima(const Definitions& defs, const RecordArray<vtUnit>& units);
std::string AboveMaximaText(int count);

// The build-set path of a profile path: its last four characters replaced by ".set".
std::string BuildSetPath(const std::string& profilePath);
// Applies the build set that belongs to `profilePath`, when there is one.
void ReadBuildSet(Definitions& defs, const std::string& profilePath);

} // namespace vantrel

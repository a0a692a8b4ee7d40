// Writing an archive's files to disk.
#pragma once

#include "base/staged_file.h"
#include "formats/hpi_archive.h"

#include <string>
#include <vector>

namespace vantrel {

// Writes the unpacked bytes of `file` as `name` in `folder`, replacing a file
// that is already there. The bytes go to a temporary file in the folder that
// is renamed at the end, so a failed extraction leaves the folder as it was;
// a symbolic link standing at `name` is refused, never followed. On failure
// `reason` (when given) says why: the system's error text, the archive's
// limits, or what is damaged in its data. A file the limits refuse is not read.
bool ExtractToFile(const HpiArchive& archive, const HpiEntry& file, const OpenFolder& folder,
                   const std::string& name, std::string* reason = nullptr);

struct TreeExtraction {
    int written = 0;
    std::vector<std::string> failed;  // "path: reason" (paths inside the archive, "/" separators)
    std::vector<std::string> skipped; // names that would leave the destination folder
};
// Extracts every file of the archive below `destDir`, recreating its folders.
// Nothing is written outside it: names with separators, "." and ".." are
// skipped, and a symbolic link inside it where a folder or file goes is
// refused. The archive's limits apply as it has them (see HpiArchive::SetLimits).
TreeExtraction ExtractTree(const HpiArchive& archive, const std::string& destDir);

// Every file below `folder` with its path ("/" separators), in archive order.
struct ArchiveFile {
    std::string path;
    const HpiEntry* entry;
};
std::vector<ArchiveFile> ListArchiveFiles(const HpiEntry& folder);

// A name that stays inside the folder it is written to: not empty, not "."
// or "..", no separator ("/" or "\\"), no drive letter, no NUL.
bool IsSafeBareName(std::string_view name);

} // namespace vantrel

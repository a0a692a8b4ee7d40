// The archive library over our own archive reader: opens the game's archives,
// lists their folders and extracts single files to disk.
#pragma once

#include "startup/archive_library.h"
#include "startup/hpi_archive.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vantrel {

// Writes the unpacked bytes of `file` to `destination`, replacing a file that
// is already there. The bytes go to a temporary file in the same folder that
// is renamed at the end, so a failed extraction leaves the folder as it was.
// On failure `reason` (when given) says why: the system's error text, the
// archive's limits, or damaged data. A file the limits refuse is not read.
bool ExtractToFile(const HpiArchive& archive, const HpiEntry& file, const std::string& destination,
                   std::string* reason = nullptr);

struct TreeExtraction {
    int written = 0;
    std::vector<std::string> failed;  // "path: reason" (paths inside the archive, "/" separators)
    std::vector<std::string> skipped; // names that would leave the destination folder
};
// Extracts every file of the archive below `destDir`, recreating its folders.
// The archive's limits apply as it has them (see HpiArchive::SetLimits).
TreeExtraction ExtractTree(const HpiArchive& archive, const std::string& destDir);

// Every file below `folder` with its path ("/" separators), in archive order.
struct ArchiveFile {
    std::string path;
    const HpiEntry* entry;
};
std::vector<ArchiveFile> ListArchiveFiles(const HpiEntry& folder);

// Every archive it opens extracts under `limits` (DiskLimits unless given).
// The cap of a whole archive counts what every opening of the same file
// (by the name it was opened under) has unpacked through this library, so
// the passes of one start-up together stay within it.
class HpiLibrary : public GameFolderOnlyLibrary {
  public:
    explicit HpiLibrary(SettingsStore& settings, const HpiLimits& limits = DiskLimits)
        : GameFolderOnlyLibrary(settings), limits_(limits) {}
    // 0 when the file cannot be opened as an archive (or its directory is
    // damaged or too large); such a handle lists nothing, and LastFailure
    // says why.
    std::int32_t HPIOpen(const std::string& fileName) override;
    // Lists files and sub-folders alike: `type` is 1 for a folder, 0 for a
    // file; `size` is a file's unpacked size.
    std::int32_t HPIDir(std::int32_t handle, std::int32_t position, const std::string& folder,
                        std::string& nameBuffer, std::int32_t& type, std::int32_t& size) override;
    // 1 when the file was written, 0 otherwise.
    std::int32_t HPIExtractFile(std::int32_t handle, const std::string& pathInArchive,
                                const std::string& destination) override;
    std::int32_t HPIClose(std::int32_t handle) override;
    std::string LastFailure() const override { return lastFailure_; }

  private:
    struct Opened {
        std::unique_ptr<HpiArchive> archive;
        std::string fileName;
    };
    const HpiArchive* Find(std::int32_t handle) const;
    HpiLimits limits_;
    std::map<std::int32_t, Opened> open_;
    std::map<std::string, std::uint64_t> unpacked_; // by file name, over every opening
    std::int32_t next_ = 1;
    std::string lastFailure_;
};

} // namespace vantrel

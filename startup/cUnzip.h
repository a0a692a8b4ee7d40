// The zip extraction object: lists and unpacks zip packages of extra units
// (libzip underneath). Every activity of a run is reported through the
// Progress event, one message per entry.
#pragma once

#include "catalogue/units_folder.h"
#include "startup/extraction_failures.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// Entries that unpack to more than this are refused (zip bombs).
inline constexpr std::uint64_t MaxUnzipEntryBytes = 64ull * 1024 * 1024;
// A package stops unpacking once it has written this much in one run.
inline constexpr std::uint64_t MaxUnzipPackageBytes = 1024ull * 1024 * 1024;

// The text of a progress message as the handlers receive it: nullopt unless
// it is 2 to 31,999 bytes long; otherwise every "/" turned into "\" and a NUL
// appended (StripPath removes it).
std::optional<std::string> UnzipMessageText(std::string_view raw);

// The last part of an entry name; both "/" and "\" separate folders.
std::string_view EntryBareName(std::string_view entryName);

class cUnzip {
  public:
    struct Entry {
        std::string Name; // as stored in the package
        std::uint64_t Size = 0;
        bool Encrypted = false;
        bool Selected = true;
    };

    // Raised for every message of a run (lCount is always 1).
    std::function<void(int lCount, const std::string& sMsg)> Progress;

    const std::string& ZipFile() const { return zipFile_; }
    // Names the package and empties the entry list.
    void ZipFile(const std::string& sFile) {
        zipFile_ = sFile;
        entries_.clear();
    }
    const std::string& UnzipFolder() const { return unzipFolder_; }
    void UnzipFolder(const std::string& sFolder) { unzipFolder_ = sFolder; }
    // True: recreate the package's folders below UnzipFolder; false: every
    // file lands directly in UnzipFolder under its bare name.
    bool UseFolderNames() const { return useFolderNames_; }
    void UseFolderNames(bool value) { useFolderNames_ = value; }
    // An index of UnzipFolder: the "already there" test asks it and every
    // file written is noted in it. Without one (or for another folder), a run
    // reads the folder itself.
    void ExistingFiles(UnitsFolder* index) { existing_ = index; }

    // Reads the package's entry list (folder entries included); every listed
    // entry is selected. Returns 0, or the library's error code when the
    // package cannot be read (the list is then empty).
    std::int32_t Directory();
    // Extracts into UnzipFolder the selected entries, or every entry when all
    // are selected or the list is empty. Existing files are never replaced.
    // False when the package could not be read.
    bool Unzip();
    // The files of the last Unzip that could not be written, with reasons.
    const ExtractionFailures& Failures() const { return failures_; }

    std::int32_t FileCount() const { return static_cast<std::int32_t>(entries_.size()); }
    // Per-entry getters, lIndex 1-based; out of range gives an empty entry.
    std::string Filename(std::int32_t lIndex) const;
    std::string FileDirectory(std::int32_t lIndex) const;
    std::uint64_t FileSize(std::int32_t lIndex) const { return EntryAt(lIndex).Size; }
    bool FileEncrypted(std::int32_t lIndex) const { return EntryAt(lIndex).Encrypted; }
    bool FileSelected(std::int32_t lIndex) const { return EntryAt(lIndex).Selected; }
    void FileSelected(std::int32_t lIndex, bool value);

  private:
    const Entry& EntryAt(std::int32_t lIndex) const;
    void Say(std::string_view message);
    bool UnzipRun();

    std::string zipFile_;
    std::string unzipFolder_;
    bool useFolderNames_ = false;
    UnitsFolder* existing_ = nullptr;
    std::vector<Entry> entries_;
    ExtractionFailures failures_;
};

} // namespace vantrel

// The game's archive library as the program drives it, and the two passes
// over the game's archives that fill the Units folder.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "startup/extraction_failures.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vantrel {

inline constexpr std::size_t NameBufferSize = 255;
inline std::string FreshNameBuffer() {
    return std::string(NameBufferSize, ' ');
}

class ArchiveLibrary {
  public:
    virtual ~ArchiveLibrary() = default;
    // Fills `buffer` (255 spaces on entry) with the game's folder, NUL-terminated.
    virtual void GetTADirectory(std::string& buffer) = 0;
    // Opens an archive; the handle of one that cannot be opened lists nothing.
    virtual std::int32_t HPIOpen(const std::string& fileName) = 0;
    // Listing protocol: position 0 first; a non-zero result means `nameBuffer`
    // holds one entry (NUL-terminated) and is the position for the next call;
    // 0 means no further entry.
    virtual std::int32_t HPIDir(std::int32_t handle, std::int32_t position,
                                const std::string& folder, std::string& nameBuffer,
                                std::int32_t& type, std::int32_t& size) = 0;
    // `pathInArchive` is folder + "\" + name ("/" works too).
    virtual std::int32_t HPIExtractFile(std::int32_t handle, const std::string& pathInArchive,
                                        const std::string& destination) = 0;
    virtual std::int32_t HPIClose(std::int32_t handle) = 0;
    // Why the last HPIOpen or HPIExtractFile that returned 0 failed ("" when
    // unknown, or for an archive the library does not read at all).
    virtual std::string LastFailure() const { return {}; }
};

// A library that finds the game folder but reads no archives.
class GameFolderOnlyLibrary : public ArchiveLibrary {
  public:
    explicit GameFolderOnlyLibrary(SettingsStore& settings) : settings_(settings) {}
    void GetTADirectory(std::string& buffer) override;
    std::int32_t HPIOpen(const std::string&) override { return 0; }
    std::int32_t HPIDir(std::int32_t, std::int32_t, const std::string&, std::string&, std::int32_t&,
                        std::int32_t&) override {
        return 0;
    }
    std::int32_t HPIExtractFile(std::int32_t, const std::string&, const std::string&) override {
        return 0;
    }
    std::int32_t HPIClose(std::int32_t) override { return 0; }

  protected:
    SettingsStore& settings_;
};

// Puts `folder` into a 255-character buffer the way the library returns it.
void FillNameBuffer(std::string& buffer, const std::string& text);

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

// A name that stays inside the folder it is written to: not empty, not "."
// or "..", no separator ("/" or "\\"), no drive letter, no NUL.
bool IsSafeBareName(std::string_view name);

// The archive patterns searched directly in the game folder.
inline constexpr const char* ArchivePatterns[] = {"*.hpi", "*.ccx", "*.gp?", "*.swx"};

// Adds the number of entries of `folder` in every archive of the game folder
// matching `pattern` to the progress bar's maximum.
void CountArchiveFiles(const Definitions& defs, ArchiveLibrary& lib, Progress& progress,
                       const std::string& folder, const std::string& pattern);
// Extracts the entries of `folder` whose lower-cased names contain
// `extension` from every matching archive into the Units folder, which
// defs.UnitFiles must index (RunExtraction reads it first): a name there in
// another case is replaced under its spelling on disk, and every file
// written is noted in the index. Files that could not be written, and
// archives the library refuses with a reason, are added to `failures` when
// given.
void ExtractArchiveFiles(Definitions& defs, ArchiveLibrary& lib, Progress& progress,
                         const std::string& folder, const std::string& pattern,
                         const std::string& extension, const std::string& status,
                         ExtractionFailures* failures = nullptr);

} // namespace vantrel

// Folders, file names and directory listings.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

inline constexpr char PathSep = '/';

// Text before the first NUL; without a NUL, the text less trailing spaces.
std::string TrimNull(std::string_view text);
// Removes every NUL from `text` (in place) and returns the part after the
// last separator ('\\' or the platform's), or the text unchanged when it has none.
std::string StripPath(std::string& text);

// `folder` with exactly one trailing separator added when it has none.
std::string WithTrailingSep(std::string folder);
// The Units folder of a program folder (AppDir ends in a separator).
std::string UnitsDir(const std::string& appDir);

// Wildcard match without regard to ASCII case: '*' any run, '?' exactly one.
bool WildcardMatch(std::string_view pattern, std::string_view name);

// Regular files (not folders) directly in `dir` whose names match `pattern`,
// sorted with ASCII letters compared as upper case, ties in byte order.
std::vector<std::string> ListFiles(const std::string& dir, std::string_view pattern);
// The listing order used everywhere: upper-cased ASCII, then bytes.
bool ListingLess(std::string_view a, std::string_view b);

struct FileText {
    std::string data;
    std::string error; // empty when the file was read
    bool ok() const { return error.empty(); }
};
// The whole file as bytes, or the reason it could not be read (it is
// missing, not a regular file, larger than `maxBytes`, or a read failed).
FileText ReadFileText(const std::string& path, std::size_t maxBytes);
// The same without the reason: nullopt when the file could not be read.
std::optional<std::string> ReadWholeFile(const std::string& path,
                                         std::size_t maxBytes = 16u * 1024u * 1024u);

bool IsDirectory(const std::string& path);
bool IsRegularFile(const std::string& path);
bool IsWritableDirectory(const std::string& path);
bool MakeDirectory(const std::string& path); // true when it exists afterwards

// The folder of the running executable ("" when unknown).
std::string ExecutableDir();
std::string ExecutablePath();

// Where the program's folder is: the executable's folder when it is writable
// (a portable layout) and not a system folder (below /usr, or /bin), otherwise
// $XDG_DATA_HOME/vantrel (~/.local/share/vantrel).
std::string ChooseProgramFolder(const std::string& exeDir, bool exeDirWritable,
                                const std::string& xdgDataHome, const std::string& home);

// Joins a folder and a name with one separator between them.
std::string JoinPath(const std::string& dir, const std::string& name);

} // namespace vantrel

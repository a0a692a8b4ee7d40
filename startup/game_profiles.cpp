#include "startup/game_profiles.h"

#include "base/paths.h"
#include "base/staged_file.h"
#include "base/text.h"
#include "formats/hpi_archive.h"
#include "startup/game_archives.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {

namespace {

// The unpacked bytes of an archived file; nullopt when they are damaged or
// larger than the readers take (`why`, when given, says which).
std::optional<std::string> ExtractToText(const HpiArchive& archive, const HpiEntry& file,
                                         std::string* why = nullptr) {
    if (file.size > ProfileFileMax) {
        if (why) *why = "too large";
        return std::nullopt;
    }
    std::string data;
    data.reserve(file.size);
    bool ok = archive.Extract(
        file,
        [&](const std::uint8_t* bytes, std::size_t n) {
            data.append(reinterpret_cast<const char*>(bytes), n);
            return true;
        },
        why);
    if (!ok) return std::nullopt;
    return data;
}

// The names in `dir`, or the reason it cannot be listed.
struct Listing {
    std::vector<std::string> names;
    std::string error; // empty when listed
};
Listing ListFolder(const std::string& dir) {
    Listing listing;
    DIR* d = ::opendir(dir.empty() ? "." : dir.c_str());
    if (!d) {
        listing.error = std::strerror(errno);
        return listing;
    }
    errno = 0;
    while (dirent* e = ::readdir(d)) {
        std::string entry = e->d_name;
        if (entry != "." && entry != "..") listing.names.push_back(std::move(entry));
        errno = 0;
    }
    if (errno != 0) listing.error = std::strerror(errno);
    ::closedir(d);
    return listing;
}

// The entry of `names` named `name` itself when there is one, else the
// first (in listing order) named `name` in any case for which
// `wanted(entry)` holds.
template <class Wanted>
std::optional<std::string> FindNoCase(const std::vector<std::string>& names,
                                      const std::string& name, Wanted wanted) {
    std::optional<std::string> found;
    for (const std::string& entry : names) {
        if (!EqualsNoCase(entry, name) || !wanted(entry)) continue;
        if (entry == name) return entry;
        if (!found || ListingLess(entry, *found)) found = entry;
    }
    return found;
}

template <class Wanted>
std::optional<std::string> FindNoCase(const std::string& dir, const std::string& name,
                                      Wanted wanted) {
    return FindNoCase(ListFolder(dir).names, name,
                      [&](const std::string& entry) { return wanted(JoinPath(dir, entry)); });
}

// A name that `GAME_DIR/SOURCE#NAME` gives back as it stands: the split
// takes the last '#', and the archive reads '\' as a folder separator.
bool Addressable(const std::string& inner) {
    return inner.find_first_of("#\\") == std::string::npos;
}

} // namespace

std::optional<ArchivePath> SplitArchivePath(const std::string& path) {
    std::size_t hash = path.rfind('#');
    struct stat st {};
    if (hash == std::string::npos || ::stat(path.c_str(), &st) == 0) return std::nullopt;
    return ArchivePath{path.substr(0, hash), path.substr(hash + 1)};
}

ProfileText ReadArchivedProfile(const ArchivePath& where) {
    const std::string name = where.archive + "#" + where.inner;
    // The archive's own name matches in any case, as in the game folder.
    std::string archivePath = where.archive;
    if (!IsRegularFile(archivePath)) {
        const std::size_t nameStart = archivePath.find_last_of(PathSep) + 1;
        const std::string folder = nameStart ? archivePath.substr(0, nameStart) : "./";
        auto found = FindNoCase(folder, archivePath.substr(nameStart),
                                [](const std::string& p) { return IsRegularFile(p); });
        if (!found)
            throw ProfileError("Cannot read '" + name +
                               "': there is no such file, nor an archive '" + where.archive + "'.");
        archivePath = archivePath.substr(0, nameStart) + *found;
    }
    std::string why;
    auto archive = HpiArchive::OpenFile(archivePath, &why);
    if (!archive)
        throw ProfileError("Cannot read '" + name + "': '" + where.archive + "': " + why + ".");
    const HpiEntry* file = archive->FindFile(where.inner);
    if (!file || file->isDirectory)
        throw ProfileError("Cannot read '" + name + "': the archive has no file '" + where.inner +
                           "'.");
    std::optional<std::string> text = ExtractToText(*archive, *file, &why);
    if (!text)
        throw ProfileError("Cannot read '" + name + "': the archived file is " +
                           (why == "too large" ? why : "damaged (" + why + ")") + ".");

    // The file's name as the archive has it stands for the profile.
    const std::size_t folderEnd = where.inner.find_last_of("/\\") + 1;
    const std::string entryName = archivePath + "#" + where.inner.substr(0, folderEnd) + file->name;

    // A damaged build-set file reads like one without sections, as on disk.
    std::optional<std::string> buildSet;
    const HpiEntry* set = archive->FindFile(BuildSetPath(where.inner));
    if (set && !set->isDirectory) buildSet = ExtractToText(*archive, *set).value_or("");
    return {entryName, std::move(*text), std::move(buildSet)};
}

ProfileText ReadProfileAt(const std::string& path) {
    if (auto inArchive = SplitArchivePath(path)) return ReadArchivedProfile(*inArchive);
    FileText text = ReadProfileFile(path);
    if (!text.ok()) throw ProfileError("Cannot read '" + path + "': " + text.error + ".");
    std::optional<std::string> buildSet;
    if (IsRegularFile(BuildSetPath(path))) buildSet = ReadProfileFile(BuildSetPath(path)).data;
    return {path, std::move(text.data), std::move(buildSet)};
}

std::vector<std::string> GameArchiveFiles(const std::string& gameDir) {
    std::vector<std::string> patterns(std::begin(ArchivePatterns), std::end(ArchivePatterns));
    patterns.push_back("*.ufo");
    std::vector<std::string> files;
    for (const std::string& pattern : patterns)
        for (std::string& file : ListFiles(gameDir, pattern))
            files.push_back(std::move(file));
    return files;
}

GameProfileList ListGameProfiles(const std::string& gameDir) {
    GameProfileList list;
    for (const std::string& file : GameArchiveFiles(gameDir)) {
        const std::string archivePath = JoinPath(gameDir, file);
        std::string why;
        const auto archive = HpiArchive::OpenFile(archivePath, &why);
        if (!archive) {
            list.unreadable.push_back({archivePath, why});
            continue;
        }
        const HpiEntry* ai = archive->FindFolder("ai");
        if (!ai) continue;
        for (const HpiEntry& e : ai->children) {
            if (e.isDirectory || !WildcardMatch("*.txt", e.name)) continue;
            const std::string inner = ai->name + "/" + e.name;
            GameProfile profile{file, inner, e.size, archivePath + "#" + inner};
            (Addressable(inner) ? list.profiles : list.unreachable).push_back(profile);
        }
    }
    // Loose profiles: SOURCE is the folder's own spelling.
    const std::string aiDir = GameAiFolder(gameDir);
    std::string source = aiDir;
    source = StripPath(source);
    for (const std::string& file : ListFiles(aiDir, "*.txt")) {
        const std::string path = JoinPath(aiDir, file);
        struct stat st {};
        std::uint64_t size =
            ::stat(path.c_str(), &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
        list.profiles.push_back({source, file, size, path});
    }
    return list;
}

std::string GameAiFolder(const std::string& gameDir) {
    return GameSubfolder(gameDir, "ai");
}

std::string GameSubfolder(const std::string& gameDir, const std::string& name) {
    auto found = FindNoCase(gameDir, name, [](const std::string& p) { return IsDirectory(p); });
    return JoinPath(gameDir, found.value_or(name));
}

InstallPlan PlanInstall(const std::string& profilePath, const std::string& gameDir) {
    std::string copy = profilePath;
    const std::string fileName = StripPath(copy);
    const Listing game = ListFolder(gameDir);
    if (!game.error.empty())
        throw ProfileError("Cannot list the folder '" + gameDir + "': " + game.error + ".");
    const std::string aiDir =
        JoinPath(gameDir, FindNoCase(game.names, "ai", [&](const std::string& entry) {
                              return IsDirectory(JoinPath(gameDir, entry));
                          }).value_or("ai"));
    struct stat st {};
    if (::lstat(aiDir.c_str(), &st) != 0 && errno == ENOENT)
        return {JoinPath(aiDir, fileName), false}; // created when installing
    const Listing ai = ListFolder(aiDir);
    if (!ai.error.empty())
        throw ProfileError("Cannot list the folder '" + aiDir + "': " + ai.error +
                           ". Nothing was installed.");
    auto existing = FindNoCase(ai.names, fileName, [](const std::string&) { return true; });
    return {JoinPath(aiDir, existing.value_or(fileName)), existing.has_value()};
}

void InstallProfile(const std::string& profilePath, const InstallPlan& plan) {
    FileText text = ReadProfileFile(profilePath);
    if (!text.ok()) throw ProfileError("Cannot read '" + profilePath + "': " + text.error + ".");
    std::string folder = plan.destination.substr(0, plan.destination.find_last_of(PathSep));
    if (!IsDirectory(folder) && ::mkdir(folder.c_str(), 0777) != 0) {
        const int error = errno;
        if (!IsDirectory(folder))
            throw ProfileError("Cannot create the folder '" + folder +
                               "': " + std::strerror(error) + ".");
    }
    ReplaceFile(plan.destination, text.data);
}

} // namespace vantrel

#include "startup/game_profiles.h"

#include "base/paths.h"
#include "base/staged_file.h"
#include "base/text.h"
#include "formats/hpi_archive.h"
#include "startup/game_archives.h"

#include <dirent.h>
#include <sys/stat.h>

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

// The first entry of `dir` (in listing order) named `name` in any case for
// which `wanted(path)` holds.
template <class Wanted>
std::optional<std::string> FindNoCase(const std::string& dir, const std::string& name,
                                      Wanted wanted) {
    std::optional<std::string> found;
    DIR* d = ::opendir(dir.c_str());
    if (!d) return found;
    while (dirent* e = ::readdir(d)) {
        std::string entry = e->d_name;
        if (EqualsNoCase(entry, name) && wanted(JoinPath(dir, entry)) &&
            (!found || ListingLess(entry, *found)))
            found = entry;
    }
    ::closedir(d);
    return found;
}

} // namespace

std::optional<ArchivePath> SplitArchivePath(const std::string& path) {
    std::size_t hash = path.rfind('#');
    if (hash == std::string::npos || IsRegularFile(path)) return std::nullopt;
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
            throw ProfileError("Cannot read '" + name + "': there is no archive '" + where.archive +
                               "'.");
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

std::vector<GameProfile> ListGameProfiles(const std::string& gameDir) {
    std::vector<GameProfile> profiles;
    std::vector<std::string> patterns(std::begin(ArchivePatterns), std::end(ArchivePatterns));
    patterns.push_back("*.ufo");
    for (const std::string& pattern : patterns) {
        for (const std::string& file : ListFiles(gameDir, pattern)) {
            const std::string archivePath = JoinPath(gameDir, file);
            auto archive = HpiArchive::OpenFile(archivePath);
            const HpiEntry* ai = archive ? archive->FindFolder("ai") : nullptr;
            if (!ai) continue;
            for (const HpiEntry& e : ai->children) {
                if (e.isDirectory || !WildcardMatch("*.txt", e.name)) continue;
                const std::string inner = ai->name + "/" + e.name;
                profiles.push_back({file, inner, e.size, archivePath + "#" + inner});
            }
        }
    }
    const std::string aiDir = GameAiFolder(gameDir);
    for (const std::string& file : ListFiles(aiDir, "*.txt")) {
        const std::string path = JoinPath(aiDir, file);
        struct stat st {};
        std::uint64_t size =
            ::stat(path.c_str(), &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
        profiles.push_back({"ai", file, size, path});
    }
    return profiles;
}

std::string GameAiFolder(const std::string& gameDir) {
    auto found = FindNoCase(gameDir, "ai", [](const std::string& p) { return IsDirectory(p); });
    return JoinPath(gameDir, found.value_or("ai"));
}

InstallPlan PlanInstall(const std::string& profilePath, const std::string& gameDir) {
    std::string copy = profilePath;
    const std::string fileName = StripPath(copy);
    const std::string aiDir = GameAiFolder(gameDir);
    auto existing = FindNoCase(aiDir, fileName, [](const std::string&) { return true; });
    return {JoinPath(aiDir, existing.value_or(fileName)), existing.has_value()};
}

void InstallProfile(const std::string& profilePath, const InstallPlan& plan) {
    FileText text = ReadProfileFile(profilePath);
    if (!text.ok()) throw ProfileError("Cannot read '" + profilePath + "': " + text.error + ".");
    std::string folder = plan.destination.substr(0, plan.destination.find_last_of(PathSep));
    if (!MakeDirectory(folder)) throw ProfileError("Cannot create the folder '" + folder + "'.");
    ReplaceFile(plan.destination, text.data);
}

} // namespace vantrel

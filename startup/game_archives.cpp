#include "startup/game_archives.h"

#include "base/paths.h"
#include "base/text.h"
#include "formats/hpi_extract.h"

#include <cstdlib>
#include <dirent.h>
#include <sstream>
#include <vector>

namespace vantrel {

GameSearchEnv GameSearchEnvFromProcess(SettingsStore& settings) {
    GameSearchEnv env;
    env.storedGameDir = settings.Get("GameDir", "");
    if (const char* p = std::getenv("WINEPREFIX")) env.winePrefix = p;
    if (const char* h = std::getenv("HOME")) env.home = h;
    return env;
}

namespace {

// Unescapes a registry string value: \\ -> \, \" -> ".
std::string UnescapeRegValue(std::string_view v) {
    std::string out;
    for (std::size_t i = 0; i < v.size(); ++i) {
        if (v[i] == '\\' && i + 1 < v.size()) ++i;
        out.push_back(v[i]);
    }
    return out;
}

// "C:\Cavedog\Totala" inside a prefix -> its Unix path.
std::string MapWindowsPath(const std::string& prefix, const std::string& winPath) {
    if (winPath.size() < 2 || winPath[1] != ':') return {};
    char drive = static_cast<char>(winPath[0] | 0x20);
    if (drive < 'a' || drive > 'z') return {};
    std::string rest = winPath.substr(2);
    for (char& c : rest)
        if (c == '\\') c = '/';
    std::string root = JoinPath(JoinPath(prefix, "dosdevices"), std::string(1, drive) + ":");
    if (!IsDirectory(root) && drive == 'c') root = JoinPath(prefix, "drive_c");
    if (!IsDirectory(root)) return {};
    // Folder names on a Windows drive match in any case: resolve step by step.
    std::string path = root;
    std::stringstream parts(rest);
    std::string part;
    while (std::getline(parts, part, '/')) {
        if (part.empty()) continue;
        std::string exact = JoinPath(path, part);
        if (IsDirectory(exact)) {
            path = exact;
            continue;
        }
        bool found = false;
        if (DIR* d = ::opendir(path.c_str())) {
            while (dirent* e = ::readdir(d)) {
                if (EqualsNoCase(e->d_name, part) && IsDirectory(JoinPath(path, e->d_name))) {
                    path = JoinPath(path, e->d_name);
                    found = true;
                    break;
                }
            }
            ::closedir(d);
        }
        if (!found) return {};
    }
    return path;
}

} // namespace

std::string GameDirFromWinePrefix(const std::string& prefix) {
    if (prefix.empty()) return {};
    auto reg = ReadWholeFile(JoinPath(prefix, "system.reg"), 512u * 1024u * 1024u);
    if (!reg) return {};
    std::istringstream in(*reg);
    std::string line;
    bool inGameKey = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line[0] == '[') {
            std::size_t close = line.find(']');
            std::string key = UCase(line.substr(1, close == std::string::npos ? 0 : close - 1));
            inGameKey = key.ends_with("CAVEDOG ENTERTAINMENT\\\\TOTAL ANNIHILATION");
            continue;
        }
        if (!inGameKey) continue;
        std::string up = UCase(line);
        if (!up.starts_with("\"DIR\"=\"")) continue;
        std::size_t start = 7, end = line.rfind('"');
        if (end == std::string::npos || end < start) continue;
        std::string dir = MapWindowsPath(prefix, UnescapeRegValue(line.substr(start, end - start)));
        if (!dir.empty()) return dir;
    }
    return {};
}

std::string FindGameDirectory(const GameSearchEnv& env) {
    if (IsDirectory(env.storedGameDir)) return env.storedGameDir;
    std::string wine = env.winePrefix.empty() ? JoinPath(env.home, ".wine") : env.winePrefix;
    if (!env.home.empty() || !env.winePrefix.empty())
        if (std::string dir = GameDirFromWinePrefix(wine); !dir.empty()) return dir;
    if (env.home.empty()) return {};
    const char* usual[] = {
        ".steam/steam/steamapps/common/Total Annihilation",
        ".local/share/Steam/steamapps/common/Total Annihilation",
        "GOG Games/Total Annihilation",
        "Games/total-annihilation/drive_c/GOG Games/Total Annihilation",
        ".wine/drive_c/GOG Games/Total Annihilation",
        ".wine/drive_c/Cavedog/Totala",
    };
    for (const char* rel : usual)
        if (std::string dir = JoinPath(env.home, rel); IsDirectory(dir)) return dir;
    return {};
}

GameArchives::GameArchives(const std::string& gameDir, const HpiLimits& limits) {
    for (const char* pattern : ArchivePatterns)
        for (std::string& name : ListFiles(gameDir, pattern)) {
            std::string why;
            auto hpi = HpiArchive::OpenFile(JoinPath(gameDir, name), &why);
            if (!hpi) {
                openFailures_.Add(name, why);
                continue;
            }
            hpi->SetLimits(limits);
            archives_.push_back({std::move(name), std::move(hpi)});
        }
}

int GameArchives::CountEntries(const std::string& folder) const {
    std::size_t n = 0;
    for (const Archive& a : archives_)
        if (const HpiEntry* dir = a.hpi->FindFolder(folder)) n += dir->children.size();
    return static_cast<int>(n);
}

void GameArchives::Extract(UnitsFolder& units, Progress& progress, const std::string& folder,
                           const std::string& extension, ExtractionFailures& failures) const {
    const OpenFolder dest(units.Dir());
    for (const Archive& a : archives_) {
        const HpiEntry* dir = a.hpi->FindFolder(folder);
        if (!dir) continue;
        for (const HpiEntry& e : dir->children) {
            if (e.isDirectory || !ContainsText(LCase(e.name), extension)) continue;
            std::string why = "unsafe name";
            if (IsSafeBareName(e.name)) {
                progress.SetStatus("Extracting " + folder + "/" + e.name + " from " + a.name);
                // A name already in Units in another case is written over, not beside.
                const std::string path = units.PathFor(e.name);
                const std::string onDisk = path.substr(path.find_last_of(PathSep) + 1);
                if (ExtractToFile(*a.hpi, e, dest, onDisk, &why)) units.Add(e.name);
            }
            if (!why.empty()) failures.Add(a.name + ": " + e.name, why);
            progress.AddValue(1);
            progress.Repaint();
        }
    }
}

} // namespace vantrel

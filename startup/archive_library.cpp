#include "startup/archive_library.h"

#include "base/paths.h"
#include "base/text.h"

#include <cstdlib>
#include <dirent.h>
#include <sstream>
#include <vector>

namespace vantrel {

void FillNameBuffer(std::string& buffer, const std::string& text) {
    buffer = FreshNameBuffer();
    std::size_t n = std::min(text.size(), NameBufferSize - 1);
    buffer.replace(0, n, text.substr(0, n));
    buffer[n] = '\0';
}

void GameFolderOnlyLibrary::GetTADirectory(std::string& buffer) {
    std::string dir = FindGameDirectory(GameSearchEnvFromProcess(settings_));
    if (dir.empty()) return;
    // A longer folder is handed out whole: the buffer grows instead of cutting it.
    if (dir.size() < NameBufferSize) return FillNameBuffer(buffer, dir);
    buffer = dir + '\0';
}

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

bool IsSafeBareName(std::string_view name) {
    if (name.empty() || name == "." || name == "..") return false;
    if (name.find_first_of(std::string_view("/\\\0", 3)) != std::string_view::npos) return false;
    if (name.size() >= 2 && name[1] == ':') return false;
    return true;
}

void CountArchiveFiles(const Definitions& defs, ArchiveLibrary& lib, Progress& progress,
                       const std::string& folder, const std::string& pattern) {
    for (const std::string& archive : ListFiles(defs.GameDir, pattern)) {
        std::int32_t handle = lib.HPIOpen(JoinPath(defs.GameDir, archive));
        std::int32_t position = 0, type = 0, size = 0;
        while (true) {
            std::string buffer = FreshNameBuffer();
            position = lib.HPIDir(handle, position, folder, buffer, type, size);
            if (position == 0) break;
            progress.AddMaximum(1);
        }
        lib.HPIClose(handle);
    }
}

void ExtractArchiveFiles(Definitions& defs, ArchiveLibrary& lib, Progress& progress,
                         const std::string& folder, const std::string& pattern,
                         const std::string& extension, const std::string& status,
                         ExtractionFailures* failures) {
    progress.Show();
    progress.SetStatus(status);
    progress.Repaint();
    for (const std::string& archive : ListFiles(defs.GameDir, pattern)) {
        progress.Repaint();
        progress.SetStatus(status);
        std::int32_t handle = lib.HPIOpen(JoinPath(defs.GameDir, archive));
        // An archive the library refuses is reported once, not once per pass.
        if (handle == 0 && failures && !lib.LastFailure().empty())
            failures->AddOnce(archive, lib.LastFailure());
        // Only the names to extract are kept: a folder may list a million entries.
        std::vector<std::string> names;
        std::int32_t position = 0, type = 0, size = 0;
        while (true) {
            std::string buffer = FreshNameBuffer();
            position = lib.HPIDir(handle, position, folder, buffer, type, size);
            if (position == 0) break;
            std::string name = TrimNull(buffer);
            if (ContainsText(LCase(name), extension)) names.push_back(std::move(name));
        }
        for (const std::string& name : names) {
            // A name already in Units in another case is written over, not beside.
            const bool written =
                IsSafeBareName(name) &&
                lib.HPIExtractFile(handle, folder + "\\" + name, defs.UnitFiles.PathFor(name)) != 0;
            if (written)
                defs.UnitFiles.Add(name);
            else if (failures)
                failures->Add(archive + ": " + name,
                              IsSafeBareName(name) ? lib.LastFailure() : "unsafe name");
            progress.AddValue(1);
        }
        lib.HPIClose(handle);
    }
}

} // namespace vantrel

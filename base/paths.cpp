#include "base/paths.h"

#include "base/text.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {

std::string TrimNull(std::string_view text) {
    std::size_t nul = text.find('\0');
    if (nul != std::string_view::npos) return std::string(text.substr(0, nul));
    std::size_t end = text.find_last_not_of(' ');
    return end == std::string_view::npos ? std::string() : std::string(text.substr(0, end + 1));
}

std::string StripPath(std::string& text) {
    // The separator's position is taken before the NULs are removed and then
    // applied to the cleaned text, as the zip messages expect.
    std::size_t last = text.find_last_of("\\/");
    text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
    if (last == std::string::npos) return text;
    return last + 1 >= text.size() ? std::string() : text.substr(last + 1);
}

std::string WithTrailingSep(std::string folder) {
    if (folder.empty() || folder.back() != PathSep) folder.push_back(PathSep);
    return folder;
}

std::string UnitsDir(const std::string& appDir) {
    return WithTrailingSep(appDir) + "Units";
}

std::string JoinPath(const std::string& dir, const std::string& name) {
    if (dir.empty()) return name;
    return WithTrailingSep(dir) + name;
}

bool WildcardMatch(std::string_view pattern, std::string_view name) {
    auto up = [](char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; };
    std::size_t p = 0, n = 0, starP = std::string_view::npos, starN = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || up(pattern[p]) == up(name[n]))) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            starP = p++;
            starN = n;
        } else if (starP != std::string_view::npos) {
            p = starP + 1;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool ListingLess(std::string_view a, std::string_view b) {
    std::string ua = UCase(a), ub = UCase(b);
    if (ua != ub) return ua < ub;
    return a < b;
}

std::vector<std::string> ListFiles(const std::string& dir, std::string_view pattern) {
    std::vector<std::string> names;
    DIR* d = ::opendir(dir.empty() ? "." : dir.c_str());
    if (!d) return names;
    while (dirent* e = ::readdir(d)) {
        std::string name = e->d_name;
        if (name == "." || name == "..") continue;
        if (!WildcardMatch(pattern, name)) continue;
        // The listing says what most entries are; only links and file
        // systems that do not say cost a look-up.
        const bool regular = e->d_type == DT_REG ||
                             ((e->d_type == DT_UNKNOWN || e->d_type == DT_LNK) &&
                              IsRegularFile(JoinPath(dir, name)));
        if (!regular) continue;
        names.push_back(std::move(name));
    }
    ::closedir(d);
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return ListingLess(a, b); });
    return names;
}

FileText ReadFileText(const std::string& path, std::size_t maxBytes) {
    FileText out;
    // Opened first and asked what it is: one path look-up. O_NONBLOCK keeps
    // a pipe from holding the open up; it changes nothing for a file.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        out.error = std::strerror(errno);
        return out;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<unsigned long long>(st.st_size) > maxBytes) {
        out.error = !S_ISREG(st.st_mode)
                        ? (S_ISDIR(st.st_mode) ? "it is a folder" : "it is not a regular file")
                        : "the file is larger than " + std::to_string(maxBytes / (1024 * 1024)) +
                              " MB";
        ::close(fd);
        return out;
    }
    out.data.resize(static_cast<std::size_t>(st.st_size));
    std::size_t got = 0;
    while (got < out.data.size()) {
        ssize_t n = ::read(fd, out.data.data() + got, out.data.size() - got);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            out.error = std::strerror(errno);
            out.data.clear();
            break;
        }
        if (n == 0) break; // the file shrank while we read it
        got += static_cast<std::size_t>(n);
    }
    ::close(fd);
    if (out.ok()) out.data.resize(got);
    return out;
}

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxBytes) {
    FileText file = ReadFileText(path, maxBytes);
    if (!file.ok()) return std::nullopt;
    return std::move(file.data);
}

bool IsDirectory(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool IsRegularFile(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool IsWritableDirectory(const std::string& path) {
    return IsDirectory(path) && ::access(path.c_str(), W_OK | X_OK) == 0;
}

bool MakeDirectory(const std::string& path) {
    if (IsDirectory(path)) return true;
    return ::mkdir(path.c_str(), 0777) == 0 || IsDirectory(path);
}

std::string ExecutablePath() {
    char buf[PATH_MAX];
    ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0) return {};
    return std::string(buf, static_cast<std::size_t>(n));
}

std::string ExecutableDir() {
    std::string exe = ExecutablePath();
    std::size_t slash = exe.find_last_of(PathSep);
    if (slash == std::string::npos) return {};
    return slash == 0 ? std::string("/") : exe.substr(0, slash);
}

std::string ChooseProgramFolder(const std::string& exeDir, bool exeDirWritable,
                                const std::string& xdgDataHome, const std::string& home) {
    // An installed program (/usr/bin, /usr/local/bin, /bin) never keeps its
    // files beside itself, not even when root can write there.
    const bool installed = exeDir == "/usr" || exeDir.starts_with("/usr/") || exeDir == "/bin" ||
                           exeDir.starts_with("/bin/");
    if (!exeDir.empty() && exeDirWritable && !installed) return WithTrailingSep(exeDir);
    std::string base = !xdgDataHome.empty() ? xdgDataHome : JoinPath(home, ".local/share");
    return WithTrailingSep(JoinPath(base, "vantrel"));
}

} // namespace vantrel

#include "startup/cUnzip.h"

#include "base/paths.h"
#include "base/text.h"

#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {

namespace {

struct ArchiveCloser {
    void operator()(zip_t* za) const { zip_discard(za); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;

// Opens a package read-only; on failure `error` holds the library's code.
Archive OpenArchive(const std::string& file, std::int32_t& error) {
    int code = 0;
    zip_t* za = zip_open(file.c_str(), ZIP_RDONLY, &code);
    error = za ? 0 : (code != 0 ? code : ZIP_ER_OPEN);
    return Archive(za);
}

bool IsFolderEntry(std::string_view name) {
    return !name.empty() && (name.back() == '/' || name.back() == '\\');
}

bool IsUsableName(std::string_view name) {
    return !name.empty() && name != "." && name != "..";
}

// The folder parts of an entry name that are safe to recreate: empty, "." and
// ".." parts are dropped, so nothing can climb out of the destination.
std::vector<std::string> SafeFolderParts(std::string_view name) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        std::size_t sep = name.find_first_of("/\\", start);
        if (sep == std::string_view::npos) break;
        std::string_view part = name.substr(start, sep - start);
        if (IsUsableName(part)) parts.emplace_back(part);
        start = sep + 1;
    }
    return parts;
}

// A file being written beside its final place; removed unless kept.
class TempFile {
  public:
    explicit TempFile(const std::string& folder)
        : path_(JoinPath(folder, ".vantrel-unzip-XXXXXX")) {
        fd_ = ::mkstemp(path_.data());
        if (fd_ < 0)
            path_.clear();
        else
            ::fchmod(fd_, 0644);
    }
    ~TempFile() {
        if (fd_ >= 0) ::close(fd_);
        if (!path_.empty()) ::unlink(path_.c_str());
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    bool Write(const char* data, std::size_t size) {
        while (size > 0) {
            ssize_t n = ::write(fd_, data, size);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return false;
            data += n;
            size -= static_cast<std::size_t>(n);
        }
        return true;
    }
    // Closes the file and moves it to `target` unless a file of that name
    // exists already. True when it was moved.
    bool MoveTo(const std::string& target) {
        int fd = fd_;
        fd_ = -1;
        if (::close(fd) != 0) return false;
        if (!MoveNoReplace(path_, target)) return false;
        path_.clear();
        return true;
    }

  private:
    static bool MoveNoReplace(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
        if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
            return true;
        if (errno != EINVAL && errno != ENOSYS) return false;
#endif
        if (::link(from.c_str(), to.c_str()) == 0) {
            ::unlink(from.c_str());
            return true;
        }
        if (errno == EEXIST) return false;
        // A file system without hard links: check, then rename.
        struct stat st {};
        if (::lstat(to.c_str(), &st) == 0) return false;
        return ::rename(from.c_str(), to.c_str()) == 0;
    }

    std::string path_;
    int fd_ = -1;
};

// Copies entry `index` (declared `size` bytes) into `target`. Stops at a read
// error or as soon as the data runs past the declared size; `why` then says
// what went wrong.
bool ExtractEntry(zip_t* za, zip_uint64_t index, zip_uint64_t size, const std::string& folder,
                  const std::string& target, std::vector<char>& buffer, std::string& why) {
    TempFile temp(folder);
    if (!temp.IsOpen()) {
        why = std::strerror(errno);
        return false;
    }
    zip_file_t* zf = zip_fopen_index(za, index, 0);
    if (!zf) {
        why = "damaged data in the package";
        return false;
    }
    zip_uint64_t total = 0;
    bool ok = true;
    while (ok) {
        zip_int64_t n = zip_fread(zf, buffer.data(), buffer.size());
        if (n == 0) break;
        total += static_cast<zip_uint64_t>(n);
        ok = n > 0 && total <= size;
        if (!ok) why = "damaged data in the package";
        if (ok && !temp.Write(buffer.data(), static_cast<std::size_t>(n))) {
            ok = false;
            why = std::strerror(errno);
        }
    }
    if (zip_fclose(zf) != 0 && ok) {
        ok = false;
        why = "damaged data in the package";
    }
    if (ok && total != size) {
        ok = false;
        why = "damaged data in the package";
    }
    if (ok && !temp.MoveTo(target)) {
        ok = false;
        why = std::strerror(errno);
    }
    return ok;
}

// The files of each destination folder by name without letter case, so that
// a file is never added beside one whose name differs only in case. The
// caller's index stands for its folder; other folders are read when first met.
class ExistingNames {
  public:
    explicit ExistingNames(UnitsFolder* shared) : shared_(shared) {}
    UnitsFolder& Of(const std::string& folder) {
        if (shared_ && shared_->Dir() == folder) return *shared_;
        auto it = others_.find(folder);
        if (it == others_.end()) it = others_.emplace(folder, UnitsFolder(folder)).first;
        return it->second;
    }

  private:
    UnitsFolder* shared_;
    std::map<std::string, UnitsFolder> others_;
};

} // namespace

std::optional<std::string> UnzipMessageText(std::string_view raw) {
    if (raw.size() < 2 || raw.size() > 31999) return std::nullopt;
    std::string text(raw);
    std::replace(text.begin(), text.end(), '/', '\\');
    text.push_back('\0');
    return text;
}

std::string_view EntryBareName(std::string_view entryName) {
    std::size_t sep = entryName.find_last_of("/\\");
    return sep == std::string_view::npos ? entryName : entryName.substr(sep + 1);
}

const cUnzip::Entry& cUnzip::EntryAt(std::int32_t lIndex) const {
    static const Entry none{};
    if (lIndex < 1 || lIndex > FileCount()) return none;
    return entries_[static_cast<std::size_t>(lIndex - 1)];
}

std::string cUnzip::Filename(std::int32_t lIndex) const {
    return std::string(EntryBareName(EntryAt(lIndex).Name));
}

std::string cUnzip::FileDirectory(std::int32_t lIndex) const {
    const std::string& name = EntryAt(lIndex).Name;
    return name.substr(0, name.size() - EntryBareName(name).size());
}

void cUnzip::FileSelected(std::int32_t lIndex, bool value) {
    if (lIndex < 1 || lIndex > FileCount()) return;
    entries_[static_cast<std::size_t>(lIndex - 1)].Selected = value;
}

void cUnzip::Say(std::string_view message) {
    if (!Progress) return;
    if (std::optional<std::string> text = UnzipMessageText(message)) Progress(1, *text);
}

std::int32_t cUnzip::Directory() {
    entries_.clear();
    try {
        std::int32_t error = 0;
        Archive za = OpenArchive(zipFile_, error);
        if (!za) return error;
        zip_int64_t count = zip_get_num_entries(za.get(), 0);
        for (zip_int64_t i = 0; i < count; ++i) {
            zip_stat_t st;
            zip_stat_init(&st);
            if (zip_stat_index(za.get(), static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW, &st) != 0 ||
                !st.name)
                continue;
            std::string name = st.name;
            if (name.empty()) continue;
            entries_.push_back(
                {name, (st.valid & ZIP_STAT_SIZE) ? st.size : 0,
                 (st.valid & ZIP_STAT_ENCRYPTION_METHOD) && st.encryption_method != ZIP_EM_NONE,
                 true});
        }
        return 0;
    } catch (...) {
        entries_.clear();
        return ZIP_ER_INTERNAL;
    }
}

bool cUnzip::Unzip() {
    try {
        return UnzipRun();
    } catch (...) {
        return false;
    }
}

bool cUnzip::UnzipRun() {
    failures_ = {};
    std::int32_t error = 0;
    Archive za = OpenArchive(zipFile_, error);
    if (!za) {
        Say("error: cannot read zip file " + zipFile_);
        return false;
    }
    const bool all =
        std::all_of(entries_.begin(), entries_.end(), [](const Entry& e) { return e.Selected; });
    std::set<std::string> selected;
    for (const Entry& e : entries_)
        if (e.Selected) selected.insert(e.Name);

    const std::string root = unzipFolder_.empty() ? std::string(".") : unzipFolder_;
    MakeDirectory(root);
    ExistingNames existing(existing_);
    std::uint64_t written = 0;
    std::vector<char> buffer(64 * 1024);

    zip_int64_t count = zip_get_num_entries(za.get(), 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_stat_index(za.get(), index, ZIP_FL_ENC_RAW, &st) != 0 || !st.name) continue;
        const std::string name = st.name;
        if (name.empty() || IsFolderEntry(name)) continue;
        if (!all && selected.count(name) == 0) continue;

        const std::string bare(EntryBareName(name));
        if (!IsUsableName(bare)) {
            Say("  skipping: " + name + "  (unusable name)");
            continue;
        }
        if ((st.valid & ZIP_STAT_ENCRYPTION_METHOD) && st.encryption_method != ZIP_EM_NONE) {
            Say("  skipping: " + name + "  (encrypted, no password)");
            continue;
        }
        if (!(st.valid & ZIP_STAT_SIZE) || st.size > MaxUnzipEntryBytes ||
            written + st.size > MaxUnzipPackageBytes) {
            Say("  skipping: " + name + "  (too large)");
            failures_.Add(name, "too large");
            continue;
        }
        std::string folder = root;
        if (useFolderNames_)
            for (const std::string& part : SafeFolderParts(name)) {
                folder = JoinPath(folder, part);
                MakeDirectory(folder);
            }
        const std::string target = JoinPath(folder, bare);
        if (!existing.Of(folder).Find(bare).empty()) {
            Say("  skipping: " + target + "  (file exists)");
            continue;
        }
        if (std::string why; !ExtractEntry(za.get(), index, st.size, folder, target, buffer, why)) {
            Say("  error: " + name + "  (not extracted)");
            failures_.Add(name, why);
            continue;
        }
        existing.Of(folder).Add(bare);
        written += st.size;
        Say("  inflating: " + target);
    }
    return true;
}

} // namespace vantrel

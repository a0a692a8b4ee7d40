#include "base/staged_file.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {

namespace {

std::string Reason(int err) {
    return std::strerror(err);
}

[[noreturn]] void WriteFailed(const std::string& path, const std::string& reason) {
    throw FileError("Cannot write '" + path + "': " + reason + ".");
}

// Closes a descriptor on every path out of a function.
struct Fd {
    int fd = -1;
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
    int Release() {
        int f = fd;
        fd = -1;
        return f;
    }
};

// The file a save to `path` replaces: a symbolic link is followed (through
// further links) so that the file it points to is replaced and the link
// stays. A link that points nowhere names the file to create.
std::string ResolveLinks(const std::string& path) {
    namespace fs = std::filesystem;
    fs::path current = path;
    std::error_code error;
    // A loop of links stops here; the rename then fails with its own reason.
    for (int hops = 0; hops < 40 && fs::is_symlink(current, error); ++hops) {
        fs::path link = fs::read_symlink(current, error);
        if (error) break;
        current = link.is_absolute() ? link : current.parent_path() / link;
    }
    return current.string();
}

// An existing file that its owner may not write is not replaced, even where
// the folder would let us rename over it (and whoever runs us could).
void RefuseReadOnly(const std::string& target, const std::string& shownName) {
    struct stat st {};
    if (::stat(target.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return;
    if ((st.st_mode & 0222) == 0 || ::access(target.c_str(), W_OK) != 0)
        WriteFailed(shownName, "the file is read-only");
}

std::string TempNameBeside(const std::string& target) {
    static std::atomic<unsigned> counter{0};
    std::size_t slash = target.rfind('/');
    std::string dir = slash == std::string::npos ? std::string() : target.substr(0, slash + 1);
    return dir + ".vantrel-" + std::to_string(::getpid()) + "-" +
           std::to_string(counter.fetch_add(1)) + ".tmp";
}

} // namespace

bool WriteAll(int fd, std::string_view data) {
    while (!data.empty()) {
        ssize_t n = ::write(fd, data.data(), data.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        if (n == 0) {
            errno = ENOSPC;
            return false;
        }
        data.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

StagedFile::StagedFile(std::string target, std::string_view data)
    : name_(std::move(target)), target_(ResolveLinks(name_)) {
    struct stat st {};
    mode_t mode = 0666;
    bool keepMode = false;
    if (::stat(target_.c_str(), &st) == 0) {
        if (!S_ISREG(st.st_mode)) WriteFailed(name_, "it is not a regular file");
        RefuseReadOnly(target_, name_);
        mode = st.st_mode & 07777;
        keepMode = true;
    }
    Fd out;
    for (int attempt = 0; attempt < 100 && out.fd < 0; ++attempt) {
        temp_ = TempNameBeside(target_);
        out.fd = ::open(temp_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (out.fd < 0 && errno != EEXIST) break;
    }
    if (out.fd < 0) {
        int err = errno;
        temp_.clear();
        WriteFailed(name_, Reason(err));
    }
    // The replacement keeps the permissions of the file it replaces.
    bool ok = (!keepMode || ::fchmod(out.fd, mode) == 0) && WriteAll(out.fd, data);
    int err = errno;
#ifdef __linux__
    // Start writing the data out now. ext4 would otherwise start it inside
    // the rename that replaces the old file, which holds up the save.
    // Nothing waits for it to finish.
    if (ok) ::sync_file_range(out.fd, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
    if (::close(out.Release()) != 0 && ok) {
        ok = false;
        err = errno;
    }
    if (!ok) {
        ::unlink(temp_.c_str());
        temp_.clear();
        WriteFailed(name_, Reason(err));
    }
}

StagedFile::~StagedFile() {
    if (!committed_ && !temp_.empty()) ::unlink(temp_.c_str());
}

void StagedFile::Commit() {
    if (committed_) return;
    RefuseReadOnly(target_, name_);
    if (::rename(temp_.c_str(), target_.c_str()) != 0) WriteFailed(name_, Reason(errno));
    committed_ = true;
}

void CommitTogether(StagedFile& first, StagedFile& second) {
    // Both targets are checked before either is replaced: a read-only one
    // leaves the pair as it was.
    RefuseReadOnly(first.Target(), first.Name());
    RefuseReadOnly(second.Target(), second.Name());
    const std::string& target = first.Target();
    struct stat st {};
    const bool existed = ::lstat(target.c_str(), &st) == 0;
    // The old first file under a second name, until the second file is in.
    struct Keep {
        std::string name;
        ~Keep() {
            if (!name.empty()) ::unlink(name.c_str());
        }
    } keep;
    for (int attempt = 0; existed && attempt < 100 && keep.name.empty(); ++attempt) {
        std::string name = TempNameBeside(target);
        if (::link(target.c_str(), name.c_str()) == 0)
            keep.name = name;
        else if (errno != EEXIST)
            break;
    }
    first.Commit();
    try {
        second.Commit();
    } catch (...) {
        if (!keep.name.empty() && ::rename(keep.name.c_str(), target.c_str()) == 0)
            keep.name.clear();
        else if (!existed)
            ::unlink(target.c_str());
        throw;
    }
}

void ReplaceFile(const std::string& path, std::string_view data) {
    StagedFile file(path, data);
    file.Commit();
}

OpenFolder::OpenFolder(const std::string& path) {
    fd_ = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd_ < 0) error_ = Reason(errno);
}

OpenFolder::OpenFolder(const OpenFolder& parent, const std::string& name) {
    if (!parent.IsOpen()) {
        error_ = parent.Error();
        return;
    }
    if (::mkdirat(parent.Fd(), name.c_str(), 0777) != 0 && errno != EEXIST) {
        error_ = Reason(errno);
        return;
    }
    fd_ = ::openat(parent.Fd(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd_ >= 0) return;
    struct stat st {};
    const bool link = ::fstatat(parent.Fd(), name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 &&
                      S_ISLNK(st.st_mode);
    error_ = link ? "a symbolic link stands in the way" : Reason(errno);
}

OpenFolder::~OpenFolder() {
    if (fd_ >= 0) ::close(fd_);
}

StagedStream::StagedStream(const OpenFolder& folder, std::string name)
    : dir_(folder.Fd()), name_(std::move(name)) {
    if (!folder.IsOpen()) {
        error_ = folder.Error();
        return;
    }
    // A name that is free is written in place, as tar does: nothing stands
    // there to be kept, and the file goes again unless committed.
    fd_ = ::openat(dir_, name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd_ >= 0) {
        temp_ = name_;
        direct_ = true;
        return;
    }
    if (errno != EEXIST) {
        Fail(errno);
        return;
    }
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 100 && fd_ < 0; ++attempt) {
        temp_ = ".vantrel-" + std::to_string(::getpid()) + "-" +
                std::to_string(counter.fetch_add(1)) + ".tmp";
        fd_ = ::openat(dir_, temp_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd_ < 0 && errno != EEXIST) break;
    }
    if (fd_ < 0) {
        Fail(errno);
        temp_.clear();
    }
}

StagedStream::~StagedStream() {
    if (fd_ >= 0) ::close(fd_);
    if (!temp_.empty()) ::unlinkat(dir_, temp_.c_str(), 0);
}

bool StagedStream::Fail(int err) {
    error_ = Reason(err);
    errno = err;
    return false;
}

bool StagedStream::Write(const void* data, std::size_t n) {
    if (fd_ < 0) return false;
    if (!WriteAll(fd_, std::string_view(static_cast<const char*>(data), n))) return Fail(errno);
    return true;
}

bool StagedStream::Commit(bool replace) {
    if (fd_ < 0) return false;
    const int closed = ::close(fd_);
    fd_ = -1;
    if (closed != 0) return Fail(errno);
    if (direct_) {
        temp_.clear();
        return true;
    }
    // The name was taken when the file was begun; mostly it still is. Where the name is taken (or the file
    // system lacks the flag), what holds it decides.
    if (::renameat2(dir_, temp_.c_str(), dir_, name_.c_str(), RENAME_NOREPLACE) != 0) {
        if (errno != EEXIST && errno != EINVAL) return Fail(errno);
        struct stat st {};
        if (::fstatat(dir_, name_.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0) {
            if (S_ISLNK(st.st_mode)) {
                error_ = "a symbolic link stands in the way";
                return false;
            }
            if (!replace) return Fail(EEXIST);
        } else if (errno != ENOENT) {
            return Fail(errno);
        }
        if (::renameat(dir_, temp_.c_str(), dir_, name_.c_str()) != 0) return Fail(errno);
    }
    temp_.clear();
    return true;
}

} // namespace vantrel

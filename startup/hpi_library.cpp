#include "startup/hpi_library.h"

#include "base/paths.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace vantrel {

namespace {

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of(PathSep);
    if (slash == std::string::npos) return ".";
    return slash == 0 ? std::string(1, PathSep) : path.substr(0, slash);
}

// Creates a fresh temporary file in `folder`; -1 when that is not possible.
int CreateTempFile(const std::string& folder, std::string& tempPath) {
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 100; ++attempt) {
        tempPath = JoinPath(folder, ".vantrel-" + std::to_string(::getpid()) + "-" +
                                        std::to_string(counter++) + ".tmp");
        const int fd = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

bool WriteAll(int fd, const std::uint8_t* data, std::size_t n) {
    while (n > 0) {
        const ssize_t put = ::write(fd, data, n);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        data += put;
        n -= static_cast<std::size_t>(put);
    }
    return true;
}

void ListInto(const HpiEntry& folder, const std::string& prefix, std::vector<ArchiveFile>& out) {
    for (const HpiEntry& e : folder.children) {
        const std::string path = prefix.empty() ? e.name : prefix + "/" + e.name;
        if (e.isDirectory)
            ListInto(e, path, out);
        else
            out.push_back({path, &e});
    }
}

void ExtractFolder(const HpiArchive& archive, const HpiEntry& folder, const std::string& destDir,
                   const std::string& prefix, TreeExtraction& result) {
    for (const HpiEntry& e : folder.children) {
        const std::string path = prefix.empty() ? e.name : prefix + "/" + e.name;
        if (!IsSafeBareName(e.name)) {
            result.skipped.push_back(path);
            continue;
        }
        const std::string dest = JoinPath(destDir, e.name);
        if (e.isDirectory) {
            if (MakeDirectory(dest))
                ExtractFolder(archive, e, dest, path, result);
            else
                result.failed.push_back(path + ": " + std::strerror(errno));
        } else if (std::string reason; ExtractToFile(archive, e, dest, &reason)) {
            ++result.written;
        } else {
            result.failed.push_back(path + ": " + reason);
        }
    }
}

} // namespace

bool ExtractToFile(const HpiArchive& archive, const HpiEntry& file,
                   const std::string& destination, std::string* reason) {
    std::string why = file.isDirectory ? "a folder" : archive.LimitReason(file);
    if (why.empty()) {
        std::string temp;
        const int fd = CreateTempFile(FolderOf(destination), temp);
        if (fd < 0) {
            why = std::strerror(errno);
        } else {
            int writeError = 0;
            bool ok = archive.Extract(file, [fd, &writeError](const std::uint8_t* data,
                                                              std::size_t n) {
                if (WriteAll(fd, data, n)) return true;
                writeError = errno;
                return false;
            });
            if (!ok) why = writeError ? std::strerror(writeError) : "damaged data in the archive";
            if (::close(fd) != 0 && ok) {
                ok = false;
                why = std::strerror(errno);
            }
            if (ok && std::rename(temp.c_str(), destination.c_str()) != 0) {
                ok = false;
                why = std::strerror(errno);
            }
            if (!ok) ::unlink(temp.c_str());
        }
    }
    if (reason) *reason = why;
    return why.empty();
}

TreeExtraction ExtractTree(const HpiArchive& archive, const std::string& destDir) {
    TreeExtraction result;
    ExtractFolder(archive, archive.Root(), destDir, "", result);
    return result;
}

std::vector<ArchiveFile> ListArchiveFiles(const HpiEntry& folder) {
    std::vector<ArchiveFile> files;
    ListInto(folder, "", files);
    return files;
}

const HpiArchive* HpiLibrary::Find(std::int32_t handle) const {
    auto it = open_.find(handle);
    return it == open_.end() ? nullptr : it->second.archive.get();
}

std::int32_t HpiLibrary::HPIOpen(const std::string& fileName) {
    errno = 0;
    auto source = FileSource::Open(fileName);
    if (!source) {
        lastFailure_ = errno ? std::strerror(errno) : "not a file";
        return 0;
    }
    auto archive = HpiArchive::Open(std::move(source));
    if (!archive) {
        lastFailure_ = "damaged or not an archive of the game";
        return 0;
    }
    archive->SetLimits(limits_);
    while (next_ <= 0 || open_.count(next_))
        next_ = next_ <= 0 ? 1 : next_ + 1;
    const std::int32_t handle = next_++;
    open_[handle] = {std::move(archive), fileName};
    return handle;
}

std::int32_t HpiLibrary::HPIDir(std::int32_t handle, std::int32_t position,
                                const std::string& folder, std::string& nameBuffer,
                                std::int32_t& type, std::int32_t& size) {
    const HpiArchive* archive = Find(handle);
    const HpiEntry* dir = archive ? archive->FindFolder(folder) : nullptr;
    if (!dir || position < 0 || static_cast<std::size_t>(position) >= dir->children.size())
        return 0;
    const HpiEntry& entry = dir->children[static_cast<std::size_t>(position)];
    FillNameBuffer(nameBuffer, entry.name);
    type = entry.isDirectory ? 1 : 0;
    size = static_cast<std::int32_t>(entry.size);
    return position + 1;
}

std::int32_t HpiLibrary::HPIExtractFile(std::int32_t handle, const std::string& pathInArchive,
                                        const std::string& destination) {
    auto opened = open_.find(handle);
    HpiArchive* archive = opened == open_.end() ? nullptr : opened->second.archive.get();
    const HpiEntry* file = archive ? archive->FindFile(pathInArchive) : nullptr;
    lastFailure_ = !file ? "not a file in the archive" : !IsSafeBareName(file->name) ? "unsafe name" : "";
    if (!lastFailure_.empty()) return 0;
    std::uint64_t& unpacked = unpacked_[opened->second.fileName];
    archive->SetBytesExtracted(unpacked);
    const bool written = ExtractToFile(*archive, *file, destination, &lastFailure_);
    unpacked = archive->BytesExtracted();
    return written ? 1 : 0;
}

std::int32_t HpiLibrary::HPIClose(std::int32_t handle) {
    return open_.erase(handle) ? 1 : 0;
}

} // namespace vantrel

// Replacing files without losing the old one.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vantrel {

// A file that could not be written; what() names the file and the reason.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Writes all of `data` to the open descriptor; false with errno set on failure.
bool WriteAll(int fd, std::string_view data);

// A file written beside its target under a temporary name and renamed over
// the target by Commit(). Until then the target is untouched; a staged file
// that is not committed is removed. Throws FileError naming the target and
// the reason when the file cannot be written or renamed. A target that exists
// but is not a regular file (a folder, a device) is refused.
//
// The data is not forced to the disk before the rename, as most editors
// do: a save then takes milliseconds rather than disk round trips, and every
// failure the program can see (no folder, no permission, a full disk, a
// failed close) still comes before the old file is touched. What is left to
// the file system is a power cut right after a save: ext4 (the usual Linux
// default) writes a replacing file's data before the rename, so the old or
// the new file survives; elsewhere the new file may come back empty.
class StagedFile {
  public:
    StagedFile(std::string target, std::string_view data);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    void Commit();
    // The file that is replaced (links followed).
    const std::string& Target() const { return target_; }
    // The path as given, which messages name.
    const std::string& Name() const { return name_; }

  private:
    std::string name_;
    std::string target_;
    std::string temp_;
    bool committed_ = false;
};

// Commits `first`, then `second`, after checking that neither target is
// read-only (then neither is touched). When the second cannot be committed, the
// first target is put back as it was (removed, when it did not exist) before
// the error goes on, so the two stay a pair. Putting back needs a second
// name for the old file: where the folder allows no hard links, the first
// target keeps its new content.
void CommitTogether(StagedFile& first, StagedFile& second);

// Replaces one file with `data` (stage, then commit).
void ReplaceFile(const std::string& path, std::string_view data);

// A folder held open so that files and sub-folders are made in it by name:
// no symbolic link met below it is ever followed. Error() says why a folder
// could not be opened ("" when it is open).
class OpenFolder {
  public:
    // The folder at `path` (a link there is followed: the caller chose it).
    explicit OpenFolder(const std::string& path);
    // The sub-folder `name` of `parent`, made when missing. A symbolic link or
    // a file of that name is refused.
    OpenFolder(const OpenFolder& parent, const std::string& name);
    ~OpenFolder();
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    const std::string& Error() const { return error_; }
    int Fd() const { return fd_; }

  private:
    int fd_ = -1;
    std::string error_;
};

// A file streamed into an open folder and given its name by Commit(); one
// that is not committed is removed. A name that is free is written in place;
// a file already there is replaced only at Commit(), by renaming a
// temporary file over it, so it stays whole until then. Error() says why
// the last step failed (the system's text, or "a symbolic link stands in the
// way" where a link holds the name: it is never followed or replaced).
class StagedStream {
  public:
    StagedStream(const OpenFolder& folder, std::string name);
    ~StagedStream();
    StagedStream(const StagedStream&) = delete;
    StagedStream& operator=(const StagedStream&) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    bool Write(const void* data, std::size_t n);
    // `replace`: a file of that name is replaced; otherwise it is kept and
    // the commit fails with EEXIST's text.
    bool Commit(bool replace);
    const std::string& Error() const { return error_; }

  private:
    bool Fail(int err);
    int dir_;
    std::string name_;
    std::string temp_; // the file being written (the name itself when it was free)
    bool direct_ = false;
    int fd_ = -1;
    std::string error_;
};

} // namespace vantrel

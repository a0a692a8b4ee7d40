// Reading profile files whole and replacing files without losing the old one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrel {

// The largest profile, build-set or Tessaly file the readers take (256 MiB).
inline constexpr std::size_t ProfileFileMax = 256u * 1024u * 1024u;

struct FileText {
    std::string data;
    std::string error; // empty when the file was read
    bool ok() const { return error.empty(); }
};

// The whole file as bytes, or the reason it could not be read.
FileText ReadProfileFile(const std::string& path, std::size_t maxBytes = ProfileFileMax);

// Writes all of `data` to the open descriptor; false with errno set on failure.
bool WriteAll(int fd, std::string_view data);

// A file written beside its target under a temporary name and renamed over
// the target by Commit(). Until then the target is untouched; a staged file
// that is not committed is removed. Throws ProfileError naming the target and
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

} // namespace vantrel

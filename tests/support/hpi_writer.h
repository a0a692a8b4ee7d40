// Builds archives in the game's format for tests and benchmarks:
// stored, LZ77 and zlib files, optional whole-file and chunk encryption, and
// the offsets of every record so that tests can damage them on purpose.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vantrel::testing {

struct HpiWriterOptions {
    std::uint32_t headerKey = 0; // not 0: whole-file encryption
    bool encryptChunks = false;  // chunk data encryption
};

struct BuiltArchive {
    std::string bytes;
    std::uint32_t directoryEnd = 0;
    // Keyed by path inside the archive ("units/arm.fbi"; "" is the root folder).
    std::map<std::string, std::uint32_t> entryRecord;  // the entry's record in its folder's list
    std::map<std::string, std::uint32_t> folderHeader; // a folder's DirectoryHeader
    std::map<std::string, std::uint32_t> fileRecord;   // a file's FileData record
    std::map<std::string, std::uint32_t> fileBytes;    // a file's bytes or chunk-size table
};

class HpiWriter {
  public:
    explicit HpiWriter(HpiWriterOptions options = {}) : options_(options) {}
    // Adds a file at `path` ("/" separated; folders are created as needed and
    // matched without regard to case, as in the game's archives).
    void AddFile(const std::string& path, std::string data, std::uint8_t method);
    // Adds a file to `folder` under `name` taken literally (it may contain
    // separators or be ".." — for tests of unsafe names).
    void AddEntry(const std::string& folder, const std::string& name, std::string data,
                  std::uint8_t method);
    BuiltArchive Build() const;

    struct Node {
        std::string name;
        bool isDirectory = false;
        std::string data;
        std::uint8_t method = 0;
        std::vector<Node> children;
    };

  private:
    Node& Folder(const std::string& path);
    HpiWriterOptions options_;
    Node root_{"", true, {}, 0, {}};
};

// Writes a 32-bit value or a byte into an archive at `offset`, encrypted as
// the archive's whole-file key requires.
void PatchU32(std::string& archive, std::uint32_t offset, std::uint32_t value,
              std::uint32_t headerKey = 0);
void PatchByte(std::string& archive, std::uint32_t offset, std::uint8_t value,
               std::uint32_t headerKey = 0);

// Points the FileData records of `others` at the data of `file` (offset,
// size and method), as a bomb repeats one large stream under many names.
void ShareFileData(BuiltArchive& built, const std::string& file,
                   const std::vector<std::string>& others, std::uint32_t headerKey = 0);

// Mixed test content: text-like runs and noise, the same for the same seed.
std::string SampleData(std::size_t size, std::uint32_t seed);

} // namespace vantrel::testing

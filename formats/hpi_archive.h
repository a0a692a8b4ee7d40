// Reader for the game's archive format (HPI version 1): header, whole-file
// encryption, directory tree and chunked file data (stored, LZ77, zlib).
//
// The directory block is read and checked once when an archive is opened, but
// entries are only turned into a tree for the folders that are asked for, so
// memory follows what is listed and extracted, not what the directory claims.
// File data is read chunk by chunk and handed to a sink, so memory stays
// bounded by one chunk whatever the file's size. A malformed archive opens
// with fewer entries (or not at all) and a damaged file fails to extract;
// nothing crashes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

namespace hpi {

inline constexpr std::uint32_t Marker = 0x49504148;          // "HAPI"
inline constexpr std::uint32_t SavedGameMarker = 0x4B4E4142; // "BANK"
inline constexpr std::uint32_t Version = 0x00010000;
inline constexpr std::uint32_t ChunkMarker = 0x48535153; // "SQSH"
inline constexpr std::size_t HeaderSize = 20;
inline constexpr std::size_t ChunkHeaderSize = 19;
inline constexpr std::size_t EntrySize = 9;
inline constexpr std::size_t DirectoryHeaderSize = 8;
inline constexpr std::size_t FileDataSize = 9;
inline constexpr std::uint32_t ChunkSize = 65536;
// Largest compressed chunk accepted: LZ77 worst case (one tag per eight
// literals) and zlib's stored-block worst case both stay well below this.
inline constexpr std::uint32_t MaxPackedChunk = 2 * ChunkSize + 1024;
// Directories larger than this are refused (real ones are far smaller).
inline constexpr std::uint32_t MaxDirectoryBytes = 64u * 1024u * 1024u;
// A directory that lists more entries, or nests folders deeper, is damaged.
inline constexpr std::uint64_t MaxEntries = 1'000'000;
inline constexpr int MaxFolderDepth = 64;
// Caps on extraction to disk: a unit file or picture is never larger than the
// loader reads (16 MiB), and one archive writes at most 1 GiB.
inline constexpr std::uint64_t MaxFileBytes = 16ull * 1024 * 1024;
inline constexpr std::uint64_t MaxArchiveBytes = 1024ull * 1024 * 1024;

enum Method : std::uint8_t { Stored = 0, Lz77 = 1, Zlib = 2 };

// The byte mask of the whole-file encryption for a header key.
std::uint8_t FileKey(std::uint32_t headerKey);
// Whole-file encryption of one byte at absolute position `pos`. The
// transformation is its own inverse: it both encrypts and decrypts.
inline std::uint8_t CryptByte(std::uint8_t key, std::uint64_t pos, std::uint8_t b) {
    return static_cast<std::uint8_t>(~(static_cast<std::uint8_t>(pos) ^ key ^ b));
}
// Applies CryptByte to `n` bytes that start at absolute position `pos`.
void CryptBytes(std::uint8_t key, std::uint64_t pos, std::uint8_t* data, std::size_t n);

// Chunk data encryption (byte i of a chunk's data).
inline std::uint8_t DecryptChunkByte(std::uint8_t b, std::size_t i) {
    return static_cast<std::uint8_t>((b - static_cast<std::uint8_t>(i)) ^
                                     static_cast<std::uint8_t>(i));
}
inline std::uint8_t EncryptChunkByte(std::uint8_t b, std::size_t i) {
    return static_cast<std::uint8_t>((b ^ static_cast<std::uint8_t>(i)) +
                                     static_cast<std::uint8_t>(i));
}

// Decodes one LZ77 chunk into exactly `outSize` bytes. False when the stream
// ends early, writes past `outSize` or stops short of it.
bool DecodeLz77(const std::uint8_t* in, std::size_t inSize, std::uint8_t* out, std::size_t outSize);
// Inflates one zlib chunk into exactly `outSize` bytes.
bool DecodeZlib(const std::uint8_t* in, std::size_t inSize, std::uint8_t* out, std::size_t outSize);

std::uint32_t ReadU32(const std::uint8_t* p);

// The records of the format, read from bytes that the caller has checked to
// be long enough (each function takes exactly its record's size).
struct ArchiveHeader {
    std::uint32_t marker, version, directoryEnd, headerKey, directoryStart;
};
ArchiveHeader ParseArchiveHeader(std::span<const std::uint8_t, HeaderSize> h);
struct DirectoryHeader {
    std::uint32_t entryCount, entryList;
};
DirectoryHeader ParseDirectoryHeader(std::span<const std::uint8_t, DirectoryHeaderSize> h);
struct EntryRecord {
    std::uint32_t nameOffset, dataOffset;
    bool isDirectory;
};
EntryRecord ParseEntry(std::span<const std::uint8_t, EntrySize> e);
struct FileData {
    std::uint32_t dataOffset, size;
    std::uint8_t method;
};
FileData ParseFileData(std::span<const std::uint8_t, FileDataSize> f);
struct ChunkHeader {
    std::uint32_t marker;
    std::uint8_t version, method;
    bool encrypted;
    std::uint32_t packedSize, size, checksum;
};
ChunkHeader ParseChunkHeader(std::span<const std::uint8_t, ChunkHeaderSize> h);

} // namespace hpi

// Where an archive's bytes come from: a file or a block of memory.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t Size() const = 0;
    // Reads exactly `n` bytes at `pos`; false when they are not all there.
    virtual bool ReadAt(std::uint64_t pos, void* out, std::size_t n) const = 0;
};

// A file opened for reading; `Open` gives nullptr when it cannot be opened
// (`error`, when given, says why: the system's text, or "is a folder").
class FileSource : public ByteSource {
  public:
    static std::unique_ptr<FileSource> Open(const std::string& path, std::string* error = nullptr);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    std::uint64_t Size() const override { return size_; }
    bool ReadAt(std::uint64_t pos, void* out, std::size_t n) const override;

  private:
    FileSource(int fd, std::uint64_t size) : fd_(fd), size_(size) {}
    int fd_;
    std::uint64_t size_;
};

// Bytes owned elsewhere that outlive the source.
class MemorySource : public ByteSource {
  public:
    explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
    std::uint64_t Size() const override { return bytes_.size(); }
    bool ReadAt(std::uint64_t pos, void* out, std::size_t n) const override;

  private:
    std::string_view bytes_;
};

// One entry of the directory tree.
struct HpiEntry {
    std::string name;
    bool isDirectory = false;
    std::uint32_t dataOffset = 0;   // file: its bytes or chunk-size table; folder: its header
    std::uint32_t size = 0;         // file: unpacked size
    std::uint8_t method = 0;        // file: hpi::Method
    std::vector<HpiEntry> children; // folder: its entries in archive order
};

// Receives a file's bytes in order, at most one chunk at a time; returning
// false stops the extraction.
using HpiSink = std::function<bool(const std::uint8_t* data, std::size_t n)>;

// How much an archive may unpack: per file and in all (no limit by default).
struct HpiLimits {
    std::uint64_t fileBytes = UINT64_MAX;
    std::uint64_t archiveBytes = UINT64_MAX;
};
// The caps of extraction to disk (start-up and `hpi extract`).
inline constexpr HpiLimits DiskLimits{hpi::MaxFileBytes, hpi::MaxArchiveBytes};

class HpiArchive {
  public:
    // Reads the header and checks the whole directory once. nullptr when the
    // source is not an archive or its directory is damaged; `error`, when
    // given, then says what is wrong ("directory nests deeper than 64").
    static std::unique_ptr<HpiArchive> Open(std::unique_ptr<ByteSource> source,
                                            std::string* error = nullptr);
    static std::unique_ptr<HpiArchive> OpenFile(const std::string& path,
                                                std::string* error = nullptr);

    // The whole tree (built on first use).
    const HpiEntry& Root() const;
    // The folder at `path` ("units", "a\\b", "a/b"; folder names match
    // without regard to case) with everything below it. The empty path is
    // the root.
    const HpiEntry* FindFolder(std::string_view path) const;
    // The file at `path` (folder part as for FindFolder; the file name is
    // matched exactly first, then without regard to case).
    const HpiEntry* FindFile(std::string_view path) const;

    void SetLimits(const HpiLimits& limits) { limits_ = limits; }
    // Why `file` may not be extracted under the limits ("" when it may): its
    // size alone, or what the archive has unpacked so far, says so without
    // reading its data.
    std::string LimitReason(const HpiEntry& file) const;
    std::uint64_t BytesExtracted() const { return extracted_; }
    // Starts the count from what earlier openings of the same file unpacked,
    // so that the archive cap holds for the file, not for one opening.
    void SetBytesExtracted(std::uint64_t bytes) { extracted_ = bytes; }

    // Streams the unpacked bytes of `file` into `sink`. False (after perhaps
    // some bytes) when the data is damaged, the sink refused or the limits
    // forbid it (then nothing is read); `error`, when given, then says which
    // ("chunk checksum mismatch", "data ends early"; "" when the sink refused).
    bool Extract(const HpiEntry& file, const HpiSink& sink, std::string* error = nullptr) const;

  private:
    HpiArchive(std::unique_ptr<ByteSource> source, std::uint8_t key)
        : source_(std::move(source)), key_(key) {}
    bool Read(std::uint64_t pos, void* out, std::size_t n) const;
    // The header offset of the folder at `parts[0..count)`; 0 when missing.
    // `name`, when given, receives the last folder's name as the archive spells it.
    std::uint32_t WalkFolders(const std::vector<std::string_view>& parts, std::size_t count,
                              std::string* name = nullptr) const;
    // The files of a folder sorted by name, exactly and without regard to
    // case; equal names keep their archive order.
    struct NameIndex {
        std::vector<std::uint32_t> exact, folded;
    };
    const NameIndex& IndexOf(const HpiEntry& folder) const;
    // False when the data is damaged (`why` says how) or the sink refused.
    bool ExtractStored(const HpiEntry& file, const HpiSink& sink, std::string& why) const;
    bool ExtractChunked(const HpiEntry& file, const HpiSink& sink, std::string& why) const;

    std::unique_ptr<ByteSource> source_;
    std::vector<std::uint8_t> block_; // the decrypted directory block
    std::uint32_t start_ = 0;         // its file offset
    HpiLimits limits_;
    mutable std::uint64_t extracted_ = 0;
    // Folders built so far, by header offset; the whole tree once Root() ran.
    mutable std::map<std::uint32_t, std::unique_ptr<HpiEntry>> folders_;
    mutable std::unique_ptr<HpiEntry> root_;
    mutable std::string lastPath_;
    mutable const HpiEntry* lastFolder_ = nullptr;
    // Made on the first file looked up in a folder, so that finding each file
    // of a large folder in turn is not quadratic.
    mutable std::map<const HpiEntry*, NameIndex> indexes_;
    // Chunk buffers kept from file to file (an archive is used by one thread).
    mutable std::vector<std::uint8_t> table_, packed_, unpacked_;
    std::uint8_t key_;       // whole-file key byte, used when encrypted_
    bool encrypted_ = false; // HeaderKey was not 0
};

} // namespace vantrel

#include "formats/hpi_archive.h"

#include "base/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace vantrel {

namespace hpi {

std::uint8_t FileKey(std::uint32_t headerKey) {
    return static_cast<std::uint8_t>(~((headerKey * 4u) | (headerKey >> 6)));
}

void CryptBytes(std::uint8_t key, std::uint64_t pos, std::uint8_t* data, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i)
        data[i] = CryptByte(key, pos + i, data[i]);
}

std::uint32_t ReadU32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

bool DecodeLz77(const std::uint8_t* in, std::size_t inSize, std::uint8_t* out,
                std::size_t outSize) {
    std::uint8_t window[4096] = {};
    std::size_t w = 1, ip = 0, op = 0;
    while (ip < inSize) {
        const unsigned tag = in[ip++];
        for (int bit = 0; bit < 8; ++bit) {
            if ((tag & (1u << bit)) == 0) {
                if (ip >= inSize || op >= outSize) return false;
                const std::uint8_t b = in[ip++];
                out[op++] = b;
                window[w] = b;
                w = (w + 1) & 0xFFF;
                continue;
            }
            if (inSize - ip < 2) return false;
            const unsigned v = in[ip] | static_cast<unsigned>(in[ip + 1]) << 8;
            ip += 2;
            std::size_t offset = v >> 4;
            if (offset == 0) return op == outSize;
            const std::size_t count = (v & 0x0F) + 2;
            if (count > outSize - op) return false;
            for (std::size_t k = 0; k < count; ++k) {
                const std::uint8_t b = window[offset];
                out[op++] = b;
                window[w] = b;
                offset = (offset + 1) & 0xFFF;
                w = (w + 1) & 0xFFF;
            }
        }
    }
    return false; // the input ended before the end mark
}

bool DecodeZlib(const std::uint8_t* in, std::size_t inSize, std::uint8_t* out,
                std::size_t outSize) {
    z_stream zs{};
    if (inflateInit(&zs) != Z_OK) return false;
    zs.next_in = const_cast<Bytef*>(in);
    zs.avail_in = static_cast<uInt>(inSize);
    zs.next_out = out;
    zs.avail_out = static_cast<uInt>(outSize);
    const int ret = inflate(&zs, Z_FINISH);
    const bool ok = ret == Z_STREAM_END && zs.total_out == outSize;
    inflateEnd(&zs);
    return ok;
}

ArchiveHeader ParseArchiveHeader(std::span<const std::uint8_t, HeaderSize> h) {
    return {ReadU32(&h[0]), ReadU32(&h[4]), ReadU32(&h[8]), ReadU32(&h[12]), ReadU32(&h[16])};
}

DirectoryHeader ParseDirectoryHeader(std::span<const std::uint8_t, DirectoryHeaderSize> h) {
    return {ReadU32(&h[0]), ReadU32(&h[4])};
}

EntryRecord ParseEntry(std::span<const std::uint8_t, EntrySize> e) {
    return {ReadU32(&e[0]), ReadU32(&e[4]), e[8] != 0};
}

FileData ParseFileData(std::span<const std::uint8_t, FileDataSize> f) {
    return {ReadU32(&f[0]), ReadU32(&f[4]), f[8]};
}

ChunkHeader ParseChunkHeader(std::span<const std::uint8_t, ChunkHeaderSize> h) {
    return {ReadU32(&h[0]), h[4], h[5], h[6] != 0, ReadU32(&h[7]), ReadU32(&h[11]), ReadU32(&h[15])};
}

} // namespace hpi

// ---------------------------------------------------------------------------
// Byte sources
// ---------------------------------------------------------------------------
std::unique_ptr<FileSource> FileSource::Open(const std::string& path, std::string* error) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (error) *error = std::strerror(errno);
        return nullptr;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        if (error) *error = S_ISDIR(st.st_mode) ? "is a folder" : "not a regular file";
        ::close(fd);
        return nullptr;
    }
    return std::unique_ptr<FileSource>(new FileSource(fd, static_cast<std::uint64_t>(st.st_size)));
}

FileSource::~FileSource() {
    ::close(fd_);
}

bool FileSource::ReadAt(std::uint64_t pos, void* out, std::size_t n) const {
    if (pos > size_ || n > size_ - pos) return false;
    auto* p = static_cast<char*>(out);
    while (n > 0) {
        const ssize_t got = ::pread(fd_, p, n, static_cast<off_t>(pos));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        p += got;
        n -= static_cast<std::size_t>(got);
        pos += static_cast<std::uint64_t>(got);
    }
    return true;
}

bool MemorySource::ReadAt(std::uint64_t pos, void* out, std::size_t n) const {
    if (pos > bytes_.size() || n > bytes_.size() - pos) return false;
    if (n > 0) std::memcpy(out, bytes_.data() + pos, n);
    return true;
}

// ---------------------------------------------------------------------------
// Directory
// ---------------------------------------------------------------------------
namespace {

// Reads the decrypted directory block [start, end), checking every offset.
// Entries that do not check out are left out. Check() walks the whole tree
// once without keeping anything, to refuse a damaged directory; Build() makes
// the entries of one folder and everything below it.
class DirectoryReader {
  public:
    DirectoryReader(const std::vector<std::uint8_t>& block, std::uint32_t start,
                    std::uint64_t fileSize)
        : block_(block), start_(start), fileSize_(fileSize), visited_(block.size()) {}

    // Why the directory is refused ("" when it is not): it lists more than
    // MaxEntries entries or nests folders deeper than MaxFolderDepth.
    std::string Check(std::uint32_t headerOffset) {
        std::uint64_t entries = 0;
        std::string why;
        Walk(headerOffset, nullptr, 0, entries, why);
        return why;
    }
    void Build(std::uint32_t headerOffset, HpiEntry& folder) {
        std::uint64_t entries = 0;
        std::string why;
        folder.isDirectory = true;
        folder.dataOffset = headerOffset;
        Walk(headerOffset, &folder, 0, entries, why);
    }

    // Calls `fn(entry)` for each usable entry directly in the folder (folder
    // entries carry their header offset, their children stay empty).
    template <class Fn> void ForEach(std::uint32_t headerOffset, Fn fn) const {
        std::uint32_t count = 0, list = 0;
        if (!ListOf(headerOffset, count, list)) return;
        for (std::uint32_t i = 0; i < count; ++i) {
            HpiEntry entry;
            if (ReadEntry(list + i * static_cast<std::uint32_t>(hpi::EntrySize), entry) &&
                (!entry.isDirectory || UsableHeader(entry.dataOffset)))
                fn(entry);
        }
    }

  private:
    // Visits a folder; `folder` null only checks. A folder reached a second
    // time (a cycle, or a folder shared by two entries) is left out.
    bool Walk(std::uint32_t headerOffset, HpiEntry* folder, int depth, std::uint64_t& entries,
              std::string& why) {
        if (depth > hpi::MaxFolderDepth) {
            why = "directory nests deeper than " + std::to_string(hpi::MaxFolderDepth);
            return false;
        }
        std::uint32_t count = 0, list = 0;
        if (!ListOf(headerOffset, count, list) || visited_[headerOffset - start_]) return true;
        visited_[headerOffset - start_] = true;
        entries += count;
        if (entries > hpi::MaxEntries) {
            why = "directory lists more than " + std::to_string(hpi::MaxEntries) + " entries";
            return false;
        }
        if (folder) folder->children.reserve(count);
        for (std::uint32_t i = 0; i < count; ++i) {
            HpiEntry entry;
            if (!ReadEntry(list + i * static_cast<std::uint32_t>(hpi::EntrySize), entry)) continue;
            if (entry.isDirectory) {
                if (!UsableHeader(entry.dataOffset) || visited_[entry.dataOffset - start_]) continue;
                if (!Walk(entry.dataOffset, folder ? &entry : nullptr, depth + 1, entries, why))
                    return false;
            }
            if (folder) folder->children.push_back(std::move(entry));
        }
        if (folder) folder->children.shrink_to_fit();
        return true;
    }

    bool UsableHeader(std::uint32_t headerOffset) const {
        std::uint32_t count = 0, list = 0;
        return ListOf(headerOffset, count, list);
    }
    bool ListOf(std::uint32_t headerOffset, std::uint32_t& count, std::uint32_t& list) const {
        if (!Inside(headerOffset, hpi::DirectoryHeaderSize)) return false;
        const hpi::DirectoryHeader h =
            hpi::ParseDirectoryHeader(Record<hpi::DirectoryHeaderSize>(headerOffset));
        count = h.entryCount;
        list = h.entryList;
        return Inside(list, std::uint64_t{count} * hpi::EntrySize);
    }

    // One record of a folder's list: its name and, for a file, its FileData.
    bool ReadEntry(std::uint32_t record, HpiEntry& entry) const {
        const hpi::EntryRecord e = hpi::ParseEntry(Record<hpi::EntrySize>(record));
        if (!ReadName(e.nameOffset, entry.name)) return false;
        entry.isDirectory = e.isDirectory;
        entry.dataOffset = e.dataOffset;
        return entry.isDirectory || ReadFileData(entry.dataOffset, entry);
    }

    bool Inside(std::uint32_t offset, std::uint64_t n) const {
        return offset >= start_ && offset - start_ <= block_.size() &&
               n <= block_.size() - (offset - start_);
    }
    const std::uint8_t* At(std::uint32_t offset) const { return block_.data() + (offset - start_); }
    // The N bytes at `offset`, which Inside() has checked.
    template <std::size_t N> std::span<const std::uint8_t, N> Record(std::uint32_t offset) const {
        return std::span<const std::uint8_t, N>(At(offset), N);
    }

    // A name must end (NUL) inside the block and be non-empty.
    bool ReadName(std::uint32_t offset, std::string& name) const {
        if (!Inside(offset, 1)) return false;
        const std::size_t room = block_.size() - (offset - start_);
        const auto* p = At(offset);
        const void* nul = std::memchr(p, 0, room);
        if (!nul) return false;
        const auto len = static_cast<std::size_t>(static_cast<const std::uint8_t*>(nul) - p);
        if (len == 0) return false;
        name.assign(reinterpret_cast<const char*>(p), len);
        return true;
    }

    bool ReadFileData(std::uint32_t offset, HpiEntry& entry) const {
        if (!Inside(offset, hpi::FileDataSize)) return false;
        const hpi::FileData f = hpi::ParseFileData(Record<hpi::FileDataSize>(offset));
        entry.dataOffset = f.dataOffset;
        entry.size = f.size;
        entry.method = f.method;
        if (entry.dataOffset > fileSize_) return false;
        const std::uint64_t room = fileSize_ - entry.dataOffset;
        if (entry.method == hpi::Stored) return entry.size <= room;
        if (entry.method != hpi::Lz77 && entry.method != hpi::Zlib) return false;
        // Every chunk needs its table slot and at least its header.
        const std::uint64_t chunks =
            (std::uint64_t{entry.size} + hpi::ChunkSize - 1) / hpi::ChunkSize;
        return chunks * (4 + hpi::ChunkHeaderSize) <= room;
    }

    const std::vector<std::uint8_t>& block_;
    std::uint32_t start_;
    std::uint64_t fileSize_;
    std::vector<bool> visited_; // folder headers reached, by block offset
};

// Splits "a\\b/c" into its non-empty parts.
std::vector<std::string_view> SplitPath(std::string_view path) {
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    while (begin <= path.size()) {
        std::size_t end = path.find_first_of("\\/", begin);
        if (end == std::string_view::npos) end = path.size();
        if (end > begin) parts.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

// Orders names the way EqualsNoCase compares them.
bool LessNoCase(std::string_view a, std::string_view b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return static_cast<unsigned char>(UpperChar(x)) < static_cast<unsigned char>(UpperChar(y));
    });
}

} // namespace

std::unique_ptr<HpiArchive> HpiArchive::OpenFile(const std::string& path, std::string* error) {
    auto source = FileSource::Open(path, error);
    if (!source) return nullptr;
    return Open(std::move(source), error);
}

namespace {
// Why a header cannot be an archive's ("" when it can).
std::string HeaderFault(const hpi::ArchiveHeader& h, std::uint64_t fileSize) {
    if (h.marker != hpi::Marker) return "not an archive of the game";
    if (h.version == hpi::SavedGameMarker) return "a saved game, not an archive";
    if (h.version != hpi::Version) return "unknown archive version";
    const std::uint32_t start = h.directoryStart, end = h.directoryEnd;
    if (start < hpi::HeaderSize || end < start || end - start < hpi::DirectoryHeaderSize)
        return "directory out of place";
    if (end > fileSize) return "data ends early";
    if (end - start > hpi::MaxDirectoryBytes) return "directory larger than 64 MiB";
    return {};
}
} // namespace

std::unique_ptr<HpiArchive> HpiArchive::Open(std::unique_ptr<ByteSource> source,
                                             std::string* error) {
    std::string why;
    std::unique_ptr<HpiArchive> archive;
    std::uint8_t bytes[hpi::HeaderSize];
    if (!source) {
        why = "no data";
    } else if (!source->ReadAt(0, bytes, sizeof bytes)) {
        why = "read error";
        if (source->Size() < sizeof bytes) {
            // Too short for a header: cut short only if it starts like one.
            std::uint8_t marker[4];
            const bool marked = source->Size() >= sizeof marker &&
                                source->ReadAt(0, marker, sizeof marker) &&
                                hpi::ReadU32(marker) == hpi::Marker;
            why = marked ? "data ends early" : "not an archive of the game";
        }
    } else if (const hpi::ArchiveHeader h = hpi::ParseArchiveHeader(bytes);
               (why = HeaderFault(h, source->Size())).empty()) {
        archive.reset(new HpiArchive(std::move(source), hpi::FileKey(h.headerKey)));
        archive->encrypted_ = h.headerKey != 0;
        archive->start_ = h.directoryStart;
        archive->block_.resize(h.directoryEnd - h.directoryStart);
        if (!archive->Read(archive->start_, archive->block_.data(), archive->block_.size()))
            why = "read error";
        else
            why = DirectoryReader(archive->block_, archive->start_, archive->source_->Size())
                      .Check(archive->start_);
    }
    if (error) *error = why;
    if (!why.empty()) archive.reset();
    return archive;
}

bool HpiArchive::Read(std::uint64_t pos, void* out, std::size_t n) const {
    if (!source_->ReadAt(pos, out, n)) return false;
    if (encrypted_) hpi::CryptBytes(key_, pos, static_cast<std::uint8_t*>(out), n);
    return true;
}

const HpiEntry& HpiArchive::Root() const {
    if (!root_) {
        root_ = std::make_unique<HpiEntry>();
        DirectoryReader(block_, start_, source_->Size()).Build(start_, *root_);
    }
    return *root_;
}

std::uint32_t HpiArchive::WalkFolders(const std::vector<std::string_view>& parts,
                                      std::size_t count, std::string* name) const {
    const DirectoryReader reader(block_, start_, source_->Size());
    std::uint32_t header = start_;
    for (std::size_t i = 0; i < count && header != 0; ++i) {
        // The exact name first, then one that differs only in case.
        std::uint32_t exact = 0, nocase = 0;
        std::string nocaseName;
        reader.ForEach(header, [&](const HpiEntry& e) {
            if (!e.isDirectory) return;
            if (exact == 0 && e.name == parts[i]) exact = e.dataOffset;
            if (nocase == 0 && EqualsNoCase(e.name, parts[i])) {
                nocase = e.dataOffset;
                nocaseName = e.name;
            }
        });
        header = exact != 0 ? exact : nocase;
        if (name) *name = exact != 0 ? std::string(parts[i]) : nocaseName;
    }
    return header;
}

const HpiEntry* HpiArchive::FindFolder(std::string_view path) const {
    const auto parts = SplitPath(path);
    if (parts.empty()) return &Root();
    // Listing and extracting ask for the same folder once per entry.
    std::string key;
    for (std::string_view part : parts)
        key.append(part).push_back('/');
    if (lastFolder_ && key == lastPath_) return lastFolder_;
    std::string name; // as the archive spells it
    const std::uint32_t header = WalkFolders(parts, parts.size(), &name);
    if (header == 0) return nullptr;
    std::unique_ptr<HpiEntry>& folder = folders_[header];
    if (!folder) {
        folder = std::make_unique<HpiEntry>();
        folder->name = std::move(name);
        DirectoryReader(block_, start_, source_->Size()).Build(header, *folder);
    }
    lastPath_ = std::move(key);
    lastFolder_ = folder.get();
    return folder.get();
}

const HpiEntry* HpiArchive::FindFile(std::string_view path) const {
    const auto parts = SplitPath(path);
    if (parts.empty()) return nullptr;
    std::string folderPath;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i)
        folderPath.append(parts[i]).push_back('/');
    const HpiEntry* folder = FindFolder(folderPath);
    if (!folder) return nullptr;
    // The exact name first, then one that differs only in case; the first in
    // archive order of either.
    const std::vector<HpiEntry>& files = folder->children;
    const std::string_view name = parts.back();
    const NameIndex& index = IndexOf(*folder);
    auto exact = std::lower_bound(
        index.exact.begin(), index.exact.end(), name,
        [&](std::uint32_t i, std::string_view n) { return std::string_view(files[i].name) < n; });
    if (exact != index.exact.end() && files[*exact].name == name) return &files[*exact];
    auto folded = std::lower_bound(
        index.folded.begin(), index.folded.end(), name,
        [&](std::uint32_t i, std::string_view n) { return LessNoCase(files[i].name, n); });
    if (folded != index.folded.end() && EqualsNoCase(files[*folded].name, name))
        return &files[*folded];
    return nullptr;
}

const HpiArchive::NameIndex& HpiArchive::IndexOf(const HpiEntry& folder) const {
    auto [it, fresh] = indexes_.try_emplace(&folder);
    if (!fresh) return it->second;
    const std::vector<HpiEntry>& children = folder.children;
    std::vector<std::uint32_t>& exact = it->second.exact;
    for (std::uint32_t i = 0; i < children.size(); ++i)
        if (!children[i].isDirectory) exact.push_back(i);
    it->second.folded = exact;
    std::stable_sort(exact.begin(), exact.end(), [&](std::uint32_t a, std::uint32_t b) {
        return children[a].name < children[b].name;
    });
    std::stable_sort(it->second.folded.begin(), it->second.folded.end(),
                     [&](std::uint32_t a, std::uint32_t b) {
                         return LessNoCase(children[a].name, children[b].name);
                     });
    return it->second;
}

namespace {
std::string SizeText(std::uint64_t bytes) {
    if (bytes % (1u << 20) == 0) return std::to_string(bytes >> 20) + " MiB";
    return std::to_string(bytes) + " bytes";
}
} // namespace

std::string HpiArchive::LimitReason(const HpiEntry& file) const {
    if (file.size > limits_.fileBytes) return "larger than " + SizeText(limits_.fileBytes);
    if (file.size > limits_.archiveBytes || extracted_ > limits_.archiveBytes - file.size)
        return "past the archive's cap of " + SizeText(limits_.archiveBytes);
    return {};
}

bool HpiArchive::Extract(const HpiEntry& file, const HpiSink& sink, std::string* error) const {
    std::string why = file.isDirectory ? "is a folder" : LimitReason(file);
    bool ok = why.empty();
    if (ok) {
        extracted_ += file.size;
        ok = file.method == hpi::Stored ? ExtractStored(file, sink, why)
                                        : ExtractChunked(file, sink, why);
    }
    if (error) *error = why;
    return ok;
}

bool HpiArchive::ExtractStored(const HpiEntry& file, const HpiSink& sink, std::string& why) const {
    std::vector<std::uint8_t>& buffer = unpacked_;
    buffer.resize(std::max<std::size_t>(buffer.size(), std::min(file.size, hpi::ChunkSize)));
    std::uint64_t pos = file.dataOffset;
    std::uint32_t left = file.size;
    while (left > 0) {
        const std::size_t n = std::min<std::uint32_t>(left, hpi::ChunkSize);
        if (!Read(pos, buffer.data(), n)) {
            why = "data ends early";
            return false;
        }
        if (!sink(buffer.data(), n)) return false;
        pos += n;
        left -= static_cast<std::uint32_t>(n);
    }
    return true;
}

bool HpiArchive::ExtractChunked(const HpiEntry& file, const HpiSink& sink, std::string& why) const {
    auto fail = [&why](const char* reason) {
        why = reason;
        return false;
    };
    const auto chunks = static_cast<std::uint32_t>((std::uint64_t{file.size} + hpi::ChunkSize - 1) /
                                                   hpi::ChunkSize);
    // The chunk-size table (at most 256 KiB, for a 4 GiB file) is read at once.
    std::vector<std::uint8_t>& table = table_;
    table.resize(std::size_t{chunks} * 4);
    if (!Read(file.dataOffset, table.data(), table.size())) return fail("data ends early");
    std::uint64_t chunkPos = file.dataOffset + table.size();
    std::vector<std::uint8_t>& packed = packed_;
    std::vector<std::uint8_t>& unpacked = unpacked_;
    std::uint32_t left = file.size;
    for (std::uint32_t i = 0; i < chunks; ++i) {
        const std::uint32_t chunkSize = hpi::ReadU32(table.data() + std::size_t{i} * 4);
        if (chunkSize < hpi::ChunkHeaderSize) return fail("chunk shorter than its header");
        if (chunkPos > source_->Size() || chunkSize > source_->Size() - chunkPos)
            return fail("data ends early");
        // Header and data in one read; a chunk cannot need more than this.
        const std::size_t wanted =
            std::min<std::size_t>(chunkSize, hpi::ChunkHeaderSize + hpi::MaxPackedChunk);
        packed.resize(std::max(packed.size(), wanted));
        if (!Read(chunkPos, packed.data(), wanted)) return fail("data ends early");
        const hpi::ChunkHeader h = hpi::ParseChunkHeader(
            std::span<const std::uint8_t, hpi::ChunkHeaderSize>(packed.data(), hpi::ChunkHeaderSize));
        const std::uint8_t method = h.method;
        const std::uint32_t packedSize = h.packedSize;
        const std::uint32_t size = h.size;
        if (h.marker != hpi::ChunkMarker) return fail("chunk marker missing");
        if (size != std::min(left, hpi::ChunkSize)) return fail("chunk size does not fit the file");
        if (packedSize > wanted - hpi::ChunkHeaderSize) return fail("chunk runs past its end");
        if (method == hpi::Stored && packedSize != size) return fail("chunk size does not fit the file");
        std::uint8_t* data = packed.data() + hpi::ChunkHeaderSize;
        std::uint32_t sum = 0;
        for (std::uint32_t k = 0; k < packedSize; ++k)
            sum += data[k];
        if (sum != h.checksum) return fail("chunk checksum mismatch");
        if (h.encrypted)
            for (std::uint32_t k = 0; k < packedSize; ++k)
                data[k] = hpi::DecryptChunkByte(data[k], k);
        const std::uint8_t* out = data;
        if (method != hpi::Stored) {
            unpacked.resize(std::max<std::size_t>(unpacked.size(), size));
            bool ok = false;
            if (method == hpi::Lz77)
                ok = hpi::DecodeLz77(data, packedSize, unpacked.data(), size);
            else if (method == hpi::Zlib)
                ok = hpi::DecodeZlib(data, packedSize, unpacked.data(), size);
            else
                return fail("unknown compression method");
            if (!ok) return fail("compressed data damaged");
            out = unpacked.data();
        }
        if (!sink(out, size)) return false;
        left -= size;
        chunkPos += chunkSize;
    }
    return left == 0 || fail("data ends early");
}

} // namespace vantrel

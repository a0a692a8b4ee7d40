#include "support/hpi_writer.h"

#include "base/text.h"
#include "formats/hpi_archive.h"

#include <stdexcept>
#include <zlib.h>

namespace vantrel::testing {

namespace {

void PutU32(std::string& out, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void SetU32(std::string& out, std::size_t at, std::uint32_t v) {
    for (std::size_t i = 0; i < 4; ++i)
        out[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

std::uint32_t U32(std::size_t v) {
    return static_cast<std::uint32_t>(v);
}

std::string ZlibCompress(std::string_view data) {
    uLongf size = compressBound(static_cast<uLong>(data.size()));
    std::string out(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(out.data()), &size,
                  reinterpret_cast<const Bytef*>(data.data()), static_cast<uLong>(data.size()),
                  6) != Z_OK)
        throw std::runtime_error("zlib compression failed");
    out.resize(size);
    return out;
}

// A greedy LZ77 encoder for one chunk in the format the reader decodes: each
// position looks back to the last place its first three bytes were seen.
std::string EncodeLz77(std::string_view in) {
    std::string out;
    std::vector<int> last(1 << 14, -1);
    std::size_t tag = 0;
    int bit = 8;
    auto item = [&](bool isMatch) {
        if (bit == 8) {
            tag = out.size();
            out.push_back('\0');
            bit = 0;
        }
        if (isMatch) out[tag] = static_cast<char>(out[tag] | (1 << bit));
        ++bit;
    };
    for (std::size_t pos = 0; pos < in.size();) {
        std::size_t len = 0, src = 0;
        if (pos + 3 <= in.size()) {
            const std::uint32_t key = static_cast<std::uint8_t>(in[pos]) << 16 |
                                      static_cast<std::uint8_t>(in[pos + 1]) << 8 |
                                      static_cast<std::uint8_t>(in[pos + 2]);
            int& seen = last[(key * 2654435761u >> 10) & 0x3FFF];
            src = static_cast<std::size_t>(seen);
            // Window offset 0 is the end mark, so that source is not used.
            if (seen >= 0 && pos - src <= 4095 && ((src + 1) & 0xFFF) != 0)
                while (len < 17 && pos + len < in.size() && in[src + len] == in[pos + len])
                    ++len;
            seen = static_cast<int>(pos);
        }
        item(len >= 3);
        if (len >= 3) {
            const std::size_t word = ((src + 1) & 0xFFF) << 4 | (len - 2);
            out.push_back(static_cast<char>(word & 0xFF));
            out.push_back(static_cast<char>(word >> 8));
            pos += len;
        } else {
            out.push_back(in[pos++]);
        }
    }
    item(true);
    return out.append(2, '\0');
}

// One whole chunk: header and data, `method` 0, 1 or 2.
std::string EncodeChunk(std::string_view data, std::uint8_t method, bool encrypt) {
    std::string packed = method == hpi::Lz77   ? EncodeLz77(data)
                         : method == hpi::Zlib ? ZlibCompress(data)
                                               : std::string(data);
    if (encrypt)
        for (std::size_t i = 0; i < packed.size(); ++i)
            packed[i] =
                static_cast<char>(hpi::EncryptChunkByte(static_cast<std::uint8_t>(packed[i]), i));
    std::uint32_t sum = 0;
    for (char c : packed)
        sum += static_cast<std::uint8_t>(c);
    std::string chunk;
    PutU32(chunk, hpi::ChunkMarker);
    chunk.push_back(2);
    chunk.push_back(static_cast<char>(method));
    chunk.push_back(encrypt ? 1 : 0);
    PutU32(chunk, U32(packed.size()));
    PutU32(chunk, U32(data.size()));
    PutU32(chunk, sum);
    return chunk + packed;
}

} // namespace

HpiWriter::Node& HpiWriter::Folder(const std::string& path) {
    Node* node = &root_;
    std::size_t begin = 0;
    while (begin < path.size()) {
        std::size_t end = path.find('/', begin);
        if (end == std::string::npos) end = path.size();
        const std::string part = path.substr(begin, end - begin);
        begin = end + 1;
        if (part.empty()) continue;
        Node* next = nullptr;
        for (Node& c : node->children)
            if (c.isDirectory && EqualsNoCase(c.name, part)) next = &c;
        if (!next) {
            node->children.push_back(Node{part, true, {}, 0, {}});
            next = &node->children.back();
        }
        node = next;
    }
    return *node;
}

void HpiWriter::AddEntry(const std::string& folder, const std::string& name, std::string data,
                         std::uint8_t method) {
    Folder(folder).children.push_back(Node{name, false, std::move(data), method, {}});
}

void HpiWriter::AddFile(const std::string& path, std::string data, std::uint8_t method) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        AddEntry("", path, std::move(data), method);
    else
        AddEntry(path.substr(0, slash), path.substr(slash + 1), std::move(data), method);
}

namespace {

struct PendingFile {
    const HpiWriter::Node* node;
    std::string path;
};

std::string ChildPath(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

void WriteFolder(const HpiWriter::Node& folder, const std::string& path, BuiltArchive& built,
                 std::vector<PendingFile>& files) {
    std::string& out = built.bytes;
    built.folderHeader[path] = U32(out.size());
    PutU32(out, U32(folder.children.size()));
    PutU32(out, U32(out.size() + 4));
    const std::size_t list = out.size();
    out.append(folder.children.size() * hpi::EntrySize, '\0');
    for (std::size_t i = 0; i < folder.children.size(); ++i) {
        const HpiWriter::Node& c = folder.children[i];
        const std::string childPath = ChildPath(path, c.name);
        const std::size_t entry = list + i * hpi::EntrySize;
        built.entryRecord[childPath] = U32(entry);
        SetU32(out, entry, U32(out.size()));
        out += c.name;
        out.push_back('\0');
        SetU32(out, entry + 4, U32(out.size()));
        out[entry + 8] = c.isDirectory ? 1 : 0;
        if (c.isDirectory) {
            WriteFolder(c, childPath, built, files);
        } else {
            built.fileRecord[childPath] = U32(out.size());
            out.append(hpi::FileDataSize, '\0');
            files.push_back({&c, childPath});
        }
    }
}

} // namespace

BuiltArchive HpiWriter::Build() const {
    BuiltArchive built;
    std::string& out = built.bytes;
    out.assign(hpi::HeaderSize, '\0');
    std::vector<PendingFile> files;
    WriteFolder(root_, "", built, files);
    built.directoryEnd = U32(out.size());
    for (const PendingFile& f : files) {
        const std::size_t record = built.fileRecord[f.path];
        const std::string& data = f.node->data;
        built.fileBytes[f.path] = U32(out.size());
        SetU32(out, record, U32(out.size()));
        SetU32(out, record + 4, U32(data.size()));
        out[record + 8] = static_cast<char>(f.node->method);
        if (f.node->method == hpi::Stored) {
            out += data;
            continue;
        }
        const std::size_t chunks = (data.size() + hpi::ChunkSize - 1) / hpi::ChunkSize;
        const std::size_t table = out.size();
        out.append(chunks * 4, '\0');
        for (std::size_t i = 0; i < chunks; ++i) {
            const std::string chunk =
                EncodeChunk(std::string_view(data).substr(i * hpi::ChunkSize, hpi::ChunkSize),
                            f.node->method, options_.encryptChunks);
            SetU32(out, table + 4 * i, U32(chunk.size()));
            out += chunk;
        }
    }
    SetU32(out, 0, hpi::Marker);
    SetU32(out, 4, hpi::Version);
    SetU32(out, 8, built.directoryEnd);
    SetU32(out, 12, options_.headerKey);
    SetU32(out, 16, U32(hpi::HeaderSize));
    if (options_.headerKey != 0)
        hpi::CryptBytes(hpi::FileKey(options_.headerKey), hpi::HeaderSize,
                        reinterpret_cast<std::uint8_t*>(out.data()) + hpi::HeaderSize,
                        out.size() - hpi::HeaderSize);
    return built;
}

void PatchByte(std::string& archive, std::uint32_t offset, std::uint8_t value,
               std::uint32_t headerKey) {
    if (headerKey != 0 && offset >= hpi::HeaderSize)
        value = hpi::CryptByte(hpi::FileKey(headerKey), offset, value);
    archive.at(offset) = static_cast<char>(value);
}

void PatchU32(std::string& archive, std::uint32_t offset, std::uint32_t value,
              std::uint32_t headerKey) {
    for (std::uint32_t i = 0; i < 4; ++i)
        PatchByte(archive, offset + i, static_cast<std::uint8_t>(value >> (8 * i)), headerKey);
}

std::string SampleData(std::size_t size, std::uint32_t seed) {
    static const char* words[] = {"[UNITINFO]",
                                  "UnitName=",
                                  "Side=ARM;",
                                  "TEDClass=KBOT;",
                                  "BuildCostEnergy=",
                                  "Description=",
                                  "\r\n",
                                  "    ",
                                  "0"};
    std::string out;
    out.reserve(size);
    std::uint32_t s = seed * 2654435761u + 1;
    auto next = [&s] {
        s ^= s << 13;
        s ^= s >> 17;
        s ^= s << 5;
        return s;
    };
    while (out.size() < size) {
        const std::uint32_t r = next();
        if (r % 4 == 0) {
            for (int i = 0; i < 8; ++i)
                out.push_back(static_cast<char>(next() & 0xFF));
        } else {
            out += words[r % (sizeof words / sizeof *words)];
        }
    }
    out.resize(size);
    return out;
}

void ShareFileData(BuiltArchive& built, const std::string& file,
                   const std::vector<std::string>& others, std::uint32_t headerKey) {
    const std::uint32_t from = built.fileRecord.at(file);
    for (const std::string& other : others) {
        const std::uint32_t to = built.fileRecord.at(other);
        for (std::uint32_t i = 0; i < hpi::FileDataSize; ++i) {
            auto b = static_cast<std::uint8_t>(built.bytes[from + i]);
            if (headerKey != 0) b = hpi::CryptByte(hpi::FileKey(headerKey), from + i, b);
            PatchByte(built.bytes, to + i, b, headerKey);
        }
    }
}

} // namespace vantrel::testing

#include "formats/png_writer.h"

#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace vantrel {

namespace {

void Put32(std::string& out, std::uint32_t v) {
    out.push_back(static_cast<char>(v >> 24));
    out.push_back(static_cast<char>(v >> 16 & 0xFF));
    out.push_back(static_cast<char>(v >> 8 & 0xFF));
    out.push_back(static_cast<char>(v & 0xFF));
}

// Length, type, data, then the CRC of type and data.
void PutChunk(std::string& out, const char (&type)[5], const std::string& data) {
    Put32(out, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = out.size();
    out.append(type, 4);
    out += data;
    const auto* crcFrom = reinterpret_cast<const Bytef*>(out.data() + start);
    Put32(out, static_cast<std::uint32_t>(
                   crc32(crc32(0L, Z_NULL, 0), crcFrom, static_cast<uInt>(out.size() - start))));
}

// The filtered rows: a 0 (no filter) before each row of samples.
std::string RawRows(const PcxImage& img) {
    const bool indexed = img.format == PcxImage::Format::Indexed8;
    const std::size_t rowBytes = static_cast<std::size_t>(img.width) * (indexed ? 1 : 3);
    std::string raw;
    raw.reserve((rowBytes + 1) * static_cast<std::size_t>(img.height));
    for (int y = 0; y < img.height; ++y) {
        raw.push_back('\0');
        const std::uint8_t* row = img.Row(y);
        if (indexed) {
            raw.append(reinterpret_cast<const char*>(row), rowBytes);
            continue;
        }
        for (int x = 0; x < img.width; ++x, row += 4) { // stored blue, green, red, 0
            raw.push_back(static_cast<char>(row[2]));
            raw.push_back(static_cast<char>(row[1]));
            raw.push_back(static_cast<char>(row[0]));
        }
    }
    return raw;
}

} // namespace

std::string EncodePng(const PcxImage& img) {
    if (img.width < 1 || img.height < 1 || img.pixels.size() < img.BytesPerRow() * img.height)
        return {};
    const bool indexed = img.format == PcxImage::Format::Indexed8;

    const std::string raw = RawRows(img);
    uLongf packedSize = compressBound(static_cast<uLong>(raw.size()));
    std::string packed(packedSize, '\0');
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &packedSize,
                  reinterpret_cast<const Bytef*>(raw.data()), static_cast<uLong>(raw.size()),
                  Z_DEFAULT_COMPRESSION) != Z_OK)
        return {};
    packed.resize(packedSize);

    std::string out("\x89PNG\r\n\x1a\n", 8);
    std::string ihdr;
    Put32(ihdr, static_cast<std::uint32_t>(img.width));
    Put32(ihdr, static_cast<std::uint32_t>(img.height));
    ihdr.push_back(8);               // bit depth
    ihdr.push_back(indexed ? 3 : 2); // palette or RGB
    ihdr.append(3, '\0');            // deflate, filter method 0, no interlace
    PutChunk(out, "IHDR", ihdr);
    if (indexed) {
        std::string plte;
        for (std::uint32_t c : img.colours) {
            plte.push_back(static_cast<char>(c >> 16 & 0xFF));
            plte.push_back(static_cast<char>(c >> 8 & 0xFF));
            plte.push_back(static_cast<char>(c & 0xFF));
        }
        PutChunk(out, "PLTE", plte);
    }
    PutChunk(out, "IDAT", packed);
    PutChunk(out, "IEND", {});
    return out;
}

bool WritePng(const std::string& path, const PcxImage& image, std::string& error) {
    const std::string png = EncodePng(image);
    if (png.empty()) {
        error = "cannot encode the picture as PNG";
        return false;
    }
    const std::string temp = path + ".tmp";
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (out) out.write(png.data(), static_cast<std::streamsize>(png.size()));
        if (!out || !out.flush()) {
            error = "cannot write " + temp + ": " + std::strerror(errno);
            std::remove(temp.c_str());
            return false;
        }
    }
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        error = "cannot replace " + path + ": " + std::strerror(errno);
        std::remove(temp.c_str());
        return false;
    }
    return true;
}

} // namespace vantrel

#include "formats/pcx.h"

#include "base/paths.h"
#include "base/text.h"

#include <algorithm>
#include <cstring>

namespace vantrel {

namespace {

// Files larger than this are not read at all: the largest picture we accept
// (16384 x 16384, 24-bit) fits well below it.
constexpr std::size_t MaxFileBytes = std::size_t{1} << 30;
constexpr std::size_t PaletteBlockSize = 769; // marker byte + 256 * 3

std::uint8_t ByteAt(std::string_view s, std::size_t i) {
    return static_cast<std::uint8_t>(s[i]);
}

int Int16At(std::string_view s, std::size_t i) {
    return static_cast<std::int16_t>(
        static_cast<std::uint16_t>(ByteAt(s, i) | ByteAt(s, i + 1) << 8));
}

PcxResult Fail(PcxFailure failure, std::string reason) {
    PcxResult r;
    r.failure = failure;
    r.reason = std::move(reason);
    return r;
}

PcxResult Succeed(PcxImage&& image) {
    PcxResult r;
    r.image = std::make_shared<const PcxImage>(std::move(image));
    return r;
}

// The most bytes that `dataBytes` bytes of run-length data can decode to:
// every pair of bytes can be a run of 63.
std::size_t MaxDecodedBytes(std::size_t dataBytes) {
    return dataBytes / 2 * 63 + dataBytes % 2;
}

// Checks a header's sizes before anything is allocated. `decodedBytes` is
// the size of the buffer the run-length data must fill.
PcxResult CheckSizes(const PcxHeader& h, int pictureWidth, std::size_t dataBytes,
                     std::size_t& decodedBytes) {
    const int width = h.Width(), height = h.Height();
    if (width < 1 || height < 1 || h.bytesPerLine < 1 || pictureWidth < 1)
        return Fail(PcxFailure::BadSize, "picture size out of range: width " +
                                             std::to_string(width) + ", height " +
                                             std::to_string(height) + ", bytes per line " +
                                             std::to_string(h.bytesPerLine));
    if (width > PcxMaxSide || height > PcxMaxSide || pictureWidth > PcxMaxSide)
        return Fail(PcxFailure::BadSize, "picture too large: " + std::to_string(pictureWidth) +
                                             " x " + std::to_string(height) + " (at most " +
                                             std::to_string(PcxMaxSide) + " a side)");
    decodedBytes = static_cast<std::size_t>(height) * static_cast<std::size_t>(h.LineBytes());
    if (decodedBytes > MaxDecodedBytes(dataBytes))
        return Fail(PcxFailure::BadSize, "the header describes " + std::to_string(decodedBytes) +
                                             " bytes of picture, more than the " +
                                             std::to_string(dataBytes) +
                                             " bytes of data could hold");
    return {};
}

std::string RowText(int y) {
    return "row " + std::to_string(y);
}

PcxResult Unsupported(const PcxHeader& h) {
    return Fail(PcxFailure::Unsupported,
                "unsupported PCX kind: " + std::to_string(h.bitsPerPixel) +
                    " bits per pixel with " + std::to_string(h.planes) +
                    " plane(s); only 8 bits per pixel with 1 or 3 planes are read");
}

PcxResult HeaderMissing(std::string_view bytes) {
    if (bytes.empty()) return Fail(PcxFailure::Unreadable, "the file is empty");
    return Fail(PcxFailure::Corrupt, "the file is shorter than the 128-byte PCX header");
}

} // namespace

std::uint32_t PcxImage::ColourAt(int x, int y) const {
    const std::uint8_t* p = Row(y) + static_cast<std::size_t>(x) * BytesPerPixel();
    if (format == Format::Indexed8) return colours[*p];
    return static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[1]) << 8 | p[0];
}

bool ReadPcxHeader(std::string_view bytes, PcxHeader& h) {
    if (bytes.size() < PcxHeaderSize) return false;
    h.bitsPerPixel = ByteAt(bytes, 3);
    h.xMin = Int16At(bytes, 4);
    h.yMin = Int16At(bytes, 6);
    h.xMax = Int16At(bytes, 8);
    h.yMax = Int16At(bytes, 10);
    h.planes = ByteAt(bytes, 65);
    h.bytesPerLine = Int16At(bytes, 66);
    return true;
}

PcxResult DecodePCX(std::string_view bytes, Messages& messages) {
    PcxHeader h;
    if (!ReadPcxHeader(bytes, h)) return HeaderMissing(bytes);
    if (h.bitsPerPixel == 8 && h.planes == 1) return DecodePCX256(bytes, messages);
    if (h.bitsPerPixel == 8 && h.planes == 3) return DecodePCX24(bytes);
    return Unsupported(h);
}

PcxResult DecodePCX256(std::string_view bytes, Messages& messages) {
    PcxHeader h;
    if (!ReadPcxHeader(bytes, h)) return HeaderMissing(bytes);

    // The palette block is the last 769 bytes; a file too short to hold one
    // has no marker either.
    if (bytes.size() < PaletteBlockSize || ByteAt(bytes, bytes.size() - PaletteBlockSize) != 12) {
        messages.Inform(PcxNoPaletteMessage, "Vantrel", MsgIcon::Exclamation);
        return Fail(PcxFailure::NoPalette, "no 256-colour palette (the marker byte 12 is missing)");
    }

    // The data buffer is everything after the header, the palette included:
    // decoding stops when the rows are full, not at the palette.
    const std::string_view data = bytes.substr(PcxHeaderSize);
    const int width = h.Width(), height = h.Height(), lineBytes = h.LineBytes();
    std::size_t decodedBytes = 0;
    if (PcxResult bad = CheckSizes(h, lineBytes, data.size(), decodedBytes);
        bad.failure != PcxFailure::None)
        return bad;

    PcxImage img;
    img.format = PcxImage::Format::Indexed8;
    img.width = lineBytes;
    img.height = height;
    img.pixels.assign(decodedBytes, 0);
    std::size_t p = 0;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = img.pixels.data() + static_cast<std::size_t>(y) * lineBytes;
        int x = 0;
        while (x < lineBytes) {
            if (p >= data.size())
                return Fail(PcxFailure::Corrupt, "the picture data ends early in " + RowText(y));
            const std::uint8_t b = ByteAt(data, p);
            if ((b & 0xC0) != 0xC0) {
                row[x++] = b;
                ++p;
                continue;
            }
            if (p + 1 >= data.size())
                return Fail(PcxFailure::Corrupt,
                            "the picture data ends inside a run in " + RowText(y));
            // A run that would cross the end of the line is cut to width - x
            // (so an odd picture's padding byte is not filled by it).
            int count = b & 0x3F;
            if (x + count > lineBytes) count = width - x;
            if (count > 0) {
                if (x + count > lineBytes)
                    return Fail(PcxFailure::Corrupt, "a run overruns the end of " + RowText(y));
                std::memset(row + x, ByteAt(data, p + 1), static_cast<std::size_t>(count));
                x += count;
            }
            p += 2;
        }
    }

    const std::size_t pal = bytes.size() - (PaletteBlockSize - 1);
    for (std::size_t i = 0; i < 256; ++i)
        img.colours[i] = static_cast<std::uint32_t>(ByteAt(bytes, pal + 3 * i)) << 16 |
                         static_cast<std::uint32_t>(ByteAt(bytes, pal + 3 * i + 1)) << 8 |
                         ByteAt(bytes, pal + 3 * i + 2);
    return Succeed(std::move(img));
}

PcxResult DecodePCX24(std::string_view bytes) {
    PcxHeader h;
    if (!ReadPcxHeader(bytes, h)) return HeaderMissing(bytes);
    // The stream is read as three planes whatever the header says.
    h.planes = 3;
    const std::string_view data = bytes.substr(PcxHeaderSize);
    const int width = h.Width(), height = h.Height();
    std::size_t planeBytes = 0;
    if (PcxResult bad = CheckSizes(h, width, data.size(), planeBytes);
        bad.failure != PcxFailure::None)
        return bad;
    if (width > h.bytesPerLine)
        return Fail(PcxFailure::BadSize, "width " + std::to_string(width) +
                                             " is larger than the bytes per line (" +
                                             std::to_string(h.bytesPerLine) + ")");

    // The whole data is one run-length stream of red, green and blue lines.
    std::vector<std::uint8_t> planes(planeBytes);
    std::size_t out = 0;
    for (std::size_t p = 0; p < data.size();) {
        const std::uint8_t b = ByteAt(data, p);
        std::size_t count = 1;
        std::uint8_t value = b;
        if ((b & 0xC0) == 0xC0) {
            if (p + 1 >= data.size())
                return Fail(PcxFailure::Corrupt, "the picture data ends inside a run");
            count = b & 0x3Fu;
            value = ByteAt(data, p + 1);
            p += 2;
        } else {
            ++p;
        }
        if (count > planeBytes - out)
            return Fail(PcxFailure::Corrupt, "the picture data runs past the end of the picture (" +
                                                 std::to_string(data.size() - p) +
                                                 " bytes left over)");
        std::memset(planes.data() + out, value, count);
        out += count;
    }
    if (out < planeBytes)
        return Fail(
            PcxFailure::Corrupt,
            "the picture data ends early in " +
                RowText(static_cast<int>(out / (3 * static_cast<std::size_t>(h.bytesPerLine)))));

    PcxImage img;
    img.format = PcxImage::Format::Rgb32;
    img.width = width;
    img.height = height;
    img.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4, 0);
    const std::size_t bpl = static_cast<std::size_t>(h.bytesPerLine);
    std::uint8_t* dst = img.pixels.data();
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* red = planes.data() + 3 * bpl * static_cast<std::size_t>(y);
        const std::uint8_t* green = red + bpl;
        const std::uint8_t* blue = green + bpl;
        for (int x = 0; x < width; ++x) {
            *dst++ = blue[x];
            *dst++ = green[x];
            *dst++ = red[x];
            *dst++ = 0;
        }
    }
    return Succeed(std::move(img));
}

namespace {
template <typename Decode> PcxResult LoadWith(const std::string& fileName, Decode decode) {
    std::optional<std::string> bytes = ReadWholeFile(fileName, MaxFileBytes);
    if (!bytes) return Fail(PcxFailure::Unreadable, "cannot read " + fileName);
    if (bytes->empty()) return Fail(PcxFailure::Unreadable, "the file is empty");
    return decode(std::string_view(*bytes));
}
} // namespace

PcxResult LoadPCX(const std::string& fileName, Messages& messages) {
    return LoadWith(fileName, [&](std::string_view b) { return DecodePCX(b, messages); });
}

PcxResult LoadPCX256(const std::string& fileName, Messages& messages) {
    return LoadWith(fileName, [&](std::string_view b) { return DecodePCX256(b, messages); });
}

PcxResult LoadPCX24(const std::string& fileName) {
    return LoadWith(fileName, [](std::string_view b) { return DecodePCX24(b); });
}

} // namespace vantrel

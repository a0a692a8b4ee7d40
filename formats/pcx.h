// modPCX: unit pictures. Turns a PCX file (ZSoft, run-length encoded) into a
// picture value that the card's image control can show. Two kinds are read:
// 8 bits per pixel with one plane and a 256-colour palette at the end of the
// file, and 8 bits per pixel with three planes (24-bit colour). Everything
// else gives no picture.
//
// The decoders never read or write outside their buffers: a stream that ends
// early, a run that overruns a buffer or a header whose sizes cannot be right
// gives no picture and a reason text for the caller.
#pragma once

#include "base/ports.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

inline constexpr const char* PcxNoPaletteMessage =
    "The PCX that was passed didn't have a 256 colour palette! Can't read it!";

// Largest picture side the decoders accept, in pixels (and in bytes per line).
inline constexpr int PcxMaxSide = 16384;

// A decoded picture.
//  - Indexed8: one palette index per byte; `width` is the line bytes of the file,
//    so the padding byte of an odd-width picture shows as one extra column.
//    `colours` holds the 256 palette entries as 0x00RRGGBB.
//  - Rgb32: four bytes per pixel in the order blue, green, red, 0 (a
//    little-endian 0x00RRGGBB value per pixel).
// Rows are stored top row first, tightly packed (BytesPerRow() bytes each).
struct PcxImage {
    enum class Format { Indexed8, Rgb32 };
    Format format = Format::Indexed8;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
    std::array<std::uint32_t, 256> colours{}; // Indexed8 only

    std::size_t BytesPerPixel() const { return format == Format::Indexed8 ? 1 : 4; }
    std::size_t BytesPerRow() const { return static_cast<std::size_t>(width) * BytesPerPixel(); }
    const std::uint8_t* Row(int y) const {
        return pixels.data() + static_cast<std::size_t>(y) * BytesPerRow();
    }
    // The pixel at (x, y) as 0x00RRGGBB (the palette colour for Indexed8).
    std::uint32_t ColourAt(int x, int y) const;
};

// Why a file gave no picture.
enum class PcxFailure {
    None,
    Unreadable,  // missing, unreadable or empty file
    Unsupported, // not 8 bits per pixel with 1 or 3 planes
    NoPalette,   // 256-colour file without the marker byte 12 (the message is shown)
    BadSize,     // header sizes out of range or larger than the data could describe
    Corrupt,     // the stream ends early or overruns the picture
};

struct PcxResult {
    std::shared_ptr<const PcxImage> image; // empty when there is no picture
    PcxFailure failure = PcxFailure::None;
    std::string reason; // for people; empty on success

    explicit operator bool() const { return image != nullptr; }
};

// The fields of the 128-byte header that the decoders use.
struct PcxHeader {
    int bitsPerPixel = 0;
    int planes = 0;
    int xMin = 0, yMin = 0, xMax = 0, yMax = 0;
    int bytesPerLine = 0;

    int Width() const { return xMax - xMin + 1; }
    int Height() const { return yMax - yMin + 1; }
    int LineBytes() const { return planes * bytesPerLine; }
};
inline constexpr std::size_t PcxHeaderSize = 128;

// Reads the header from the first 128 bytes; false when there are fewer.
bool ReadPcxHeader(std::string_view bytes, PcxHeader& header);

// Decoding from bytes in memory (the whole file, header included).
// DecodePCX picks the decoder from the header, like LoadPCX.
PcxResult DecodePCX(std::string_view bytes, Messages& messages);
PcxResult DecodePCX256(std::string_view bytes, Messages& messages);
PcxResult DecodePCX24(std::string_view bytes);

// Decoding a file (a bare name is opened relative to the current directory).
// Only a 256-colour file without its palette marker shows a message:
// PcxNoPaletteMessage, exclamation icon, title "Vantrel".
PcxResult LoadPCX(const std::string& fileName, Messages& messages);
PcxResult LoadPCX256(const std::string& fileName, Messages& messages);
PcxResult LoadPCX24(const std::string& fileName);

} // namespace vantrel

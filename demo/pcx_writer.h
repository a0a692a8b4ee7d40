// Writing PCX pictures (run-length encoded) for the demo data and the tests.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vantrel::demo {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
};

// 8 bits per pixel, one plane, 256-colour palette after the marker byte 12.
// `pixels` holds width * height palette indices, top row first.
std::string EncodePcx256(int width, int height, const std::vector<std::uint8_t>& pixels,
                         const std::array<Rgb, 256>& palette);
// 8 bits per pixel, three planes (red, green, blue lines one after another).
std::string EncodePcx24(int width, int height, const std::vector<Rgb>& pixels);
// Run-length encodes one line the way PCX does (runs of at most 63).
void EncodePcxLine(const std::uint8_t* data, std::size_t count, std::string& out);

// The header fields that matter to a reader; the tests set them freely to
// make odd files (padding columns, unsupported kinds, absurd sizes).
struct PcxHeaderFields {
    int xMin = 0, yMin = 0, xMax = 0, yMax = 0;
    int bitsPerPixel = 8;
    int planes = 1;
    int bytesPerLine = 0;
};
// The 128-byte header; 16-bit fields are stored little-endian (two's complement).
std::string PcxHeader(const PcxHeaderFields& fields);
// The block at the end of a 256-colour file: the marker byte, then 768 bytes of colour.
std::string PcxPaletteBlock(const std::array<Rgb, 256>& palette, std::uint8_t marker = 12);

} // namespace vantrel::demo

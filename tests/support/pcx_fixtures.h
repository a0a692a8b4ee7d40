// Small PCX files for the picture tests, a message port that records what it
// is asked to show, and a scratch folder.
#pragma once

#include "support/test_support.h"

#include "base/ports.h"
#include "demo/pcx_writer.h"
#include "formats/pcx.h"

#include <string>
#include <vector>

namespace vantrel::test {

// Palette entry i is (i, 255 - i, 7 * i mod 256).
std::array<demo::Rgb, 256> TestPalette();
std::uint32_t TestColour(int index); // the same entry as 0x00RRGGBB

// Header fields for a picture of width x height with the given planes and bytes per line.
demo::PcxHeaderFields Fields(int width, int height, int planes, int bytesPerLine);
// A 256-colour file: header, the run-length `data` as given, then the palette
// block with `marker`.
std::string Pcx256(const demo::PcxHeaderFields& f, const std::string& data,
                   std::uint8_t marker = 12);
// A 24-bit file: header and the run-length `data` as given.
std::string Pcx24(const demo::PcxHeaderFields& f, const std::string& data);
// Bytes from a list of values (handy for run bytes above 0x7F).
std::string Bytes(std::initializer_list<int> values);

// The picture in `file` (a test failure, and an empty picture, when there is none).
PcxImage DecodedImage(const std::string& file);

using ScratchDir = TempDir;

} // namespace vantrel::test

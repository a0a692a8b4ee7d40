// A small PNG encoder for decoded pictures (no GUI library needed): one IDAT
// chunk compressed with zlib, filter type 0 on every row.
//  - Indexed8 pictures become palette PNGs (colour type 3, 256 PLTE entries).
//  - Rgb32 pictures become 8-bit RGB PNGs (colour type 2).
#pragma once

#include "formats/pcx.h"

#include <string>

namespace vantrel {

// The PNG file's bytes; empty when the picture is empty or compression fails.
std::string EncodePng(const PcxImage& image);

// Writes the PNG to a temporary file beside `path` and renames it over
// `path`, so a failure leaves no half-written file. On failure returns false
// and sets `error`.
bool WritePng(const std::string& path, const PcxImage& image, std::string& error);

} // namespace vantrel

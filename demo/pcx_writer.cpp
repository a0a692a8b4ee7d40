#include "demo/pcx_writer.h"

namespace vantrel::demo {

namespace {
void Put16(std::string& s, std::size_t at, int v) {
    s[at] = static_cast<char>(v & 0xFF);
    s[at + 1] = static_cast<char>((v >> 8) & 0xFF);
}
std::string Header(int width, int height, int planes, int bytesPerLine) {
    PcxHeaderFields f;
    f.xMax = width - 1;
    f.yMax = height - 1;
    f.planes = planes;
    f.bytesPerLine = bytesPerLine;
    return PcxHeader(f);
}
int EvenLineBytes(int width) {
    return width + (width & 1);
}
} // namespace

std::string PcxHeader(const PcxHeaderFields& f) {
    std::string h(128, '\0');
    h[0] = 10; // ZSoft
    h[1] = 5;  // version 3.0
    h[2] = 1;  // run-length encoded
    h[3] = static_cast<char>(f.bitsPerPixel);
    Put16(h, 4, f.xMin);
    Put16(h, 6, f.yMin);
    Put16(h, 8, f.xMax);
    Put16(h, 10, f.yMax);
    Put16(h, 12, 72);
    Put16(h, 14, 72);
    h[65] = static_cast<char>(f.planes);
    Put16(h, 66, f.bytesPerLine);
    Put16(h, 68, 1);
    return h;
}

std::string PcxPaletteBlock(const std::array<Rgb, 256>& palette, std::uint8_t marker) {
    std::string out(1, static_cast<char>(marker));
    for (const Rgb& c : palette) {
        out.push_back(static_cast<char>(c.r));
        out.push_back(static_cast<char>(c.g));
        out.push_back(static_cast<char>(c.b));
    }
    return out;
}

void EncodePcxLine(const std::uint8_t* data, std::size_t count, std::string& out) {
    std::size_t i = 0;
    while (i < count) {
        std::uint8_t v = data[i];
        std::size_t run = 1;
        while (i + run < count && data[i + run] == v && run < 63)
            ++run;
        if (run > 1 || (v & 0xC0) == 0xC0) {
            out.push_back(static_cast<char>(0xC0 | run));
            out.push_back(static_cast<char>(v));
        } else {
            out.push_back(static_cast<char>(v));
        }
        i += run;
    }
}

std::string EncodePcx256(int width, int height, const std::vector<std::uint8_t>& pixels,
                         const std::array<Rgb, 256>& palette) {
    const int lineBytes = EvenLineBytes(width);
    std::string out = Header(width, height, 1, lineBytes);
    std::vector<std::uint8_t> line(static_cast<std::size_t>(lineBytes));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < lineBytes; ++x)
            line[static_cast<std::size_t>(x)] =
                x < width ? pixels[static_cast<std::size_t>(y * width + x)] : 0;
        EncodePcxLine(line.data(), line.size(), out);
    }
    out += PcxPaletteBlock(palette);
    return out;
}

std::string EncodePcx24(int width, int height, const std::vector<Rgb>& pixels) {
    const int lineBytes = EvenLineBytes(width);
    std::string out = Header(width, height, 3, lineBytes);
    std::vector<std::uint8_t> plane(static_cast<std::size_t>(lineBytes));
    for (int y = 0; y < height; ++y) {
        for (int channel = 0; channel < 3; ++channel) {
            for (int x = 0; x < lineBytes; ++x) {
                const Rgb& p =
                    pixels[static_cast<std::size_t>(y * width + (x < width ? x : width - 1))];
                std::uint8_t v = channel == 0 ? p.r : channel == 1 ? p.g : p.b;
                plane[static_cast<std::size_t>(x)] = x < width ? v : 0;
            }
            EncodePcxLine(plane.data(), plane.size(), out);
        }
    }
    return out;
}

} // namespace vantrel::demo

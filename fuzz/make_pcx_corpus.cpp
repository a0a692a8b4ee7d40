// Writes the seed corpus of fuzz/pcx_fuzz.cpp with the demo PCX writer:
//   g++ -std=c++20 -I. fuzz/make_pcx_corpus.cpp build/libvantrel_demo.a build/libvantrel_core.a \
//       -lz -lzip -o /tmp/make_pcx_corpus && /tmp/make_pcx_corpus fuzz/corpus/pcx
#include "demo/demo_units.h"
#include "demo/pcx_writer.h"
using namespace vantrel::demo;
int main(int, char** argv) {
    std::string d = argv[1];
    std::array<Rgb, 256> pal;
    for (int i = 0; i < 256; ++i)
        pal[i] = {(std::uint8_t)i, (std::uint8_t)(255 - i), (std::uint8_t)(i * 3)};
    std::vector<std::uint8_t> px(5 * 3);
    for (int i = 0; i < 15; ++i)
        px[i] = (std::uint8_t)(i < 6 ? 200 : i);
    WriteFile(d + "/indexed_5x3.pcx", EncodePcx256(5, 3, px, pal));
    std::vector<Rgb> rgb(5 * 3);
    for (int i = 0; i < 15; ++i)
        rgb[i] = {(std::uint8_t)(i * 17), (std::uint8_t)(i < 8 ? 9 : 250), 0xC3};
    WriteFile(d + "/rgb_5x3.pcx", EncodePcx24(5, 3, rgb));
    const DemoUnit& u = DemoUnits().front();
    WriteFile(d + "/badge_256_16x12.pcx", DemoPicture256(u, 16, 12));
    WriteFile(d + "/badge_24_12x9.pcx", DemoPicture24(u, 12, 9));
    PcxHeaderFields f;
    f.xMax = 2;
    f.yMax = 1;
    f.bytesPerLine = 4;
    WriteFile(d + "/padding_3x2.pcx",
              PcxHeader(f) + std::string("\x01\xC5\x09\x07\x04\x05\x06\xC2\x09\x08", 10) +
                  PcxPaletteBlock(pal));
    WriteFile(d + "/no_marker.pcx", PcxHeader(f) +
                                        std::string("\x01\x02\x03\x04\x05\x06\x07\x08", 8) +
                                        PcxPaletteBlock(pal, 0));
}

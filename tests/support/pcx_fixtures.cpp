#include "support/pcx_fixtures.h"

#include <gtest/gtest.h>

namespace vantrel::test {

std::array<demo::Rgb, 256> TestPalette() {
    std::array<demo::Rgb, 256> p;
    for (int i = 0; i < 256; ++i)
        p[static_cast<std::size_t>(i)] = {static_cast<std::uint8_t>(i),
                                          static_cast<std::uint8_t>(255 - i),
                                          static_cast<std::uint8_t>(7 * i % 256)};
    return p;
}

std::uint32_t TestColour(int i) {
    const demo::Rgb c = TestPalette()[static_cast<std::size_t>(i)];
    return static_cast<std::uint32_t>(c.r) << 16 | static_cast<std::uint32_t>(c.g) << 8 | c.b;
}

demo::PcxHeaderFields Fields(int width, int height, int planes, int bytesPerLine) {
    demo::PcxHeaderFields f;
    f.xMax = width - 1;
    f.yMax = height - 1;
    f.planes = planes;
    f.bytesPerLine = bytesPerLine;
    return f;
}

std::string Pcx256(const demo::PcxHeaderFields& f, const std::string& data, std::uint8_t marker) {
    return demo::PcxHeader(f) + data + demo::PcxPaletteBlock(TestPalette(), marker);
}

std::string Pcx24(const demo::PcxHeaderFields& f, const std::string& data) {
    return demo::PcxHeader(f) + data;
}

std::string Bytes(std::initializer_list<int> values) {
    std::string s;
    for (int v : values)
        s.push_back(static_cast<char>(v));
    return s;
}

PcxImage DecodedImage(const std::string& file) {
    ScriptedMessages msgs;
    PcxResult r = DecodePCX(file, msgs);
    EXPECT_TRUE(r) << r.reason;
    return r ? *r.image : PcxImage{};
}

} // namespace vantrel::test

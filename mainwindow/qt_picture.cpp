#include "mainwindow/qt_picture.h"

#include <cstring>

namespace vantrel {

QImage ToQImage(const PcxImage& img) {
    if (img.width < 1 || img.height < 1 || img.pixels.size() < img.BytesPerRow() * img.height)
        return {};
    const bool indexed = img.format == PcxImage::Format::Indexed8;
    QImage out(img.width, img.height, indexed ? QImage::Format_Indexed8 : QImage::Format_RGB32);
    if (out.isNull()) return {};
    if (indexed) {
        QList<QRgb> table(256);
        for (int i = 0; i < 256; ++i)
            table[i] = 0xFF000000u | img.colours[static_cast<std::size_t>(i)];
        out.setColorTable(table);
    }
    // QImage rows are 4-byte aligned; ours are packed, so copy row by row.
    for (int y = 0; y < img.height; ++y) {
        std::memcpy(out.scanLine(y), img.Row(y), img.BytesPerRow());
        if (indexed) continue;
        // RGB32 is 0xffRRGGBB: the fourth byte of each pixel must be 0xff.
        auto* px = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < img.width; ++x)
            px[x] |= 0xFF000000u;
    }
    return out;
}

QPixmap ToQPixmap(const PcxResult& result) {
    if (!result.image) return {};
    return QPixmap::fromImage(ToQImage(*result.image));
}

} // namespace vantrel

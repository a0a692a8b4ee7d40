// Turns a decoded unit picture into something a Qt widget can show.
#pragma once

#include "formats/pcx.h"

#include <QImage>
#include <QPixmap>

namespace vantrel {

// Indexed8 pictures become QImage::Format_Indexed8 with the 256-entry colour
// table; Rgb32 pictures become QImage::Format_RGB32. The image owns a copy of
// the pixels. A null QImage for an empty picture.
QImage ToQImage(const PcxImage& image);

// The picture for a card's image control; a null pixmap when `result` holds no
// picture. Needs a QGuiApplication.
QPixmap ToQPixmap(const PcxResult& result);

} // namespace vantrel

#include "forms/qt_icon.h"

#include <QPainter>
#include <QPainterPath>

namespace vantrel {

// A dark blue shield with a white "V" over three small bars (the weights).
QPixmap VantrelIcon(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 64.0, size / 64.0);

    QPainterPath shield;
    shield.moveTo(32, 2);
    shield.lineTo(60, 10);
    shield.cubicTo(60, 38, 48, 54, 32, 62);
    shield.cubicTo(16, 54, 4, 38, 4, 10);
    shield.closeSubpath();
    p.setPen(QPen(QColor(10, 20, 60), 2));
    p.setBrush(QColor(0, 0, 128));
    p.drawPath(shield);

    p.setPen(Qt::NoPen);
    p.setBrush(QColor(230, 170, 30));
    p.drawRect(16, 40, 6, 8);
    p.drawRect(29, 34, 6, 14);
    p.drawRect(42, 28, 6, 20);

    QPen white(Qt::white, 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(white);
    p.setBrush(Qt::NoBrush);
    QPainterPath v;
    v.moveTo(17, 13);
    v.lineTo(32, 44);
    v.lineTo(47, 13);
    p.drawPath(v);
    return pixmap;
}

} // namespace vantrel

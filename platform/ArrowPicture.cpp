#include "platform/ArrowPicture.h"

#include <QPainter>
#include <QPainterPath>

QPixmap ArrowPicture(const QWidget &window, SortOrder order)
{
    constexpr int side = 8;
    constexpr int nearEdge = 2;
    const bool up = order == SortOrder::Ascending;
    QPixmap picture(QSize(side, side) * window.devicePixelRatioF());
    picture.setDevicePixelRatio(window.devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath arrow;
    arrow.moveTo(0, up ? side - nearEdge : nearEdge);
    arrow.lineTo(side, up ? side - nearEdge : nearEdge);
    arrow.lineTo(side / 2.0, up ? nearEdge : side - nearEdge);
    arrow.closeSubpath();
    painter.fillPath(arrow, window.palette().color(QPalette::ButtonText));
    return picture;
}

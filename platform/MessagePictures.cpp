#include "platform/MessagePictures.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

const QColor Blue(0x2a, 0x6f, 0xb0);
const QColor Amber(0xf2, 0xb7, 0x1c);
const QColor Red(0xc6, 0x2f, 0x2f);

constexpr qreal Side = 32; // the drawings' own units

QPainterPath Disc()
{
    QPainterPath path;
    path.addEllipse(QRectF(1.5, 1.5, 29, 29));
    return path;
}

QPainterPath Triangle()
{
    QPainterPath path;
    path.moveTo(16, 3);
    path.lineTo(30, 28);
    path.lineTo(2, 28);
    path.closeSubpath();
    return path;
}

void DrawDot(QPainter &painter, qreal y)
{
    painter.drawEllipse(QPointF(16, y), 1.9, 1.9);
}

void DrawBar(QPainter &painter, qreal top, qreal bottom)
{
    painter.drawRoundedRect(QRectF(14.3, top, 3.4, bottom - top), 1.5, 1.5);
}

void DrawQuestion(QPainter &painter)
{
    QPainterPath hook;
    hook.moveTo(11.4, 12.6);
    hook.cubicTo(11.4, 6.4, 20.6, 6.4, 20.6, 12.2);
    hook.cubicTo(20.6, 15.8, 16, 15.6, 16, 19.6);
    painter.strokePath(
        hook, QPen(painter.brush(), 3.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    DrawDot(painter, 24.4);
}

/// Draws at whatever size and resolution it is asked for.
class clsMessagePicture : public QIconEngine
{
public:
    explicit clsMessagePicture(QStyle::StandardPixmap picture)
        : m_picture(picture)
    {
    }

    void paint(QPainter *painter, const QRect &rectangle, QIcon::Mode, QIcon::State) override
    {
        const qreal side = std::min(rectangle.width(), rectangle.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(
            rectangle.center().x() + 0.5 - side / 2, rectangle.center().y() + 0.5 - side / 2);
        painter->scale(side / Side, side / Side);
        painter->setPen(Qt::NoPen);
        Draw(*painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine *clone() const override { return new clsMessagePicture(*this); }

private:
    void Draw(QPainter &painter) const
    {
        switch (m_picture) {
        case QStyle::SP_MessageBoxWarning: {
            // Its corners are round as the line around it is.
            painter.setBrush(Amber);
            painter.setPen(QPen(Amber, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawPath(Triangle());
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::black);
            DrawBar(painter, 10, 20.5);
            DrawDot(painter, 24.4);
            break;
        }
        case QStyle::SP_MessageBoxCritical:
            painter.fillPath(Disc(), Red);
            painter.setBrush(Qt::white);
            painter.translate(16, 16);
            for (const qreal angle : {45, 90}) {
                painter.rotate(angle);
                painter.drawRoundedRect(QRectF(-9, -1.8, 18, 3.6), 1.5, 1.5);
            }
            break;
        case QStyle::SP_MessageBoxQuestion:
            painter.fillPath(Disc(), Blue);
            painter.setBrush(Qt::white);
            DrawQuestion(painter);
            break;
        default:
            painter.fillPath(Disc(), Blue);
            painter.setBrush(Qt::white);
            DrawDot(painter, 8.6);
            DrawBar(painter, 13, 25);
            break;
        }
    }

    QStyle::StandardPixmap m_picture;
};

} // namespace

QIcon MessagePicture(QStyle::StandardPixmap picture)
{
    switch (picture) {
    case QStyle::SP_MessageBoxInformation:
    case QStyle::SP_MessageBoxWarning:
    case QStyle::SP_MessageBoxCritical:
    case QStyle::SP_MessageBoxQuestion:
        return QIcon(new clsMessagePicture(picture));
    default:
        return {};
    }
}

#include "platform/WindowPlace.h"

#include "platform/clsRunTimeError.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString Section = u"Window"_s;
const QString Key = u"Place"_s;

struct Place
{
    QPoint Corner;
    QSize Size;
    QSize Frame;
    bool Maximised = false;
};

std::optional<Place> PlaceFrom(const QString &text)
{
    constexpr qsizetype count = 7;
    constexpr int farthest = 100'000; // a screen's edge is nearer
    constexpr int thickest = 200;
    const QStringList parts = text.split(u' ');
    if (parts.size() != count)
        return {};
    std::array<int, count> values{};
    for (qsizetype i = 0; i < count; ++i) {
        bool isNumber = false;
        values.at(static_cast<size_t>(i)) = parts[i].toInt(&isNumber);
        if (!isNumber || std::abs(values.at(static_cast<size_t>(i))) > farthest)
            return {};
    }
    const auto [left, top, width, height, frameWidth, frameHeight, maximised] = values;
    if (width <= 0 || height <= 0)
        return {};
    return Place{{left, top}, {width, height},
        {std::clamp(frameWidth, 0, thickest), std::clamp(frameHeight, 0, thickest)},
        maximised == 1};
}

qint64 Area(const QRect &rectangle)
{
    return rectangle.isEmpty() ? 0 : qint64(rectangle.width()) * rectangle.height();
}

} // namespace

QRect PlaceOnScreens(const QRect &wanted, const QList<QRect> &screens)
{
    if (screens.isEmpty())
        return wanted;
    // The first of several that hold equally much of it.
    const QRect screen = *std::max_element(
        screens.begin(), screens.end(), [&](const QRect &one, const QRect &other) {
            return Area(one.intersected(wanted)) < Area(other.intersected(wanted));
        });
    QRect placed(wanted.topLeft(), wanted.size().boundedTo(screen.size()));
    placed.moveLeft(std::clamp(placed.left(), screen.left(), screen.right() + 1 - placed.width()));
    placed.moveTop(std::clamp(placed.top(), screen.top(), screen.bottom() + 1 - placed.height()));
    return placed;
}

void SaveWindowPlace(const QWidget &window, clsSettings &settings)
{
    const bool isPlain = (window.windowState()
                             & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen))
        == Qt::WindowNoState;
    const QSize frame = window.frameGeometry().size() - window.size();
    const QPoint border = window.geometry().topLeft() - window.frameGeometry().topLeft();
    const QRect normal = window.normalGeometry();
    const QPoint corner = isPlain ? window.pos() : normal.topLeft() - border;
    const QSize size = isPlain ? window.size() : normal.size();
    QStringList parts;
    for (const int value : {corner.x(), corner.y(), size.width(), size.height(), frame.width(),
             frame.height(), window.isMaximized() ? 1 : 0})
        parts.append(QString::number(value));
    try {
        settings.SaveSetting(Section, Key, parts.join(u' '));
    } catch (const clsRunTimeError &) {
        // The place of a window is not worth a message while the program ends.
    }
}

void RestoreWindowPlace(QWidget &window, const clsSettings &settings)
{
    const std::optional<Place> place = PlaceFrom(settings.GetSetting(Section, Key, {}));
    if (!place)
        return;
    QList<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.append(screen->availableGeometry());
    const QRect placed = PlaceOnScreens({place->Corner, place->Size + place->Frame}, screens);
    window.resize(placed.size() - place->Frame);
    window.move(placed.topLeft());
    if (place->Maximised)
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

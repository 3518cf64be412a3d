#include "platform/ReadableColours.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int MostLightness = 255;

double Luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

/// The same hue at another lightness.
QColor AtLightness(const QColor &colour, int lightness)
{
    return QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), lightness);
}

bool StandsOut(const QColor &colour, const QList<QColor> &from, double ratio)
{
    return std::all_of(from.begin(), from.end(),
        [&](const QColor &other) { return ContrastRatio(colour, other) >= ratio; });
}

/// The colour of the nearest lightness that is good enough; none where there is no such one.
template <class IsGood>
std::optional<QColor> Nearest(const QColor &colour, IsGood &&isGood)
{
    if (isGood(colour))
        return colour;
    for (int step = 1; step <= MostLightness; ++step) {
        for (const int lightness : {colour.lightness() - step, colour.lightness() + step}) {
            const QColor other = AtLightness(colour, std::clamp(lightness, 0, MostLightness));
            if (isGood(other))
                return other;
        }
    }
    return {};
}

struct TextRole
{
    QPalette::ColorRole Text;
    QList<QPalette::ColorRole> On;
};

const QList<TextRole> &TextRoles()
{
    // Text stands on the button's colour too: boxes that cannot be edited have it.
    static const QList<TextRole> roles = {
        {QPalette::WindowText, {QPalette::Window}},
        {QPalette::Text, {QPalette::Base, QPalette::AlternateBase, QPalette::Button}},
        {QPalette::ButtonText, {QPalette::Button}},
        {QPalette::ToolTipText, {QPalette::ToolTipBase}},
        {QPalette::PlaceholderText, {QPalette::Base}},
        {QPalette::Link, {QPalette::Base, QPalette::Window}},
        {QPalette::LinkVisited, {QPalette::Base, QPalette::Window}},
    };
    return roles;
}

QColor OnOpaque(QColor colour, const QColor &below)
{
    const float part = colour.alphaF();
    return QColor::fromRgbF(colour.redF() * part + below.redF() * (1 - part),
        colour.greenF() * part + below.greenF() * (1 - part),
        colour.blueF() * part + below.blueF() * (1 - part));
}

void ReadableTexts(
    const QPalette &palette, QPalette::ColorGroup group, double ratio, QPalette &result)
{
    for (const TextRole &role : TextRoles()) {
        QList<QColor> on;
        for (const QPalette::ColorRole below : role.On)
            on.append(palette.color(group, below));
        const QColor own = OnOpaque(palette.color(group, role.Text), on.front());
        if (StandsOut(own, on, ratio))
            continue;
        if (const std::optional<QColor> readable
            = Nearest(own, [&](const QColor &tried) { return StandsOut(tried, on, ratio); }))
            result.setColor(group, role.Text, *readable);
    }
}

void ReadableSelection(const QPalette &palette, QPalette::ColorGroup group, QPalette &result)
{
    const QList<QColor> around = {palette.color(group, QPalette::Window),
        palette.color(group, QPalette::Base), palette.color(group, QPalette::Button)};
    const QColor selection = palette.color(group, QPalette::Highlight);
    const QColor ownText = palette.color(group, QPalette::HighlightedText);
    for (const QColor &text : {ownText, QColor(Qt::white), QColor(Qt::black)}) {
        const std::optional<QColor> readable = Nearest(selection, [&](const QColor &tried) {
            return StandsOut(tried, around, LeastPartContrast)
                && ContrastRatio(tried, text) >= LeastTextContrast;
        });
        if (!readable)
            continue;
        if (*readable != selection)
            result.setColor(group, QPalette::Highlight, *readable);
        if (text != ownText)
            result.setColor(group, QPalette::HighlightedText, text);
        return;
    }
}

} // namespace

double ContrastRatio(const QColor &one, const QColor &other)
{
    const double a = Luminance(one) + 0.05;
    const double b = Luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QPalette ReadableColours(const QPalette &palette)
{
    QPalette result;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        ReadableTexts(palette, group, LeastTextContrast, result);
        ReadableSelection(palette, group, result);
    }
    ReadableTexts(palette, QPalette::Disabled, LeastPartContrast, result);
    return result;
}

QColor LineColour(const QPalette &palette)
{
    const QList<QColor> around = {palette.color(QPalette::Window), palette.color(QPalette::Base)};
    const QColor mid = palette.color(QPalette::Mid);
    return Nearest(mid, [&](const QColor &tried) {
        return StandsOut(tried, around, LeastPartContrast);
    }).value_or(palette.color(QPalette::WindowText));
}

QColor FaintLineColour(const QPalette &palette, QPalette::ColorRole surface)
{
    constexpr float partOfText = 0.25F;
    QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    text.setAlphaF(partOfText);
    return OnOpaque(text, palette.color(surface));
}

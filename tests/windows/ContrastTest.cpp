// What can be seen by whom: contrasts of text, of lines and of the focus, in light and in dark.

#include "platform/clsReadableStyle.h"
#include "platform/ReadableColours.h"
#include "tests/windows/EveryWindow.h"

#include <QGroupBox>
#include <QRadioButton>
#include <QStyleFactory>
#include <QTableWidget>

#include <algorithm>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A palette as a theme of that name gives it, as far as the program uses it.
struct Theme
{
    const char *Name;
    const char *Window;
    const char *WindowText;
    const char *Base;
    const char *AlternateBase;
    const char *Button;
    const char *Highlight;
    const char *HighlightedText;
    const char *Link;
    const char *PlaceholderText;
};

void PrintTo(const Theme &theme, std::ostream *out)
{
    *out << theme.Name;
}

constexpr std::array Themes = {
    Theme{"TheWidgetSetsOwn", "", "", "", "", "", "", "", "", ""},
    Theme{"Light", "#eff0f1", "#232629", "#ffffff", "#f7f7f7", "#fcfcfc", "#3daee9", "#ffffff",
        "#2980b9", "#707d8a"},
    Theme{"Dark", "#2a2e32", "#fcfcfc", "#1b1e20", "#232629", "#31363b", "#3daee9", "#fcfcfc",
        "#1d99f3", "#a1a9b1"},
    Theme{"DarkAndFaint", "#303030", "#d0d0d0", "#303030", "#353535", "#3c3c3c", "#15539e",
        "#ffffff", "#2a6fc0", "#707070"},
    Theme{"Unreadable", "#808080", "#909090", "#888888", "#888888", "#808080", "#858585", "#808080",
        "#8080a0", "#888888"},
};

QPalette PaletteOf(const Theme &theme)
{
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(u"fusion"_s));
    QPalette palette = fusion->standardPalette();
    const auto set = [&](const char *colour, std::initializer_list<QPalette::ColorRole> roles) {
        for (const QPalette::ColorRole role : roles) {
            if (*colour != '\0')
                palette.setColor(role, QColor(QLatin1StringView(colour)));
        }
    };
    set(theme.Window, {QPalette::Window});
    set(theme.WindowText,
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText});
    set(theme.Base, {QPalette::Base, QPalette::ToolTipBase});
    set(theme.AlternateBase, {QPalette::AlternateBase});
    set(theme.Button, {QPalette::Button});
    set(theme.Highlight, {QPalette::Highlight});
    set(theme.HighlightedText, {QPalette::HighlightedText});
    set(theme.Link, {QPalette::Link, QPalette::LinkVisited});
    set(theme.PlaceholderText, {QPalette::PlaceholderText});
    return palette;
}

/// The theme's palette and the program's look over it, for as long as the object lives.
class Contrast : public EveryWindow, public testing::WithParamInterface<Theme>
{
protected:
    Contrast()
    {
        QApplication::setPalette(PaletteOf(GetParam()));
        UseReadableLook();
    }
    ~Contrast() override
    {
        Program.reset();
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
        QApplication::setPalette(QPalette());
    }

    static QColor Colour(QPalette::ColorRole role, QPalette::ColorGroup group = QPalette::Active)
    {
        return QApplication::palette().color(group, role);
    }
};

/// How well the best visible of what the focus has changed stands out from the window and from
/// boxes; 1 when nothing has changed.
double BestChange(const QImage &before, const QImage &after)
{
    const QPalette palette = QApplication::palette();
    double best = 1;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            const QColor mark = after.pixelColor(x, y);
            if (before.pixelColor(x, y) != mark)
                best = std::max(best,
                    std::min(ContrastRatio(mark, palette.color(QPalette::Window)),
                        ContrastRatio(mark, palette.color(QPalette::Base))));
        }
    }
    return best;
}

/// How much of the picture has exactly that color; of 1.
double ShareOf(const QColor &colour, const QImage &picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) == colour ? 1 : 0;
    }
    return double(count) / (picture.width() * picture.height());
}

} // namespace

TEST_P(Contrast, EveryTextCanBeRead)
{
    struct Pair
    {
        const char *Name;
        QPalette::ColorRole Text;
        QPalette::ColorRole On;
    };
    const std::array pairs = {Pair{"labels", QPalette::WindowText, QPalette::Window},
        Pair{"boxes", QPalette::Text, QPalette::Base},
        Pair{"other rows", QPalette::Text, QPalette::AlternateBase},
        Pair{"closed boxes", QPalette::Text, QPalette::Button},
        Pair{"buttons", QPalette::ButtonText, QPalette::Button},
        Pair{"the selection", QPalette::HighlightedText, QPalette::Highlight},
        Pair{"tool tips", QPalette::ToolTipText, QPalette::ToolTipBase},
        Pair{"links", QPalette::Link, QPalette::Base},
        Pair{"followed links", QPalette::LinkVisited, QPalette::Base},
        Pair{"hints", QPalette::PlaceholderText, QPalette::Base}};
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        for (const Pair &pair : pairs)
            EXPECT_GE(
                ContrastRatio(Colour(pair.Text, group), Colour(pair.On, group)), LeastTextContrast)
                << pair.Name << ' ' << Colour(pair.Text, group).name().toStdString() << " on "
                << Colour(pair.On, group).name().toStdString();
    }
}

TEST_P(Contrast, LinesAndTheSelectionStandOut)
{
    for (const QPalette::ColorRole surface : {QPalette::Window, QPalette::Base, QPalette::Button})
        EXPECT_GE(ContrastRatio(Colour(QPalette::Highlight), Colour(surface)), LeastPartContrast);
    for (const QPalette::ColorRole surface : {QPalette::Window, QPalette::Base})
        EXPECT_GE(
            ContrastRatio(LineColour(QApplication::palette()), Colour(surface)), LeastPartContrast);
}

TEST_P(Contrast, WhatIsClosedStillSaysSomething)
{
    using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
    for (const auto &[text, on] : {Pair(QPalette::WindowText, QPalette::Window),
             Pair(QPalette::Text, QPalette::Base), Pair(QPalette::ButtonText, QPalette::Button)})
        EXPECT_GE(ContrastRatio(Colour(text, QPalette::Disabled), Colour(on, QPalette::Disabled)),
            LeastPartContrast)
            << text;
}

TEST_P(Contrast, GridsAndGroupsHaveLines)
{
    constexpr double faintButThere = 1.3;
    QTableWidget grid(1, 1);
    grid.setShowGrid(true);
    grid.show();
    const QRect cell = grid.visualRect(grid.model()->index(0, 0));
    const QColor line
        = grid.viewport()->grab().toImage().pixelColor(cell.center().x(), cell.bottom() + 1);
    EXPECT_GE(ContrastRatio(line, Colour(QPalette::Base)), faintButThere);

    QGroupBox group(u"Group"_s);
    group.resize(100, 60);
    const QColor frame = group.grab().toImage().pixelColor(50, 59);
    EXPECT_GE(ContrastRatio(frame, Colour(QPalette::Window)), faintButThere);
}

TEST_P(Contrast, AListHasTheBackgroundOfBoxesOrWhileItIsDisabledOfButtons)
{
    Start();
    const auto expectBackground = [&](const char *name, QPalette::ColorRole role) {
        const QWidget &list = Any(name);
        const QPalette::ColorGroup group = list.isEnabled() ? QPalette::Active : QPalette::Disabled;
        EXPECT_GE(ShareOf(Colour(role, group), Any(name).grab().toImage()), 0.5)
            << name << (list.isEnabled() ? " enabled" : " disabled");
    };
    for (const char *name : {"cboCompany", "cboBStatus", "cboBOption"})
        expectBackground(name, QPalette::Base);
    GoTo("txtActivity");
    Type(u"TRAIN"_s); // not charged
    Press(Qt::Key_Return);
    expectBackground("cboBStatus", QPalette::Base);
    for (const char *name : {"cboCompany", "cboBOption"}) {
        ASSERT_FALSE(Any(name).isEnabled());
        expectBackground(name, QPalette::Button);
    }
}

TEST_P(Contrast, ABoxIsSeenInItsWindow)
{
    Start();
    const QImage picture = Window().grab().toImage();
    for (const char *name : {"txtCustomer", "cboBStatus", "dtpDate"}) {
        const QWidget &box = Any(name);
        if (box.hasFocus())
            continue;
        const QPoint middle = box.mapTo(&Window(), QPoint(box.width() / 2, 0));
        EXPECT_GE(
            ContrastRatio(picture.pixelColor(middle), Colour(QPalette::Window)), LeastPartContrast)
            << name;
    }
}

TEST_P(Contrast, TheControlWithTheKeysIsSeen)
{
    InEvery([](const std::string &name, QWidget &window) {
        for (QWidget *control : FocusChain(window)) {
            const auto *option = qobject_cast<const QRadioButton *>(control);
            if (option != nullptr && !option->isChecked())
                continue; // the keys choose it when they reach it
            const QRect around(
                control->mapTo(&window, QPoint(-2, -2)), control->size() + QSize(4, 4));
            control->setFocus(Qt::OtherFocusReason);
            LetEventsRun();
            if (!control->hasFocus())
                continue; // it passes the keys on
            const QImage with = window.grab(around).toImage();
            // At once: an activation that is still on its way would bring the focus back.
            control->clearFocus();
            const QImage without = window.grab(around).toImage();
            EXPECT_GE(BestChange(without, with), LeastPartContrast)
                << name << ": " << control->metaObject()->className() << ' '
                << control->objectName().toStdString();
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Palettes, Contrast, testing::ValuesIn(Themes),
    [](const auto &tested) { return std::string(tested.param.Name); });

TEST(ContrastRatio, IsWhatTheGuidelinesSay)
{
    EXPECT_NEAR(ContrastRatio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(ContrastRatio(Qt::white, Qt::white), 1, 0.001);
    EXPECT_NEAR(ContrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    EXPECT_NEAR(ContrastRatio(Qt::white, QColor(0x76, 0x76, 0x76)), 4.54, 0.01);
}

TEST(ReadableColours, LeaveAReadablePaletteAlone)
{
    QPalette palette(QColor(0xf0, 0xf0, 0xf0), QColor(0xf0, 0xf0, 0xf0));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text,
             QPalette::ButtonText, QPalette::ToolTipText, QPalette::PlaceholderText})
        palette.setColor(role, Qt::black);
    for (const QPalette::ColorRole role :
        {QPalette::Base, QPalette::AlternateBase, QPalette::ToolTipBase, QPalette::HighlightedText})
        palette.setColor(role, Qt::white);
    for (const QPalette::ColorRole role :
        {QPalette::Highlight, QPalette::Link, QPalette::LinkVisited})
        palette.setColor(role, QColor(0, 0, 0xa0));
    EXPECT_EQ(ReadableColours(palette).resolveMask(), 0u);
}

// A window opens where it was, and never where nobody can reach it.

#include "platform/WindowPlace.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Recorded.h"
#include "tests/support/Windows.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QRect Laptop(0, 0, 910, 512);
const QRect Right(910, 0, 1920, 1080);
const QRect Above(0, -1080, 1920, 1080);

struct PlaceCase
{
    const char *Name;
    QRect Wanted;
    QList<QRect> Screens;
    QRect Expected;
};

void PrintTo(const PlaceCase &tested, std::ostream *out)
{
    *out << tested.Name;
}

class PlaceOfAWindow : public testing::TestWithParam<PlaceCase>
{
};

/// As on a disk that is full.
class RefusedSettings : public clsRecordedSettings
{
public:
    void SaveSetting(const QString &, const QString &, const QString &) override
    {
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"Settings"_s, u"full"_s);
    }
};

QRect FirstScreen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

} // namespace

TEST_P(PlaceOfAWindow, IsOnAScreen)
{
    EXPECT_EQ(PlaceOnScreens(GetParam().Wanted, GetParam().Screens), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, PlaceOfAWindow,
    testing::Values(PlaceCase{"StaysWhereItIs", {10, 20, 800, 400}, {Laptop}, {10, 20, 800, 400}},
        PlaceCase{"FillsTheScreen", Laptop, {Laptop}, Laptop},
        PlaceCase{"TooFarRight", {500, 20, 800, 400}, {Laptop}, {110, 20, 800, 400}},
        PlaceCase{"TooFarDown", {10, 500, 800, 400}, {Laptop}, {10, 112, 800, 400}},
        PlaceCase{"TooFarLeftAndUp", {-300, -200, 800, 400}, {Laptop}, {0, 0, 800, 400}},
        PlaceCase{"OnAScreenThatIsGone", {2000, 100, 800, 400}, {Laptop}, {110, 100, 800, 400}},
        PlaceCase{"TooLarge", {10, 20, 1900, 1000}, {Laptop}, Laptop},
        PlaceCase{"TooWideOnly", {10, 20, 1900, 400}, {Laptop}, {0, 20, 910, 400}},
        PlaceCase{
            "OnTheSecondScreen", {1000, 100, 800, 400}, {Laptop, Right}, {1000, 100, 800, 400}},
        PlaceCase{"MostlyOnTheSecond", {800, 100, 800, 400}, {Laptop, Right}, {910, 100, 800, 400}},
        PlaceCase{"OnAScreenAbove", {100, -500, 800, 400}, {Laptop, Above}, {100, -500, 800, 400}},
        PlaceCase{"NoScreen", {5000, 20, 800, 400}, {}, {5000, 20, 800, 400}}),
    [](const auto &tested) { return std::string(tested.param.Name); });

TEST(WindowPlace, IsRememberedWithItsSize)
{
    clsRecordedSettings settings;
    QWidget window;
    window.setGeometry(60, 40, 300, 200);
    ASSERT_TRUE(ShowActive(window));
    const QPoint corner = window.pos();
    SaveWindowPlace(window, settings);
    QWidget next;
    RestoreWindowPlace(next, settings);
    ASSERT_TRUE(ShowActive(next));
    EXPECT_EQ(next.pos(), corner);
    EXPECT_EQ(next.size(), QSize(300, 200));
    EXPECT_FALSE(next.isMaximized());
}

TEST(WindowPlace, AMaximisedWindowOpensMaximisedAndHasItsOwnSizeBehindThat)
{
    clsRecordedSettings settings;
    QWidget window;
    window.setGeometry(60, 40, 300, 200);
    window.show();
    window.showMaximized();
    SaveWindowPlace(window, settings);
    QWidget next;
    RestoreWindowPlace(next, settings);
    EXPECT_TRUE(next.isMaximized());
    EXPECT_EQ(next.size(), QSize(300, 200));
}

TEST(WindowPlace, FromALargerScreenItIsMadeToFit)
{
    clsRecordedSettings settings;
    settings.SaveSetting(u"Window"_s, u"Place"_s, u"9000 9000 8000 7000 4 30 0"_s);
    QWidget window;
    RestoreWindowPlace(window, settings);
    EXPECT_EQ(window.pos(), FirstScreen().topLeft());
    EXPECT_EQ(window.size() + QSize(4, 30), FirstScreen().size());
}

TEST(WindowPlace, WhatIsNoPlaceIsPassedOver)
{
    for (const QString &text :
        {QString(), u"nonsense"_s, u"1 2 3"_s, u"1 2 3 4 5 6 x"_s, u"10 10 0 100 0 0 0"_s,
            u"10 10 100 -5 0 0 0"_s, u"999999999 0 100 100 0 0 0"_s, u"1 2 300 200 0 0 0 0"_s}) {
        clsRecordedSettings settings;
        settings.SaveSetting(u"Window"_s, u"Place"_s, text);
        QWidget window;
        window.setGeometry(60, 40, 300, 200);
        RestoreWindowPlace(window, settings);
        EXPECT_EQ(window.geometry(), QRect(60, 40, 300, 200)) << text.toStdString();
        EXPECT_FALSE(window.isMaximized());
    }
}

TEST(WindowPlace, SettingsThatCannotBeSavedAreNoError)
{
    RefusedSettings settings;
    const QWidget window;
    EXPECT_NO_THROW(SaveWindowPlace(window, settings));
}

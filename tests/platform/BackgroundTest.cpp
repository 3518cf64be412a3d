// The background of what cannot be edited.

#include "platform/FormEvents.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace {

QColor BaseOf(const QWidget &widget)
{
    return widget.palette().color(QPalette::Base);
}

} // namespace

TEST(Background, IsAButtonsFaceWhereNothingCanBeEdited)
{
    QLineEdit box;
    const QPalette own = box.palette();
    DrawBackground(box, true);
    EXPECT_EQ(BaseOf(box), own.color(QPalette::Button));
    EXPECT_NE(BaseOf(box), own.color(QPalette::Base));
    EXPECT_EQ(box.palette().color(QPalette::Text), own.color(QPalette::Text));
    DrawBackground(box, false);
    EXPECT_EQ(box.palette(), own);
}

TEST(Background, ComesBackInPalettesThatTheStyleHasSeenBefore)
{
    // For each palette that it has not seen the style keeps the names of new pictures.
    QComboBox list;
    const auto draw = [&list](bool buttonFace) {
        DrawBackground(list, buttonFace);
        return list.palette().cacheKey();
    };
    const qint64 own = draw(false);
    const qint64 face = draw(true);
    EXPECT_NE(own, face);
    EXPECT_EQ(draw(true), face);
    EXPECT_EQ(draw(false), own);
    EXPECT_EQ(draw(true), face);
}

TEST(Background, FollowsTheDesktopsColours)
{
    const QPalette before = QApplication::palette();
    QLineEdit box;
    DrawBackground(box, true);
    QPalette dark = before;
    dark.setColor(QPalette::Button, Qt::darkBlue);
    QApplication::setPalette(dark);
    DrawBackground(box, true);
    EXPECT_EQ(BaseOf(box), QColor(Qt::darkBlue));
    QApplication::setPalette(before);
}

// What every window looks like beyond its colours: what stands in line, and pictures that are
// sharp.

#include "platform/clsReadableStyle.h"
#include "platform/clsWindowMessageBox.h"
#include "platform/ReadableColours.h"
#include "tests/support/Modal.h"
#include "tests/windows/EveryWindow.h"

#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QScopeGuard>
#include <QStyleFactory>
#include <QTableWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The program's look, for as long as the object lives.
class Look : public EveryWindow
{
protected:
    Look() { UseReadableLook(); }
    ~Look() override
    {
        Program.reset();
        QApplication::setStyle(QStyleFactory::create(u"fusion"_s));
        QApplication::setPalette(QPalette());
    }
};

/// The first column in which something is dark.
int FirstInk(const QImage &picture)
{
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 4; y < picture.height() - 4; ++y) {
            if (picture.pixelColor(x, y).lightness() < 100)
                return x;
        }
    }
    return -1;
}

} // namespace

TEST_F(Look, MessageBoxesHaveSharpPicturesAtTwoHundredPercent)
{
    for (const QStyle::StandardPixmap picture :
        {QStyle::SP_MessageBoxWarning, QStyle::SP_MessageBoxCritical, QStyle::SP_MessageBoxQuestion,
            QStyle::SP_MessageBoxInformation}) {
        const QPixmap drawn = QApplication::style()->standardIcon(picture).pixmap({32, 32}, 2);
        EXPECT_EQ(drawn.size(), QSize(64, 64)) << picture;
        const QImage image = drawn.toImage();
        const QImage enlarged = image.scaled(32, 32, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                                    .scaled(64, 64, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        EXPECT_NE(image.convertToFormat(QImage::Format_ARGB32),
            enlarged.convertToFormat(QImage::Format_ARGB32))
            << picture;
    }
}

TEST_F(Look, TheKeyboardFocusInTheMenuBarCanBeSeen)
{
    Start();
    QMenuBar &menus = *Window().menuBar();
    const QImage without = menus.grab().toImage();
    QTest::keyClick(Window().windowHandle(), Qt::Key_Alt, Qt::AltModifier);
    LetEventsRun();
    ASSERT_TRUE(menus.hasFocus());
    const QImage with = menus.grab().toImage();
    const QPoint inFirst = menus.actionGeometry(menus.actions().first()).topLeft() + QPoint(4, 4);
    EXPECT_GE(
        ContrastRatio(with.pixelColor(inFirst), without.pixelColor(inFirst)), LeastPartContrast);
    QTest::keyClick(&menus, Qt::Key_Escape);
    LetEventsRun();
    EXPECT_FALSE(menus.hasFocus());
    EXPECT_EQ(menus.grab().toImage(), without);
}

TEST_F(Look, AMessageStandsWholeBesideItsPicture)
{
    clsWindowMessageBox messages;
    for (const QString &text :
        {u"Invalid Hours."_s,
            u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\nDo you wish to continue?"_s,
            u"Many words "_s.repeated(60)}) {
        WithModal([&] { messages.Tell(text); },
            [&](QWidget &box) {
                const auto &told = Control<QLabel>(box, "qt_msgbox_label");
                const auto &picture = Control<QLabel>(box, "qt_msgboxex_icon_label");
                const int needed = told.wordWrap() ? told.heightForWidth(told.width())
                                                   : told.sizeHint().height();
                EXPECT_GE(told.height(), needed) << text.toStdString();
                EXPECT_GE(told.geometry().center().y(), picture.geometry().center().y() - 2)
                    << text.toStdString();
                QTest::keyClick(&box, Qt::Key_Escape);
            });
    }
}

TEST_F(Look, AHeadingBeginsWhereItsCellsDo)
{
    QTableWidget grid(1, 1);
    grid.verticalHeader()->hide();
    grid.setHorizontalHeaderLabels({u"HHH"_s});
    grid.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid.setItem(0, 0, new QTableWidgetItem(u"HHH"_s));
    grid.resize(200, 100);
    grid.show();
    const int heading = FirstInk(grid.horizontalHeader()->grab().toImage());
    ASSERT_GE(heading, 0);
    EXPECT_EQ(heading, FirstInk(grid.viewport()->grab().toImage()));
}

TEST_F(Look, TheEditorsRowsAreEquallyFarApart)
{
    Start();
    const auto middle = [&](const char *name) {
        const QWidget &box = Any(name);
        return box.mapTo(&Window(), box.rect().center()).y();
    };
    const int apart = middle("txtProject") - middle("txtCustomer");
    // A pixel is what remains when a height is shared out.
    EXPECT_NEAR(middle("txtCustomer") - middle("dtpDate"), apart, 1);
    EXPECT_NEAR(middle("txtActivity") - middle("txtProject"), apart, 1);
    EXPECT_NEAR(middle("txtDescription") - middle("txtActivity"), apart, 1);
}

TEST_F(Look, AnAmountOfTenDigitsIsShownWholeAlsoInLargeLetters)
{
    EntryRecord record = SampleEntry(u"0100"_s, {}, u"MILES"_s, QDate(2026, 3, 9),
        Currency::FromScaled(-999999900), Currency::FromScaled(999999990));
    Company.Entries = {record};
    const QFont before = QApplication::font();
    const auto restored = qScopeGuard([&] { QApplication::setFont(before); });
    for (const int points : {9, 12, 16}) {
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        Program.reset();
        for (const QString &name : QDir(Folder.path()).entryList({u"*.db"_s}))
            QFile::remove(Folder.filePath(name));
        Start();
        ClickRow(1);
        QLineEdit &amount = Box("txtAmount");
        ASSERT_EQ(amount.text(), u"-9999998900.00"_s);
        EXPECT_EQ(amount.cursorPositionAt({2, amount.height() / 2}), 0) << points;
        EXPECT_EQ(amount.cursorPositionAt({amount.width() - 3, amount.height() / 2}),
            amount.text().size())
            << points;
    }
}

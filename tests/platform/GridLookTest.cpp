// What a grid looks like on the screen, as far as a reader depends on it.

#include "platform/clsGrid.h"
#include "platform/Twips.h"

#include <QApplication>
#include <QScopeGuard>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

std::shared_ptr<clsTextRecordSet> Records(const QString &fieldName, const QStringList &texts)
{
    auto records = std::make_shared<clsTextRecordSet>(QStringList{fieldName});
    for (const QString &text : texts)
        records->AddRecord(std::array<QStringView, 1>{text});
    return records;
}

void Bind(clsGrid &grid, const QString &fieldName)
{
    grid.SetDataSource(Records(fieldName, {u"01/01/2026"_s}));
    grid.SetColWidth(0, 1270);
    grid.SetColAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
    grid.resize(300, 100);
}

QImage HeaderOf(clsGrid &grid)
{
    return grid.horizontalHeader()->grab().toImage();
}

} // namespace

TEST(GridLook, ADateFitsItsColumnWhateverTheLetters)
{
    const QFont before = QApplication::font();
    const auto restored = qScopeGuard([&] { QApplication::setFont(before); });
    for (const int points : {8, 10, 14, 20}) {
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        clsGrid grid;
        Bind(grid, u"Date"_s);
        grid.SetColWidth(0, 960 + 110);
        EXPECT_LE(static_cast<QAbstractItemView &>(grid).sizeHintForColumn(0), grid.columnWidth(0))
            << points;
        EXPECT_LE(grid.font().pointSizeF(), points);
    }
}

TEST(GridLook, TheTextOfAHeaderStaysClearOfItsArrow)
{
    QPixmap invisible(8, 8);
    invisible.fill(Qt::transparent);
    clsGrid titled;
    clsGrid untitled;
    Bind(titled, u"Amount"_s);
    Bind(untitled, QString());
    for (clsGrid *grid : {&titled, &untitled}) {
        grid->SetArrowPictures(invisible, invisible);
        grid->SetHeaderArrow(0, SortOrder::Ascending);
    }
    const QImage withText = HeaderOf(titled);
    const QImage without = HeaderOf(untitled);
    const int right = titled.columnWidth(0) - 4;
    const QRect picture(right - 8, 0, 8, withText.height());
    EXPECT_EQ(withText.copy(picture), without.copy(picture));
    EXPECT_NE(withText, without);

    titled.SetHeaderArrow(0, {});
    EXPECT_NE(HeaderOf(titled).copy(picture), without.copy(picture)); // the text is back there
}

TEST(GridLook, WithTheHeaderAsTheCurrentRowNothingIsMarked)
{
    clsGrid grid;
    Bind(grid, u"Date"_s);
    grid.SetRow(1);
    grid.SelectWholeRow();
    EXPECT_TRUE(grid.selectionModel()->hasSelection());
    grid.SetRow(0);
    EXPECT_FALSE(grid.selectionModel()->hasSelection());
    EXPECT_EQ(grid.Row(), 0);
}

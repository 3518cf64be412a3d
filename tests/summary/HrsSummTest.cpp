// The hours summary: its rules on real tables, and its dialog with real keys and clicks.

#include "platform/clsGrid.h"
#include "platform/clsRunTimeError.h"
#include "platform/Twips.h"
#include "store/FieldText.h"
#include "store/StoreErrors.h"
#include "summary/frmHrsSumm.h"
#include "tests/support/Modal.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QScopeGuard>
#include <QStyle>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int Position = 7; // the hidden column with the day's record position

const QDate Monday(2026, 3, 9);

constexpr const char *TotalBoxes[]
    = {"txtBillable", "txtNoCharge", "txtDoNotBill", "txtTotHours", "txtAmount"};

Currency Hours(int quarters)
{
    return Currency::FromScaled(quarters * 2500);
}

EntryRecord Entry(const QString &activity, QDate date, int quarters, const QString &status,
    const QString &customer = u"0100"_s, const QString &project = {})
{
    EntryRecord entry
        = SampleEntry(customer, project, activity, date, Hours(quarters), Currency::FromWhole(100));
    entry.Billing_Status = status;
    return entry;
}

/// A company with these entries, opened, and the module on it.
class HrsSumm : public testing::Test
{
protected:
    void Enter(const std::vector<EntryRecord> &entries)
    {
        SampleCompany company;
        company.Entries = entries;
        m_folder = std::make_unique<SampleFolder>(std::vector{company});
        m_folder->OpenAll();
        m_session.CurrentCompanyCode = company.Code;
        m_module = std::make_unique<modHrsSumm>(m_folder->Tables, m_session, m_filter, m_sort);
        m_form = std::make_unique<frmHrsSumm>(*m_module, m_keys);
    }

    clsGrid &Grid() { return Control<clsGrid>(*m_form, "msgHrsSumm"); }
    QString Total(const char *name) { return Control<QLineEdit>(*m_form, name).text(); }
    QStringList Totals()
    {
        return {Total("txtBillable"), Total("txtNoCharge"), Total("txtDoNotBill"),
            Total("txtTotHours"), Total("txtAmount")};
    }
    /// The visible cells of each row, joined by blanks.
    QStringList Rows()
    {
        QStringList rows;
        for (int row = 1; row < Grid().Rows(); ++row) {
            QStringList cells;
            for (int column = 1; column < Position; ++column)
                cells.append(Grid().TextMatrix(row, column));
            rows.append(cells.join(u' '));
        }
        return rows;
    }
    QStringList Column(int column)
    {
        QStringList cells;
        for (int row = 1; row < Grid().Rows(); ++row)
            cells.append(Grid().TextMatrix(row, column));
        return cells;
    }

    /// Loads the summary and shows it.
    void Show()
    {
        m_form->Load();
        ASSERT_TRUE(ShowActive(*m_form));
    }
    void ClickHeader(int column)
    {
        QHeaderView &header = *Grid().horizontalHeader();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
            QPoint(header.sectionViewportPosition(column) + 20, header.height() / 2));
    }
    void ClickRow(int row)
    {
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {},
            QPoint(20, Grid().rowViewportPosition(row - 1) + 5));
    }
    QStringList MarkedRow()
    {
        const QModelIndexList marked = Grid().selectionModel()->selectedRows(1);
        QStringList dates;
        for (const QModelIndex &index : marked)
            dates.append(index.data().toString());
        return dates;
    }
    int RightEnd(const QWidget &control) const
    {
        return control.mapTo(m_form.get(), QPoint(control.width(), 0)).x();
    }
    /// Of the column that the total is of.
    int RightEndOfColumn(const char *total)
    {
        const auto place = std::find_if(std::begin(TotalBoxes), std::end(TotalBoxes),
            [&](const char *name) { return std::string_view(name) == total; });
        const int column = 2 + static_cast<int>(place - std::begin(TotalBoxes));
        return Grid().viewport()->mapTo(m_form.get(), QPoint()).x()
            + Grid().columnViewportPosition(column) + Grid().columnWidth(column);
    }
    /// Neither its beginning nor its end is outside of the box.
    static void ExpectWholeText(const QLineEdit &box)
    {
        const int frame = box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &box);
        EXPECT_LE(box.fontMetrics().horizontalAdvance(box.text()) + 2 * frame + 4, box.width())
            << box.objectName().toStdString() << ": " << box.text().toStdString();
    }
    QString ScratchFile() const { return m_folder->Path() + u"/ABCHoursSummary-WkLg.db"_s; }

    std::unique_ptr<SampleFolder> m_folder;
    SessionState m_session;
    FilterState m_filter;
    SortState m_sort;
    clsRecordedKeys m_keys;
    std::unique_ptr<modHrsSumm> m_module;
    std::unique_ptr<frmHrsSumm> m_form; // closes its table before the folder goes
};

/// Ten days, the hours of which tell them apart, entered in another order than their dates.
std::vector<EntryRecord> TenDays()
{
    std::vector<EntryRecord> entries;
    for (const int day : {7, 2, 9, 0, 5, 3, 8, 1, 6, 4})
        entries.push_back(Entry(u"CONS"_s, Monday.addDays(day), (day * 7) % 10 + 1, u"1"_s));
    return entries;
}

} // namespace

TEST_F(HrsSumm, WithoutTimeEntriesTheGridIsEmptyAndEveryTotalIsZero)
{
    m_sort = {6, 2};
    Enter({});
    m_form->Load();
    EXPECT_EQ(Grid().Rows(), 1);
    EXPECT_THAT(Totals(), testing::Each(u"0.00"_s));
    EXPECT_EQ(m_sort.SortColumn, 6); // nothing is shown as sorted
    EXPECT_EQ(m_sort.SortDirection, 2);
}

TEST_F(HrsSumm, TwoStatusesOfOneDayMakeOneRow)
{
    Enter({Entry(u"CONS"_s, Monday, 10, u"1"_s), Entry(u"CONS"_s, Monday, 3, u"3"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 2.50 0.00 0.75 3.25 325.00"_s));
    EXPECT_THAT(Totals(), ElementsAre(u"2.50"_s, u"0.00"_s, u"0.75"_s, u"3.25"_s, u"325.00"_s));
}

TEST_F(HrsSumm, EachStatusHasItsColumnAndDaysAscend)
{
    Enter({Entry(u"CONS"_s, Monday.addYears(1), 4, u"1"_s),
        Entry(u"CONS"_s, Monday.addDays(1), 8, u"2"_s), Entry(u"CONS"_s, Monday, 12, u"3"_s),
        Entry(u"CONS"_s, Monday.addDays(1), 2, u"2"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(),
        ElementsAre(u"03/09/2026 0.00 0.00 3.00 3.00 300.00"_s,
            u"03/10/2026 0.00 2.50 0.00 2.50 250.00"_s,
            u"03/09/2027 1.00 0.00 0.00 1.00 100.00"_s));
    EXPECT_THAT(Column(0), ElementsAre(u"20260309"_s, u"20260310"_s, u"20270309"_s));
    EXPECT_THAT(Column(Position), ElementsAre(u"0"_s, u"1"_s, u"2"_s));
    EXPECT_THAT(Totals(), ElementsAre(u"1.00"_s, u"2.50"_s, u"3.00"_s, u"6.50"_s, u"650.00"_s));
}

TEST_F(HrsSumm, AnExpenseChangesNoTotalNotEvenTheAmount)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s), Entry(u"MILES"_s, Monday, 40, u"1"_s),
        Entry(u"MEALS"_s, Monday.addDays(1), 40, u"3"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 1.00 0.00 0.00 1.00 100.00"_s));
    EXPECT_THAT(Totals(), ElementsAre(u"1.00"_s, u"0.00"_s, u"0.00"_s, u"1.00"_s, u"100.00"_s));
}

TEST_F(HrsSumm, AFilterOnACustomerCountsThatCustomerOnly)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s), Entry(u"CONS"_s, Monday, 8, u"1"_s, u"0200"_s)});
    m_filter.AppliedFilterCustomer = u"0200"_s;
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 2.00 0.00 0.00 2.00 200.00"_s));
}

TEST_F(HrsSumm, FiltersOnProjectAndActivityCountExactly)
{
    Enter({Entry(u"CONS"_s, Monday, 1, u"1"_s, u"0100"_s, u"AUDIT"_s),
        Entry(u"TRAIN"_s, Monday, 2, u"1"_s, u"0100"_s, u"AUDIT"_s),
        Entry(u"TRAIN"_s, Monday, 4, u"1"_s, u"0100"_s, u"MOVE"_s),
        Entry(u"TRAIN"_s, Monday, 8, u"1"_s, u"0100"_s, u"audit"_s)});
    m_filter.AppliedFilterProject = u"AUDIT"_s;
    m_form->Load();
    EXPECT_THAT(Column(2), ElementsAre(u"0.75"_s));
    m_filter.AppliedFilterActivity = u"TRAIN"_s;
    m_form->Load();
    EXPECT_THAT(Column(2), ElementsAre(u"0.50"_s));
    m_filter.AppliedFilterProject.clear();
    m_form->Load();
    EXPECT_THAT(Column(2), ElementsAre(u"3.50"_s));
}

TEST_F(HrsSumm, HalfAnHourShowsAZeroBeforeTheSign)
{
    EXPECT_EQ(HoursText(Hours(2)), u"0.50"_s);
    EXPECT_EQ(HoursText(Currency() - Hours(2)), u"-0.50"_s);
    EXPECT_EQ(HoursText(Currency::FromWhole(1234567)), u"1234567.00"_s);
}

TEST_F(HrsSumm, TheDecimalSignIsTheSystems)
{
    const QLocale before;
    const auto restored = qScopeGuard([&] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German));
    Enter({Entry(u"CONS"_s, Monday, 6, u"1"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 1,50 0,00 0,00 1,50 150,00"_s));
    EXPECT_EQ(Total("txtAmount"), u"150,00"_s);
}

TEST_F(HrsSumm, AnUnknownStatusCountsTheHoursOfTheEntryBeforeAgain)
{
    // The split is not reset: the second entry counts two no-charge hours, not its own three.
    Enter({Entry(u"CONS"_s, Monday, 8, u"2"_s), Entry(u"CONS"_s, Monday.addDays(1), 12, u""_s),
        Entry(u"CONS"_s, Monday.addDays(2), 4, u"1"_s),
        Entry(u"CONS"_s, Monday.addDays(3), 16, u"9"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(),
        ElementsAre(u"03/09/2026 0.00 2.00 0.00 2.00 200.00"_s,
            u"03/10/2026 0.00 2.00 0.00 2.00 300.00"_s, u"03/11/2026 1.00 0.00 0.00 1.00 100.00"_s,
            u"03/12/2026 1.00 0.00 0.00 1.00 400.00"_s));
}

TEST_F(HrsSumm, TheSplitPassesOverEntriesThatAreNotCounted)
{
    Enter({Entry(u"CONS"_s, Monday, 8, u"2"_s), Entry(u"MILES"_s, Monday, 4, u"1"_s),
        Entry(u"CONS"_s, Monday, 4, u"1"_s, u"0200"_s),
        Entry(u"CONS"_s, Monday.addDays(1), 12, u"?"_s)});
    m_filter.AppliedFilterCustomer = u"0100"_s;
    m_form->Load();
    EXPECT_THAT(Rows(),
        ElementsAre(u"03/09/2026 0.00 2.00 0.00 2.00 200.00"_s,
            u"03/10/2026 0.00 2.00 0.00 2.00 300.00"_s));
}

TEST_F(HrsSumm, BeforeTheFirstCountedEntryTheSplitIsZeroAtEachBuilding)
{
    Enter({Entry(u"CONS"_s, Monday, 8, u""_s), Entry(u"CONS"_s, Monday, 4, u"1"_s)});
    for (int building = 0; building < 2; ++building) {
        m_form->Load();
        EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 1.00 0.00 0.00 1.00 300.00"_s)) << building;
    }
}

TEST_F(HrsSumm, AnUnknownActivityCountsAsTheNextOne)
{
    // "MA" is followed by "MEALS", an expense; "D" by "MEALS" too; "A" by "CONS".
    Enter({Entry(u"MA"_s, Monday, 4, u"1"_s), Entry(u"A"_s, Monday, 8, u"1"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 2.00 0.00 0.00 2.00 200.00"_s));
}

TEST_F(HrsSumm, AnActivityPastTheLastCountsAsTheRecordReadBefore)
{
    Enter({Entry(u"MILES"_s, Monday, 4, u"1"_s), Entry(u"ZZZ"_s, Monday, 8, u"1"_s),
        Entry(u"CONS"_s, Monday, 12, u"1"_s), Entry(u"ZZZ"_s, Monday, 16, u"1"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 7.00 0.00 0.00 7.00 700.00"_s));
}

TEST_F(HrsSumm, NegativeHoursAreSummedToo)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s), Entry(u"CONS"_s, Monday, -6, u"1"_s)});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 -0.50 0.00 0.00 -0.50 -50.00"_s));
}

TEST_F(HrsSumm, ASumBeyondTheRangeIsAnErrorAndLeavesTheTableClosed)
{
    EntryRecord huge = Entry(u"CONS"_s, Monday, 4, u"1"_s);
    huge.Amount = Currency::FromScaled(std::numeric_limits<qint64>::max());
    Enter({huge, huge});
    EXPECT_EQ(RaisedBy([&] { m_form->Load(); }).Number, RunTimeErrors::Overflow);
    EXPECT_FALSE(m_folder->Tables.HoursSummary.IsOpen());
}

TEST_F(HrsSumm, TheScratchTableStartsEmptyEachTimeAndIsClosedWithTheDialog)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s)});
    HoursSummaryRecord stale;
    stale.Date = WallClock(Monday.addYears(-1));
    BuildDatabase<HoursSummaryRecord>(m_folder->Path(), u"ABCHoursSummary-WkLg"_s, {stale});
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 1.00 0.00 0.00 1.00 100.00"_s));
    EXPECT_TRUE(m_folder->Tables.HoursSummary.IsOpen());
    EXPECT_EQ(m_folder->Tables.HoursSummary.GetRecordCount(), 1);
    PlayModal(*m_form, [&] { QTest::keyClick(m_form.get(), Qt::Key_Escape); });
    EXPECT_FALSE(m_folder->Tables.HoursSummary.IsOpen());
    EXPECT_TRUE(QFile::exists(ScratchFile()));
    EXPECT_THAT(QDir(m_folder->Path()).entryList({u"*-journal"_s, u"*.new"_s}), IsEmpty());
}

TEST_F(HrsSumm, AScratchTableThatCannotBeReplacedIsTheCallersError)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s)});
    ASSERT_TRUE(QDir().mkpath(ScratchFile() + u"/in the way"_s));
    const Raised raised = RaisedBy([&] { m_form->Load(); });
    EXPECT_EQ(raised.Number, StoreErrors::NotDeleted);
    EXPECT_TRUE(raised.Names(ScratchFile()));
    EXPECT_FALSE(m_folder->Tables.HoursSummary.IsOpen());
}

TEST_F(HrsSumm, ColumnsHaveTheirWidthsAndAlignment)
{
    Enter(TenDays());
    m_form->Load();
    EXPECT_TRUE(Grid().isColumnHidden(0));
    EXPECT_TRUE(Grid().isColumnHidden(Position));
    EXPECT_EQ(Grid().columnWidth(1), PixelsFromTwips(960 + 110, Grid()));
    for (int column = 2; column < Position; ++column) {
        EXPECT_EQ(Grid().columnWidth(column), PixelsFromTwips(1160 + 110, Grid()));
        const QVariant right = QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        EXPECT_EQ(Grid().model()->index(0, column).data(Qt::TextAlignmentRole), right);
        EXPECT_EQ(Grid().model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole), right);
    }
    QStringList headers;
    for (int column = 0; column < Grid().Cols(); ++column)
        headers.append(Grid().TextMatrix(0, column));
    EXPECT_THAT(headers,
        ElementsAre(u"Date Hidden"_s, u"Date"_s, u"Billable"_s, u"No Charge"_s, u"Do Not Bill"_s,
            u"Total Hours"_s, u"Amount"_s, u"UniqueID Hidden"_s));
}

TEST_F(HrsSumm, LoadingResetsTheSharedSortStateToDateAscending)
{
    m_sort = {8, 2};
    Enter(TenDays());
    m_form->Load();
    EXPECT_EQ(m_sort.SortColumn, 1);
    EXPECT_EQ(m_sort.SortDirection, 1);
    EXPECT_THAT(MarkedRow(), IsEmpty());
}

TEST_F(HrsSumm, ClickingDateSortsByTheDayAndNotByItsText)
{
    Enter({Entry(u"CONS"_s, QDate(2026, 1, 31), 1, u"1"_s),
        Entry(u"CONS"_s, QDate(2025, 12, 1), 2, u"1"_s),
        Entry(u"CONS"_s, QDate(2026, 2, 1), 3, u"1"_s)});
    Show();
    ClickHeader(1); // it is sorted by date already
    EXPECT_THAT(Column(1), ElementsAre(u"02/01/2026"_s, u"01/31/2026"_s, u"12/01/2025"_s));
    EXPECT_EQ(m_sort.SortDirection, 2);
    ClickHeader(1);
    EXPECT_THAT(Column(1), ElementsAre(u"12/01/2025"_s, u"01/31/2026"_s, u"02/01/2026"_s));
    EXPECT_EQ(m_sort.SortDirection, 1);
    EXPECT_EQ(m_sort.SortColumn, 1);
}

TEST_F(HrsSumm, OtherColumnsSortByTheirNumbers)
{
    Enter(TenDays());
    Show();
    ClickHeader(6);
    QStringList amounts = Column(6);
    EXPECT_EQ(amounts.first(), u"25.00"_s);
    EXPECT_EQ(amounts.last(), u"250.00"_s);
    EXPECT_EQ(m_sort.SortColumn, 6);
    EXPECT_EQ(m_sort.SortDirection, 1);
    ClickHeader(6);
    EXPECT_EQ(Column(6).first(), u"250.00"_s);
    EXPECT_EQ(m_sort.SortDirection, 2);
    ClickHeader(2); // another column ascends again
    EXPECT_EQ(Column(2).first(), u"0.25"_s);
    EXPECT_EQ(m_sort.SortDirection, 1);
}

TEST_F(HrsSumm, TheArrowMovesToTheClickedHeader)
{
    Enter(TenDays());
    Show();
    const auto header = [&] { return Grid().horizontalHeader()->grab().toImage(); };
    const auto section = [&](const QImage &image, int column) {
        return image.copy(Grid().horizontalHeader()->sectionViewportPosition(column), 0,
            Grid().columnWidth(column), image.height());
    };
    const QImage byDate = header();
    ClickHeader(6);
    QTest::mouseMove(&Control<QPushButton>(*m_form, "cmdOK"));
    const QImage byAmount = header();
    EXPECT_NE(section(byAmount, 1), section(byDate, 1));
    EXPECT_NE(section(byAmount, 6), section(byDate, 6));
    EXPECT_EQ(section(byAmount, 4), section(byDate, 4));
    ClickHeader(6);
    QTest::mouseMove(&Control<QPushButton>(*m_form, "cmdOK"));
    EXPECT_NE(section(header(), 6), section(byAmount, 6)); // it points down
}

TEST_F(HrsSumm, SortingKeepsTheClickedDayMarked)
{
    Enter(TenDays());
    Show();
    ClickRow(3);
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/11/2026"_s));
    ClickHeader(1);
    EXPECT_EQ(Grid().Row(), 8);
    EXPECT_EQ(Grid().Col(), 0);
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/11/2026"_s));
    ClickHeader(6);
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/11/2026"_s));
    EXPECT_EQ(Grid().TextMatrix(Grid().Row(), 1), u"03/11/2026"_s);
}

TEST_F(HrsSumm, SortingWithoutAClickedDayMarksNone)
{
    Enter(TenDays());
    Show();
    ClickHeader(6);
    EXPECT_THAT(MarkedRow(), IsEmpty());
    EXPECT_EQ(Grid().Row(), 0);
    EXPECT_EQ(Grid().Col(), Position);
}

TEST_F(HrsSumm, ABuildingForgetsTheClickedDay)
{
    Enter(TenDays());
    Show();
    ClickRow(3);
    m_form->Load();
    ClickHeader(6);
    EXPECT_THAT(MarkedRow(), IsEmpty());
}

TEST_F(HrsSumm, WithoutDaysAHeaderClickDoesNothing)
{
    m_sort = {2, 1};
    Enter({});
    Show();
    ClickHeader(2);
    EXPECT_EQ(m_sort.SortColumn, 2);
    EXPECT_EQ(m_sort.SortDirection, 1);
}

TEST_F(HrsSumm, ArrowKeysMoveTheMarkedRowAndNeverSort)
{
    Enter(TenDays());
    Show();
    QTest::mouseMove(Grid().horizontalHeader()->viewport(), QPoint(30, 5)); // the pointer rests
    QTest::keyClick(m_form.get(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_TRUE(Grid().hasFocus());
    EXPECT_EQ(Grid().Row(), 1); // the header is no row to stand on
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/09/2026"_s));
    QTest::keyClick(&Grid(), Qt::Key_Down);
    QTest::keyClick(&Grid(), Qt::Key_Down);
    QTest::keyClick(&Grid(), Qt::Key_Up);
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/10/2026"_s));
    QTest::keyClick(&Grid(), Qt::Key_Return);
    EXPECT_EQ(m_sort.SortDirection, 1);
    EXPECT_EQ(Column(1).first(), u"03/09/2026"_s);
    EXPECT_TRUE(m_form->isVisible());
}

TEST_F(HrsSumm, AnEmptyGridTakesTheFocusWithoutARow)
{
    Enter({});
    Show();
    Grid().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(Grid().Row(), 0);
}

TEST_F(HrsSumm, ASelectionIsNeverWiderThanOneRow)
{
    Enter(TenDays());
    Show();
    ClickRow(2);
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::ShiftModifier,
        QPoint(20, Grid().rowViewportPosition(4) + 5));
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/13/2026"_s));
    QTest::keyClick(&Grid(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(MarkedRow(), ElementsAre(u"03/14/2026"_s));
}

TEST_F(HrsSumm, ActivatingGivesTheFocusToOK)
{
    Enter(TenDays());
    Show();
    EXPECT_TRUE(Control<QPushButton>(*m_form, "cmdOK").hasFocus());
    Grid().setFocus();
    QWidget other;
    ASSERT_TRUE(ShowActive(other));
    m_form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_form.get()));
    EXPECT_TRUE(Control<QPushButton>(*m_form, "cmdOK").hasFocus());
}

TEST_F(HrsSumm, EnterOnOKCloses)
{
    Enter(TenDays());
    m_form->Load();
    PlayModal(*m_form, [&] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); });
}

TEST_F(HrsSumm, EscapeClosesFromEveryControl)
{
    Enter(TenDays());
    for (const char *name : {"cmdOK", "cmdHelp", "msgHrsSumm", "txtBillable", "txtAmount"}) {
        SCOPED_TRACE(name);
        m_form->Load();
        PlayModal(*m_form, [&] {
            Control<QWidget>(*m_form, name).setFocus();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        });
    }
}

TEST_F(HrsSumm, HelpSendsF1AndLeavesTheDialogOpen)
{
    Enter({});
    Show();
    QTest::mouseClick(&Control<QPushButton>(*m_form, "cmdHelp"), Qt::LeftButton);
    EXPECT_THAT(m_keys.Sent, ElementsAre(u"{F1}"_s));
    EXPECT_TRUE(m_form->isVisible());
}

TEST_F(HrsSumm, TheGridFollowsTheDialogsSize)
{
    Enter(TenDays());
    Show();
    for (const QSize &size : {QSize(600, 420), QSize(900, 700), m_form->minimumSize()}) {
        m_form->resize(size);
        LetEventsRun();
        EXPECT_EQ(m_form->size(), size);
        EXPECT_EQ(Grid().width(), size.width() - PixelsFromTwips(240, *m_form));
        EXPECT_EQ(Grid().height(), static_cast<int>(size.height() / 1.32));
        const QWidget &ok = Control<QPushButton>(*m_form, "cmdOK");
        EXPECT_LE(ok.mapTo(m_form.get(), ok.rect().bottomRight()).y(), size.height());
        EXPECT_GE(Grid().viewport()->width(), Grid().horizontalHeader()->length());
    }
}

TEST_F(HrsSumm, TotalsEndWhereTheirColumnsDoAndCannotBeTyped)
{
    Enter(TenDays());
    Show();
    EXPECT_EQ(Control<QLabel>(*m_form, "lblTotals").text(), u"Totals"_s);
    for (const char *name : TotalBoxes) {
        auto &box = Control<QLineEdit>(*m_form, name);
        EXPECT_EQ(RightEnd(box), RightEndOfColumn(name)) << name;
        EXPECT_LE(box.width(), Grid().columnWidth(2)) << name;
        ExpectWholeText(box);
        EXPECT_TRUE(box.isReadOnly()) << name;
        EXPECT_EQ(box.palette().color(QPalette::Base), box.palette().color(QPalette::Button))
            << name << " looks as if it could be typed in";
        const QString before = box.text();
        QTest::keyClicks(&box, u"9"_s);
        EXPECT_EQ(box.text(), before);
    }
    EXPECT_EQ(m_form->windowTitle(), u"Hours Summary"_s);
    EXPECT_EQ(Control<QPushButton>(*m_form, "cmdHelp").text(), u"Help"_s);
    EXPECT_FALSE(Control<QLabel>(*m_form, "picUp").isVisible());
    EXPECT_FALSE(Control<QLabel>(*m_form, "picDown").isVisible());
}

TEST_F(HrsSumm, TotalsOfTenDigitsAreSeenWhole)
{
    const qint64 tenDigits = 98765432101234; // 9876543210.1234
    std::vector<EntryRecord> entries;
    for (const QString &status : {u"1"_s, u"2"_s, u"3"_s}) {
        entries.push_back(Entry(u"CONS"_s, Monday, 0, status));
        entries.back().Hours = entries.back().Amount = Currency::FromScaled(tenDigits);
    }
    Enter(entries);
    Show();
    EXPECT_THAT(Totals(),
        ElementsAre(u"9876543210.12"_s, u"9876543210.12"_s, u"9876543210.12"_s, u"29629629630.37"_s,
            u"29629629630.37"_s));
    int before = 0;
    for (const char *name : TotalBoxes) {
        const auto &box = Control<QLineEdit>(*m_form, name);
        ExpectWholeText(box);
        EXPECT_GE(RightEnd(box) - box.width(), before) << name << " covers the one before";
        EXPECT_GE(RightEnd(box), RightEndOfColumn(name)) << name;
        EXPECT_EQ(Grid().columnWidth(2), PixelsFromTwips(1160 + 110, Grid()));
        before = RightEnd(box);
    }
    EXPECT_LE(before, m_form->width()) << "the window holds the last one, too";
}

TEST_F(HrsSumm, OneWideTotalMovesNoneBeforeIt)
{
    EntryRecord costly = Entry(u"CONS"_s, Monday, 4, u"1"_s);
    costly.Amount = Currency::FromScaled(98765432101234);
    Enter({costly});
    Show();
    for (const char *name : {"txtBillable", "txtNoCharge", "txtDoNotBill", "txtTotHours"})
        EXPECT_EQ(RightEnd(Control<QLineEdit>(*m_form, name)), RightEndOfColumn(name)) << name;
    ExpectWholeText(Control<QLineEdit>(*m_form, "txtAmount"));
}

TEST_F(HrsSumm, TotalsAreSeenWholeInLargeLetters)
{
    const QFont before = QApplication::font();
    const auto restored = qScopeGuard([&] { QApplication::setFont(before); });
    QFont large = before;
    for (const int points : {9, 16, 24}) {
        SCOPED_TRACE(points);
        large.setPointSize(points);
        QApplication::setFont(large);
        m_form.reset();
        Enter({Entry(u"CONS"_s, Monday, 23742, u"1"_s)});
        Show();
        EXPECT_EQ(Total("txtTotHours"), u"5935.50"_s);
        for (const char *name : TotalBoxes) {
            const auto &box = Control<QLineEdit>(*m_form, name);
            ExpectWholeText(box);
            EXPECT_EQ(RightEnd(box), RightEndOfColumn(name)) << name;
            EXPECT_GE(box.height(), box.fontMetrics().height()) << name;
        }
    }
}

TEST_F(HrsSumm, TotalsFollowAColumnThatIsDraggedWider)
{
    Enter(TenDays());
    Show();
    QHeaderView &header = *Grid().horizontalHeader();
    const QPoint border(
        header.sectionViewportPosition(3) + header.sectionSize(3) - 1, header.height() / 2);
    const int before = RightEnd(Control<QLineEdit>(*m_form, "txtNoCharge"));
    QTest::mousePress(header.viewport(), Qt::LeftButton, {}, border);
    QMouseEvent drag(QEvent::MouseMove, border + QPoint(40, 0),
        header.viewport()->mapToGlobal(border + QPoint(40, 0)), Qt::NoButton, Qt::LeftButton,
        Qt::NoModifier);
    QApplication::sendEvent(header.viewport(), &drag);
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, border + QPoint(40, 0));
    LetEventsRun();
    EXPECT_EQ(RightEnd(Control<QLineEdit>(*m_form, "txtNoCharge")), before + 40);
    for (const char *name : TotalBoxes)
        EXPECT_EQ(RightEnd(Control<QLineEdit>(*m_form, name)), RightEndOfColumn(name)) << name;
}

TEST_F(HrsSumm, EnterInATotalMovesOn)
{
    Enter(TenDays());
    clsProgramKeys keys;
    m_form.reset();
    m_form = std::make_unique<frmHrsSumm>(*m_module, keys);
    Show();
    Control<QLineEdit>(*m_form, "txtBillable").setFocus(Qt::TabFocusReason);
    QStringList visited;
    for (const Qt::Key key :
        {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Return, Qt::Key_Return, Qt::Key_Return}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        LetEventsRun();
        ASSERT_TRUE(m_form->isVisible()) << "Enter has closed the window";
        visited.append(QApplication::focusWidget()->objectName());
    }
    EXPECT_THAT(visited,
        ElementsAre(
            u"txtNoCharge"_s, u"txtDoNotBill"_s, u"txtTotHours"_s, u"txtAmount"_s, u"cmdOK"_s));
    EXPECT_TRUE(m_form->isVisible());
    m_form.reset(); // before the keys
}

TEST_F(HrsSumm, ASecondOpeningShowsWhatIsThereThen)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s), Entry(u"CONS"_s, Monday.addDays(1), 8, u"3"_s)});
    m_form.reset();
    const auto open = [&](const std::function<void()> &steps) {
        m_form = std::make_unique<frmHrsSumm>(*m_module, m_keys);
        m_form->Load();
        PlayModal(*m_form, [&] {
            steps();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        });
        m_form.reset();
    };
    const QStringList rows
        = {u"03/09/2026 1.00 0.00 0.00 1.00 100.00"_s, u"03/10/2026 0.00 0.00 2.00 2.00 200.00"_s};
    open([&] {
        EXPECT_EQ(Rows(), rows);
        EXPECT_THAT(Totals(), ElementsAre(u"1.00"_s, u"0.00"_s, u"2.00"_s, u"3.00"_s, u"300.00"_s));
        ClickRow(2);
        ClickHeader(6);
        ClickHeader(6);
        EXPECT_EQ(Rows().first(), rows.last());
    });
    EXPECT_EQ(m_sort.SortColumn, 6);
    modDBEntr &entries = m_folder->Tables.Entries;
    entries.AddEntry(Entry(u"CONS"_s, Monday, 2, u"2"_s));
    open([&] {
        EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 1.00 0.50 0.00 1.50 150.00"_s, rows.last()));
        EXPECT_THAT(Totals(), ElementsAre(u"1.00"_s, u"0.50"_s, u"2.00"_s, u"3.50"_s, u"350.00"_s));
        EXPECT_EQ(m_sort.SortColumn, 1);
        EXPECT_EQ(m_sort.SortDirection, 1);
        ClickHeader(6);
        EXPECT_THAT(MarkedRow(), IsEmpty()) << "the day clicked before is forgotten";
    });
    EXPECT_FALSE(m_folder->Tables.HoursSummary.IsOpen());
}

TEST_F(HrsSumm, CommaNumbersSortAsNumbers)
{
    const QLocale before;
    const auto restored = qScopeGuard([&] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German));
    Enter({Entry(u"CONS"_s, Monday, 38, u"1"_s), Entry(u"CONS"_s, Monday.addDays(1), 41, u"1"_s),
        Entry(u"CONS"_s, Monday.addDays(2), 399, u"1"_s)});
    Show();
    ClickHeader(2);
    EXPECT_THAT(Column(2), ElementsAre(u"9,50"_s, u"10,25"_s, u"99,75"_s));
}

TEST_F(HrsSumm, AHundredThousandEntriesCostAFewScans)
{
    std::vector<EntryRecord> entries;
    for (int i = 0; i < 100000; ++i)
        entries.push_back(Entry(i % 10 == 0 ? u"MILES"_s : u"CONS"_s, Monday.addDays(i / 50), 5,
            QString::number(1 + i % 3)));
    Enter(entries);
    modDBEntr &table = m_folder->Tables.Entries;
    const auto scan = [&] {
        for (table.MoveFirst(); !table.IsEndOfTable(); table.MoveNext())
            table.ReadEntry(table.Record);
    };
    const auto best = [](const std::function<void()> &work) {
        qint64 least = std::numeric_limits<qint64>::max();
        for (int i = 0; i < 3; ++i) {
            QElapsedTimer timer;
            timer.start();
            work();
            least = std::min(least, timer.nsecsElapsed());
        }
        return least;
    };
    scan(); // brings the table into memory
    const qint64 oneScan = best(scan);
    const qint64 summary = best([&] { m_form->Load(); });
    EXPECT_LT(summary, 15 * oneScan) << summary / 1000 << " and " << oneScan / 1000 << " us";
    EXPECT_EQ(Grid().Rows(), 2001);
    EXPECT_EQ(Total("txtTotHours"), u"112500.00"_s);
}

TEST_F(HrsSumm, OpenedTwiceItCountsEverythingOnce)
{
    Enter({Entry(u"CONS"_s, Monday, 10, u"1"_s), Entry(u"CONS"_s, Monday, 3, u"3"_s)});
    for (int opening = 0; opening < 2; ++opening) {
        m_form->Load();
        EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 2.50 0.00 0.75 3.25 325.00"_s));
        EXPECT_THAT(Totals(), ElementsAre(u"2.50"_s, u"0.00"_s, u"0.75"_s, u"3.25"_s, u"325.00"_s));
    }
}

TEST_F(HrsSumm, OpenedAgainWithoutEntriesItIsAsEmptyAsTheFirstTime)
{
    Enter({Entry(u"CONS"_s, Monday, 10, u"1"_s)});
    m_form->Load();
    m_folder->Tables.Entries.MoveFirst();
    m_folder->Tables.Entries.DeleteRecord();
    m_sort = {6, 2};
    m_form->Load();
    EXPECT_EQ(Grid().Rows(), 1);
    EXPECT_THAT(Totals(), testing::Each(u"0.00"_s));
    EXPECT_EQ(m_sort.SortColumn, 6); // nothing is shown as sorted
    EXPECT_EQ(m_sort.SortDirection, 2);
}

TEST_F(HrsSumm, AnActivityPastTheLastCountsFirstAsTheRecordThatWasReadBeforeTheSummary)
{
    Enter({Entry(u"ZZZ"_s, Monday, 8, u"1"_s), Entry(u"CONS"_s, Monday, 12, u"1"_s)});
    m_folder->Tables.Activities.Record.Expense = u"Y"_s;
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 3.00 0.00 0.00 3.00 300.00"_s));
    m_folder->Tables.Activities.Record.Expense = u"N"_s;
    m_form->Load();
    EXPECT_THAT(Rows(), ElementsAre(u"03/09/2026 5.00 0.00 0.00 5.00 500.00"_s));
}

TEST_F(HrsSumm, TheActivityReadLastIsThatOfTheLastEntry)
{
    Enter({Entry(u"CONS"_s, Monday, 4, u"1"_s), Entry(u"MILES"_s, Monday, 40, u"1"_s),
        Entry(u"CONS"_s, Monday, 4, u"1"_s)});
    m_form->Load();
    EXPECT_EQ(m_folder->Tables.Activities.Record.Activity_Number, u"CONS"_s);
}

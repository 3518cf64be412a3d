#include "summary/modHrsSumm.h"

#include "figures/HoursByDay.h"
#include "summary/HoursColumn.h"

#include <QScopeGuard>

#include <array>
#include <new>

using namespace Qt::StringLiterals;

namespace {

SortOrder OrderOf(qint16 direction)
{
    return direction == 1 ? SortOrder::Ascending : SortOrder::Descending;
}

} // namespace

QString HoursText(Currency value, QChar decimalSign)
{
    return FormatCurrency(value, 2, LeadingZero::Yes, decimalSign);
}

modHrsSumm::modHrsSumm(
    Tables &tables, const SessionState &session, const FilterState &filter, SortState &sort)
    : m_tables(tables)
    , m_session(session)
    , m_filter(filter)
    , m_sort(sort)
{
}

void modHrsSumm::BuildHoursSummary()
{
    auto failed = qScopeGuard([this] { Unload(); });
    OpenEmptyTable();
    AccumulateHours();
    if (FillHoursSummaryGrid())
        BindRecordset();
    if (m_dayCount > 0)
        ShowAsSortedByDate();
    m_rowSelected = false;
    failed.dismiss();
}

void modHrsSumm::Unload()
{
    modDBHrsS &days = m_tables.HoursSummary;
    days.Handle = m_tables.Main.CloseTable(days.Handle);
}

void modHrsSumm::OpenEmptyTable()
{
    modDBMain &main = m_tables.Main;
    modDBHrsS &days = m_tables.HoursSummary;
    const QString name
        = main.CompanyName(m_session.CurrentCompanyCode, DatabasePrefix::HoursSummary);
    days.Handle = main.CloseTable(days.Handle);
    main.DeleteTable(name);
    days.Handle = main.OpenTableOrRaise(name);
    if (!days.IsOpen()) {
        CreateHoursSummaryTable(name);
        days.Handle = main.OpenTableOrRaise(name);
    }
    m_tables.Store.MakeScratch(days.Handle);
}

void modHrsSumm::CreateHoursSummaryTable(const QString &name)
{
    m_tables.Main.CreateHoursSummary(name);
}

void modHrsSumm::AccumulateHours()
{
    modDBHrsS &days = m_tables.HoursSummary;
    m_totals = HoursTotals();
    // Summed up in memory and written once a day: a write for every entry would take far longer
    // than the sums.
    HoursByDay hours(m_tables, m_filter);
    hours.Accumulate();
    RecordStore::Batch batch(m_tables.Store, days.Handle);
    for (const HoursSummaryRecord &day : hours.Days())
        days.AddHoursSummary(day);
    batch.Commit();
    m_tables.Store.SetKeyField(days.Handle, 0);
}

bool modHrsSumm::FillHoursSummaryGrid()
{
    modDBHrsS &days = m_tables.HoursSummary;
    m_dayCount = 0;
    m_decimalSign = QLocale().decimalPoint().at(0);
    try {
        m_recordset = std::make_shared<clsTextRecordSet>(
            QStringList{u"Date Hidden"_s, u"Date"_s, u"Billable"_s, u"No Charge"_s,
                u"Do Not Bill"_s, u"Total Hours"_s, u"Amount"_s, u"UniqueID Hidden"_s});
        for (days.MoveFirst(); !days.IsEndOfTable(); days.MoveNext()) {
            days.ReadHoursSummary(days.Record);
            AddDayRow(days.Record);
        }
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

void modHrsSumm::AddDayRow(const HoursSummaryRecord &day)
{
    const Currency hours = day.Billable + day.NoCharge + day.DoNotBill;
    const QDate calendarDay = day.Date.date();
    const QString dateHidden = calendarDay.toString(u"yyyyMMdd"_s);
    const QString date = calendarDay.toString(u"MM/dd/yyyy"_s);
    const auto text = [&](Currency value) { return HoursText(value, m_decimalSign); };
    const QString billable = text(day.Billable);
    const QString noCharge = text(day.NoCharge);
    const QString doNotBill = text(day.DoNotBill);
    const QString totalHours = text(hours);
    const QString amount = text(day.Amount);
    const QString id = QString::number(m_tables.HoursSummary.GetRecordPosition());
    m_recordset->AddRecord(std::array<QStringView, HoursColumn::Count>{
        dateHidden, date, billable, noCharge, doNotBill, totalHours, amount, id});
    ++m_dayCount;
    m_totals.Billable += day.Billable;
    m_totals.NoCharge += day.NoCharge;
    m_totals.DoNotBill += day.DoNotBill;
    m_totals.TotalHours += hours;
    m_totals.Amount += day.Amount;
}

void modHrsSumm::BindRecordset()
{
    m_grid->SetDataSource(m_recordset);
    SizeHoursSummaryColumns();
    for (int column = HoursColumn::Billable; column <= HoursColumn::Amount; ++column)
        m_grid->SetColAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    m_grid->SetColWidth(HoursColumn::DateHidden, 0);
    m_grid->SetColWidth(HoursColumn::UniqueId, 0);
    m_grid->SetCol(0);
}

void modHrsSumm::SizeHoursSummaryColumns()
{
    for (int column = 0; column < m_grid->Cols(); ++column) {
        const int width
            = column == HoursColumn::Date ? HoursColumn::DateTwips : HoursColumn::NumberTwips;
        m_grid->SetColWidth(column, width + HoursColumn::ExtraTwips);
    }
}

void modHrsSumm::ShowAsSortedByDate()
{
    m_grid->SetHeaderArrow(HoursColumn::Date, SortOrder::Ascending);
    m_sort.SortColumn = HoursColumn::Date;
    m_sort.SortDirection = 1;
}

void modHrsSumm::GridClicked()
{
    if (m_grid->MouseRow() == 0)
        SortHoursSummary();
    else if (m_grid->Row() > 0)
        m_rowSelected = true;
}

void modHrsSumm::GridGotFocus()
{
    if (m_grid->Row() == 0 && m_dayCount > 0)
        m_grid->SetRow(1);
}

void modHrsSumm::SortHoursSummary()
{
    if (m_dayCount == 0)
        return;
    const int clicked = m_grid->MouseCol();
    m_grid->SetCol(HoursColumn::UniqueId);
    const QString selected = m_grid->TextMatrix(m_grid->Row(), HoursColumn::UniqueId);
    m_grid->SetRow(0);
    if (clicked != m_sort.SortColumn) {
        m_grid->SetHeaderArrow(m_sort.SortColumn, {});
        m_sort.SortDirection = 1;
    } else {
        m_sort.SortDirection = m_sort.SortDirection == 1 ? 2 : 1;
    }
    const int sorted = clicked == HoursColumn::Date ? HoursColumn::DateHidden : clicked;
    m_grid->Sort(sorted, OrderOf(m_sort.SortDirection));
    m_grid->SetHeaderArrow(clicked, OrderOf(m_sort.SortDirection));
    m_sort.SortColumn = static_cast<qint16>(clicked);
    if (m_rowSelected)
        SelectDay(selected);
}

void modHrsSumm::SelectDay(const QString &position)
{
    for (int row = 1; row <= m_dayCount; ++row) {
        if (m_grid->TextMatrix(row, HoursColumn::UniqueId).toInt() != position.toInt())
            continue;
        m_grid->SetRow(row);
        m_grid->SetCol(0);
        m_grid->SelectWholeRow();
        return;
    }
}

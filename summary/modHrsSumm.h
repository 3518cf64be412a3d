#pragma once

#include "platform/clsGridView.h"
#include "platform/Currency.h"
#include "session/FilterState.h"
#include "session/SessionState.h"
#include "session/SortState.h"
#include "store/Tables.h"

#include <QLocale>
#include <QString>

#include <memory>

/// Sums over all days of the summary.
struct HoursTotals
{
    Currency Billable;
    Currency NoCharge;
    Currency DoNotBill;
    Currency TotalHours;
    Currency Amount;
};

/// Two decimals, a zero before the decimal sign, which is the system's: "0.50".
QString HoursText(Currency value, QChar decimalSign = QLocale().decimalPoint().at(0));

/// Sums up the time entries of the current company that pass the transaction filter, day by day
/// and by billing status, and shows them in a grid.
///
/// Shape:  the columns of the grid are those of HoursColumn, all text; one row a day.
/// Tables: the scratch table HoursSummary is deleted and made anew at each building, and is open
///         from then until Unload. Entries, Activities and their records in memory are moved over.
/// Errors: those of the record store, and Overflow; the scratch table is then closed again.
class modHrsSumm
{
public:
    /// All outlive it. `sort` is the entry list's too.
    modHrsSumm(
        Tables &tables, const SessionState &session, const FilterState &filter, SortState &sort);

    /// The grid of the dialog that is open; null when there is none.
    void SetGrid(clsGridView *grid) { m_grid = grid; }

    void BuildHoursSummary();
    void Unload(); ///< closes the scratch table; harmless when it is closed

    void GridClicked(); ///< sorts on the header row, else marks the clicked row as selected
    void GridGotFocus();

    const HoursTotals &Totals() const { return m_totals; }

private:
    void OpenEmptyTable();
    void CreateHoursSummaryTable(const QString &name);
    void AccumulateHours();
    bool FillHoursSummaryGrid();
    void AddDayRow(const HoursSummaryRecord &day);
    void BindRecordset();
    void SizeHoursSummaryColumns();
    void ShowAsSortedByDate();
    void SortHoursSummary();
    void SelectDay(const QString &position);

    Tables &m_tables;
    const SessionState &m_session;
    const FilterState &m_filter;
    SortState &m_sort;
    clsGridView *m_grid = nullptr;

    std::shared_ptr<clsTextRecordSet> m_recordset;
    HoursTotals m_totals;
    qint32 m_dayCount = 0; // grid rows
    QChar m_decimalSign; // the system's
    bool m_rowSelected = false;
};

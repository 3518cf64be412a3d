#include "report/ReportTable.h"

using namespace Qt::StringLiterals;

namespace {

class Tabulator
{
public:
    Tabulator(const Report &report, QChar decimalSign)
        : m_report(report)
        , m_decimalSign(decimalSign)
    {
    }

    ReportTable Entries() const
    {
        ReportTable table = Begin(u"Entries"_s);
        const OptionsRecord &terms = m_report.Options;
        table.Columns = {{u"Date"_s, false, 1.15}, {terms.Customer_Term, false, 2.2},
            {terms.Project_Term, false, 2}, {terms.Activity_Term, false, 2}, {u"T/E"_s, false, 0.5},
            {u"Billing Status"_s, false, 1.2}, {u"Hours/Units"_s, true, 1.3}, {u"Rate"_s, true, 1},
            {u"Amount"_s, true, 1.15}, {u"Description"_s, false, 2.8}};
        for (const Report::Entry &entry : m_report.Entries)
            table.Rows.push_back({Day(entry.Date), Named(entry.CustomerCode, entry.Customer),
                Named(entry.ProjectCode, entry.Project), Named(entry.ActivityCode, entry.Activity),
                entry.IsExpense ? u"E"_s : u"T"_s, entry.BillingStatus, Number(entry.Hours),
                entry.ShowsRate ? Number(entry.Rate, 3) : QString(),
                entry.ShowsRate ? Number(entry.Amount) : QString(), entry.Description});
        const Report::EntryTotals &total = m_report.EntriesTotal;
        table.Totals = {Total(u"Time"_s, Number(total.Hours), total.TimeAmount),
            Total(u"Expenses"_s, {}, total.ExpenseAmount), Total(u"Total"_s, {}, total.Amount)};
        table.Empty = u"No entries."_s;
        return table;
    }

    ReportTable Days() const
    {
        ReportTable table = Begin(u"Hours by day"_s);
        table.Columns
            = {{u"Date"_s, false, 1.2}, {u"Billable"_s, true, 1}, {u"No Charge"_s, true, 1},
                {u"Do Not Bill"_s, true, 1}, {u"Total Hours"_s, true, 1}, {u"Amount"_s, true, 1.2}};
        for (const Report::Day &day : m_report.Days)
            table.Rows.push_back(Line(Day(day.Date), day));
        table.Totals = {Line(u"Totals"_s, m_report.DaysTotal)};
        table.Empty = u"No hours."_s;
        return table;
    }

private:
    ReportTable Begin(const QString &what) const
    {
        const CompanyRecord &company = m_report.Company;
        const EmployeeRecord &employee = m_report.Employee;
        ReportTable table;
        table.Title = what + u": "_s + company.Company_Name;
        table.Subtitle = {company.Company_Code + u" \u00b7 "_s + employee.Employee_Number + u' '
            + employee.Employee_Name};
        QStringList restrictions;
        for (const QString &text : m_report.Restrictions)
            restrictions.append(text);
        if (!restrictions.isEmpty())
            table.Subtitle.append(u"Only "_s + restrictions.join(u", "_s));
        return table;
    }

    static QString Day(QDate date) { return date.toString(u"MM/dd/yyyy"_s); }
    static QString Named(const QString &code, const QString &name)
    {
        return code.isEmpty() || name.isEmpty() ? code + name : code + u' ' + name;
    }
    QString Number(Currency value, int decimals = 2) const
    {
        return FormatCurrency(value, decimals, LeadingZero::Yes, m_decimalSign);
    }
    QStringList Line(const QString &first, const Report::Day &day) const
    {
        return {first, Number(day.Billable), Number(day.NoCharge), Number(day.DoNotBill),
            Number(day.Total), Number(day.Amount)};
    }
    QStringList Total(const QString &what, const QString &hours, Currency amount) const
    {
        return {what, {}, {}, {}, {}, {}, hours, {}, Number(amount), {}};
    }

    const Report &m_report;
    QChar m_decimalSign;
};

} // namespace

ReportTable TabulateReport(const Report &report, QChar decimalSign)
{
    const Tabulator tabulator(report, decimalSign);
    return report.Content == ReportContent::Entries ? tabulator.Entries() : tabulator.Days();
}

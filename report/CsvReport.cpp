#include "report/CsvReport.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Both the plain signs and the wide ones, which some programs take for the same.
bool LooksLikeFormula(const QString &text)
{
    return !text.isEmpty() && u"=+-@\t\r\n\uff1d\uff0b\uff0d\uff20"_s.contains(text.at(0));
}

QString Quoted(QString text)
{
    return u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

/// A text of the data, or a heading: always in quotes.
QString Text(const QString &text)
{
    return Quoted(LooksLikeFormula(text) ? u'\'' + text : text);
}

QString Number(Currency value, int decimals = 2)
{
    return FormatCurrency(value, decimals, LeadingZero::Yes);
}

QString Day(QDate date)
{
    return date.toString(u"yyyy-MM-dd"_s);
}

class Csv
{
public:
    void Line(const QStringList &cells) { m_text += cells.join(u',') + u"\r\n"_s; }
    QByteArray Bytes() const { return m_text.toUtf8(); }

private:
    QString m_text;
};

void WriteEntries(const Report &report, bool totals, Csv &csv)
{
    const OptionsRecord &terms = report.Options;
    const QString name = u" Name"_s;
    csv.Line({Text(u"Date"_s), Text(terms.Customer_Term), Text(terms.Customer_Term + name),
        Text(terms.Project_Term), Text(terms.Project_Term + name), Text(terms.Activity_Term),
        Text(terms.Activity_Term + name), Text(u"T/E"_s), Text(u"Billing Status"_s),
        Text(u"Hours/Units"_s), Text(u"Rate"_s), Text(u"Amount"_s), Text(u"Description"_s)});
    for (const Report::Entry &entry : report.Entries) {
        const QString rate = entry.ShowsRate ? Number(entry.Rate, 3) : QString();
        const QString amount = entry.ShowsRate ? Number(entry.Amount) : QString();
        csv.Line({Day(entry.Date), Text(entry.CustomerCode), Text(entry.Customer),
            Text(entry.ProjectCode), Text(entry.Project), Text(entry.ActivityCode),
            Text(entry.Activity), Text(entry.IsExpense ? u"E"_s : u"T"_s),
            Text(entry.BillingStatus), Number(entry.Hours), rate, amount, Text(entry.Description)});
    }
    if (!totals)
        return;
    const auto total = [&](const QString &kind, const QString &hours, Currency amount) {
        QStringList cells(13);
        cells[0] = Text(u"Total"_s);
        cells[7] = kind;
        cells[9] = hours;
        cells[11] = Number(amount);
        csv.Line(cells);
    };
    total(Text(u"T"_s), Number(report.EntriesTotal.Hours), report.EntriesTotal.TimeAmount);
    total(Text(u"E"_s), {}, report.EntriesTotal.ExpenseAmount);
    total({}, {}, report.EntriesTotal.Amount);
}

void WriteDays(const Report &report, bool totals, Csv &csv)
{
    csv.Line({Text(u"Date"_s), Text(u"Billable"_s), Text(u"No Charge"_s), Text(u"Do Not Bill"_s),
        Text(u"Total Hours"_s), Text(u"Amount"_s)});
    const auto line = [&](const QString &first, const Report::Day &day) {
        csv.Line({first, Number(day.Billable), Number(day.NoCharge), Number(day.DoNotBill),
            Number(day.Total), Number(day.Amount)});
    };
    for (const Report::Day &day : report.Days)
        line(Day(day.Date), day);
    if (totals)
        line(Text(u"Total"_s), report.DaysTotal);
}

} // namespace

QByteArray CsvReport(const Report &report, bool totals)
{
    Csv csv;
    if (report.Content == ReportContent::Entries)
        WriteEntries(report, totals, csv);
    else
        WriteDays(report, totals, csv);
    return csv.Bytes();
}

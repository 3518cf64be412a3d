#pragma once

#include "report/Report.h"
#include "tests/support/PrintQt.h"
#include "tests/support/SampleCompany.h"

/// A program folder with a company whose entries the test has chosen.
class ReportFixture
{
public:
    /// Three customers' worth of entries over three days, time and expenses.
    static SampleCompany Company()
    {
        using namespace Qt::StringLiterals;
        SampleCompany company;
        company.Options.Billing_Option_Switch = u"Y"_s;
        company.Employee.Rate_Permission = u"4"_s;
        company.Customers
            = {SampleCustomer(u"0100"_s, u"Acme"_s), SampleCustomer(u"0200"_s, u"Bolt"_s)};
        company.Projects = {SampleProject(u"0100"_s, u"1000"_s, u"Ledger"_s)};
        company.Activities = {SampleActivity(u"CONSULT"_s, u"Consulting"_s),
            SampleExpense(u"MILEAGE"_s, u"Mileage"_s)};
        company.Entries = std::vector<EntryRecord>();
        return company;
    }

    static EntryRecord Entry(QDate date, qint64 hours, qint64 rate, const QString &status,
        const QString &activity = QStringLiteral("CONSULT"),
        const QString &customer = QStringLiteral("0100"))
    {
        EntryRecord entry = SampleEntry(
            customer, {}, activity, date, Currency::FromScaled(hours), Currency::FromScaled(rate));
        entry.Billing_Status = status;
        return entry;
    }

    explicit ReportFixture(const SampleCompany &company)
        : m_folder({company})
    {
        m_folder.CloseAll();
        Request.Folder = m_folder.Path();
    }

    Report Read() const { return ReadReport(Request); }
    QString Folder() const { return m_folder.Path(); }

    ReportRequest Request;

private:
    SampleFolder m_folder;
};

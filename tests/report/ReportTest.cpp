// What a report says: the same values as the windows, and totals that are the sums of them.

#include "report/Report.h"

#include "platform/clsGrid.h"
#include "report/CsvReport.h"
#include "report/ReportTable.h"
#include "store/StoreErrors.h"
#include "summary/modHrsSumm.h"
#include "tests/report/ReportFixture.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QDate Monday(2026, 3, 9);
const QDate Tuesday(2026, 3, 10);
const QDate Wednesday(2026, 3, 11);

SampleCompany WithEntries(const std::vector<EntryRecord> &entries)
{
    SampleCompany company = ReportFixture::Company();
    company.Entries = entries;
    return company;
}

qint64 Scaled(Currency value)
{
    return value.Scaled();
}

} // namespace

TEST(ReportOfEntries, OrdersThemByDateAndNamesTheirCodes)
{
    EntryRecord late = ReportFixture::Entry(Tuesday, 10000, 1000000, u"1"_s);
    late.Project_Number = u"1000"_s;
    late.Description = u"Later"_s;
    EntryRecord unknown = ReportFixture::Entry(Monday, 20000, 0, u"2"_s, u"GONE"_s, u"0200"_s);
    unknown.Project_Number = u"9"_s;
    const Report report = ReportFixture(WithEntries({late, unknown})).Read();

    ASSERT_EQ(report.Entries.size(), 2);
    const Report::Entry &first = report.Entries[0];
    EXPECT_EQ(first.Date, Monday);
    EXPECT_EQ(first.CustomerCode, u"0200"_s);
    EXPECT_EQ(first.Customer, u"Bolt"_s);
    EXPECT_EQ(first.Project, u"*** invalid ***"_s);
    EXPECT_EQ(first.Activity, u"*** invalid ***"_s);
    EXPECT_EQ(first.BillingStatus, u"No Charge"_s);
    const Report::Entry &second = report.Entries[1];
    EXPECT_EQ(second.Project, u"Ledger"_s);
    EXPECT_EQ(second.Activity, u"Consulting"_s);
    EXPECT_EQ(second.Description, u"Later"_s);
}

TEST(ReportOfEntries, TakesAnUnknownActivityForWhatTheEntryBeforeItWas)
{
    const auto entries = {ReportFixture::Entry(Monday, 10000, 4250, u"1"_s, u"MILEAGE"_s),
        ReportFixture::Entry(Tuesday, 10000, 0, u"1"_s, u"GONE"_s)};
    ReportFixture fixture(WithEntries(entries));
    EXPECT_TRUE(fixture.Read().Entries[1].IsExpense);
    fixture.Request.From = Tuesday; // also when the one before it is not reported
    ASSERT_EQ(fixture.Read().Entries.size(), 1);
    EXPECT_TRUE(fixture.Read().Entries[0].IsExpense);
}

TEST(ReportOfEntries, KeepsRatesFromThoseWhoMayNotSeeThem)
{
    SampleCompany company = WithEntries({ReportFixture::Entry(Monday, 10000, 1000000, u"1"_s),
        ReportFixture::Entry(Monday, 20000, 4250, u"1"_s, u"MILEAGE"_s)});
    company.Employee.Rate_Permission = u"1"_s;
    Report report = ReportFixture(company).Read();
    EXPECT_FALSE(report.Entries[0].ShowsRate);
    EXPECT_TRUE(report.Entries[1].ShowsRate);
    EXPECT_EQ(Scaled(report.EntriesTotal.TimeAmount), 0);
    EXPECT_EQ(Scaled(report.EntriesTotal.Amount), 8500);

    company.Employee.Rate_Permission = u"4"_s;
    company.Options.Billing_Option_Switch = u"N"_s;
    report = ReportFixture(company).Read();
    EXPECT_FALSE(report.Entries[0].ShowsRate);

    company.Options.Billing_Option_Switch = u"Y"_s;
    report = ReportFixture(company).Read();
    EXPECT_TRUE(report.Entries[0].ShowsRate);
    EXPECT_EQ(Scaled(report.EntriesTotal.TimeAmount), 1000000);
}

TEST(ReportOfEntries, AddsUpExactValues)
{
    // Each amount shows as 0.01; their sum is 0.015.
    std::vector<EntryRecord> entries;
    for (int i = 0; i < 3; ++i) {
        EntryRecord entry = ReportFixture::Entry(Monday, 50, 0, u"1"_s);
        entry.Amount = Currency::FromScaled(50);
        entries.push_back(entry);
    }
    const Report report = ReportFixture(WithEntries(entries)).Read();
    EXPECT_EQ(Scaled(report.EntriesTotal.Hours), 150);
    EXPECT_EQ(Scaled(report.EntriesTotal.TimeAmount), 150);
    EXPECT_EQ(Scaled(report.DaysTotal.Billable), 150);
    EXPECT_EQ(Scaled(report.DaysTotal.Amount), 150);
}

TEST(ReportTotals, AreTheSameEverywhereForTheSameHours)
{
    // Exactly 0.024 hours. Added up as the entries show them they would be 0.04, as the days show
    // them 0.03.
    const SampleCompany company = WithEntries({ReportFixture::Entry(Monday, 50, 10000, u"1"_s),
        ReportFixture::Entry(Monday, 50, 10000, u"1"_s),
        ReportFixture::Entry(Monday, 40, 10000, u"1"_s),
        ReportFixture::Entry(Tuesday, 50, 10000, u"1"_s),
        ReportFixture::Entry(Wednesday, 50, 10000, u"1"_s)});
    ReportFixture fixture(company);
    const auto lastLine = [&](ReportContent content) {
        fixture.Request.Content = content;
        return CsvReport(fixture.Read(), true).trimmed().split('\n');
    };
    const QList<QByteArray> entries = lastLine(ReportContent::Entries);
    EXPECT_EQ(entries.at(entries.size() - 3), "\"Total\",,,,,,,\"T\",,0.02,,0.02,\r");
    EXPECT_EQ(entries.last(), "\"Total\",,,,,,,,,,,0.02,");
    EXPECT_EQ(lastLine(ReportContent::Days).last(), "\"Total\",0.02,0.00,0.00,0.02,0.02");

    fixture.Request.Content = ReportContent::Entries;
    const ReportTable ofEntries = TabulateReport(fixture.Read(), u'.');
    EXPECT_EQ(ofEntries.Totals.at(0).at(6), u"0.02"_s);
    EXPECT_EQ(ofEntries.Totals.at(2).at(8), u"0.02"_s);
    fixture.Request.Content = ReportContent::Days;
    EXPECT_THAT(TabulateReport(fixture.Read(), u'.').Totals.at(0),
        ElementsAre(u"Totals"_s, u"0.02"_s, u"0.00"_s, u"0.00"_s, u"0.02"_s, u"0.02"_s));

    SampleFolder folder({company});
    folder.OpenAll();
    SessionState session;
    session.CurrentCompanyCode = company.Code;
    const FilterState filter;
    SortState sort;
    modHrsSumm summary(folder.Tables, session, filter, sort);
    clsGrid grid;
    summary.SetGrid(&grid);
    summary.BuildHoursSummary();
    EXPECT_EQ(HoursText(summary.Totals().TotalHours, u'.'), u"0.02"_s);
    EXPECT_EQ(HoursText(summary.Totals().Amount, u'.'), u"0.02"_s);
    summary.Unload();
    summary.SetGrid(nullptr);
}

TEST(ReportTotals, RoundHalfAwayFromZero)
{
    // 5,935.875 hours, and as many less.
    for (const qint64 sign : {1, -1}) {
        const ReportFixture fixture(
            WithEntries({ReportFixture::Entry(Monday, sign * 29679350, 0, u"1"_s),
                ReportFixture::Entry(Tuesday, sign * 29679400, 0, u"1"_s)}));
        const ReportTable table = TabulateReport(fixture.Read(), u'.');
        EXPECT_EQ(table.Totals.at(0).at(6), sign > 0 ? u"5935.88"_s : u"-5935.88"_s);
    }
}

TEST(ReportOfEntries, CountsHoursOfTimeOnly)
{
    const auto entries = {ReportFixture::Entry(Monday, 15000, 1000000, u"1"_s),
        ReportFixture::Entry(Monday, 1200000, 4250, u"1"_s, u"MILEAGE"_s)};
    const Report report = ReportFixture(WithEntries(entries)).Read();
    EXPECT_EQ(Scaled(report.EntriesTotal.Hours), 15000);
    EXPECT_EQ(Scaled(report.EntriesTotal.TimeAmount), 1500000);
    EXPECT_EQ(Scaled(report.EntriesTotal.ExpenseAmount), 510000);
    EXPECT_EQ(Scaled(report.EntriesTotal.Amount), 2010000);
}

TEST(ReportFilter, TakesRangeAndCodesTogether)
{
    std::vector<EntryRecord> entries;
    for (const QDate &day : {Monday, Tuesday, Wednesday}) {
        entries.push_back(ReportFixture::Entry(day, 10000, 0, u"1"_s));
        entries.push_back(ReportFixture::Entry(day, 20000, 0, u"1"_s, u"CONSULT"_s, u"0200"_s));
        entries.push_back(ReportFixture::Entry(day, 30000, 0, u"1"_s, u"MILEAGE"_s));
    }
    entries[0].Project_Number = u"1000"_s;
    struct Case
    {
        const char *Name;
        QDate From;
        QDate To;
        QString Customer;
        QString Project;
        QString Activity;
        size_t Entries;
        size_t Days;
    };
    const std::vector<Case> cases = {
        {"all", {}, {}, {}, {}, {}, 9, 3},
        {"from", Tuesday, {}, {}, {}, {}, 6, 2},
        {"to", {}, Tuesday, {}, {}, {}, 6, 2},
        {"one day", Tuesday, Tuesday, {}, {}, {}, 3, 1},
        {"no day", Wednesday.addDays(1), {}, {}, {}, {}, 0, 0},
        {"customer", {}, {}, u"0200"_s, {}, {}, 3, 3},
        {"project", {}, {}, {}, u"1000"_s, {}, 1, 1},
        {"activity", {}, {}, {}, {}, u"MILEAGE"_s, 3, 0},
        {"all of them", Monday, Monday, u"0100"_s, u"1000"_s, u"CONSULT"_s, 1, 1},
        {"case counts", {}, {}, {}, {}, u"consult"_s, 0, 0},
        {"an unknown code", {}, {}, u"0300"_s, {}, {}, 0, 0},
    };
    ReportFixture fixture(WithEntries(entries));
    for (const Case &one : cases) {
        fixture.Request.From = one.From;
        fixture.Request.To = one.To;
        fixture.Request.Customer = one.Customer;
        fixture.Request.Project = one.Project;
        fixture.Request.Activity = one.Activity;
        const Report report = fixture.Read();
        EXPECT_EQ(report.Entries.size(), one.Entries) << one.Name;
        EXPECT_EQ(report.Days.size(), one.Days) << one.Name;
    }
}

TEST(ReportFilter, IsToldInTheCompanysOwnTerms)
{
    ReportFixture fixture(WithEntries({}));
    fixture.Request.From = Monday;
    fixture.Request.To = Tuesday;
    fixture.Request.Customer = u"0200"_s;
    fixture.Request.Project = u"1000"_s;
    fixture.Request.Activity = u"CONSULT"_s;
    EXPECT_THAT(fixture.Read().Restrictions,
        ElementsAre(u"from 03/09/2026"_s, u"to 03/10/2026"_s, u"Customer 0200"_s, u"Project 1000"_s,
            u"Activity CONSULT"_s));
    fixture.Request = {};
    fixture.Request.Folder = fixture.Folder();
    EXPECT_THAT(fixture.Read().Restrictions, IsEmpty());
}

TEST(ReportOfDays, ShowsEachNumberInItsColumn)
{
    const auto hours = [](int whole) { return Currency::FromWhole(whole); };
    Report report;
    report.Content = ReportContent::Days;
    report.Days = {{Monday, hours(1), hours(2), hours(3), hours(6), hours(400)}};
    report.DaysTotal = {{}, hours(11), hours(12), hours(13), hours(36), hours(1400)};
    const ReportTable table = TabulateReport(report, u',');
    EXPECT_THAT(table.Rows,
        ElementsAre(
            QStringList{u"03/09/2026"_s, u"1,00"_s, u"2,00"_s, u"3,00"_s, u"6,00"_s, u"400,00"_s}));
    EXPECT_THAT(table.Totals,
        ElementsAre(QStringList{
            u"Totals"_s, u"11,00"_s, u"12,00"_s, u"13,00"_s, u"36,00"_s, u"1400,00"_s}));
}

TEST(ReportOfDays, HasTheNumbersOfTheHoursSummary)
{
    std::vector<EntryRecord> entries;
    for (int i = 0; i < 40; ++i)
        entries.push_back(ReportFixture::Entry(Monday.addDays(i * 7 % 9), 1234 * (i + 1), 987654,
            QString::number(i % 5),
            i % 6 == 0       ? u"MILEAGE"_s
                : i % 7 == 0 ? u"GONE"_s
                             : u"CONSULT"_s));
    const SampleCompany company = WithEntries(entries);
    const Report report = ReportFixture(company).Read();

    SampleFolder folder({company});
    folder.OpenAll();
    SessionState session;
    session.CurrentCompanyCode = company.Code;
    const FilterState filter;
    SortState sort;
    modHrsSumm summary(folder.Tables, session, filter, sort);
    clsGrid grid;
    summary.SetGrid(&grid);
    summary.BuildHoursSummary();
    const HoursTotals &totals = summary.Totals();
    EXPECT_EQ(HoursText(report.DaysTotal.Amount), HoursText(totals.Amount));
    ASSERT_EQ(report.Days.size(), 9);
    std::vector<QString> rows;
    for (const Report::Day &day : report.Days)
        rows.push_back(HoursText(day.Billable) + u' ' + HoursText(day.NoCharge) + u' '
            + HoursText(day.DoNotBill) + u' ' + HoursText(day.Total) + u' '
            + HoursText(day.Amount));
    std::vector<QString> shown;
    modDBHrsS &days = folder.Tables.HoursSummary;
    for (days.MoveFirst(); !days.IsEndOfTable(); days.MoveNext()) {
        HoursSummaryRecord day;
        days.ReadHoursSummary(day);
        shown.push_back(HoursText(day.Billable) + u' ' + HoursText(day.NoCharge) + u' '
            + HoursText(day.DoNotBill) + u' '
            + HoursText(day.Billable + day.NoCharge + day.DoNotBill) + u' '
            + HoursText(day.Amount));
    }
    EXPECT_EQ(rows, shown);
    summary.Unload();
    summary.SetGrid(nullptr);
}

TEST(ReportOfACompany, IsThatOfTheOneLastWorkedInUnlessOneIsNamed)
{
    GlobalOptionsRecord global;
    global.Last_Company = u"XYZ"_s;
    SampleFolder folder(
        {SampleCompany(u"ABC"_s, u"Abacus"_s), SampleCompany(u"XYZ"_s, u"Xylo"_s)}, global);
    folder.CloseAll();
    ReportRequest request;
    request.Folder = folder.Path();
    EXPECT_EQ(ReadReport(request).Company.Company_Name, u"Xylo"_s);
    request.Company = u"ABC"_s;
    EXPECT_EQ(ReadReport(request).Company.Company_Name, u"Abacus"_s);
    request.Company = u"abc"_s;
    const Raised raised = RaisedBy([&] { ReadReport(request); });
    EXPECT_EQ(raised.Description, u"There is no company \"abc\"; there are: ABC, XYZ"_s);
}

TEST(ReportOfACompany, WithoutAnEntriesDatabaseIsEmpty)
{
    SampleCompany company = ReportFixture::Company();
    company.Entries.reset();
    const ReportFixture fixture(company);
    const Report report = fixture.Read();
    EXPECT_THAT(report.Entries, IsEmpty());
    EXPECT_THAT(report.Days, IsEmpty());
    EXPECT_FALSE(QFile::exists(fixture.Folder() + u"/ABCEntries-WkLg.db"_s));
}

TEST(ReportOfACompany, NamesADatabaseThatIsMissingOrDamaged)
{
    const ReportFixture fixture(ReportFixture::Company());
    const QString customers = fixture.Folder() + u"/ABCCustomers-WkLg.db"_s;
    ASSERT_TRUE(QFile::resize(customers, 3000));
    Raised raised = RaisedBy([&] { fixture.Read(); });
    EXPECT_EQ(raised.Number, StoreErrors::Damaged);
    EXPECT_TRUE(raised.Names(u"ABCCustomers-WkLg.db"_s)) << raised.Description.toStdString();
    ASSERT_TRUE(QFile::remove(customers));
    raised = RaisedBy([&] { fixture.Read(); });
    EXPECT_EQ(raised.Number, StoreErrors::Incomplete);
    EXPECT_TRUE(raised.Names(customers)) << raised.Description.toStdString();
}

TEST(ReportOfAFolder, ThatIsNotThereOrEmptyIsToldByName)
{
    const QTemporaryDir empty;
    ReportRequest request;
    request.Folder = empty.path();
    EXPECT_TRUE(RaisedBy([&] { ReadReport(request); }).Names(empty.path()));
    request.Folder = empty.filePath(u"nowhere"_s);
    EXPECT_EQ(RaisedBy([&] { ReadReport(request); }).Description,
        u"There is no such folder: "_s + request.Folder);
    EXPECT_THAT(QDir(empty.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), IsEmpty());
}

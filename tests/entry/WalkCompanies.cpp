#include "tests/entry/WindowWalk.h"

using namespace Qt::StringLiterals;

namespace {

struct Kind
{
    const char *RatePermission;
    const char *Setting;
    const char *BillingSwitch;
    const char *Approval;
    const char *LocksApproved;
    const char *Expenses;
    const char *ProjectRequired;
};

constexpr std::array<Kind, WindowWalk::Kinds> AllKinds = {{
    {"4", "1", "Y", "N", "N", "Y", "N"},
    {"4", "3", "Y", "Y", "Y", "Y", "N"},
    {"3", "2", "Y", "N", "N", "N", "N"},
    {"2", "1", "Y", "Y", "N", "Y", "Y"},
    {"1", "1", "Y", "N", "Y", "Y", "N"},
    {"4", "5", "Y", "Y", "Y", "Y", "N"},
    {"4", "1", "N", "N", "N", "N", "Y"},
    {"3", "4", "N", "Y", "N", "Y", "N"},
}};

constexpr Currency Money(qint64 tenThousandths)
{
    return Currency::FromScaled(tenThousandths);
}

EntryRecord Entry(const char *customer, const char *project, const char *activity, int day,
    qint64 hours, qint64 rate, const QString &description)
{
    return SampleEntry(QLatin1String(customer), QLatin1String(project), QLatin1String(activity),
        QDate(2026, 2, day), Money(hours), Money(rate), description);
}

std::vector<EntryRecord> Entries()
{
    std::vector<EntryRecord> entries = {Entry("ACME", "P1", "CONS", 2, 75000, 1000000, u"first"_s),
        Entry("BETA", "P1", "CONS", 3, 15000, 800000, u"A & B"_s),
        Entry("ACME", "", "MILE", 4, 1200000, 3000, u"to the \"site\""_s),
        Entry("BETA", "", "MEAL", 4, 10000, 255000, u"lunch"_s),
        Entry("ACME", "P2", "TRAIN", 5, 20000, 0, u"not billed"_s),
        Entry("GAMMA", "", "FREE", 9, 5000, 0, u"no charge"_s),
        Entry("BETA", "P9", "CONS", 9, 40000, 500000, u"a project that is gone"_s),
        Entry("ACME", "P1", "GONE", 10, 10000, 900000, u"an activity that is gone"_s),
        Entry("ACME", "P1", "CONS", 11, 32500, 1000000, u"approved"_s),
        Entry("ACME", "P1", "CONS", 28, 99900, 1000000, u"on hold"_s),
        Entry("BETA", "P2", "CONS", 1, 60000, 1000000, u"with a multiplier"_s),
        Entry("ACME", "P1", "CONS", 2, 10000, 1000000, u"first"_s),
        Entry("BETA", "P1", "DEV", 2, 5000, 0, u"without a date"_s)};
    entries.back().Date = {};
    entries[1].Billing_Option = u"4"_s;
    entries[0].Billing_Option = u"6"_s;
    entries[4].Billing_Status = u"2"_s;
    entries[4].Billing_Option = u"0"_s;
    entries[5].Billing_Option = u"2"_s;
    entries[3].Billing_Status = u"3"_s;
    entries[3].Reimburse = u"Y"_s;
    entries[8].Mgmt_Approval = u"JRD"_s;
    entries[9].On_Hold = u"Y"_s;
    entries[9].Sec_Approval = u"ABC"_s;
    entries[10].Billing_Option = u"6"_s;
    entries[10].Multiplier_Number = u"05"_s;
    entries[10].Multiplier_Factor = Money(12500);
    entries[10].Amount = Money(60000) * Money(1000000) * Money(12500);
    return entries;
}

SampleCompany CompanyOfKind(int number, const QString &code, const QString &name)
{
    const Kind &kind = AllKinds.at(static_cast<size_t>(number));
    SampleCompany company(code, name);
    company.Options.Billing_Option_Setting = QString::fromLatin1(kind.Setting);
    company.Options.Billing_Option_Switch = QString::fromLatin1(kind.BillingSwitch);
    company.Options.Lock_Approved = QString::fromLatin1(kind.LocksApproved);
    company.Options.Expenses = QString::fromLatin1(kind.Expenses);
    company.Options.Project_Required = QString::fromLatin1(kind.ProjectRequired);
    company.Employee.Rate_Permission = QString::fromLatin1(kind.RatePermission);
    company.Employee.Approval = QString::fromLatin1(kind.Approval);
    company.Employee.Mgmt_Approver = u"Y"_s;
    company.Customers = {SampleCustomer(u"ACME"_s, u"Acme"_s, u"01"_s, Money(1100000)),
        SampleCustomer(u"BETA"_s, u"Beta & Sons"_s, u"02"_s),
        SampleCustomer(u"GAMMA"_s, u"Gamma"_s, u"01"_s, {}, u"Y"_s),
        SampleCustomer(u"DELTA"_s, u"Delta"_s, u"99"_s)};
    company.Projects = {SampleProject(u"ACME"_s, u"P1"_s, u"Acme one"_s, Money(1200000)),
        SampleProject(u"ACME"_s, u"P2"_s, u"Acme two"_s),
        SampleProject(u"BETA"_s, u"P1"_s, u"Beta one"_s, Money(950000))};
    company.Activities = {SampleActivity(u"CONS"_s, u"Consulting"_s, Money(1000000)),
        SampleActivity(u"DEV"_s, u"Development"_s),
        SampleActivity(u"TRAIN"_s, u"Training"_s, Money(600000), u"2"_s),
        SampleActivity(u"FREE"_s, u"Favor"_s), SampleExpense(u"MILE"_s, u"Mileage"_s, Money(3000)),
        SampleExpense(u"MEAL"_s, u"Meals"_s, {}, u"3"_s)};
    company.Activities[3].No_Charge = u"Y"_s;
    company.Multipliers = {SampleMultiplier(u"05"_s, u"Evening"_s, Money(12500)),
        SampleMultiplier(u"10"_s, u"Sunday"_s, Money(20000)),
        SampleMultiplier(u"A"_s, u"Other"_s, Money(3333))};
    company.Entries = Entries();
    return company;
}

} // namespace

std::vector<SampleCompany> WalkCompanies(int kind)
{
    SampleCompany other = CompanyOfKind((kind + 3) % WindowWalk::Kinds, u"XYZ"_s, u"Xylo"_s);
    other.Entries->resize(2);
    return {CompanyOfKind(kind, u"ABC"_s, u"Abacus"_s), other};
}

#include "store/FieldText.h"
#include "store/PadKey.h"
#include "store/StoreErrors.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Raised.h"
#include "tests/support/SampleCompany.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// A program folder with the two global tables and nothing else.
class AccessModules : public testing::Test
{
protected:
    AccessModules()
        : Modules(m_folder.path())
    {
        Modules.Main.StoreTheCodes(SampleCodes());
    }

    void OpenCompanies(const std::vector<CompanyRecord> &companies)
    {
        BuildDatabase(m_folder.path(), u"Company-WkLg"_s, companies);
        Modules.Company.Handle = Modules.Main.OpenTable(u"Company-WkLg"_s);
    }

    void OpenGlobalOptions()
    {
        const QString name = Modules.Main.GlobalName(DatabasePrefix::GlobalOptions);
        RecordStore::Handle handle = Modules.Main.OpenTable(name);
        if (handle == 0) {
            Modules.Main.CreateGlobalOptions(name);
            handle = Modules.Main.OpenTable(name);
        }
        Modules.GlobalOptions.TakeHandle(handle);
    }

    Raised Failure(const QString &name) const
    {
        for (const modDBMain::Failure &failure : Modules.Main.Failures()) {
            if (failure.Name == name)
                return {failure.Error.Number(), failure.Error.Description()};
        }
        return {};
    }

    QStringList Files() const { return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir m_folder;
    Tables Modules;
};

CompanyRecord Company(const QString &code)
{
    return SampleCompanyRecord(code, u"Name of "_s + code);
}

/// Writes the record, closes, opens and reads it again.
template <class Record>
Record RoundTrip(const Record &record)
{
    QTemporaryDir folder;
    BuildDatabase<Record>(folder.path(), u"T"_s, {record});
    RecordStore store;
    store.SetCreator(CodeNumber(u"WkLg"_s));
    const RecordStore::Handle handle
        = store.OpenDatabase(1, folder.filePath(u"T"_s), 0, 0, 0, 0, 3);
    Record read;
    EXPECT_TRUE(store.ReadRecord(handle, read));
    return read;
}

/// Gives every member a value of its own, so that no two can be taken for each other.
template <class Record>
Record Distinct()
{
    Record record;
    int number = 0;
    const auto fill = [&](auto &member) {
        ++number;
        using Member = std::remove_cvref_t<decltype(member)>;
        if constexpr (std::is_same_v<Member, QString>)
            member = u"member %1 é"_s.arg(number);
        else if constexpr (std::is_same_v<Member, QDateTime>)
            member = WallClock(QDate(2024, 2, number), QTime(1, 2, number));
        else
            member = Currency::FromScaled(number * -12345);
    };
    std::apply([&](auto &...member) { (fill(member), ...); }, record.Fields());
    return record;
}

template <class Record>
class RecordStructure : public testing::Test
{
};
using AllRecords = testing::Types<CompanyRecord, GlobalOptionsRecord, OptionsRecord, EmployeeRecord,
    MultiplierRecord, DivisionRecord, CustomerRecord, ProjectRecord, ActivityRecord, EntryRecord,
    HoursSummaryRecord>;
TYPED_TEST_SUITE(RecordStructure, AllRecords);

} // namespace

TYPED_TEST(RecordStructure, EveryMemberComesBack)
{
    const TypeParam record = Distinct<TypeParam>();
    EXPECT_TRUE(RoundTrip(record).Fields() == record.Fields());
}

TYPED_TEST(RecordStructure, FitsItsSchemaTextMemberForMember)
{
    EXPECT_EQ(ParseSchema(TypeParam::SchemaText).size(),
        std::tuple_size_v<decltype(std::declval<TypeParam &>().Fields())>);
    EXPECT_TRUE(RoundTrip(TypeParam()).Fields() == TypeParam().Fields());
}

TEST_F(AccessModules, TheCodesAreKeptAndMadeNumbers)
{
    EXPECT_EQ(Modules.Main.Codes().Creator, u"WkLg"_s);
    EXPECT_EQ(Modules.Main.Codes().Second, u"KVLM"_s);
    EXPECT_EQ(Modules.Main.Codes().Type, u"DATA"_s);
    EXPECT_EQ(Modules.Main.Folder(), m_folder.path());
    EXPECT_EQ(Modules.Main.GlobalName(DatabasePrefix::Company), u"Company-WkLg"_s);
    EXPECT_EQ(Modules.Main.CompanyName(u"ABC"_s, DatabasePrefix::Entries), u"ABCEntries-WkLg"_s);
}

TEST_F(AccessModules, AMissingTableIsHandleZero)
{
    EXPECT_EQ(Modules.Main.OpenTable(u"Company-WkLg"_s), 0);
    EXPECT_FALSE(Modules.Company.IsOpen());
    EXPECT_EQ(RaisedBy([&] { Modules.Company.MoveFirst(); }).Number, StoreErrors::BadHandle);
}

TEST_F(AccessModules, ClosingAlwaysHandsBackZero)
{
    OpenCompanies({Company(u"ABC"_s)});
    EXPECT_TRUE(Modules.Company.IsOpen());
    Modules.Company.Handle = Modules.Main.CloseTable(Modules.Company.Handle);
    EXPECT_EQ(Modules.Company.Handle, 0);
    Modules.Company.Handle = Modules.Main.CloseTable(Modules.Company.Handle); // twice is harmless
    EXPECT_EQ(Modules.Company.Handle, 0);
}

TEST_F(AccessModules, CreatedTablesAreLeftClosedAndEmpty)
{
    Modules.Main.CreateGlobalOptions(u"GlobalOptions-WkLg"_s);
    Modules.Main.CreateEntries(u"ABCEntries-WkLg"_s);
    Modules.Main.CreateHoursSummary(u"ABCHoursSummary-WkLg"_s);
    EXPECT_EQ(Files(),
        (QStringList{
            u"ABCEntries-WkLg.db"_s, u"ABCHoursSummary-WkLg.db"_s, u"GlobalOptions-WkLg.db"_s}));
    Modules.Entries.Handle = Modules.Main.OpenTable(u"ABCEntries-WkLg"_s);
    Modules.HoursSummary.Handle = Modules.Main.OpenTable(u"ABCHoursSummary-WkLg"_s);
    EXPECT_EQ(Modules.Entries.GetRecordCount(), 0);
    EXPECT_TRUE(Modules.Entries.IsEndOfTable());
    EXPECT_EQ(Modules.HoursSummary.GetRecordCount(), 0);
}

TEST_F(AccessModules, AnExistingTableIsNotCreatedAnew)
{
    Modules.Main.CreateEntries(u"ABCEntries-WkLg"_s);
    Modules.Entries.Handle = Modules.Main.OpenTable(u"ABCEntries-WkLg"_s);
    Modules.Entries.AddEntry(EntryRecord());
    Modules.Main.CreateEntries(u"ABCEntries-WkLg"_s);
    EXPECT_EQ(Failure(u"ABCEntries-WkLg"_s).Number, StoreErrors::AlreadyExists);
    EXPECT_TRUE(Failure(u"ABCEntries-WkLg"_s).Names(u"ABCEntries-WkLg.db"_s));
    EXPECT_EQ(Modules.Entries.GetRecordCount(), 1);
}

TEST_F(AccessModules, DeletingAMissingTableIsNoError)
{
    Modules.Main.CreateHoursSummary(u"ABCHoursSummary-WkLg"_s);
    Modules.Main.DeleteTable(u"ABCHoursSummary-WkLg"_s);
    EXPECT_TRUE(Files().isEmpty());
    Modules.Main.DeleteTable(u"ABCHoursSummary-WkLg"_s);
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(AccessModules, ANameThatCannotBeAFilesNameCannotBeOpened)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(u"A"_s));
    BuildDatabase<EntryRecord>(m_folder.path() + u"/A"_s, u"BEntries-WkLg"_s, {});
    for (const QString &company : {u"A/B"_s, u"A\\B"_s, u"../x"_s, u"/"_s, QString(QChar(u'\0'))}) {
        const QString name = Modules.Main.CompanyName(company, DatabasePrefix::Entries);
        EXPECT_EQ(Modules.Main.OpenTable(name), 0) << name.toStdString();
        Modules.Main.CreateEntries(name);
        EXPECT_EQ(Failure(name).Number, StoreErrors::BadArgument) << name.toStdString();
        Modules.Main.DeleteTable(name);
    }
    EXPECT_TRUE(QFile::exists(m_folder.path() + u"/A/BEntries-WkLg.db"_s));
    const QString tooLong = QString(300, u'x') + u"Entries-WkLg"_s;
    EXPECT_EQ(Modules.Main.OpenTable(tooLong), 0);
    Modules.Main.CreateEntries(tooLong);
    EXPECT_EQ(Failure(tooLong).Number, StoreErrors::Unreadable);
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(AccessModules, ATableOfAnotherCreatorIsNotOurs)
{
    OpenCompanies({Company(u"ABC"_s)});
    Modules.Main.StoreTheCodes({u"Else"_s, u"KVLM"_s, u"DATA"_s});
    EXPECT_EQ(Modules.Main.OpenTable(u"Company-Else"_s), 0);
    EXPECT_EQ(Modules.Main.OpenTable(u"Company-WkLg"_s), 0);
    EXPECT_EQ(Failure(u"Company-WkLg"_s).Number, StoreErrors::ForeignCreator);
}

TEST_F(AccessModules, AFileThatCannotBeOpenedIsHandleZeroWithTheReason)
{
    const QString name = u"Company-WkLg"_s;
    const QString file = RecordStore::FileName(m_folder.filePath(name));
    BuildDatabase(m_folder.path(), name, std::vector{Company(u"ABC"_s)});
    QFile sound(file);
    ASSERT_TRUE(sound.open(QIODevice::ReadOnly));
    const QByteArray bytes = sound.readAll();
    sound.close();
    const auto expectRefused = [&](int number, const char *what) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Modules.Main.OpenTable(name), 0);
        EXPECT_EQ(Failure(name).Number, number);
        EXPECT_TRUE(Failure(name).Names(file));
        const Raised raised = RaisedBy([&] { Modules.Main.OpenTableOrRaise(name); });
        EXPECT_EQ(raised.Number, number);
        EXPECT_TRUE(raised.Names(file));
    };
    for (const auto &[content, number] : {std::pair{QByteArray(), StoreErrors::NotADatabase},
             std::pair{QByteArray("no database"), StoreErrors::NotADatabase},
             std::pair{bytes.left(5000), StoreErrors::Damaged}}) {
        QFile damaged(file);
        ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
        damaged.write(content);
        damaged.close();
        expectRefused(number, content.left(20).constData());
    }
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QDir().mkpath(file));
    expectRefused(StoreErrors::NotADatabase, "a folder");
    ASSERT_TRUE(QDir().rmdir(file));
    ASSERT_TRUE(sound.open(QIODevice::WriteOnly));
    sound.write(bytes);
    sound.close();
    {
        OtherProgram other(file);
        other.Execute(u"BEGIN EXCLUSIVE"_s);
        expectRefused(StoreErrors::Locked, "locked");
    }
    EXPECT_NE(Modules.Main.OpenTable(name), 0);
    EXPECT_TRUE(Modules.Main.Failures().empty()) << "what was opened is no failure";
}

TEST_F(AccessModules, TheCompanyListHoldsTheCodesInTheTablesOrder)
{
    OpenCompanies({Company(u"ZZZ"_s), Company(u"ABC"_s), Company(u"MMM"_s)});
    OpenGlobalOptions();
    QString current = u"MMM"_s;
    EXPECT_EQ(Modules.Company.FillCompanyList(current, Modules.GlobalOptions),
        (QStringList{u"ZZZ"_s, u"ABC"_s, u"MMM"_s}));
    EXPECT_EQ(current, u"MMM"_s); // a company that is chosen stays
}

TEST_F(AccessModules, AnEmptyCompanyTableGivesAnEmptyListAndNoCompany)
{
    OpenCompanies({});
    OpenGlobalOptions();
    QString current;
    EXPECT_TRUE(Modules.Company.FillCompanyList(current, Modules.GlobalOptions).isEmpty());
    EXPECT_EQ(current, QString());
    Modules.GlobalOptions.SaveLastCompany(u"ABC"_s);
    EXPECT_TRUE(Modules.Company.FillCompanyList(current, Modules.GlobalOptions).isEmpty());
    EXPECT_EQ(current, QString());
    EXPECT_EQ(Modules.Company.LoadCurrentCompany(u"ABC"_s), QString());
}

TEST_F(AccessModules, WithoutACurrentCompanyItIsTheOneLastWorkedIn)
{
    OpenCompanies({Company(u"ZZZ"_s), Company(u"ABC"_s)});
    OpenGlobalOptions();
    Modules.GlobalOptions.SaveLastCompany(u"ABC"_s);
    QString current;
    Modules.Company.FillCompanyList(current, Modules.GlobalOptions);
    EXPECT_EQ(current, u"ABC"_s);
}

TEST_F(AccessModules, WithoutEitherItIsTheFirstOne)
{
    OpenCompanies({Company(u"ZZZ"_s), Company(u"ABC"_s)});
    OpenGlobalOptions();
    QString current;
    Modules.Company.FillCompanyList(current, Modules.GlobalOptions);
    EXPECT_EQ(current, u"ZZZ"_s);
}

TEST_F(AccessModules, ALastCompanyThatIsNoLongerListedCountsAsNone)
{
    OpenCompanies({Company(u"ZZZ"_s), Company(u"ABC"_s)});
    OpenGlobalOptions();
    for (const QString &gone :
        {u"GONE"_s, u"ABD"_s, u"zzz"_s, u"AB"_s, u"ABC "_s, u" "_s, u"ZZZZ"_s}) {
        Modules.GlobalOptions.SaveLastCompany(gone);
        QString current;
        Modules.Company.FillCompanyList(current, Modules.GlobalOptions);
        EXPECT_EQ(current, u"ZZZ"_s) << gone.toStdString();
        EXPECT_EQ(Modules.Company.ChooseCompany(Modules.GlobalOptions), u"ZZZ"_s);
    }
}

TEST_F(AccessModules, LoadingTheCurrentCompanyReadsItsRecord)
{
    OpenCompanies({Company(u"ZZZ"_s), Company(u"ABC"_s)});
    EXPECT_EQ(Modules.Company.LoadCurrentCompany(u"ABC"_s), u"Name of ABC"_s);
    EXPECT_EQ(Modules.Company.Record.Company_Code, u"ABC"_s);
    EXPECT_EQ(Modules.Company.GetRecordPosition(), 1);
    EXPECT_EQ(Modules.Company.LoadCurrentCompany(u"abc"_s), QString());
    EXPECT_EQ(Modules.Company.LoadCurrentCompany(u"AB"_s), QString());
    EXPECT_EQ(Modules.Company.LoadCurrentCompany({}), QString());
}

TEST_F(AccessModules, TheFirstSaveAddsTheOneGlobalOptionsRecord)
{
    OpenGlobalOptions();
    EXPECT_EQ(Modules.GlobalOptions.GetRecordCount(), 0);
    EXPECT_EQ(Modules.GlobalOptions.TakeLastCompany(), QString());
    Modules.GlobalOptions.SaveLastCompany(u"ABC"_s);
    EXPECT_EQ(Modules.GlobalOptions.GetRecordCount(), 1);
    Modules.GlobalOptions.SaveLastCompany(u"XYZ"_s);
    EXPECT_EQ(Modules.GlobalOptions.GetRecordCount(), 1);
    EXPECT_EQ(Modules.GlobalOptions.TakeLastCompany(), u"XYZ"_s);
}

TEST_F(AccessModules, SavingTheLastCompanyKeepsTheOtherOptions)
{
    GlobalOptionsRecord stored;
    stored.Last_Company = u"ABC"_s;
    stored.Entries_Exist = u"Y"_s;
    stored.Employee = u"JRD"_s;
    BuildDatabase<GlobalOptionsRecord>(m_folder.path(), u"GlobalOptions-WkLg"_s, {stored});
    OpenGlobalOptions();
    EXPECT_EQ(Modules.GlobalOptions.TakeLastCompany(), u"ABC"_s);
    Modules.GlobalOptions.SaveLastCompany(u"XYZ"_s);

    Tables fresh(m_folder.path());
    fresh.Main.StoreTheCodes(SampleCodes());
    fresh.GlobalOptions.TakeHandle(fresh.Main.OpenTable(u"GlobalOptions-WkLg"_s));
    EXPECT_EQ(fresh.GlobalOptions.Record.Last_Company, u"XYZ"_s);
    EXPECT_EQ(fresh.GlobalOptions.Record.Entries_Exist, u"Y"_s);
    EXPECT_EQ(fresh.GlobalOptions.Record.Employee, u"JRD"_s);
    EXPECT_EQ(fresh.GlobalOptions.GetRecordCount(), 1);
}

TEST_F(AccessModules, TheRecordInMemoryIsThatOfTheTableOpened)
{
    OpenGlobalOptions();
    Modules.GlobalOptions.SaveLastCompany(u"ABC"_s);
    Modules.GlobalOptions.Handle = Modules.Main.CloseTable(Modules.GlobalOptions.Handle);
    EXPECT_EQ(Modules.GlobalOptions.TakeLastCompany(), u"ABC"_s); // it outlives the open table
    Modules.GlobalOptions.TakeHandle(0);
    EXPECT_EQ(Modules.GlobalOptions.TakeLastCompany(), QString());
    OpenGlobalOptions();
    EXPECT_EQ(Modules.GlobalOptions.TakeLastCompany(), u"ABC"_s);
}

TEST_F(AccessModules, GlobalOptionsMoveAsAWholeRecord)
{
    OpenGlobalOptions();
    Modules.GlobalOptions.AddGlobalOptions(Distinct<GlobalOptionsRecord>());
    GlobalOptionsRecord read;
    EXPECT_TRUE(Modules.GlobalOptions.ReadGlobalOptions(read));
    EXPECT_TRUE(read.Fields() == Distinct<GlobalOptionsRecord>().Fields());
    read.Entries_Exist = u"N"_s;
    Modules.GlobalOptions.UpdateGlobalOptions(read);
    GlobalOptionsRecord again;
    EXPECT_TRUE(Modules.GlobalOptions.ReadGlobalOptions(again));
    EXPECT_EQ(again.Entries_Exist, u"N"_s);
    EXPECT_EQ(again.Employee, read.Employee);
}

TEST(AccessModulesOfACompany, LoadOptionsTrimsTheAccountingName)
{
    SampleCompany company;
    company.Options = Distinct<OptionsRecord>();
    company.Options.Accounting_Name = u"   Ledger  90 "_s;
    company.Options.Customer_Term = u" Client "_s;
    company.Options.Sync_Option = u"2"_s;
    SampleFolder folder({company});
    folder.OpenAll();
    modDBOpts &options = folder.Tables.Options;
    options.LoadOptions();
    EXPECT_EQ(options.Working.Accounting_Name, u"Ledger  90"_s);
    EXPECT_EQ(options.Working.Customer_Term, u" Client "_s); // only that one is trimmed
    EXPECT_EQ(options.Working.Sync_Option, u"2"_s);
    EXPECT_TRUE(options.Record.Fields() == company.Options.Fields()); // as it stands in the table
    OptionsRecord expected = company.Options;
    expected.Accounting_Name = u"Ledger  90"_s;
    EXPECT_TRUE(options.Working.Fields() == expected.Fields());
}

TEST(AccessModulesOfACompany, TheSyncOptionIsWrittenBack)
{
    SampleFolder folder;
    folder.OpenAll();
    modDBOpts &options = folder.Tables.Options;
    options.LoadOptions();
    options.Record.Sync_Option = u"3"_s;
    options.UpdateOptions(options.Record);
    folder.OpenAll();
    options.LoadOptions();
    EXPECT_EQ(options.Working.Sync_Option, u"3"_s);
    EXPECT_EQ(options.Working.Customer_Term, u"Customer"_s);
    EXPECT_EQ(options.GetRecordCount(), 1);
}

TEST(AccessModulesOfACompany, LoadEmployeeFillsTheWorkingCopy)
{
    SampleCompany company;
    company.Employee = Distinct<EmployeeRecord>();
    SampleFolder folder({company});
    folder.OpenAll();
    folder.Tables.Employee.LoadEmployee();
    EXPECT_TRUE(folder.Tables.Employee.Working.Fields() == company.Employee.Fields());
    EXPECT_TRUE(folder.Tables.Employee.Record.Fields() == company.Employee.Fields());
}

TEST(AccessModulesOfACompany, EveryReferenceTableReadsItsRecords)
{
    SampleFolder folder;
    folder.OpenAll();
    Tables &tables = folder.Tables;
    CustomerRecord customer;
    EXPECT_TRUE(tables.Customers.Find(0, PadKey(u"0200"_s, KeyWidth::Customer)));
    EXPECT_TRUE(tables.Customers.ReadCustomer(customer));
    EXPECT_EQ(customer.Customer_Name, u"Brightwater Ltd"_s);
    EXPECT_EQ(customer.Division_Number, u"02"_s);
    ProjectRecord project;
    EXPECT_TRUE(tables.Projects.Find(0, ProjectKey(u"0100"_s, u"MOVE"_s)));
    EXPECT_TRUE(tables.Projects.ReadProject(project));
    EXPECT_EQ(project.Project_Name, u"Office move"_s);
    DivisionRecord division;
    EXPECT_TRUE(tables.Divisions.Find(0, PadKey(u"02"_s, KeyWidth::Division)));
    EXPECT_TRUE(tables.Divisions.ReadDivision(division));
    EXPECT_EQ(division.Rate, Currency::FromWhole(75));
    MultiplierRecord multiplier;
    EXPECT_TRUE(tables.Multiplier.Find(0, PadKey(u"2"_s, KeyWidth::Multiplier)));
    EXPECT_TRUE(tables.Multiplier.ReadMultiplier(multiplier));
    EXPECT_EQ(multiplier.Factor, Currency::FromScaled(15000));
    ActivityRecord activity;
    EXPECT_TRUE(tables.Activities.Find(0, PadKey(u"MILES"_s, KeyWidth::Activity)));
    EXPECT_TRUE(tables.Activities.ReadActivity(activity));
    EXPECT_EQ(activity.Unit_Cost, Currency::FromScaled(4500));
    EXPECT_FALSE(tables.Activities.Find(0, u"MILES"_s)); // the unpadded code is no key
    tables.Activities.MoveCursor();
    tables.Activities.MoveNext();
    EXPECT_FALSE(tables.Activities.ReadActivity(activity));
    EXPECT_EQ(activity.Activity_Number, u"MILES"_s); // as it was
}

TEST(AccessModulesOfACompany, EntriesAreAddedChangedAndRead)
{
    SampleFolder folder;
    folder.OpenAll();
    modDBEntr &entries = folder.Tables.Entries;
    const EntryRecord first = SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2024, 3, 1),
        Currency::FromScaled(75000), Currency::FromWhole(80), u"first"_s);
    entries.AddEntry(first);
    entries.AddEntry(Distinct<EntryRecord>());
    EXPECT_EQ(entries.GetRecordPosition(), 1);
    entries.MoveFirst();
    EntryRecord changed = first;
    changed.Description = u"changed"_s;
    entries.UpdateEntry(changed);

    folder.OpenAll();
    EntryRecord read;
    EXPECT_TRUE(entries.ReadEntry(read));
    EXPECT_TRUE(read.Fields() == changed.Fields());
    EXPECT_EQ(read.Amount, Currency::FromWhole(600));
    EXPECT_TRUE(entries.Find(3, Distinct<EntryRecord>().Date));
    EXPECT_TRUE(entries.ReadEntry(read));
    EXPECT_TRUE(read.Fields() == Distinct<EntryRecord>().Fields());
    EXPECT_EQ(entries.GetRecordCount(), 2);
}

TEST(AccessModulesOfACompany, ARefusedWriteLeavesTheEntryAsItWas)
{
    SampleFolder folder;
    folder.OpenAll();
    modDBEntr &entries = folder.Tables.Entries;
    EXPECT_EQ(
        RaisedBy([&] { entries.UpdateEntry(EntryRecord()); }).Number, StoreErrors::BadPosition);
    EXPECT_EQ(
        RaisedBy([&] { entries.WriteEntry(EntryRecord()); }).Number, StoreErrors::NothingBegun);
    entries.AddEntry(Distinct<EntryRecord>());
    EntryRecord bad = Distinct<EntryRecord>();
    bad.Date = WallClock(QDate(12024, 1, 1));
    EXPECT_EQ(RaisedBy([&] { entries.UpdateEntry(bad); }).Number, StoreErrors::BadRecord);
    EXPECT_EQ(RaisedBy([&] { entries.AddEntry(bad); }).Number, StoreErrors::BadRecord);
    EntryRecord read;
    EXPECT_TRUE(entries.ReadEntry(read));
    EXPECT_TRUE(read.Fields() == Distinct<EntryRecord>().Fields());
    EXPECT_EQ(entries.GetRecordCount(), 1);
}

TEST(AccessModulesOfACompany, TheHoursSummaryIsARecordADay)
{
    SampleFolder folder;
    modDBHrsS &summary = folder.Tables.HoursSummary;
    folder.Tables.Main.CreateHoursSummary(u"ABCHoursSummary-WkLg"_s);
    summary.Handle = folder.Tables.Main.OpenTable(u"ABCHoursSummary-WkLg"_s);
    HoursSummaryRecord day = Distinct<HoursSummaryRecord>();
    summary.AddHoursSummary(day);
    day.Billable = Currency::FromWhole(8);
    summary.UpdateHoursSummary(day);
    HoursSummaryRecord read;
    EXPECT_TRUE(summary.ReadHoursSummary(read));
    EXPECT_TRUE(read.Fields() == day.Fields());
    EXPECT_TRUE(summary.Find(0, day.Date));
    EXPECT_EQ(summary.GetRecordCount(), 1);
}

TEST(AccessModulesOfACompany, TwoProgramFoldersKnowNothingOfEachOther)
{
    SampleFolder first;
    SampleFolder second({SampleCompany(u"XYZ"_s, u"Xylo"_s)});
    first.OpenAll();
    second.OpenAll(u"XYZ"_s);
    first.Tables.Entries.AddEntry(EntryRecord());
    EXPECT_EQ(first.Tables.Entries.GetRecordCount(), 1);
    EXPECT_EQ(second.Tables.Entries.GetRecordCount(), 0);
    EXPECT_EQ(second.Tables.Company.LoadCurrentCompany(u"XYZ"_s), u"Xylo"_s);
}

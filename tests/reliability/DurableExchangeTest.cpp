// The exchange client loses nothing when the power goes: uploads are on the disk before their
// entries go, and a rewritten database is the old one or the new one.

#include "exchange/Collection.h"
#include "exchange/ExchangeRun.h"
#include "platform/DurableFiles.h"
#include "tests/exchange/Installation.h"
#include "tests/reliability/Durability.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

const QByteArray Header
    = "Customer_Number,Project_Number,Activity_Number,Date,Billing_Status,Mgmt_Approval,"
      "Sec_Approval,On_Hold,Billing_Option,Multiplier_Number,Rate_Overridden,Reimburse,Hours,Rate,"
      "Amount,Multiplier_Factor,Exp_Markup_Percent,Exp_Markup_Amount,Description\r\n";
const QByteArray FirstLine = "0100,1000,CONSULT,2024-01-02 00:00:00,1,N,N,N,4,,N,N,7.5001,95.0000,"
                             "712.5095,1.0000,0.0000,0.0000,Entry 1\r\n";
const QByteArray SecondLine = "0100,1000,CONSULT,2024-01-03 00:00:00,1,N,N,N,4,,N,N,7.5002,95.0000,"
                              "712.5190,1.0000,0.0000,0.0000,Entry 2\r\n";

/// A company's entries database with entries in it, and the shared folder next to it.
class DurableUpload : public Durability
{
protected:
    void Prepare()
    {
        for (const QString &folder : {u"program"_s, u"worklog"_s}) {
            ASSERT_TRUE(QDir(Path(folder)).removeRecursively());
            ASSERT_TRUE(QDir().mkdir(Path(folder)));
        }
        SampleCompany company;
        company.Entries = {EntryNumber(1), EntryNumber(2)};
        BuildSampleCompanies(Path(u"program"_s), {company});
    }
    /// What a synchronization does with the company's entries.
    void Collect()
    {
        LocalDatabases local(Path(u"program"_s));
        Collection collection(local, Path(u"worklog"_s), u"ABC"_s, u"007"_s);
        if (collection.Prepare())
            collection.Deliver();
    }
    void Erase()
    {
        LocalDatabases local(Path(u"program"_s));
        Collection(local, Path(u"worklog"_s), u"ABC"_s, u"007"_s).Erase();
    }
    QDir UploadFolder() const { return QDir(Path(u"worklog/ABC/uploads"_s)); }
    QStringList Names(const QString &pattern) const
    {
        return UploadFolder().entryList({pattern}, QDir::Files | QDir::Hidden);
    }
    QString Note() const
    {
        LocalDatabases local(Path(u"program"_s));
        const LocalDatabases::Open entries(local, u"ABCEntries-WkLg"_s);
        return local.Store().ReadNote(entries.Handle);
    }
    qint32 EntriesLeft() const
    {
        LocalDatabases local(Path(u"program"_s));
        const LocalDatabases::Open entries(local, u"ABCEntries-WkLg"_s);
        return local.Store().GetRecordCount(entries.Handle);
    }
    void ExpectDeliveredOnce() const
    {
        EXPECT_EQ(EntriesLeft(), 0);
        EXPECT_TRUE(IsSettled(Note())) << Note().toStdString();
        EXPECT_THAT(Names(u".*.part"_s), IsEmpty());
        const QStringList files = Names(u"*.csv"_s);
        ASSERT_EQ(files.size(), 1);
        EXPECT_EQ(ContentOf(UploadFolder().filePath(files[0])), Header + FirstLine + SecondLine);
    }
};

} // namespace

TEST_F(DurableUpload, IsThereBeforeItsEntriesGo)
{
    LosePowerAtEachCall(
        m_place.path(), [&] { Prepare(); }, [&] { Collect(); },
        [&](bool done) {
            if (done) {
                EXPECT_EQ(EntriesLeft(), 0);
            }
            Collect(); // what the next synchronization does
            ExpectDeliveredOnce();
        });
}

TEST_F(DurableUpload, ThatIsFoundAgainIsThereBeforeItsEntriesGo)
{
    Prepare();
    FaultyDisk disk(m_place.path());
    {
        // A client that was killed when the file had its name, and nobody had waited for that.
        LocalDatabases local(Path(u"program"_s));
        Collection collection(local, Path(u"worklog"_s), u"ABC"_s, u"007"_s);
        ASSERT_TRUE(collection.Prepare());
        disk.FailAt(0, DiskFault::PowerLoss);
        const QString part = UploadFolder().filePath(Names(u".*.part"_s).value(0));
        ASSERT_TRUE(TakeNewName(part, collection.File()));
    }
    Collect();
    disk.LosePower(nullptr);
    ExpectDeliveredOnce();
}

TEST_F(DurableUpload, ThatWasImportedAndIsFoundAgainIsThereBeforeItsEntriesGo)
{
    Prepare();
    FaultyDisk disk(m_place.path());
    QString imported;
    {
        LocalDatabases local(Path(u"program"_s));
        Collection collection(local, Path(u"worklog"_s), u"ABC"_s, u"007"_s);
        ASSERT_TRUE(collection.Prepare());
        ASSERT_TRUE(UploadFolder().mkdir(u"imported"_s));
        disk.FailAt(0, DiskFault::PowerLoss);
        // Copied by a program that does not wait for the disk.
        const QString part = UploadFolder().filePath(Names(u".*.part"_s).value(0));
        imported
            = UploadFolder().filePath(u"imported/"_s + QFileInfo(collection.File()).fileName());
        WriteFile(imported, ContentOf(part));
        ASSERT_TRUE(QFile::remove(part));
    }
    Collect();
    disk.LosePower(nullptr);
    EXPECT_EQ(EntriesLeft(), 0);
    EXPECT_EQ(ContentOf(imported), Header + FirstLine + SecondLine);
}

TEST_F(DurableUpload, ThatIsDiscardedLeavesNoFileWithoutANote)
{
    const auto prepareOnly = [&] {
        Prepare();
        LocalDatabases local(Path(u"program"_s));
        Collection collection(local, Path(u"worklog"_s), u"ABC"_s, u"007"_s);
        ASSERT_TRUE(collection.Prepare());
    };
    LosePowerAtEachCall(
        m_place.path(), prepareOnly, [&] { Erase(); },
        [&](bool) {
            for (const QString &file : Names(u".*.part"_s))
                EXPECT_TRUE(Note().startsWith(file.mid(1).chopped(5))) << Note().toStdString();
        });
}

TEST_F(Durability, EveryRewrittenDatabaseIsTheOldOneOrTheNewOneAndInTheEndTheNewOne)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QMap<QString, QByteArray> before = place.LocalFiles();
    place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
    place.Replace(u"ABC/Activities.csv"_s, "Meals", "Dinners");
    const auto activity = [&] {
        const auto tables = place.Open();
        tables->Activities.Handle = tables->Main.OpenTable(u"ABCActivities-WkLg"_s);
        ActivityRecord record;
        EXPECT_TRUE(tables->Activities.Find(0, u"MEALS          "_s));
        EXPECT_TRUE(tables->Activities.ReadActivity(record));
        return record.Description;
    };
    LosePowerAtEachCall(
        place.Program,
        [&] {
            for (auto file = before.begin(); file != before.end(); ++file)
                WriteFile(file.key(), file.value());
        },
        [&] {
            ExchangeLog log({});
            ExchangeRun(place.Worklog, place.Program, log, [](auto &&...) {}).Run();
        },
        [&](bool done) {
            const QString customer = place.CustomerNames(u"ABC"_s).value(0);
            EXPECT_TRUE(customer == u"Renamed"_s || customer == u"Acme"_s);
            EXPECT_TRUE(activity() == u"Dinners"_s || activity() == u"Meals"_s);
            EXPECT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
            EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
            if (done) {
                EXPECT_EQ(customer, u"Renamed"_s);
                EXPECT_EQ(activity(), u"Dinners"_s);
            }
        },
        Rounds(5, 1));
}

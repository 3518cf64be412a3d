// Copies of the entries before a synchronization: whole, durable, and ten of them that differ,
// whatever the clock says.

#include "platform/Paths.h"
#include "sync/modBackup.h"

#include "platform/clsRunTimeError.h"
#include "store/BatchName.h"
#include "store/StoreErrors.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef Q_OS_UNIX
#include "tests/support/SmallDisk.h"
#endif

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString Name = u"ABCEntries-WkLg"_s;
const QString Worklog = u"/srv/accounting/worklog"_s;

EntryRecord Entry(const QString &description)
{
    return SampleEntry(
        u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(2), {}, description);
}

class Backup : public testing::Test
{
protected:
    void Build(const QString &option = u"3"_s)
    {
        SampleCompany company;
        company.Entries = {Entry(u"first"_s), Entry(u"same"_s), Entry(u"same"_s)};
        company.Options.Sync_Option = option;
        m_folder = std::make_unique<SampleFolder>(std::vector{company});
        m_backup = std::make_unique<modBackup>(m_folder->Tables, m_clock);
    }

    QString File(const QString &name = Name) const
    {
        return JoinPath(m_folder->Path(), name + u".db"_s);
    }
    QString BackupFolder() const { return JoinPath(m_folder->Path(), u"backup"_s); }
    QStringList Times() const
    {
        return QDir(BackupFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }
    static QByteArray Bytes(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    static void Write(const QString &name, const QByteArray &contents)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(contents), contents.size());
    }

    /// What the client does to the entries at these places, from the last to the first.
    void Remove(const QList<qint32> &positions)
    {
        modDBEntr &entries = m_folder->Tables.Entries;
        entries.Handle = m_folder->Tables.Main.OpenTable(Name);
        for (const qint32 position : positions) {
            entries.MoveToPosition(position);
            entries.DeleteRecord();
        }
        entries.Handle = m_folder->Tables.Main.CloseTable(entries.Handle);
    }

    /// Copies the entries after one more was entered.
    void CopyChanged()
    {
        modDBEntr &entries = m_folder->Tables.Entries;
        entries.Handle = m_folder->Tables.Main.OpenTable(Name);
        entries.AddEntry(Entry(u"one more"_s));
        entries.Handle = m_folder->Tables.Main.CloseTable(entries.Handle);
        m_backup->CopyEntries(Worklog);
    }

    clsFixedClock m_clock;
    std::unique_ptr<SampleFolder> m_folder;
    std::unique_ptr<modBackup> m_backup;
};

} // namespace

TEST_F(Backup, HoldsEveryEntriesDatabaseByteForByte)
{
    Build();
    BuildDatabase<EntryRecord>(
        m_folder->Path(), u"GONEEntries-WkLg"_s, {Entry(u"of a company no longer listed"_s)});
    m_backup->CopyEntries(Worklog);
    EXPECT_THAT(Times(), ElementsAre(u"000001-20260309-103000"_s));
    const QDir copies(BackupFolder() + u"/000001-20260309-103000"_s);
    EXPECT_THAT(copies.entryList(QDir::Files),
        ElementsAre(u"ABCEntries-WkLg.db"_s, u"GONEEntries-WkLg.db"_s, u"unfinished.json"_s));
    for (const QString &name : {Name, u"GONEEntries-WkLg"_s})
        EXPECT_EQ(Bytes(copies.filePath(name + u".db"_s)), Bytes(File(name)));
}

TEST_F(Backup, IsPutBackByCopyingTheFile)
{
    Build();
    m_backup->CopyEntries(Worklog);
    Remove({2, 1, 0});
    ASSERT_TRUE(QFile::remove(File()));
    ASSERT_TRUE(
        QFile::copy(BackupFolder() + u"/000001-20260309-103000/ABCEntries-WkLg.db"_s, File()));
    modDBEntr &entries = m_folder->Tables.Entries;
    entries.Handle = m_folder->Tables.Main.OpenTable(Name);
    EXPECT_EQ(entries.GetRecordCount(), 3);
    EXPECT_THAT(entries.DamagedEntries(), IsEmpty());
}

TEST_F(Backup, IsNotMadeWithoutEntriesDatabases)
{
    Build();
    ASSERT_TRUE(QFile::remove(File()));
    m_backup->CopyEntries(Worklog);
    EXPECT_FALSE(QFileInfo::exists(BackupFolder()));
}

TEST_F(Backup, KeepsTheNewestTen)
{
    Build();
    for (int i = 0; i < 13; ++i) {
        m_clock.Time = m_clock.Time.addSecs(i < 6 ? 60 : 0); // some within one second
        CopyChanged();
    }
    EXPECT_EQ(Times().size(), 10);
    EXPECT_EQ(Times().first(), u"000004-20260309-103400"_s);
    EXPECT_EQ(Times().last(), u"000013-20260309-103600"_s);
}

TEST_F(Backup, LosesNoCopyToAClockThatWasWrong)
{
    Build();
    m_clock.Time = m_clock.Time.addYears(50);
    for (int i = 0; i < 6; ++i)
        CopyChanged();
    m_clock.Time = m_clock.Time.addYears(-51);
    for (int i = 0; i < 6; ++i)
        CopyChanged();
    ASSERT_EQ(Times().size(), 10);
    EXPECT_EQ(Times().first(), u"000003-20760309-103000"_s);
    EXPECT_EQ(Times().last(), u"000012-20250309-103000"_s);
}

TEST_F(Backup, RepeatedWithTheSameEntriesLosesNoCopyThatDiffers)
{
    Build();
    CopyChanged();
    CopyChanged();
    for (int i = 0; i < 12; ++i)
        m_backup->CopyEntries(Worklog);
    EXPECT_THAT(Times(), ElementsAre(u"000001-20260309-103000"_s, u"000014-20260309-103000"_s));
    EXPECT_EQ(
        Bytes(BackupFolder() + u"/000014-20260309-103000/ABCEntries-WkLg.db"_s), Bytes(File()));
}

TEST_F(Backup, CountsOnFromCopiesThatAreNamedAfterTheirTimeAlone)
{
    Build();
    for (const QString &old : {u"20990309-103000"_s, u"20990309-103000-02"_s}) {
        QDir().mkpath(BackupFolder() + u'/' + old);
        Write(BackupFolder() + u'/' + old + u"/ABCEntries-WkLg.db"_s, old.toUtf8());
    }
    for (int i = 0; i < 9; ++i)
        CopyChanged();
    ASSERT_EQ(Times().size(), 10);
    EXPECT_EQ(Times().first(), u"000001-20260309-103000"_s);
    EXPECT_EQ(Times().last(), u"20990309-103000-02"_s);
    m_backup->DeleteCopies();
    EXPECT_FALSE(QFileInfo::exists(BackupFolder()));
}

TEST_F(Backup, LeavesWhatSomebodyElseKeepsThere)
{
    Build();
    QDir().mkpath(BackupFolder() + u"/mine"_s);
    Write(BackupFolder() + u"/mine/ABCEntries-WkLg.db"_s, "mine");
    for (int i = 0; i < 12; ++i) {
        CopyChanged();
        if (i == 0)
            Write(BackupFolder() + u"/000001-20260309-103000/letter.txt"_s, "mine too");
    }
    m_backup->DeleteCopies();
    EXPECT_EQ(Bytes(BackupFolder() + u"/mine/ABCEntries-WkLg.db"_s), "mine");
    EXPECT_EQ(Bytes(BackupFolder() + u"/000001-20260309-103000/letter.txt"_s), "mine too");
}

TEST_F(Backup, OfADamagedDatabaseIsItsBytesAndItsJournal)
{
    Build();
    Write(File(), "no database");
    Write(File() + u"-journal"_s, "and no journal");
    m_backup->CopyEntries(Worklog);
    const QString copy = BackupFolder() + u"/000001-20260309-103000/ABCEntries-WkLg.db"_s;
    EXPECT_EQ(Bytes(copy), "no database");
    EXPECT_EQ(Bytes(copy + u"-journal"_s), "and no journal");
    m_backup->DeleteCopies();
    EXPECT_FALSE(QFileInfo::exists(BackupFolder()));
}

#ifdef Q_OS_UNIX // Windows does not limit the size of files
TEST_F(Backup, ThatCannotBeMadeIsAnErrorAndLeavesNothingHalf)
{
    Build();
    {
        const SmallDisk disk(4096);
        const Raised raised = RaisedBy([&] { m_backup->CopyEntries(Worklog); });
        EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
        EXPECT_TRUE(raised.Names(BackupFolder())) << raised.Description.toStdString();
    }
    EXPECT_THAT(Times(), IsEmpty());
    QDir().rmdir(BackupFolder());
    Write(BackupFolder(), "a file in the way");
    EXPECT_EQ(RaisedBy([&] { m_backup->CopyEntries(Worklog); }).Number, RunTimeErrors::PathAccess);
    ASSERT_TRUE(QFile::remove(BackupFolder()));
    m_backup->CopyEntries(Worklog);
    EXPECT_EQ(Times().size(), 1);
}
#endif

TEST_F(Backup, AnInterruptedOneIsNoCopyAndIsRemoved)
{
    Build();
    for (const QString &name : {u"000007-20260308-103000.new"_s, u"20260308-103000.new"_s}) {
        QDir().mkpath(BackupFolder() + u'/' + name);
        Write(BackupFolder() + u'/' + name + u"/ABCEntries-WkLg.db"_s, "half");
    }
    m_backup->CopyEntries(Worklog);
    EXPECT_THAT(Times(), ElementsAre(u"000001-20260309-103000"_s));
    EXPECT_EQ(
        Bytes(BackupFolder() + u"/000001-20260309-103000/ABCEntries-WkLg.db"_s), Bytes(File()));
}

TEST_F(Backup, WaitsForNoOtherProgramsWrite)
{
    Build();
    RecordStore other;
    other.SetCreator(CodeNumber(SampleCodes().Creator));
    const auto handle = other.OpenDatabase(1, m_folder->Path() + u'/' + Name, 0, 0, 0, 0, 3);
    {
        const RecordStore::Batch writing(other, handle);
        EXPECT_EQ(RaisedBy([&] { m_backup->CopyEntries(Worklog); }).Number, StoreErrors::Locked);
        EXPECT_THAT(Times(), IsEmpty());
    }
    m_backup->CopyEntries(Worklog);
    EXPECT_EQ(Times().size(), 1);
}
TEST_F(Backup, ACopyNamesTheBatchInWhichItsEntriesAreDelivered)
{
    Build();
    const auto noteOf = [&](const QString &path) {
        RecordStore &store = m_folder->Tables.Store;
        const RecordStore::Handle handle = store.OpenDatabase(1, path, 0, 0, 0, 0, 3);
        const QString note = store.ReadNote(handle);
        store.CloseDatabase(handle);
        return note;
    };
    const QString original = m_folder->Path() + u'/' + Name;
    ASSERT_EQ(noteOf(original), QString());
    m_backup->CopyEntries(Worklog);
    const QString note = noteOf(original);
    EXPECT_TRUE(IsBatchName(note)) << note.toStdString();
    EXPECT_TRUE(note.contains(u"-JRD-"_s)) << note.toStdString();
    EXPECT_EQ(noteOf(BackupFolder() + u'/' + Times().front() + u'/' + Name), note);
    m_backup->CopyEntries(Worklog);
    EXPECT_EQ(noteOf(original), note) << "the name is reserved once";
}

#ifdef Q_OS_UNIX

TEST_F(Backup, CopiesAreAsPrivateAsTheEntries)
{
    Build();
    const QFile::Permissions own = QFile::ReadOwner | QFile::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(File(), own));
    m_backup->CopyEntries(Worklog);
    ASSERT_EQ(Times().size(), 1);
    const QString copy = JoinPath(JoinPath(BackupFolder(), Times().front()), Name + u".db"_s);
    EXPECT_EQ(QFile::permissions(copy), QFile::permissions(File()));
}

#endif

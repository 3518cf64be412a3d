// Files that are cut off, changed at random, foreign or prepared by somebody else: they are refused
// by name, or read as they were saved, and never made worse.

#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"
#include "store/StoreErrors.h"
#include "sync/modSync.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/Raised.h"
#include "tests/support/Soak.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// What stands in a program folder after some work, one name a schema.
const QStringList Names = {u"Company-WkLg"_s, u"GlobalOptions-WkLg"_s, u"ABCOptions-WkLg"_s,
    u"ABCEmployee-WkLg"_s, u"ABCMultiplier-WkLg"_s, u"ABCDivisions-WkLg"_s, u"ABCCustomers-WkLg"_s,
    u"ABCProjects-WkLg"_s, u"ABCActivities-WkLg"_s, u"ABCEntries-WkLg"_s,
    u"ABCHoursSummary-WkLg"_s};

class DamagedFiles : public testing::Test
{
protected:
    DamagedFiles()
    {
        ProgramOnDisk::MakeFolder(Original());
        BuildDatabase<HoursSummaryRecord>(
            Original(), u"ABCHoursSummary-WkLg"_s, {HoursSummaryRecord()});
        Refresh();
    }

    QString Original() const { return m_place.path(); }
    QString Folder() const { return QDir::toNativeSeparators(m_place.filePath(u"program"_s)); }
    QString File(const QString &name) const { return JoinPath(Folder(), name + u".db"_s); }
    void Refresh() const { ProgramOnDisk::CopyFolder(Original(), Folder()); }

    QByteArray Bytes(const QString &name) const
    {
        QFile file(File(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }
    void Write(const QString &name, const QByteArray &bytes) const
    {
        QFile::remove(File(name) + u"-journal"_s);
        QFile file(File(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    /// What another program does to a file.
    void Outside(const QString &name, const QStringList &statements) const
    {
        sqlite3 *database = nullptr;
        ASSERT_EQ(sqlite3_open(File(name).toUtf8().constData(), &database), SQLITE_OK);
        for (const QString &sql : statements)
            EXPECT_EQ(sqlite3_exec(database, sql.toUtf8().constData(), nullptr, nullptr, nullptr),
                SQLITE_OK)
                << sql.toStdString() << ": " << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    /// The start that meets the damage opens the locked window with the one message that asks for
    /// a synchronization; the file stays as it is.
    void ExpectStartLocked(const QString &name, const std::string &what) const
    {
        SCOPED_TRACE(name.toStdString() + ", " + what);
        const bool isFile = QFileInfo(File(name)).isFile();
        const QByteArray before = isFile ? Bytes(name) : QByteArray();
        ProgramOnDisk program(Folder());
        program.StartUp();
        EXPECT_THAT(program.Messages.Texts(), ElementsAre(SynchronizeFirst()));
        EXPECT_NE(program.Window(), nullptr);
        if (isFile) {
            EXPECT_EQ(Bytes(name), before);
        }
    }

    QTemporaryDir m_place{SampleFolderTemplate()};
};

} // namespace

TEST_F(DamagedFiles, CutOffAtAnySectorLockTheWindowAndAreLeftAlone)
{
    int cuts = 0;
    for (const QString &name : Names) {
        if (name.contains(u"HoursSummary"_s))
            continue; // is thrown away unread; see below
        const QByteArray whole = Bytes(name);
        ASSERT_EQ(whole.size() % 512, 0);
        for (qsizetype size = 0; size < whole.size(); size += 512 * Rounds(7, 1)) {
            Write(name, whole.left(size));
            ExpectStartLocked(name, std::to_string(size) + " bytes");
            ++cuts;
        }
        Write(name, whole);
    }
    TellCount("truncated files", cuts);
    ProgramOnDisk program(Folder());
    program.StartUp();
    EXPECT_THAT(program.Messages.Texts(), IsEmpty());
}

TEST_F(DamagedFiles, ThatAreNoDatabasesLockTheWindowAndAreLeftAlone)
{
    for (const QString &name : Names) {
        if (name.contains(u"HoursSummary"_s))
            continue;
        Write(name, "Customer_Number,Project_Number\r\n0100,AUDIT\r\n");
        ExpectStartLocked(name, "a text");
        QFile::remove(File(name));
        Outside(name, {u"CREATE TABLE \"%1\" (a TEXT) STRICT"_s.arg(name)});
        ExpectStartLocked(name, "somebody else's");
        QFile::remove(File(name));
        QDir().mkpath(File(name));
        ExpectStartLocked(name, "a folder");
        Refresh();
    }
}

TEST_F(DamagedFiles, OfTheHoursSummaryAreMadeAnew)
{
    for (const QByteArray &bytes :
        {QByteArray(), QByteArray("no database"), Bytes(u"ABCHoursSummary-WkLg"_s).left(5000)}) {
        Write(u"ABCHoursSummary-WkLg"_s, bytes);
        ProgramOnDisk program(Folder());
        program.StartUp();
        program.CloseDialogOf([&] { program.Click("cmdHrsSumm"); });
        EXPECT_THAT(program.Messages.Texts(), IsEmpty());
        EXPECT_TRUE(program.DialogRows.contains(u"|4.00|"_s)) << program.DialogRows.toStdString();
    }
}

namespace {

/// Random damage to one schema's file, and what a store makes of it.
class RandomDamage : public DamagedFiles, public testing::WithParamInterface<QString>
{
protected:
    /// Enough records that the table fills several pages.
    void FillEntries()
    {
        std::vector<EntryRecord> entries;
        for (int i = 0; i < 120; ++i)
            entries.push_back(SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s,
                QDate(2026, 1, 1).addDays(i), Currency::FromScaled(i * 2500),
                Currency::FromWhole(90), u"Said what had to be said, number %1"_s.arg(i)));
        QFile::remove(File(u"ABCEntries-WkLg"_s));
        BuildDatabase(Folder(), u"ABCEntries-WkLg"_s, entries);
    }

    QByteArray Damaged(const QByteArray &good)
    {
        QByteArray bad = good;
        const auto where = [&] {
            // Half of the damage goes into the first page, which steers everything.
            const auto range = m_random() % 2 == 0 ? size_t(4096) : static_cast<size_t>(bad.size());
            return static_cast<qsizetype>(m_random() % range);
        };
        if (m_random() % 2 == 0) {
            const qsizetype at = where();
            bad[at] = static_cast<char>(bad[at] ^ (1 << m_random() % 8));
        } else {
            for (auto count = m_random() % 8 + 1; count > 0; --count)
                bad[where()] = static_cast<char>(m_random());
        }
        return bad;
    }

    /// All values of all records as texts, one text a record.
    static QStringList Records(RecordStore &store, RecordStore::Handle handle, int fields)
    {
        QStringList records;
        for (store.MoveFirst(handle); !store.IsEndOfTable(handle); store.MoveNext(handle)) {
            QStringList values;
            for (int field = 0; field < fields; ++field)
                values.append(store.ReadField(handle, field));
            records.append(values.join(u'|'));
        }
        return records;
    }

    /// Everything else that a program does with a file; wherever it stops, it says why.
    void UseHard(RecordStore &store, RecordStore::Handle handle)
    {
        store.SortTable(handle, u"0"_s);
        store.FindRecord(handle, 0, u"zz"_s);
        store.MoveFirst(handle);
        store.AddRecord(handle);
        store.UpdateRecord(handle);
        store.DeleteRecord(handle, 2);
    }

    std::mt19937 m_random{2027};
};

std::string NameOf(const testing::TestParamInfo<QString> &info)
{
    return info.param.chopped(5).toStdString();
}

} // namespace

TEST_P(RandomDamage, NeverCrashesAndNeverChangesAnEntryUnnoticed)
{
    const QString &name = GetParam();
    const bool isEntries = name.contains(u"Entries"_s);
    if (isEntries)
        FillEntries();
    const QByteArray good = Bytes(name);
    const QString path = Folder() + u'/' + name;
    const auto open = [&](RecordStore &store) {
        store.SetCreator(CodeNumber(u"WkLg"_s));
        return store.OpenOrRaise(path);
    };
    QStringList whole;
    int fields = 0;
    {
        RecordStore store;
        const auto handle = open(store);
        while (RaisedBy([&] { store.ReadField(handle, fields); }).Number != StoreErrors::BadField)
            ++fields;
        whole = Records(store, handle, fields);
    }
    int refused = 0;
    int reported = 0;
    const int rounds = Rounds(150, 10000);
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        Write(name, Damaged(good));
        const QByteArray bad = Bytes(name);
        QStringList records;
        std::vector<qint32> damaged;
        const Raised raised = RaisedBy([&] {
            RecordStore store;
            const auto handle = open(store);
            records = Records(store, handle, fields);
            damaged = store.DamagedRecords(handle);
        });
        if (raised.Number != 0) {
            ++refused;
            EXPECT_TRUE(raised.Names(File(name))) << raised.Description.toStdString();
            EXPECT_EQ(Bytes(name), bad);
        } else if (isEntries) {
            EXPECT_EQ(records.size(), whole.size());
            for (qint32 i = 0; i < std::min(records.size(), whole.size()); ++i) {
                const bool isReported
                    = std::find(damaged.begin(), damaged.end(), i) != damaged.end();
                EXPECT_TRUE(records[i] == whole[i] || isReported) << records[i].toStdString();
                reported += isReported ? 1 : 0;
            }
        }
        if (raised.Number == 0 && name != u"ABCHoursSummary-WkLg"_s) {
            const Raised later = RaisedBy([&] {
                RecordStore store;
                UseHard(store, open(store));
            });
            EXPECT_TRUE(later.Number == 0 || later.Names(File(name)))
                << later.Description.toStdString();
        }
        if (HasFailure())
            break;
    }
    EXPECT_GT(refused, rounds / 20);
    if (isEntries) {
        EXPECT_GT(reported, rounds / 20);
    }
    TellCount(name.toStdString() + ", damaged", rounds);
    TellCount(name.toStdString() + ", refused by name", refused);
    if (isEntries)
        TellCount("entries reported with their record", reported);
}

INSTANTIATE_TEST_SUITE_P(OfEverySchema, RandomDamage, testing::ValuesIn(Names), NameOf);

TEST_F(DamagedFiles, WhoseColumnsAreNotAsCreatedAreNamedWithTheColumn)
{
    const QString table = u"\"ABCEntries-WkLg\""_s;
    const QString name = u"ABCEntries-WkLg"_s;
    for (const SchemaField &field : ParseSchema(EntryRecord::SchemaText)) {
        const QString column = field.Name;
        const QString other = field.Type == FieldType::Currency ? u"TEXT"_s : u"INTEGER"_s;
        const QList<QStringList> changes = {{u"ALTER TABLE %1 DROP COLUMN %2"_s.arg(table, column)},
            {u"ALTER TABLE %1 RENAME COLUMN %2 TO Other"_s.arg(table, column)},
            {u"ALTER TABLE %1 DROP COLUMN %2"_s.arg(table, column),
                u"ALTER TABLE %1 ADD COLUMN %2 %3"_s.arg(table, column, other)}};
        for (const QStringList &statements : changes) {
            Refresh();
            Outside(name, statements);
            RecordStore store;
            store.SetCreator(CodeNumber(u"WkLg"_s));
            EXPECT_EQ(store.OpenDatabase(1, Folder() + u'/' + name, 0, 0, 0, 0, 3), 0);
            ASSERT_TRUE(store.OpenFailure()) << statements.join(u' ').toStdString();
            const clsRunTimeError &failure = *store.OpenFailure();
            EXPECT_EQ(failure.Number(), StoreErrors::Damaged)
                << statements.join(u' ').toStdString();
            EXPECT_TRUE(failure.Description().contains(column));
            EXPECT_TRUE(failure.Description().contains(Folder() + u'/' + name));
        }
    }
}

TEST_F(DamagedFiles, WithColumnsMoreAreReadAndSaved)
{
    Outside(u"ABCEntries-WkLg"_s,
        {u"ALTER TABLE \"ABCEntries-WkLg\" ADD COLUMN More TEXT NOT NULL DEFAULT 'kept'"_s});
    ProgramOnDisk program(Folder());
    program.StartUp();
    program.ClickRow(1);
    program.TypeInto("txtDescription", u"typed with care"_s);
    program.Click("cmdOK");
    EXPECT_THAT(program.Messages.Texts(), IsEmpty());
    EXPECT_EQ(StoredEntries(Folder())[0].Description, u"typed with care"_s);
}

TEST_F(DamagedFiles, CannotBringTriggersViewsOrFunctionsIntoPlay)
{
    const QString table = u"\"ABCEntries-WkLg\""_s;
    const QList<QStringList> plants = {
        {u"CREATE TRIGGER Planted AFTER UPDATE ON %1 BEGIN DELETE FROM %1; END"_s.arg(table)},
        {u"CREATE TRIGGER Planted BEFORE UPDATE ON %1 BEGIN SELECT raise(ABORT, 'no'); END"_s.arg(
            table)},
        {u"CREATE VIEW Planted AS SELECT * FROM %1"_s.arg(table),
            u"CREATE TRIGGER Through INSTEAD OF DELETE ON Planted BEGIN DELETE FROM %1; END"_s.arg(
                table)},
        {u"CREATE INDEX Planted ON %1 (upper(Description))"_s.arg(table)},
        {u"CREATE TABLE Planted (a TEXT) STRICT"_s},
        {u"CREATE TABLE Planted (a TEXT CHECK (load_extension('x') IS NULL)) STRICT"_s},
    };
    for (const QStringList &statements : plants) {
        SCOPED_TRACE(statements[0].toStdString());
        Refresh();
        Outside(u"ABCEntries-WkLg"_s, statements);
        ProgramOnDisk program(Folder());
        program.StartUp();
        program.ClickRow(1);
        program.TypeInto("txtDescription", u"typed with care"_s);
        program.Click("cmdOK");
        EXPECT_THAT(program.Messages.Texts(), IsEmpty());
        const std::vector<EntryRecord> stored = StoredEntries(Folder());
        ASSERT_EQ(stored.size(), 2U);
        EXPECT_EQ(stored[0].Description, u"typed with care"_s);
        EXPECT_EQ(stored[1].Description, u"second"_s);
    }
}

TEST_F(DamagedFiles, ThatRefuseARecordKeepTheEdits)
{
    const QString drop = u"DROP TABLE \"ABCEntries-WkLg\""_s;
    QString columns;
    for (const SchemaField &field : ParseSchema(EntryRecord::SchemaText))
        columns += field.Name
            + (field.Type == FieldType::Currency ? u" INTEGER DEFAULT 0, "_s
                                                 : u" TEXT DEFAULT '', "_s);
    columns += u"Check_Value TEXT DEFAULT '',"_s;
    for (const QString &trap :
        {u"CHECK (Description <> 'typed with care')"_s, u"UNIQUE (Customer_Number)"_s}) {
        SCOPED_TRACE(trap.toStdString());
        Refresh();
        Outside(u"ABCEntries-WkLg"_s,
            {drop, u"CREATE TABLE \"ABCEntries-WkLg\" (%1 %2) STRICT"_s.arg(columns, trap),
                u"PRAGMA ignore_check_constraints = ON"_s,
                u"INSERT INTO \"ABCEntries-WkLg\" (Customer_Number) VALUES ('0100')"_s});
        ProgramOnDisk program(Folder());
        program.StartUp();
        EXPECT_THAT(program.Messages.Texts(), IsEmpty());
        program.TypeInto("txtCustomer", u"0100"_s);
        program.TypeInto("txtActivity", u"CONS"_s);
        program.TypeInto("txtHours", u"2"_s);
        program.TypeInto("txtDescription", u"typed with care"_s);
        program.Click("cmdOK");
        ASSERT_EQ(program.Failures().size(), 1);
        EXPECT_TRUE(program.Failures()[0].contains(File(u"ABCEntries-WkLg"_s)))
            << program.Failures()[0].toStdString();
        EXPECT_EQ(program.Text("txtDescription"), u"typed with care"_s);
        EXPECT_EQ(StoredEntries(Folder()).size(), 1U);
    }
}

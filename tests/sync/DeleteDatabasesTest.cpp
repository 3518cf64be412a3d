// Deleting the local databases, on real files.

#include "sync/modDeleteDatabases.h"

#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

GlobalOptionsRecord Global()
{
    GlobalOptionsRecord record;
    record.Last_Company = u"ABC"_s;
    return record;
}

class DeleteDatabases : public testing::Test
{
protected:
    /// The database files that are there, without their extension.
    QStringList Databases() const
    {
        QStringList names;
        for (const QFileInfo &file : QDir(m_folder.Path()).entryInfoList(QDir::Files))
            names.append(file.completeBaseName());
        return names;
    }
    QString File(const QString &name) const { return m_folder.Path() + u'/' + name + u".db"_s; }
    void OpenEverything()
    {
        m_folder.OpenAll();
        m_session.CurrentCompanyCode = u"ABC"_s;
        m_session.DeletionInProgress = true;
    }

    SampleFolder m_folder{{SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s)}, Global()};
    Tables &m_tables = m_folder.Tables;
    SessionState m_session;
    clsRecordedMessages m_messages;
    clsRecordedProcess m_process;
    clsFixedClock m_clock;
    modBackup m_backup{m_tables, m_clock};
    modSync m_sync{m_tables, m_session, m_messages, m_process, m_backup};
    modDeleteDatabases m_delete{m_tables, m_sync, m_backup, m_messages};
};

} // namespace

TEST_F(DeleteDatabases, TheQuestionWarnsAndNoIsTheDefault)
{
    EXPECT_FALSE(m_delete.AskDelete());
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_EQ(m_messages.Shown[0].Text,
        u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\n"
        u"Do you wish to continue?"_s);
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(m_messages.Shown[0].Buttons, MessageButtons::YesNo);
    EXPECT_EQ(m_messages.Shown[0].Preset, MessageAnswer::No);
    m_messages.Answers = {MessageAnswer::Yes};
    EXPECT_TRUE(m_delete.AskDelete());
}

TEST_F(DeleteDatabases, EveryDatabaseOfEveryListedCompanyGoes)
{
    OpenEverything();
    m_tables.Main.CreateHoursSummary(u"ABCHoursSummary-WkLg"_s);
    m_tables.HoursSummary.Handle = m_tables.Main.OpenTable(u"ABCHoursSummary-WkLg"_s);
    EXPECT_EQ(Databases().size(), 2 * 8 + 1 + 2);
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_THAT(Databases(), IsEmpty());
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    for (const RecordStore::Handle handle : {m_tables.Company.Handle, m_tables.GlobalOptions.Handle,
             m_tables.Options.Handle, m_tables.Employee.Handle, m_tables.Multiplier.Handle,
             m_tables.Divisions.Handle, m_tables.Customers.Handle, m_tables.Projects.Handle,
             m_tables.Activities.Handle, m_tables.Entries.Handle, m_tables.HoursSummary.Handle})
        EXPECT_EQ(handle, 0);
}

TEST_F(DeleteDatabases, ACompanyThatIsNoLongerListedKeepsItsDatabases)
{
    BuildDatabase<EntryRecord>(m_folder.Path(), u"OLDEntries-WkLg"_s, {});
    OpenEverything();
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_THAT(Databases(), ElementsAre(u"OLDEntries-WkLg"_s));
}

TEST_F(DeleteDatabases, WhatIsLeftOfDamagedDatabasesAndKilledClientsGoesToo)
{
    OpenEverything();
    for (const QString &name : {u"XYZOptions-WkLg.db.damaged"_s, u"Company-WkLg.db.damaged"_s,
             u"ABCCustomers-WkLg.db.damaged-journal"_s, u"letter.txt"_s}) {
        QFile file(m_folder.Path() + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    ASSERT_TRUE(QDir(m_folder.Path()).mkpath(u"exchange-staging/half"_s));
    m_sync.CloseAllDatabases();
    m_backup.CopyEntries({});
    ASSERT_TRUE(
        QFile::exists(m_folder.Path() + u"/backup/000001-20260309-103000/unfinished.json"_s));
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_EQ(QDir(m_folder.Path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList{u"letter.txt"_s});
}

#ifdef Q_OS_UNIX // On Windows only administrators make symbolic links
TEST_F(DeleteDatabases, ALinkInThePlaceOfTheStagingFolderIsNotFollowed)
{
    const QTemporaryDir elsewhere;
    const QString letter = elsewhere.filePath(u"letter.txt"_s);
    QFile file(letter);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(elsewhere.path(), m_folder.Path() + u"/exchange-staging"_s));
    OpenEverything();
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_TRUE(QFile::exists(letter));
    EXPECT_FALSE(QFileInfo(m_folder.Path() + u"/exchange-staging"_s).isSymLink());
}
#endif

TEST_F(DeleteDatabases, WithoutACompanyDatabaseOnlyTheGlobalOnesGo)
{
    QStringList expected = Databases();
    expected.removeOne(u"Company-WkLg"_s);
    expected.removeOne(u"GlobalOptions-WkLg"_s);
    ASSERT_TRUE(QFile::remove(File(u"Company-WkLg"_s)));
    m_session.DeletionInProgress = true;
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_EQ(Databases(), expected);
    EXPECT_TRUE(m_delete.DeleteAllDatabases()); // with nothing left at all
    EXPECT_EQ(Databases(), expected);
}

TEST_F(DeleteDatabases, MissingDatabasesOfACompanyAreNoError)
{
    ASSERT_TRUE(QFile::remove(File(u"ABCProjects-WkLg"_s)));
    ASSERT_TRUE(QFile::remove(File(u"XYZEntries-WkLg"_s)));
    ASSERT_TRUE(QFile::remove(File(u"GlobalOptions-WkLg"_s)));
    OpenEverything();
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_THAT(Databases(), IsEmpty());
}

TEST_F(DeleteDatabases, WhatCannotBeDeletedStopsItAndTheListOfCompaniesStays)
{
    OpenEverything();
    // A folder in the place of a file that nobody opens before.
    ASSERT_TRUE(QDir().mkpath(File(u"ABCHoursSummary-WkLg"_s) + u"/in the way"_s));
    EXPECT_FALSE(m_delete.DeleteAllDatabases());
    EXPECT_TRUE(QFile::exists(File(u"Company-WkLg"_s)));
    EXPECT_TRUE(QFile::exists(File(u"GlobalOptions-WkLg"_s)));
    EXPECT_FALSE(QFile::exists(File(u"ABCEntries-WkLg"_s)));
    EXPECT_TRUE(QFile::exists(File(u"XYZOptions-WkLg"_s)));
    EXPECT_FALSE(m_tables.Company.IsOpen());
    // Once it is out of the way the rest is found again.
    ASSERT_TRUE(QDir(File(u"ABCHoursSummary-WkLg"_s)).removeRecursively());
    EXPECT_TRUE(m_delete.DeleteAllDatabases());
    EXPECT_THAT(Databases(), IsEmpty());
}

TEST_F(DeleteDatabases, ACompanysDatabasesGoInTheirOrder)
{
    const QStringList order = {u"Options-"_s, u"Employee-"_s, u"Multiplier-"_s, u"Divisions-"_s,
        u"Customers-"_s, u"Projects-"_s, u"Activities-"_s, u"Entries-"_s, u"HoursSummary-"_s};
    for (const QString &blocked : order) {
        SampleFolder folder;
        folder.Tables.Main.CreateHoursSummary(u"ABCHoursSummary-WkLg"_s);
        const auto file = [&](const QString &prefix) {
            return folder.Path() + u"/ABC"_s + prefix + u"WkLg.db"_s;
        };
        ASSERT_TRUE(QFile::remove(file(blocked)));
        ASSERT_TRUE(QDir().mkpath(file(blocked) + u"/in the way"_s));
        modBackup backup(folder.Tables, m_clock);
        modSync sync(folder.Tables, m_session, m_messages, m_process, backup);
        EXPECT_FALSE(
            modDeleteDatabases(folder.Tables, sync, backup, m_messages).DeleteAllDatabases());
        for (const QString &prefix : order)
            EXPECT_EQ(QFile::exists(file(prefix)), order.indexOf(prefix) >= order.indexOf(blocked))
                << prefix.toStdString() << " when " << blocked.toStdString() << " cannot go";
    }
}

TEST_F(DeleteDatabases, AListThatCannotBeReadDeletesNothing)
{
    const QStringList before = Databases();
    QFile company(File(u"Company-WkLg"_s));
    ASSERT_TRUE(company.open(QIODevice::WriteOnly));
    company.write("no database");
    company.close();
    m_session.DeletionInProgress = true;
    EXPECT_FALSE(m_delete.DeleteAllDatabases());
    EXPECT_EQ(Databases(), before);
}

// Who may read and write what the client creates.

#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t PrivateMask = 077;
constexpr gid_t SharedGroup = 54321;

struct stat About(const QString &path)
{
    struct stat about = {};
    EXPECT_EQ(stat(QFile::encodeName(path).constData(), &about), 0) << qPrintable(path);
    return about;
}

mode_t RightsOf(const QString &path)
{
    return About(path).st_mode & 07777;
}

void GiveRights(const QString &path, mode_t rights)
{
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), rights), 0);
}

/// A run of an account that gives others no right to its files.
void SynchroniseInPrivate(const Installation &place)
{
    QProcess client;
    client.setChildProcessModifier([] { umask(PrivateMask); });
    client.start(place.Client(), {u"-hd"_s, u"x"_s, place.Program});
    ASSERT_TRUE(client.waitForFinished(-1));
    ASSERT_EQ(client.exitCode(), 0) << client.readAllStandardError().constData();
}

TEST(Rights, WhatIsCreatedInTheRootIsForEveryAccountOfTheRoot)
{
    const Installation place;
    const bool canGiveGroups = geteuid() == 0;
    for (const QString &folder : {place.Worklog, QString(place.Worklog + u"/ABC"_s)}) {
        if (canGiveGroups) {
            ASSERT_EQ(chown(QFile::encodeName(folder).constData(), geteuid(), SharedGroup), 0);
        }
        GiveRights(folder, 0770);
    }
    SynchroniseInPrivate(place);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    SynchroniseInPrivate(place);

    const QString log = place.Worklog + u"/exchange.log"_s;
    const QString uploads = place.Worklog + u"/ABC/uploads"_s;
    const QString upload = place.UploadPath(u"ABC"_s, place.Uploads(u"ABC"_s).value(0));
    EXPECT_EQ(RightsOf(log), 0660U);
    EXPECT_EQ(RightsOf(uploads), 0770U);
    EXPECT_EQ(RightsOf(upload), 0660U);
    if (canGiveGroups) {
        for (const QString &path : {log, uploads, upload})
            EXPECT_EQ(About(path).st_gid, SharedGroup) << qPrintable(path);
    }
}

TEST(Rights, OfALogThatIsThereStayAsTheAdministratorHasSetThem)
{
    const Installation place;
    GiveRights(place.Worklog, 0755);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    GiveRights(place.Worklog + u"/exchange.log"_s, 0622);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(RightsOf(place.Worklog + u"/exchange.log"_s), 0622U);
}

TEST(Rights, OfANewDatabaseAreNotWiderThanThoseOfTheOld)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QStringList databases = QDir(place.Program).entryList({u"*.db"_s});
    for (const QString &name : databases)
        GiveRights(place.Program + u'/' + name, 0600);
    place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    ASSERT_EQ(place.CustomerNames(u"ABC"_s).value(0), u"Renamed"_s);
    for (const QString &name : databases)
        EXPECT_EQ(RightsOf(place.Program + u'/' + name), 0600U) << qPrintable(name);
}

TEST(Rights, TheStagedDatabasesAreForTheUserAlone)
{
    const Installation place;
    QByteArray customers
        = "Customer_Number,Customer_Name,Division_Number,No_Charge,Rate\n0100,A,,N,0\n";
    for (int i = 1000; i < 50'000; ++i) // enough that the folder is there for a moment
        customers += QByteArray::number(i) + ",Acme,,N,0\n";
    place.Write(u"ABC/Customers.csv"_s, customers);
    QProcess client;
    client.start(place.Client(), {u"-hd"_s, u"x"_s, place.Program});
    const QString staging = place.Program + u"/exchange-staging"_s;
    mode_t seen = 0;
    while (!client.waitForFinished(0)) {
        struct stat about = {};
        if (stat(QFile::encodeName(staging).constData(), &about) == 0)
            seen |= about.st_mode & 0777;
    }
    EXPECT_EQ(seen & 077, 0U);
    EXPECT_EQ(seen, 0700U) << "the folder was never seen";
}

/// A program folder of an account of its own, and its runs. Only root starts processes of others.
class Account
{
public:
    Account(const Installation &place, uid_t user)
        : m_place(place)
        , m_user(user)
        , m_folder(place.Program + QString::number(user))
    {
        EXPECT_TRUE(QDir().mkpath(m_folder));
        EXPECT_EQ(chown(QFile::encodeName(m_folder).constData(), user, SharedGroup), 0);
    }

    /// As a member of the group or not; the exit status.
    int Synchronise(gid_t group)
    {
        QProcess client;
        client.setChildProcessModifier([this, group] {
            umask(PrivateMask);
            if (setgroups(0, nullptr) != 0 || setgid(group) != 0 || setuid(m_user) != 0)
                _exit(99);
        });
        client.start(m_place.Client(), {u"-hd"_s, u"x"_s, m_folder});
        EXPECT_TRUE(client.waitForFinished(-1));
        // The toolkit complains about folders of the account that has started the tests.
        Errors = QString::fromUtf8(client.readAllStandardError())
                     .split(u'\n')
                     .filter(u"pvxwin32.exe: "_s)
                     .join(u'\n');
        return client.exitCode();
    }

    /// An entry that waits to be collected, in the account's Entries database.
    void PutEntry()
    {
        const QString name = u"/ABCEntries-WkLg.db"_s;
        if (QFile::exists(m_folder + name)) {
            ASSERT_TRUE(QFile::rename(m_folder + name, m_place.Program + name));
        }
        m_place.PutEntries(u"ABC"_s, {EntryNumber(1)});
        ASSERT_TRUE(QFile::rename(m_place.Program + name, m_folder + name));
        ASSERT_EQ(chown(QFile::encodeName(m_folder + name).constData(), m_user, SharedGroup), 0);
    }

    QString Errors;

private:
    const Installation &m_place;
    uid_t m_user;
    QString m_folder;
};

TEST(Rights, TwoAccountsOfAGroupSynchronizeWithOneRoot)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root starts processes of other accounts";
    const Installation place;
    for (const QString &folder :
        {QFileInfo(place.Root).path(), QFileInfo(place.Program).path(), place.Root})
        GiveRights(folder, 0755);
    for (const QString &folder : {place.Worklog, QString(place.Worklog + u"/ABC"_s)}) {
        ASSERT_EQ(chown(QFile::encodeName(folder).constData(), 0, SharedGroup), 0);
        GiveRights(folder, 0775);
    }
    Account first(place, 54001);
    Account second(place, 54002);
    for (Account *account : {&first, &second, &first, &second}) {
        account->PutEntry();
        EXPECT_EQ(account->Synchronise(SharedGroup), 0) << qPrintable(account->Errors);
        EXPECT_EQ(account->Errors, QString());
    }
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 4);

    second.PutEntry();
    EXPECT_EQ(second.Synchronise(54002), 1) << "an account that is not of the group";
    EXPECT_TRUE(second.Errors.contains(place.UploadPath(u"ABC"_s, {})))
        << qPrintable(second.Errors);
    EXPECT_TRUE(second.Errors.contains(u"Permission denied"_s)) << qPrintable(second.Errors);
}

TEST(Rights, TheLeastAreToReadTheFilesAndToWriteTheUploadsAndTheLog)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root starts processes of other accounts";
    const Installation place;
    for (const QString &folder : {QFileInfo(place.Root).path(), QFileInfo(place.Program).path(),
             place.Root, place.Worklog, QString(place.Worklog + u"/ABC"_s)})
        GiveRights(folder, 0755);
    place.Write(u"exchange.log"_s, {});
    ASSERT_TRUE(QDir(place.Worklog).mkpath(u"ABC/uploads"_s));
    for (const QString &path : {u"/exchange.log"_s, u"/ABC/uploads"_s})
        ASSERT_EQ(chown(QFile::encodeName(place.Worklog + path).constData(), 0, SharedGroup), 0);
    GiveRights(place.Worklog + u"/exchange.log"_s, 0660);
    GiveRights(place.Worklog + u"/ABC/uploads"_s, 0770);
    Account account(place, 54001);
    account.PutEntry();
    EXPECT_EQ(account.Synchronise(SharedGroup), 0);
    EXPECT_EQ(account.Errors, QString());
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
}

} // namespace

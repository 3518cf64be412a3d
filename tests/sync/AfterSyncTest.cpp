// The report after a synchronization: what the program knows, where to look first, and
// where the copy is.

#include "platform/Paths.h"
#include "store/DroppedCompany.h"
#include "sync/modAfterSync.h"
#include "sync/modBackup.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString Name = u"ABCEntries-WkLg"_s;
const QString Worklog = u"/srv/accounting/worklog"_s;
const QString OneIsGone
    = u"An entry of the company ABC that was here before the synchronization is no longer here."_s;
const QString TwoAreGone
    = u"2 entries of the company ABC that were here before the synchronization are no longer here."_s;

EntryRecord Entry(const QString &description)
{
    return SampleEntry(
        u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(2), {}, description);
}

class AfterSync : public testing::Test
{
protected:
    /// A synchronization has begun in a company with that option.
    void Begin(const QString &option)
    {
        SampleCompany company;
        company.Entries = {Entry(u"first"_s), Entry(u"same"_s), Entry(u"same"_s)};
        company.Options.Sync_Option = option;
        m_folder = std::make_unique<SampleFolder>(std::vector{company});
        Copy();
    }
    void Copy() { modBackup(m_folder->Tables, m_clock).CopyEntries(Worklog); }

    /// A new object each time: all that it knows is on the disk.
    QString Report() { return modAfterSync(m_folder->Tables).Report(); }

    QString File(const QString &name = Name) const
    {
        return JoinPath(m_folder->Path(), name + u".db"_s);
    }
    QString CopyFolder() const
    {
        return JoinPath(m_folder->Path(), u"backup/000001-20260309-103000"_s);
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

    QString WithWhereToLook(const QString &what) const
    {
        return what
            + u"\n\nFirst find out whether they were uploaded: see the folders \"uploads\" and the "
              "file exchange.log in\n"_s
            + Worklog + u"\n\nA copy from before the synchronization is in\n"_s + CopyFolder()
            + u"\nRestore it only if they were not uploaded, or they could be delivered twice."_s;
    }

    clsFixedClock m_clock;
    std::unique_ptr<SampleFolder> m_folder;
};

} // namespace

TEST_F(AfterSync, ErasedEntriesAreReportedWithTheirNumberAndTheirCopy)
{
    Begin(u"2"_s);
    EXPECT_EQ(Report(), QString());
    Remove({2, 1});
    EXPECT_EQ(Report(),
        WithWhereToLook(TwoAreGone
            + u" The synchronization option in force erases entries without uploading them."_s));
}

TEST_F(AfterSync, EntriesThatTheOptionLeavesAloneAreReportedWithWhatIsKnown)
{
    Begin(u"3"_s);
    Remove({1});
    EXPECT_EQ(Report(),
        WithWhereToLook(OneIsGone
            + u" The synchronization option in force, \"No Sync\", leaves entries alone."_s));
}

TEST_F(AfterSync, WithoutAnOptionItDoesNotSayThatNothingWasCollected)
{
    const QString known
        = TwoAreGone + u" Which synchronization option was in force is not known."_s;
    for (const QString &option : {u""_s, u"7"_s, u"01"_s}) {
        Begin(option);
        Remove({1, 0});
        EXPECT_EQ(Report(), WithWhereToLook(known)) << option.toStdString();
    }
    for (const bool isMissing : {true, false}) {
        Begin(u"0"_s);
        modAfterSync(m_folder->Tables).Finish();
        if (isMissing)
            ASSERT_TRUE(QFile::remove(File(u"ABCOptions-WkLg"_s)));
        else
            Write(File(u"ABCOptions-WkLg"_s), Bytes(File(u"ABCOptions-WkLg"_s)).left(5000));
        Copy();
        Remove({1, 0});
        EXPECT_TRUE(Report().startsWith(known)) << Report().toStdString();
    }
}

TEST_F(AfterSync, IsReportedAlsoWhenTheFileIsGone)
{
    Begin(u"2"_s);
    ASSERT_TRUE(QFile::remove(File()));
    EXPECT_TRUE(Report().startsWith(u"3 entries of the company ABC "_s)) << Report().toStdString();
}

TEST_F(AfterSync, NothingIsReportedOfEntriesThatWereToBeCollected)
{
    for (const QString &option : {u"0"_s, u"1"_s}) {
        Begin(option);
        Remove({2, 1, 0});
        EXPECT_EQ(Report(), QString()) << option.toStdString();
        ASSERT_TRUE(QFile::remove(File()));
        EXPECT_EQ(Report(), QString()) << option.toStdString();
    }
}

TEST_F(AfterSync, NothingIsReportedOfEntriesThatAreThereInAnotherOrder)
{
    Begin(u"3"_s);
    Remove({0});
    modDBEntr &entries = m_folder->Tables.Entries;
    entries.Handle = m_folder->Tables.Main.OpenTable(Name);
    entries.AddEntry(Entry(u"first"_s));
    entries.AddEntry(Entry(u"one more"_s));
    entries.Handle = m_folder->Tables.Main.CloseTable(entries.Handle);
    EXPECT_EQ(Report(), QString());
}

TEST_F(AfterSync, EntriesThatCannotBeReadAnyMoreAreReportedWhateverTheOption)
{
    for (const QString &option : {u"0"_s, u"2"_s, u"3"_s}) {
        Begin(option);
        const QByteArray sound = Bytes(File());
        Write(File(), QByteArray(sound).replace(8192, 4096, QByteArray(4096, 'x')));
        EXPECT_TRUE(Report().startsWith(u"The entries cannot be read any more: The database is "_s))
            << Report().toStdString();
        Write(File(), sound.left(5000));
        EXPECT_EQ(Report(),
            WithWhereToLook(u"The entries cannot be read any more: The database is truncated or "
                            "damaged: "_s
                + File()));
    }
}

TEST_F(AfterSync, IsReportedUntilItWasShownAndNoLonger)
{
    Begin(u"2"_s);
    Remove({2, 1, 0});
    EXPECT_NE(Report(), QString());
    EXPECT_NE(Report(), QString());
    modAfterSync(m_folder->Tables).Finish();
    EXPECT_EQ(Report(), QString());
    EXPECT_EQ(QDir(CopyFolder()).entryList(QDir::Files), QStringList{Name + u".db"_s});
}

TEST_F(AfterSync, WithADamagedNoteItSaysWhatIsStillKnown)
{
    for (const QByteArray &damage : {QByteArray(), QByteArray("{\"Options\": [1"), QByteArray("[]"),
             QByteArray("{\"Options\": {\"ABCEntries-WkLg\": 2}}")}) {
        Begin(u"2"_s);
        Remove({1, 0});
        Write(CopyFolder() + u"/unfinished.json"_s, damage);
        EXPECT_EQ(Report(),
            TwoAreGone
                + u" Which synchronization option was in force is not known.\n\nFirst find out "
                  "whether they were uploaded: see the uploads and the log of the accounting "
                  "installation.\n\nA copy from before the synchronization is in\n"_s
                + CopyFolder()
                + u"\nRestore it only if they were not uploaded, or they could be delivered "
                  "twice."_s)
            << damage.constData();
    }
}

TEST_F(AfterSync, ACopyThatCannotBeReadIsNamed)
{
    Begin(u"3"_s);
    Remove({1});
    const QString copy = CopyFolder() + u'/' + Name + u".db"_s;
    Write(copy, Bytes(copy).left(5000));
    EXPECT_TRUE(Report().startsWith(u"The entries cannot be compared with their copy: "_s))
        << Report().toStdString();
}

TEST_F(AfterSync, ACompanyThatTheAccountingSystemNoLongerListsIsNamed)
{
    SampleCompany old(u"OLD"_s, DroppedCompanyName(u"Old Works"_s));
    old.Entries = {Entry(u"left behind"_s)};
    m_folder = std::make_unique<SampleFolder>(std::vector{SampleCompany(), old});
    EXPECT_EQ(Report(), QString()) << "without a synchronization";
    Copy();
    EXPECT_EQ(Report(),
        u"The accounting system no longer lists the company OLD. Its entries stay on this "
        u"computer: "
        "choose the company, and \"Full Sync\" in its synchronization options, to have them "
        "uploaded, or delete them."_s);
}

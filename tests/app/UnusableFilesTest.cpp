// A database that is there but cannot be used, of every kind: the window opens locked, says which
// file it is and what to do, and what it says leads out of it.

#include "app/clsProgram.h"

#include "platform/clsStatusBar.h"
#include "tests/support/Modal.h"
#include "tests/support/Native.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <tuple>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

enum class Kind
{
    DamagedPage,
    Truncated,
    Empty,
    Foreign,
    Text,
    Folder,
    Locked
};
constexpr std::array KindNames
    = {"DamagedPage", "Truncated", "Empty", "Foreign", "Text", "Folder", "Locked"};

bool IsDamage(Kind kind)
{
    return kind == Kind::DamagedPage || kind == Kind::Truncated || kind == Kind::Empty;
}

QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

const QString CopyFolder = u"backup/000002-20260302-080000"_s;

class UnusableFiles : public testing::Test
{
protected:
    UnusableFiles()
    {
        SampleCompany company;
        company.Options.Sync_Option = u"3"_s;
        company.Entries = std::vector{
            SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(3))};
        GlobalOptionsRecord global;
        global.Last_Company = u"ABC"_s;
        BuildSampleCompanies(Folder(), {company}, global);
        MakeInstallation();
        // The newest copy is not sound.
        for (const QString &name :
            {u"backup/000001-20260301-080000"_s, CopyFolder, u"backup/000003-20260303-080000"_s}) {
            QDir().mkpath(Folder() + u'/' + name);
            QFile::copy(
                File(u"ABCEntries-WkLg"_s), Folder() + u'/' + name + u"/ABCEntries-WkLg.db"_s);
        }
        Spoil(Folder() + u"/backup/000003-20260303-080000/ABCEntries-WkLg.db"_s, Kind::DamagedPage);
    }

    QString Folder() const { return m_folder.path(); }
    QString File(const QString &name) const { return Folder() + u'/' + name + u".db"_s; }

    void MakeInstallation() const
    {
        const QString root = Folder() + u"/mas90"_s;
        QDir().mkpath(root + u"/soa"_s);
        QDir().mkpath(root + u"/Home"_s);
        WriteBytes(root + u"/soa/startup.m4p"_s, {});
        WriteBytes(root + u"/Home/pvxwin32.exe"_s, {});
        WriteBytes(Folder() + u"/mas90.ini"_s, (root + u"\n-ARG X\n"_s).toUtf8());
    }

    void Spoil(const QString &path, Kind kind)
    {
        const QByteArray sound = BytesOf(path);
        constexpr qsizetype pageOfRecords = 2 * 4096;
        ASSERT_GT(sound.size(), pageOfRecords);
        QByteArray damaged = sound;
        switch (kind) {
        case Kind::DamagedPage:
            damaged[pageOfRecords] = '\xff'; // the kind of the page
            WriteBytes(path, damaged);
            break;
        case Kind::Truncated:
            WriteBytes(path, sound.left(5000));
            break;
        case Kind::Empty:
            WriteBytes(path, {});
            break;
        case Kind::Foreign:
            OtherProgram(path).Execute(u"PRAGMA application_id = 1"_s);
            break;
        case Kind::Text:
            WriteBytes(path, "Customer_Number,Customer_Name\n");
            break;
        case Kind::Folder:
            ASSERT_TRUE(QFile::remove(path) && QDir().mkdir(path));
            break;
        case Kind::Locked:
            m_other = std::make_unique<OtherProgram>(path);
            m_other->Execute(u"BEGIN EXCLUSIVE"_s);
            break;
        }
    }
    /// What the notice asks for: the file is a sound one again.
    void Repair(const QString &path, const QByteArray &sound)
    {
        m_other.reset();
        QDir().rmdir(path);
        WriteBytes(path, sound);
    }

    void ExpectLocked(const clsProgram &program) const
    {
        EXPECT_THAT(m_messages.Texts(), ElementsAre(u"Please perform a synchronization first."_s));
        ASSERT_NE(program.MainWindow(), nullptr);
        for (const char *name : {"txtCustomer", "cboCompany", "cmdOK", "msgEntryList"})
            EXPECT_FALSE(Control<QWidget>(*program.MainWindow(), name).isEnabled()) << name;
        EXPECT_TRUE(Control<QWidget>(*program.MainWindow(), "cmdSync").isEnabled());
    }
    static QString Notice(const clsProgram &program)
    {
        return Control<clsStatusBar>(*program.MainWindow(), "StatusBar1").currentMessage();
    }
    static QString HelpPage(const clsProgram &program)
    {
        return program.MainWindow()->property("HelpPage").toString();
    }
    static void PressSync(const clsProgram &program)
    {
        QTest::mouseClick(&Control<QPushButton>(*program.MainWindow(), "cmdSync"), Qt::LeftButton);
        LetEventsRun();
    }
    std::unique_ptr<clsProgram> Start()
    {
        auto program = std::make_unique<clsProgram>(Native(Folder()),
            ProgramServices{m_messages, m_keys, m_process, m_clock, m_settings, m_browser});
        program->StartUp();
        return program;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<OtherProgram> m_other;
    clsRecordedMessages m_messages;
    clsRecordedKeys m_keys;
    clsRecordedProcess m_process;
    clsFixedClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
};

class UnusableFile : public UnusableFiles,
                     public testing::WithParamInterface<std::tuple<const char *, Kind>>
{
protected:
    QString Name() const { return QString::fromLatin1(std::get<0>(GetParam())) + u"-WkLg"_s; }
    static Kind TheKind() { return std::get<1>(GetParam()); }
    QString Path() const { return File(Name()); }
};

std::string NameOf(const testing::TestParamInfo<std::tuple<const char *, Kind>> &info)
{
    return std::string(std::get<0>(info.param)) + '_'
        + KindNames.at(static_cast<size_t>(std::get<1>(info.param)));
}

constexpr std::array Kinds = {Kind::DamagedPage, Kind::Truncated, Kind::Empty, Kind::Foreign,
    Kind::Text, Kind::Folder, Kind::Locked};

} // namespace

TEST_P(UnusableFile, LocksTheWindowIsNamedThereAndStaysAsItIs)
{
    Spoil(Path(), TheKind());
    const bool isFile = QFileInfo(Path()).isFile();
    const QByteArray before = BytesOf(Path());
    {
        const auto program = Start();
        ExpectLocked(*program);
        EXPECT_TRUE(Notice(*program).startsWith(Name() + u".db is "_s))
            << Notice(*program).toStdString();
        EXPECT_EQ(HelpPage(*program), u"damaged-files"_s);
    }
    EXPECT_EQ(BytesOf(Path()), before);
    EXPECT_EQ(QFileInfo(Path()).isFile(), isFile);
    EXPECT_TRUE(QFileInfo::exists(Path()));
}

INSTANTIATE_TEST_SUITE_P(All, UnusableFile,
    testing::Combine(
        testing::Values("Company", "GlobalOptions", "ABCCustomers", "ABCOptions", "ABCEntries"),
        testing::ValuesIn(Kinds)),
    NameOf);

namespace {

class FileThatIsWrittenAgain : public UnusableFile
{
};

class LastCompanyFile : public UnusableFile
{
};

class EntriesFile : public UnusableFile
{
};

} // namespace

TEST_P(FileThatIsWrittenAgain, IsSoundAfterTheSynchronizationThatTheWindowStillRuns)
{
    const QByteArray sound = BytesOf(Path());
    Spoil(Path(), TheKind());
    const auto program = Start();
    ExpectLocked(*program);
    if (IsDamage(TheKind())) {
        EXPECT_TRUE(Notice(*program).endsWith(u"Press Sync to write it again."_s));
    }
    m_messages.Shown.clear();
    m_process.Work = [&] { Repair(Path(), sound); };
    PressSync(*program);
    EXPECT_EQ(m_process.Programs.size(), 1);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_TRUE(Control<QWidget>(*program->MainWindow(), "txtCustomer").isEnabled());
    EXPECT_EQ(Notice(*program), QString());
    EXPECT_EQ(HelpPage(*program), QString());
}

INSTANTIATE_TEST_SUITE_P(All, FileThatIsWrittenAgain,
    testing::Combine(
        testing::Values("Company", "ABCCustomers", "ABCEmployee"), testing::ValuesIn(Kinds)),
    NameOf);

TEST_P(LastCompanyFile, IsCreatedAgainByTheSynchronizationWhenItWasDamaged)
{
    Spoil(Path(), TheKind());
    const QByteArray damaged = BytesOf(Path());
    const auto program = Start();
    ExpectLocked(*program);
    m_messages.Shown.clear();
    PressSync(*program);
    EXPECT_EQ(m_process.Programs.size(), 1) << "it holds no synchronization up";
    if (!IsDamage(TheKind())) {
        ExpectLocked(*program);
        EXPECT_FALSE(QFileInfo::exists(Path() + u".damaged"_s));
        return;
    }
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_TRUE(Control<QWidget>(*program->MainWindow(), "txtCustomer").isEnabled());
    EXPECT_EQ(BytesOf(Path() + u".damaged"_s), damaged);
}

INSTANTIATE_TEST_SUITE_P(All, LastCompanyFile,
    testing::Combine(testing::Values("GlobalOptions"), testing::ValuesIn(Kinds)), NameOf);

TEST_P(EntriesFile, HasItsNewestSoundCopyNamedWhichCanBeRestored)
{
    Spoil(Path(), TheKind());
    {
        const auto program = Start();
        EXPECT_TRUE(Notice(*program).endsWith(
            u"Press F1 to restore your entries. The newest sound copy is in "_s + Native(CopyFolder)
            + u"."_s))
            << Notice(*program).toStdString();
    }
    ASSERT_TRUE(QFile::rename(Path(), File(u"old"_s)));
    ASSERT_TRUE(QFile::copy(Folder() + u'/' + CopyFolder + u"/ABCEntries-WkLg.db"_s, Path()));
    m_messages.Shown.clear();
    const auto program = Start();
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_TRUE(Control<QWidget>(*program->MainWindow(), "txtCustomer").isEnabled());
}

INSTANTIATE_TEST_SUITE_P(All, EntriesFile,
    testing::Combine(testing::Values("ABCEntries"),
        testing::Values(Kind::DamagedPage, Kind::Truncated, Kind::Empty, Kind::Foreign, Kind::Text,
            Kind::Folder)),
    NameOf);

TEST_F(UnusableFiles, EntriesWithoutAnyCopyAreNotToBeDeleted)
{
    ASSERT_TRUE(QDir(Folder() + u"/backup"_s).removeRecursively());
    Spoil(File(u"ABCEntries-WkLg"_s), Kind::Truncated);
    const auto program = Start();
    EXPECT_EQ(Notice(*program),
        u"ABCEntries-WkLg.db is damaged. Do not delete it: it contains your entries. There is no "
        "sound copy; press F1."_s);
}

TEST_F(UnusableFiles, AMissingFileIsNoDamage)
{
    ASSERT_TRUE(QFile::remove(File(u"ABCProjects-WkLg"_s)));
    const auto program = Start();
    ExpectLocked(*program);
    EXPECT_EQ(Notice(*program), QString());
    EXPECT_EQ(HelpPage(*program), QString());
}

TEST_F(UnusableFiles, DamageIsFoundAlsoWhileNoEntryUsesTheTable)
{
    ASSERT_TRUE(QFile::remove(File(u"ABCEntries-WkLg"_s)));
    for (const QString &name : {u"ABCMultiplier-WkLg"_s, u"ABCDivisions-WkLg"_s,
             u"ABCProjects-WkLg"_s, u"ABCActivities-WkLg"_s}) {
        SCOPED_TRACE(name.toStdString());
        const QByteArray sound = BytesOf(File(name));
        Spoil(File(name), Kind::DamagedPage);
        m_messages.Shown.clear();
        const auto program = Start();
        ExpectLocked(*program);
        EXPECT_TRUE(Notice(*program).startsWith(name));
        WriteBytes(File(name), sound);
    }
}

// The setup program: what it brings, what it leaves alone, and when it refuses.

#include "tests/packages/windows/SetupFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

class Installer : public SetupFixture
{
protected:
    const QString m_title = u"Worklog Remote Setup"_s;
    const QString m_impossible = Place(QString(260, u'x')); // longer than a name may be
};

/// A file that another program uses and lets nobody write.
class HeldFile
{
public:
    explicit HeldFile(const QString &fileName)
        : m_file(CreateFileW(reinterpret_cast<const wchar_t *>(fileName.utf16()), GENERIC_READ,
            FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }
    ~HeldFile() { CloseHandle(m_file); }
    HeldFile(const HeldFile &) = delete;
    HeldFile &operator=(const HeldFile &) = delete;

private:
    HANDLE m_file;
};

} // namespace

TEST_F(Installer, BringsEveryProgramIntoAFolderWithBlanks)
{
    EXPECT_EQ(Install(Folder()), 0);

    Files installed = Contents(Folder());
    EXPECT_GT(installed.take(u"uninstall.exe"_s).size(), 0);
    EXPECT_THAT(installed.keys(),
        UnorderedElementsAre(u"WorklogRemote.exe"_s, u"WL.HLP"_s, u"worklog-report.exe"_s,
            u"worklog-report.txt"_s, u"pvxwin32.exe"_s, u"README.txt"_s, u"LICENSE.txt"_s,
            u"THIRD-PARTY.txt"_s));
    EXPECT_EQ(installed, Shipped());
    EXPECT_FALSE(QFile::exists(Folder() + u"/setup.new"_s));
}

TEST_F(Installer, BringsProgramsThatRunWithNothingElse)
{
    InstallHere();
    QProcess report;
    report.start(Folder() + u"/worklog-report.exe"_s, {u"--version"_s});
    ASSERT_TRUE(report.waitForFinished()) << report.errorString().toStdString();
    EXPECT_EQ(report.exitCode(), 0);
    EXPECT_THAT(report.readAllStandardOutput().toStdString(), HasSubstr(WORKLOG_VERSION));
    EXPECT_EQ(
        QProcess::execute(Folder() + u"/pvxwin32.exe"_s, {u"--sample"_s, Place(u"mas90"_s)}), 0);
    EXPECT_TRUE(QFile::exists(Place(u"mas90/worklog/Company.csv"_s)));
}

TEST_F(Installer, BringsTextsThatEveryEditorShowsInLines)
{
    InstallHere();
    for (const QString &name :
        {u"README.txt"_s, u"LICENSE.txt"_s, u"THIRD-PARTY.txt"_s, u"worklog-report.txt"_s}) {
        const QByteArray text = Contents(Folder()).value(name);
        EXPECT_GT(text.count('\n'), 10) << name.toStdString();
        EXPECT_EQ(text.count('\n'), text.count("\r\n")) << name.toStdString();
    }
}

TEST_F(Installer, TellsWhoseWorkIsInIt)
{
    InstallHere();
    const std::string text = Contents(Folder()).value(u"THIRD-PARTY.txt"_s).toStdString();
    for (const char *part : {"qt6-base 6.", "sqlite3 3.", "xxhash 0.", "gcc-mingw-w64 ",
             "mingw-w64 ", "nsis 3.", "GNU LESSER GENERAL PUBLIC LICENSE",
             "GNU GENERAL PUBLIC LICENSE", "Files: src/3rdparty/harfbuzz-ng"})
        EXPECT_THAT(text, HasSubstr(part));
}

TEST_F(Installer, NamesNoPlaceOfTheComputerThatBuiltIt)
{
    InstallHere();
    const Files installed = Contents(Folder());
    for (auto file = installed.begin(); file != installed.end(); ++file)
        EXPECT_FALSE(file.value().contains(WORKLOG_BUILT_IN)) << file.key().toStdString();
    // That is how a text in a file is found.
    EXPECT_TRUE(installed.value(u"WorklogRemote.exe"_s).contains("SQLite format 3"));
}

TEST_F(Installer, InstallsIntoAFolderWithLettersOfEveryAlphabet)
{
    const QString folder = Place(u"Zeiten für Ünal, 工時 & часы"_s);
    EXPECT_EQ(Install(folder), 0);
    EXPECT_EQ(AppsEntry().value(u"InstallLocation"_s).toString(), QDir::toNativeSeparators(folder));
    EXPECT_TRUE(QFile::exists(folder + u"/WorklogRemote.exe"_s));
}

TEST_F(Installer, StandsInTheStartMenu)
{
    InstallHere();
    EXPECT_THAT(QDir(MenuFolder()).entryList(QDir::Files),
        UnorderedElementsAre(u"Worklog Remote.lnk"_s, u"Uninstall Worklog Remote.lnk"_s));
    EXPECT_EQ(QFileInfo(MenuFolder() + u"/Worklog Remote.lnk"_s).symLinkTarget(),
        Folder() + u"/WorklogRemote.exe"_s);
    EXPECT_EQ(QFileInfo(MenuFolder() + u"/Uninstall Worklog Remote.lnk"_s).symLinkTarget(),
        Folder() + u"/uninstall.exe"_s);
}

TEST_F(Installer, StandsInTheListOfApps)
{
    InstallHere();
    const QString folder = QDir::toNativeSeparators(Folder());
    int kilobytes = 0;
    for (const QByteArray &file : Shipped())
        kilobytes += int(file.size() + 1023) / 1024;
    const QVariantMap expected{
        {u"DisplayName"_s, u"Worklog Remote"_s},
        {u"DisplayVersion"_s, QStringLiteral(WORKLOG_VERSION)},
        {u"Publisher"_s, u"The Worklog Remote developers"_s},
        {u"DisplayIcon"_s, QString(folder + u"\\WorklogRemote.exe"_s)},
        {u"InstallLocation"_s, folder},
        {u"UninstallString"_s, QString(u'"' + folder + u"\\uninstall.exe\""_s)},
        {u"QuietUninstallString"_s, QString(u'"' + folder + u"\\uninstall.exe\" /S"_s)},
        {u"EstimatedSize"_s, kilobytes},
        {u"NoModify"_s, 1},
        {u"NoRepair"_s, 1},
    };
    const QVariantMap entry = AppsEntry();
    EXPECT_EQ(entry.keys(), expected.keys());
    for (auto value = expected.begin(); value != expected.end(); ++value)
        EXPECT_EQ(
            entry[value.key()].toString().toStdString(), value.value().toString().toStdString())
            << value.key().toStdString();
}

TEST_F(Installer, ReplacesAnOlderProgramAndLeavesTheDataAlone)
{
    for (const QString &name : Shipped().keys())
        Write(Folder() + u'/' + name, "an older version");
    WriteData();
    const QVariantMap settings = Settings();

    EXPECT_EQ(Install(Folder()), 0);

    Files expected = Shipped();
    expected.insert(Data());
    Files installed = Contents(Folder());
    installed.remove(u"uninstall.exe"_s);
    EXPECT_EQ(installed, expected);
    EXPECT_EQ(Settings(), settings);
}

TEST_F(Installer, BringsUpToDateWhereItWasInstalledBefore)
{
    InstallHere();
    Write(Folder() + u"/WL.HLP"_s, "an older help");
    EXPECT_EQ(RunSilently(), 0);
    EXPECT_EQ(Contents(Folder()).value(u"WL.HLP"_s), Shipped().value(u"WL.HLP"_s));
}

TEST_F(Installer, ChangesNothingWhileTheProgramRuns)
{
    InstallHere();
    Write(Folder() + u"/WL.HLP"_s, "an older help");
    QProcess program;
    StartProgram(program);
    const Files before = Contents(Folder());

    EXPECT_EQ(Install(Folder()), 3);
    EXPECT_EQ(Contents(Folder()), before);

    program.kill();
    program.waitForFinished();
    EXPECT_EQ(Install(Folder()), 0); // the lock file that was left behind is in nobody's way
    EXPECT_EQ(Contents(Folder()).value(u"WL.HLP"_s), Shipped().value(u"WL.HLP"_s));
}

TEST_F(Installer, ChangesNothingWhileAnyOfItsFilesIsInUse)
{
    for (const QString &name : Shipped().keys())
        Write(Folder() + u'/' + name, "an older version");
    const Files before = Contents(Folder());
    for (const QString &name : Shipped().keys()) {
        const HeldFile held(Folder() + u'/' + name);
        EXPECT_EQ(Install(Folder()), 3) << name.toStdString();
    }
    EXPECT_EQ(Contents(Folder()), before);
    EXPECT_TRUE(AppsEntry().isEmpty());
    EXPECT_FALSE(QFile::exists(MenuFolder()));
}

TEST_F(Installer, RefusesAFolderThatCannotBeMade)
{
    Write(Place(u"a file"_s), "no folder");
    EXPECT_EQ(Install(Place(u"a file/Worklog Remote"_s)), 4);
    EXPECT_EQ(Install(m_impossible), 4);
    EXPECT_EQ(Contents(Place({})), (Files{{u"a file"_s, "no folder"}}));
    EXPECT_TRUE(AppsEntry().isEmpty());
    EXPECT_FALSE(QFile::exists(MenuFolder()));
}

TEST_F(Installer, DoesNotInstallElsewhereWhenTheFolderIsGivenInAWayThatItDoesNotTake)
{
    EXPECT_EQ(RunSilently(u"\"/D=%1\""_s.arg(QDir::toNativeSeparators(Folder()))), 4);
    EXPECT_EQ(RunSilently(u"/D="_s + Folder()), 4); // with slashes the wrong way round
    EXPECT_EQ(Contents(Place({})), Files());
    EXPECT_TRUE(AppsEntry().isEmpty());
}

TEST_F(Installer, ProposesAFolderThatNeedsNoRights)
{
    QProcess setup;
    setup.start(SetupProgram(), {});
    const SeenDialog page = SeenDialog::WaitFor(m_title, u"for you alone"_s);
    const QString proposed = qEnvironmentVariable("LOCALAPPDATA") + u"\\Programs\\Worklog Remote"_s;
    EXPECT_THAT(page.Texts(), Contains(proposed));
    page.Key(VK_ESCAPE);
    SeenDialog::WaitFor(m_title, u"Are you sure"_s).Key('Y');
    ASSERT_TRUE(setup.waitForFinished());
    EXPECT_EQ(setup.exitCode(), 1);
    EXPECT_TRUE(AppsEntry().isEmpty());
}

TEST_F(Installer, InstallsAndStartsTheProgramWithThreeKeys)
{
    QProcess setup;
    StartSetup(setup, Folder());
    SeenDialog::WaitFor(m_title, u"for you alone"_s).Key(VK_RETURN);
    SeenDialog::WaitFor(m_title, u"You find it in the Start menu."_s).Key(VK_RETURN);
    ASSERT_TRUE(setup.waitForFinished());
    EXPECT_EQ(setup.exitCode(), 0);
    EXPECT_TRUE(Comes([&] { return QFile::exists(Folder() + u"/WLRemote.txt"_s); }));
    EXPECT_TRUE(IsRunning(Folder() + u"/WorklogRemote.exe"_s));
}

TEST_F(Installer, NeedNotStartTheProgram)
{
    QProcess setup;
    StartSetup(setup, Folder());
    SeenDialog::WaitFor(m_title, u"for you alone"_s).Key(VK_RETURN);
    const SeenDialog last = SeenDialog::WaitFor(m_title, u"You find it in the Start menu."_s);
    last.Key(VK_SPACE); // the keyboard is in the box "Start Worklog Remote now"
    last.Key(VK_RETURN);
    ASSERT_TRUE(setup.waitForFinished());
    EXPECT_EQ(setup.exitCode(), 0);
    EXPECT_FALSE(IsRunning(Folder() + u"/WorklogRemote.exe"_s));
}

TEST_F(Installer, WaitsForTheProgramToBeClosed)
{
    InstallHere();
    Write(Folder() + u"/WL.HLP"_s, "an older help");
    QProcess program;
    StartProgram(program);

    QProcess setup;
    StartSetup(setup, Folder());
    SeenDialog::WaitFor(m_title, u"for you alone"_s).Key(VK_RETURN);
    SeenDialog::WaitFor(m_title, u"Worklog Remote is running"_s).Key('R'); // it still is
    const SeenDialog again = SeenDialog::WaitFor(m_title, u"Worklog Remote is running"_s);
    EXPECT_EQ(Contents(Folder()).value(u"WL.HLP"_s), "an older help");
    program.kill();
    program.waitForFinished();
    again.Key('R');

    SeenDialog::WaitFor(m_title, u"You find it in the Start menu."_s);
    EXPECT_EQ(Contents(Folder()).value(u"WL.HLP"_s), Shipped().value(u"WL.HLP"_s));
}

TEST_F(Installer, IsGivenUpWhileTheProgramRuns)
{
    InstallHere();
    Write(Folder() + u"/WL.HLP"_s, "an older help");
    QProcess program;
    StartProgram(program);

    QProcess setup;
    StartSetup(setup, Folder());
    SeenDialog::WaitFor(m_title, u"for you alone"_s).Key(VK_RETURN);
    SeenDialog::WaitFor(m_title, u"Worklog Remote is running"_s).Key(VK_ESCAPE);
    ASSERT_TRUE(setup.waitForFinished());
    EXPECT_EQ(setup.exitCode(), 3);
    EXPECT_EQ(Contents(Folder()).value(u"WL.HLP"_s), "an older help");
}

TEST_F(Installer, AsksForAnotherFolderWhereOneCannotBeMade)
{
    QProcess setup;
    StartSetup(setup, m_impossible);
    const SeenDialog page = SeenDialog::WaitFor(m_title, u"for you alone"_s);
    page.Key(VK_RETURN);
    SeenDialog::WaitFor(m_title, u"Files cannot be written here"_s).Key(VK_RETURN);
    page.Key(VK_ESCAPE); // still the same page
    SeenDialog::WaitFor(m_title, u"Are you sure"_s).Key('Y');
    ASSERT_TRUE(setup.waitForFinished());
    EXPECT_EQ(setup.exitCode(), 1);
    EXPECT_TRUE(AppsEntry().isEmpty());
}

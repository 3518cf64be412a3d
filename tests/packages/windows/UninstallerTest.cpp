// The uninstaller: what goes, what stays, and what it asks.

#include "tests/packages/windows/SetupFixture.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class Uninstaller : public SetupFixture
{
protected:
    /// From its first page to the question about the data.
    SeenDialog AskedAboutTheData() const
    {
        StartUninstaller();
        SeenDialog::WaitFor(m_title, u"will be removed"_s).Key(VK_RETURN);
        EXPECT_TRUE(IsRunning(UninstallerAtWork)); // or nobody would wait for its end
        return SeenDialog::WaitFor(m_title, u"not been handed over"_s);
    }

    void CloseTheLastPage() const
    {
        SeenDialog::WaitFor(m_title, u"completed successfully"_s).Key(VK_RETURN);
        WaitForTheUninstaller();
    }

    const QString m_title = u"Worklog Remote Uninstall"_s;
};

} // namespace

TEST_F(Uninstaller, LeavesNothingWhereTheProgramWasNeverUsed)
{
    InstallHere();
    UninstallHere();
    EXPECT_FALSE(QFile::exists(Folder()));
    EXPECT_FALSE(QFile::exists(MenuFolder()));
    EXPECT_TRUE(AppsEntry().isEmpty());
}

TEST_F(Uninstaller, KeepsTheDataWhenItCannotAsk)
{
    InstallHere();
    WriteData();
    Write(Folder() + u"/WLRemote.txt"_s, {}); // of a program that was killed
    Write(Folder() + u"/setup.new/WL.HLP"_s, "a help"); // of a setup program that was killed
    const QVariantMap settings = Settings();

    UninstallHere();

    EXPECT_EQ(Contents(Folder()), Data());
    EXPECT_EQ(Settings(), settings);
    EXPECT_FALSE(QFile::exists(MenuFolder()));
    EXPECT_TRUE(AppsEntry().isEmpty());
}

TEST_F(Uninstaller, KeepsTheDataUnlessToldOtherwise)
{
    InstallHere();
    WriteData();
    const QVariantMap settings = Settings();

    AskedAboutTheData().Key(VK_RETURN);
    CloseTheLastPage();

    EXPECT_EQ(Contents(Folder()), Data());
    EXPECT_EQ(Settings(), settings);
    EXPECT_TRUE(AppsEntry().isEmpty());
}

TEST_F(Uninstaller, RemovesTheDataOnRequest)
{
    InstallHere();
    WriteData();

    AskedAboutTheData().Key('Y');
    CloseTheLastPage();

    EXPECT_FALSE(QFile::exists(Folder()));
    EXPECT_FALSE(HasSettings());
    EXPECT_FALSE(QFile::exists(MenuFolder()));
    EXPECT_TRUE(AppsEntry().isEmpty());
}

TEST_F(Uninstaller, LeavesWhatItDoesNotKnow)
{
    InstallHere();
    WriteData();
    const Files foreign{{u"notes.txt"_s, "mine"}, {u"ABCEntries-WkLg.old"_s, "put aside"},
        {u"backup/20260309-103000/notes.txt"_s, "mine, too"}, {u"more/ours.db"_s, "elsewhere"}};
    for (auto file = foreign.begin(); file != foreign.end(); ++file)
        Write(Folder() + u'/' + file.key(), file.value());

    AskedAboutTheData().Key('Y');
    CloseTheLastPage();

    EXPECT_EQ(Contents(Folder()), foreign);
}

TEST_F(Uninstaller, AsksNothingWhereThereIsNoData)
{
    InstallHere();
    StartUninstaller();
    SeenDialog::WaitFor(m_title, u"will be removed"_s).Key(VK_RETURN);
    CloseTheLastPage();
    EXPECT_FALSE(QFile::exists(Folder()));
}

TEST_F(Uninstaller, AsksAboutACompanyChoiceOrCopiesAlone)
{
    for (const QString &name : {u"mas90.ini"_s, u"backup/20260309-103000/A.db"_s}) {
        InstallHere();
        Write(Folder() + u'/' + name, "data");
        AskedAboutTheData().Key('Y');
        CloseTheLastPage();
        EXPECT_FALSE(QFile::exists(Folder())) << name.toStdString();
    }
}

TEST_F(Uninstaller, RemovesNothingWhileTheProgramRuns)
{
    InstallHere();
    WriteData();
    QProcess program;
    StartProgram(program);
    const Files before = Contents(Folder());
    const QVariantMap entry = AppsEntry();

    // Told its folder, it makes no copy of itself, and its exit code can be seen.
    QProcess uninstaller;
    uninstaller.setProgram(Folder() + u"/uninstall.exe"_s);
    uninstaller.setNativeArguments(u"/S _?="_s + QDir::toNativeSeparators(Folder()));
    uninstaller.start();
    ASSERT_TRUE(uninstaller.waitForFinished());
    EXPECT_EQ(uninstaller.exitCode(), 3);
    StartUninstaller();
    SeenDialog::WaitFor(m_title, u"Worklog Remote is running"_s).Key(VK_ESCAPE);

    EXPECT_EQ(Contents(Folder()), before);
    EXPECT_EQ(AppsEntry(), entry);
    EXPECT_TRUE(QFile::exists(MenuFolder() + u"/Worklog Remote.lnk"_s));
}

TEST_F(Uninstaller, LeavesTheEntriesOfANewerFolder)
{
    InstallHere();
    ASSERT_EQ(Install(Place(u"another folder"_s)), 0);
    const QVariantMap entry = AppsEntry();

    QProcess::execute(Folder() + u"/uninstall.exe"_s, {u"/S"_s});
    WaitForTheUninstaller();
    EXPECT_FALSE(QFile::exists(Folder()));
    EXPECT_EQ(AppsEntry(), entry);
    EXPECT_TRUE(QFile::exists(MenuFolder() + u"/Worklog Remote.lnk"_s));
}

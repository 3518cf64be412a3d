// The .deb, installed into an empty root: what it brings, and what a user's first start makes of
// it.

#include "tests/packages/PackageFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

namespace {

const QString AppId = QStringLiteral("org.worklogremote.WorklogRemote");

class Deb : public PackageFixture
{
protected:
    Deb()
    {
        Write(Place(u"root/var/lib/dpkg/status"_s), {});
        QDir().mkpath(Place(u"root/var/lib/dpkg/updates"_s));
        QDir().mkpath(Place(u"root/var/lib/dpkg/info"_s));
        // The libraries that it depends on are the real system's.
        Dpkg({u"--force-depends"_s, u"--install"_s, Package(u".deb"_s)});
    }

    void Dpkg(const QStringList &arguments) const
    {
        Run(u"fakeroot"_s,
            QStringList{u"dpkg"_s, u"--root="_s + Place(u"root"_s), u"--force-not-root"_s,
                u"--force-bad-path"_s, u"--log=/dev/null"_s}
                + arguments);
    }

    QString Installed(const QString &name) const { return Place(u"root/usr/"_s + name); }
    QString ProgramFolder() const { return Place(u"home/data/worklog-remote"_s); }
    QMap<QString, QString> User() const
    {
        return {{u"HOME"_s, Place(u"home"_s)}, {u"XDG_DATA_HOME"_s, Place(u"home/data"_s)},
            {u"XDG_CONFIG_HOME"_s, Place(u"home/config"_s)}};
    }
    ProgramUnderTest Start() const
    {
        return ProgramUnderTest(
            ProgramUnderTest::Command{Installed(u"bin/worklog-remote"_s), User()}, m_display);
    }
    /// As a desktop's menu does, where standard error is no terminal.
    ProgramUnderTest StartFromMenu() const
    {
        return ProgramUnderTest(
            ProgramUnderTest::Command{u"/bin/sh"_s, User(),
                {u"-c"_s, u"exec \"$0\" 2>/dev/null"_s, Installed(u"bin/worklog-remote"_s)}},
            m_display);
    }

    VirtualDisplay m_display;
};

} // namespace

TEST_F(Deb, IsStartedByAUserSynchronisesAndReportsWithoutTouchingTheSystem)
{
    const QString root = MakeInstallation(Installed(u"lib/worklog-remote/pvxwin32.exe"_s));
    Write(Place(u"root/etc/worklog-remote/mas90.ini"_s), LaunchFile(root));
    const QMap<QString, QByteArray> before = Contents(Place(u"root"_s));
    {
        ProgramUnderTest program = Start();
        SynchroniseFirst(program);
        program.Key(u"F1"_s);
        program.WaitUntilActive(u"frmHelp"_s);
        program.Key(u"Escape"_s);
        program.WaitUntilClosed(u"frmHelp"_s);
        program.EnterTime(u"7.5"_s, u"From the package"_s);
        program.Click(u"cmdOK"_s);
        ProgramUnderTest::WaitUntil(u"the entry"_s, [&] {
            const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
            return rows.size() == 1 && rows[0].contains(u"7.50"_s);
        });
        // Beside the open program.
        const QByteArray report
            = Run(Installed(u"bin/worklog-report"_s), {u"entries"_s}, 0, User());
        EXPECT_TRUE(report.contains("From the package")) << report.toStdString();
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    EXPECT_THAT(QDir(ProgramFolder()).entryList(QDir::Files),
        IsSupersetOf({u"WorklogRemote"_s, u"WL.HLP"_s, u"mas90.ini"_s, u"Company-WkLg.db"_s,
            u"ABCEntries-WkLg.db"_s}));
    EXPECT_EQ(Contents(Place(u"root"_s)), before);
}

TEST_F(Deb, BringsTheUsersProgramUpToDateAndLeavesTheDataAlone)
{
    Write(ProgramFolder() + u"/WorklogRemote"_s, "an old program");
    Write(ProgramFolder() + u"/WL.HLP"_s, "an old help");
    Write(ProgramFolder() + u"/mas90.ini"_s, "the user's own");
    Write(ProgramFolder() + u"/XYZEntries-WkLg.db"_s, "precious");
    Write(Place(u"root/etc/worklog-remote/mas90.ini"_s), "the administrator's");
    {
        ProgramUnderTest program = Start();
        program.WaitForMessage(u"Please perform a synchronization first."_s);
    }
    for (const QString &name : {u"WorklogRemote"_s, u"WL.HLP"_s})
        EXPECT_EQ(
            Read(ProgramFolder() + u'/' + name), Read(Installed(u"lib/worklog-remote/"_s + name)));
    EXPECT_EQ(Read(ProgramFolder() + u"/mas90.ini"_s), "the user's own");
    EXPECT_EQ(Read(ProgramFolder() + u"/XYZEntries-WkLg.db"_s), "precious");
    EXPECT_TRUE(QDir(ProgramFolder()).entryList({u"*.new.*"_s}).isEmpty());
    EXPECT_TRUE(QFileInfo(ProgramFolder() + u"/WorklogRemote"_s).isExecutable());
}

TEST_F(Deb, LeavesTheUsersFolderWhenItIsRemoved)
{
    Write(ProgramFolder() + u"/ABCEntries-WkLg.db"_s, "precious");
    Dpkg({u"--remove"_s, u"worklog-remote"_s});
    EXPECT_FALSE(QFile::exists(Installed(u"bin/worklog-remote"_s)));
    EXPECT_FALSE(QFile::exists(Installed(u"lib/worklog-remote"_s)));
    EXPECT_EQ(Read(ProgramFolder() + u"/ABCEntries-WkLg.db"_s), "precious");
}

TEST_F(Deb, KeepsWhatAUserHasWorkedFromOthers)
{
    {
        ProgramUnderTest program = Start();
        program.WaitForMessage(u"Please perform a synchronization first."_s);
    }
    EXPECT_EQ(QFile::permissions(ProgramFolder()) & (QFile::ReadGroup | QFile::ReadOther),
        QFile::Permissions());
}

TEST_F(Deb, TakesTheRightsOfOthersFromAFolderThatWasThere)
{
    ASSERT_TRUE(QDir().mkpath(ProgramFolder()));
    ASSERT_TRUE(QFile::setPermissions(ProgramFolder(),
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ReadOther
            | QFile::ExeOther));
    {
        ProgramUnderTest program = Start();
        program.WaitForMessage(u"Please perform a synchronization first."_s);
    }
    EXPECT_EQ(QFile::permissions(ProgramFolder())
            & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther),
        QFile::Permissions());
}

TEST_F(Deb, ShowsAMessageWhenItCannotBeStartedFromTheMenu)
{
    const QString launcher = ProgramFolder() + u"/WorklogRemote"_s;
    ASSERT_TRUE(QDir().mkpath(launcher));
    ProgramUnderTest program = StartFromMenu();
    program.WaitForMessage(launcher
        + u" cannot be written: mv: cannot overwrite directory '%1' with non-directory"_s.arg(
            launcher));
    program.Answer(u"OK"_s);
    EXPECT_EQ(program.WaitForEnd(), 1);
}

TEST_F(Deb, LetsOnlyTheAdministratorChangeWhatIsInstalled)
{
    const QString list
        = QString::fromUtf8(Run(u"dpkg-deb"_s, {u"--contents"_s, Package(u".deb"_s)}));
    const QRegularExpression fine(u"^(lrwxrwxrwx|drwxr-xr-x|-rwxr-xr-x|-rw-r--r--) root/root "_s);
    const QStringList lines = list.split(u'\n', Qt::SkipEmptyParts);
    EXPECT_GT(lines.size(), 20);
    for (const QString &line : lines)
        EXPECT_TRUE(fine.match(line).hasMatch()) << line.toStdString();
}

TEST_F(Deb, NamesNoPlaceOfTheComputerThatBuiltIt)
{
    EXPECT_THAT(FilesThatSay(Place(u"root/usr"_s), WORKLOG_BUILT_IN), IsEmpty());
    // That is how a text in a file is found.
    EXPECT_THAT(FilesThatSay(Place(u"root/usr"_s), "Exec=worklog-remote"), SizeIs(1));
}

TEST_F(Deb, ReportsOnAnotherFolderWhenAsked)
{
    Run(Installed(u"bin/worklog-report"_s), {u"--help"_s}, 0, User());
    for (const QString &folder : {u"--folder"_s, u"-folder"_s})
        Run(Installed(u"bin/worklog-report"_s), {u"days"_s, folder, Place(u"nowhere"_s)}, 1,
            User());
    EXPECT_FALSE(QFile::exists(ProgramFolder())); // a report lays nothing down
}

TEST_F(Deb, NamesTheLibrariesThatItNeeds)
{
    const QByteArray needed = Run(u"dpkg-deb"_s, {u"--field"_s, Package(u".deb"_s), u"Depends"_s});
    for (const char *library : {"libqt6widgets6", "libqt6gui6", "libsqlite3-0", "libc6"})
        EXPECT_TRUE(needed.contains(library)) << library;
    EXPECT_EQ(Run(u"dpkg-deb"_s, {u"--field"_s, Package(u".deb"_s), u"Version"_s})
                  .trimmed()
                  .toStdString(),
        WORKLOG_VERSION);
}

TEST_F(Deb, SuitsADesktop)
{
    const QString desktop = Installed(u"share/applications/"_s + AppId + u".desktop"_s);
    const QString metainfo = Installed(u"share/metainfo/"_s + AppId + u".metainfo.xml"_s);
    EXPECT_EQ(Run(u"desktop-file-validate"_s, {desktop}).toStdString(), "");
    Run(u"appstreamcli"_s, {u"validate"_s, u"--no-net"_s, metainfo});
    EXPECT_TRUE(Read(metainfo).contains("<release version=\"" WORKLOG_VERSION "\""));
    EXPECT_TRUE(Read(desktop).contains("Icon=" + AppId.toUtf8() + '\n'));
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QImage icon(Installed(
            u"share/icons/hicolor/%1x%1/apps/%2.png"_s.arg(QString::number(size), AppId)));
        EXPECT_EQ(icon.size(), QSize(size, size));
    }
    EXPECT_TRUE(
        QFile::exists(Installed(u"share/icons/hicolor/scalable/apps/"_s + AppId + u".svg"_s)));
}

TEST_F(Deb, TellsWhatHasChangedAndHasManualPagesSetWithoutAWarning)
{
    EXPECT_TRUE(Run(u"gzip"_s, {u"-dc"_s, Installed(u"share/doc/worklog-remote/changelog.gz"_s)})
                    .startsWith("# Changelog"));
    for (const char *page : {"worklog-remote", "worklog-report"}) {
        const QString packed
            = Installed(u"share/man/man1/"_s + QString::fromLatin1(page) + u".1.gz"_s);
        const QString plain = Place(QString::fromLatin1(page));
        Write(plain, Run(u"gzip"_s, {u"-dc"_s, packed}));
        const QByteArray warnings
            = Run(u"sh"_s, {u"-c"_s, u"groff -ww -man -Tutf8 -z \"$1\" 2>&1"_s, u"sh"_s, plain});
        EXPECT_EQ(warnings.toStdString(), "") << page;
    }
}

// The .deb on a system that has nothing but what the package asks for: a root folder of its own,
// laid down from the packages that are installed here, so nothing is downloaded.

#include "tests/packages/PackageFixture.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

#include <unistd.h>

using namespace Qt::StringLiterals;
using testing::IsSupersetOf;

namespace {

class CleanRoot : public PackageFixture
{
protected:
    CleanRoot()
        : m_root(Place(u"root"_s))
        , m_enter(::geteuid() == 0
                  ? QStringList{u"chroot"_s, m_root}
                  : QStringList{u"unshare"_s, u"--map-root-user"_s, u"--root="_s + m_root})
    {
    }

    void SetUp() override
    {
        Run(u"python3"_s, {QStringLiteral(WORKLOG_MAKE_ROOT), m_root, Package(u".deb"_s)});
        if (HasFailure())
            return;
        QProcess entrance;
        entrance.start(m_enter[0], m_enter.mid(1) + QStringList{u"/bin/true"_s});
        if (!entrance.waitForFinished() || entrance.exitCode() != 0)
            GTEST_SKIP() << "this machine lets nobody but root enter a root folder: "
                         << entrance.readAllStandardError().toStdString();
    }

    /// dpkg on the root's own list of packages; its status.
    void Dpkg(const QStringList &arguments, int status = 0) const
    {
        Run(u"fakeroot"_s,
            QStringList{u"dpkg"_s, u"--root="_s + m_root, u"--force-not-root"_s,
                u"--force-bad-path"_s, u"--log=/dev/null"_s}
                + arguments,
            status);
    }

    QByteArray RunInside(const QStringList &command) const
    {
        return Run(m_enter[0], m_enter.mid(1) + command);
    }

    /// The probe, and what of its own needs the program does not have, apart from the system.
    void BringProbe() const
    {
        const QString probe = QStringLiteral(WORKLOG_PROBE);
        QDir().mkpath(m_root + u"/probe/generic"_s);
        QFile::copy(probe, m_root + u"/probe/generic/libworklogprobe.so"_s);
        for (const QByteArray &line : Run(u"ldd"_s, {probe}).split('\n')) {
            const qsizetype arrow = line.indexOf("=> /");
            if (arrow < 0)
                continue;
            const QString library = QString::fromLocal8Bit(line.mid(arrow + 3).split(' ')[0]);
            if (!QFile::exists(m_root + library))
                QFile::copy(library, m_root + u"/probe/"_s + QFileInfo(library).fileName());
        }
    }

    /// A user's start of the installed program; their home is /home/user.
    QString StartScript() const
    {
        const QString script = Place(u"start"_s);
        const QString command
            = u"#!/bin/sh\nexec %1 /usr/bin/env -u TMPDIR -u XDG_DATA_HOME -u XDG_RUNTIME_DIR "
              "HOME=/home/user LD_LIBRARY_PATH=/probe /usr/bin/worklog-remote\n"_s;
        Write(script, command.arg(m_enter.join(u' ')).toUtf8());
        QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner);
        return script;
    }

    const QString m_root;
    const QStringList m_enter;
    VirtualDisplay m_display;
};

/// The folder for temporary files, where this process looks for the probe's socket.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(const QString &folder) { qputenv("TMPDIR", folder.toLocal8Bit()); }
    ~TemporaryFolder()
    {
        if (m_before.isEmpty())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_before);
    }

private:
    const QByteArray m_before = qgetenv("TMPDIR");
};

} // namespace

TEST_F(CleanRoot, ThePackageInstallsStartsSynchronisesAndReports)
{
    Dpkg({u"--install"_s, Package(u".deb"_s)}); // refuses when a dependency is not there
    // Without the probe, which brings libraries along.
    for (const QString &program : {u"WorklogRemote"_s, u"pvxwin32.exe"_s, u"worklog-report"_s})
        RunInside({u"/lib64/ld-linux-x86-64.so.2"_s, u"--list"_s,
            u"/usr/lib/worklog-remote/"_s + program});
    RunInside({u"/usr/lib/worklog-remote/pvxwin32.exe"_s, u"--sample"_s, u"/srv/mas90"_s});
    Write(m_root + u"/etc/worklog-remote/mas90.ini"_s, LaunchFile(u"/srv/mas90"_s));
    QDir().mkpath(m_root + u"/home/user"_s);
    BringProbe();

    const TemporaryFolder socketsAreHere(m_root + u"/tmp"_s);
    ProgramUnderTest program(
        ProgramUnderTest::Command{StartScript(), {{u"QT_PLUGIN_PATH"_s, u"/probe"_s}}}, m_display);
    SynchroniseFirst(program);
    program.EnterTime(u"7.5"_s, u"From a clean root"_s);
    program.Click(u"cmdOK"_s);
    program.WaitForRows(u"msgEntryList"_s, 1);
    program.Key(u"Escape"_s);
    EXPECT_EQ(program.WaitForEnd(), 0);

    EXPECT_THAT(QDir(m_root + u"/home/user/.local/share/worklog-remote"_s).entryList(QDir::Files),
        IsSupersetOf(
            {u"WorklogRemote"_s, u"WL.HLP"_s, u"Company-WkLg.db"_s, u"ABCEntries-WkLg.db"_s}));
    const QByteArray report = RunInside(
        {u"/usr/bin/env"_s, u"HOME=/home/user"_s, u"/usr/bin/worklog-report"_s, u"entries"_s});
    EXPECT_TRUE(report.contains("From a clean root")) << report.toStdString();
}

TEST_F(CleanRoot, ThePackageIsRefusedWhereSomethingThatItNeedsIsMissing)
{
    Dpkg({u"--force-depends"_s, u"--purge"_s, u"libsqlite3-0"_s});
    Dpkg({u"--install"_s, Package(u".deb"_s)}, 1);
}

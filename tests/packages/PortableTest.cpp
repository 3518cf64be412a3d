// The portable archive: unpacked anywhere, it runs there with its databases inside.

#include "tests/packages/PackageFixture.h"

#include <QDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

namespace {

class Portable : public PackageFixture
{
protected:
    Portable()
        : m_folder(
            Place(u"anywhere/worklog-remote-"_s + QStringLiteral(WORKLOG_VERSION) + u"-portable"_s))
    {
        QDir().mkpath(Place(u"anywhere"_s));
        Run(u"tar"_s, {u"-xf"_s, Package(u".tar.gz"_s), u"-C"_s, Place(u"anywhere"_s)});
    }

    VirtualDisplay m_display;
    QString m_folder;
};

} // namespace

TEST_F(Portable, IsOneFolderWithThePrograms)
{
    EXPECT_THAT(QDir(m_folder).entryList(QDir::Files),
        UnorderedElementsAre(u"LICENSE"_s, u"README.txt"_s, u"WL.HLP"_s, u"WorklogRemote"_s,
            u"pvxwin32.exe"_s, u"worklog-report"_s, u"worklog-report.1"_s));
}

TEST_F(Portable, NamesNoPlaceOfTheComputerThatBuiltIt)
{
    EXPECT_THAT(FilesThatSay(m_folder, WORKLOG_BUILT_IN), IsEmpty());
}

TEST_F(Portable, RunsWhereItIsUnpackedWithItsDatabasesInside)
{
    const QString root = MakeInstallation(m_folder + u"/pvxwin32.exe"_s);
    Write(m_folder + u"/mas90.ini"_s, LaunchFile(root));
    {
        ProgramUnderTest program(m_folder, m_display);
        SynchroniseFirst(program);
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    EXPECT_THAT(QDir(m_folder).entryList(QDir::Files),
        IsSupersetOf({u"Company-WkLg.db"_s, u"ABCEntries-WkLg.db"_s}));
    const QByteArray report = Run(m_folder + u"/worklog-report"_s, {u"days"_s});
    EXPECT_TRUE(report.startsWith("\"Date\",")) << report.toStdString();
}

#include "sync/LaunchFile.h"

#include "platform/clsProcess.h"
#include "platform/clsRunTimeError.h"
#include "tests/support/Native.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#ifdef Q_OS_UNIX
#include "tests/support/SmallDisk.h"

#include <filesystem>
#endif

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class LaunchFileTest : public testing::Test
{
protected:
    QString Written(const QByteArray &content)
    {
        const QString path = m_folder.filePath(u"mas90.ini"_s);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }

    static QByteArray Content(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text));
        return file.readAll();
    }

    QTemporaryDir m_folder;
};

TEST_F(LaunchFileTest, ALongerOneThanAllowedIsRefusedNotCut)
{
    const QString path = Written("/srv/mas90\n" + QByteArray(64 * 1024, 'x') + " end\n");
    const Raised raised = RaisedBy([&] { ReadLaunchFile(path); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(path) && raised.Names(u"65536 bytes"_s))
        << raised.Description.toStdString();
}

#ifdef Q_OS_UNIX

TEST_F(LaunchFileTest, IsNeverWrittenThroughALink)
{
    const QString path = Written("/srv/mas90\n-ARG X\n");
    const QString target = m_folder.filePath(u"private"_s);
    std::filesystem::create_symlink(target.toStdString(), (path + u".new"_s).toStdString());
    WriteLaunchFile(path, {u"/srv/other"_s, u"-ARG Y"_s});
    EXPECT_FALSE(QFile::exists(target));
    EXPECT_EQ(Content(path), "/srv/other\n-ARG Y\n");
}

TEST_F(LaunchFileTest, StaysAsPrivateAsItWas)
{
    const QString path = Written("/srv/mas90\n-ARG X\n");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    const QFile::Permissions before = QFile::permissions(path);
    WriteLaunchFile(path, {u"/srv/other"_s, u"-ARG Y"_s});
    EXPECT_EQ(QFile::permissions(path), before);
}

#endif

struct Form
{
    const char *Name;
    QByteArray Content;
    QString Root;
    QString Arguments;

    friend void PrintTo(const Form &form, std::ostream *stream) { *stream << form.Name; }
};

class LaunchFileForms : public LaunchFileTest, public testing::WithParamInterface<Form>
{
};

} // namespace

TEST_P(LaunchFileForms, IsReadAsPeopleHaveIt)
{
    const LaunchFile launch = ReadLaunchFile(Written(GetParam().Content));
    EXPECT_EQ(launch.Root, GetParam().Root);
    EXPECT_EQ(launch.Arguments, GetParam().Arguments);
}

INSTANTIATE_TEST_SUITE_P(Forms, LaunchFileForms,
    testing::Values(Form{"LineFeeds", "/srv/mas90\n-ARG X\n", u"/srv/mas90"_s, u"-ARG X"_s},
        Form{"CarriageReturns", "C:\\mas90\r\n-ARG X\r\n", u"C:\\mas90"_s, u"-ARG X"_s},
        Form{"NoLastLineEnd", "/srv/mas90\n-ARG X", u"/srv/mas90"_s, u"-ARG X"_s},
        Form{"ByteOrderMark", "\xEF\xBB\xBF/srv/mas90\n-ARG X\n", u"/srv/mas90"_s, u"-ARG X"_s},
        Form{"Utf8", "/srv/B\xC3\xBCro\n-ARG X\n", u"/srv/Büro"_s, u"-ARG X"_s},
        Form{"Ansi", "/srv/B\xFCro\n-ARG X\n", u"/srv/Büro"_s, u"-ARG X"_s},
        Form{"SpacesAroundTheRoot", "  /srv/mas90 \r\n-ARG X\r\n", u"  /srv/mas90 "_s, u"-ARG X"_s},
        Form{"SpacesAroundTheArguments", "/srv/mas90\n -ARG X \t\r\n", u"/srv/mas90"_s,
            u" -ARG X \t"_s},
        Form{"EmptyArguments", "/srv/mas90\n\n", u"/srv/mas90"_s, QString()},
        Form{"AnEmptyLineBefore", "\r\n/srv/mas90\r\n-ARG X\r\n", QString(), u"/srv/mas90"_s},
        Form{"AnEmptyLineBetween", "/srv/mas90\r\n\r\n-ARG X\r\n", u"/srv/mas90"_s, QString()},
        Form{"MoreLines", "/srv/mas90\n-ARG X\nmore\n", u"/srv/mas90"_s, u"-ARG X"_s}),
    [](const auto &form) { return std::string(form.param.Name); });

TEST_F(LaunchFileTest, AMissingFileIsNamed)
{
    const QString path = m_folder.filePath(u"mas90.ini"_s);
    const Raised raised = RaisedBy([&] { ReadLaunchFile(path); });
    EXPECT_EQ(raised.Number, RunTimeErrors::FileNotFound);
    EXPECT_TRUE(raised.Names(path)) << raised.Description.toStdString();
}

TEST_F(LaunchFileTest, AFileWithoutTwoLinesIsNamed)
{
    for (const QByteArray &content : {QByteArray(), QByteArray("\xEF\xBB\xBF"),
             QByteArray("/srv/mas90"), QByteArray("/srv/mas90\n"), QByteArray("\r\n")}) {
        const QString path = Written(content);
        const Raised raised = RaisedBy([&] { ReadLaunchFile(path); });
        EXPECT_EQ(raised.Number, RunTimeErrors::PastEndOfFile) << content.toStdString();
        EXPECT_TRUE(raised.Names(path));
    }
}

TEST_F(LaunchFileTest, AFolderInItsPlaceCannotBeRead)
{
    const QString path = m_folder.filePath(u"mas90.ini"_s);
    ASSERT_TRUE(QDir().mkdir(path));
    const Raised raised = RaisedBy([&] { ReadLaunchFile(path); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(path));
}

TEST_F(LaunchFileTest, IsWrittenWholeWithoutAnythingBesideIt)
{
    const QString path = Written("/old\nold arguments that are much longer than the new ones\n");
    WriteLaunchFile(path, {u"/srv/Büro/mas90"_s, u"-ARG X"_s});
    EXPECT_EQ(Content(path), u"/srv/Büro/mas90\n-ARG X\n"_s.toUtf8());
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList{u"mas90.ini"_s});
    const LaunchFile launch = ReadLaunchFile(path);
    EXPECT_EQ(launch.Root, u"/srv/Büro/mas90"_s);
    EXPECT_EQ(launch.Arguments, u"-ARG X"_s);
}

#ifdef Q_OS_UNIX // Windows limits nobody's files
TEST_F(LaunchFileTest, AFullDiskLeavesTheOldOne)
{
    const QByteArray before("/old\n-ARG OLD\n");
    const QString path = Written(before);
    Raised raised;
    {
        const SmallDisk full(10);
        raised = RaisedBy([&] { WriteLaunchFile(path, {u"/srv/mas90"_s, u"-ARG X"_s}); });
    }
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(path)) << raised.Description.toStdString();
    EXPECT_EQ(Content(path), before);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList{u"mas90.ini"_s});
}
#endif

TEST_F(LaunchFileTest, AFolderThatIsGoneIsNamed)
{
    const QString path = m_folder.filePath(u"gone/mas90.ini"_s);
    const Raised raised = RaisedBy([&] { WriteLaunchFile(path, {u"/srv/mas90"_s, u"-ARG X"_s}); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(path)) << raised.Description.toStdString();
}

TEST(LaunchArguments, HaveTheFormsOfBothInstallations)
{
    EXPECT_EQ(MAS90Arguments(Native(u"/srv/mas90"_s)),
        Native(u"\"/srv/mas90/launcher/sota.ini\" \"/srv/mas90/kv/kv_startup.m4p\" "
               u"-ARG RUN_DIRECT UION * WLWXBA"_s));
    EXPECT_EQ(MAS200Arguments(Native(u"/srv/%2/mas90"_s), u"%3"_s, u"10000"_s),
        Native(u"\"/srv/%2/mas90/launcher/sota.ini\" KV_Client -ARG \"%3\" \"10000\" "
               u"\"KV_DIRECT\" -ARG=RUN_DIRECT UION * WLWXBA"_s));
}

TEST(LaunchArguments, KeepAQuoteInANameInItsPlace)
{
    EXPECT_THAT(SplitCommandLine(MAS90Arguments(Native(u"/srv/a\" b"_s))),
        ElementsAre(Native(u"/srv/a\" b/launcher/sota.ini"_s),
            Native(u"/srv/a\" b/kv/kv_startup.m4p"_s), u"-ARG"_s, u"RUN_DIRECT"_s, u"UION"_s,
            u"*"_s, u"WLWXBA"_s));
    EXPECT_THAT(SplitCommandLine(MAS200Arguments(Native(u"/srv"_s), u"ho\"st"_s, u"\"1"_s)),
        ElementsAre(Native(u"/srv/launcher/sota.ini"_s), u"KV_Client"_s, u"-ARG"_s, u"ho\"st"_s,
            u"\"1"_s, u"KV_DIRECT"_s, u"-ARG=RUN_DIRECT"_s, u"UION"_s, u"*"_s, u"WLWXBA"_s));
}

TEST(ClientCommandLine, KeepsAQuoteInTheFoldersName)
{
    const QString folder = u"/home/jo/the \"new\" log"_s;
    const QString arguments = ClientArguments({u"/srv"_s, u"-ARG X"_s}, folder);
    EXPECT_THAT(SplitCommandLine(arguments),
        ElementsAre(u"-hd"_s, u"-ARG"_s, u"X"_s, u"/home/jo/the*\"new\"*log"_s));
    EXPECT_TRUE(TellsFolder(arguments, folder));
}

TEST(ClientCommandLine, DoesNotTellTheFolderBehindAQuoteTooMany)
{
    EXPECT_FALSE(
        TellsFolder(ClientArguments({u"/srv"_s, u"-ARG \"X"_s}, u"/home/jo"_s), u"/home/jo"_s));
    EXPECT_TRUE(TellsFolder(ClientArguments({u"/srv"_s, {}}, u"/home/jo"_s), u"/home/jo"_s));
}

TEST(ClientCommandLine, CannotTellAFolderWithBlanksAndStars)
{
    for (const auto &[folder, told] : {std::pair{u"/home/jo/my log"_s, true},
             std::pair{u"/home/jo/my*log"_s, true}, std::pair{u"/home/jo/my *log*"_s, false}}) {
        const QString arguments = ClientArguments({u"/srv"_s, u"-ARG X"_s}, folder);
        EXPECT_EQ(TellsFolder(arguments, folder), told) << folder.toStdString();
    }
}

TEST(ClientCommandLine, PutsTheFolderLastInQuotesWithAStarForEachBlank)
{
    const LaunchFile launch{Native(u"/srv/mas90"_s),
        u"\"/srv/mas90/launcher/sota.ini\" \"/srv/mas90/kv/kv_startup.m4p\" "
        u"-ARG RUN_DIRECT UION * WLWXBA"_s};
    EXPECT_EQ(ClientCommandLine(launch, u"/home/jo/My Work  Log"_s),
        Native(u"/srv/mas90/Home/pvxwin32.exe"_s)
            + u" -hd \"/srv/mas90/launcher/sota.ini\" "
              u"\"/srv/mas90/kv/kv_startup.m4p\" -ARG RUN_DIRECT UION * WLWXBA "
              u"\"/home/jo/My*Work**Log\""_s);
}

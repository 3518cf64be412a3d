#include "sync/LaunchFile.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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

    QTemporaryDir m_folder;
};

struct Form
{
    const char *Name;
    QByteArray Content;
    QString Root;
    QString Arguments;
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
        Form{"BlanksAroundTheRoot", "  /srv/mas90 \n-ARG X\n", u"/srv/mas90"_s, u"-ARG X"_s},
        Form{"EmptyArguments", "/srv/mas90\n\n", u"/srv/mas90"_s, QString()}),
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
    for (const QByteArray &content : {QByteArray(), QByteArray("/srv/mas90"),
             QByteArray("/srv/mas90\n"), QByteArray("\n-x\n")}) {
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

TEST(ClientCommandLine, PutsTheFolderLastInQuotesWithAStarForEachBlank)
{
    const LaunchFile launch{u"/srv/mas90"_s,
        u"\"/srv/mas90/launcher/sota.ini\" \"/srv/mas90/kv/kv_startup.m4p\" "
        u"-ARG RUN_DIRECT UION * WLWXBA"_s};
    EXPECT_EQ(ClientCommandLine(launch, u"/home/jo/My Work  Log"_s),
        u"/srv/mas90/Home/pvxwin32.exe -hd \"/srv/mas90/launcher/sota.ini\" "
        u"\"/srv/mas90/kv/kv_startup.m4p\" -ARG RUN_DIRECT UION * WLWXBA "
        u"\"/home/jo/My*Work**Log\""_s);
}

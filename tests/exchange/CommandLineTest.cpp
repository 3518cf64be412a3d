#include "exchange/CommandLine.h"

#include "platform/clsRunTimeError.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

using Wish = CommandLine::Wish;

TEST(CommandLine, TheLastArgumentIsTheProgramFolder)
{
    const CommandLine command
        = ParseCommandLine({u"-hd"_s, u"a"_s, u"--help"_s, u"*"_s, u"/x/y*z"_s});
    EXPECT_EQ(command.What, Wish::Synchronise);
    EXPECT_EQ(command.Folder, u"/x/y*z"_s);
    EXPECT_EQ(ParseCommandLine({u"-hd"_s, u"/x"_s}).What, Wish::Synchronise);
}

TEST(CommandLine, HelpAndSampleStandAlone)
{
    EXPECT_EQ(ParseCommandLine({u"--help"_s}).What, Wish::ShowHelp);
    const CommandLine sample = ParseCommandLine({u"--sample"_s, u"/r"_s});
    EXPECT_EQ(sample.What, Wish::MakeSample);
    EXPECT_EQ(sample.Folder, u"/r"_s);
}

TEST(CommandLine, NothingElseIsUnderstood)
{
    const QList<QStringList> calls = {{}, {u"-hd"_s}, {u"-hd"_s, u"a"_s, u""_s}, {u"--sample"_s},
        {u"--sample"_s, u""_s}, {u"--sample"_s, u"a"_s, u"b"_s}, {u"--help"_s, u"a"_s}, {u"/x"_s},
        {u"-HD"_s, u"/x"_s}, {u"x"_s, u"-hd"_s, u"/x"_s}};
    for (const QStringList &call : calls)
        EXPECT_EQ(ParseCommandLine(call).What, Wish::NotUnderstood) << qPrintable(call.join(u' '));
}

TEST(CommandLine, AStarStandsForABlank)
{
    const QTemporaryDir parent;
    ASSERT_TRUE(QDir(parent.path()).mkdir(u"a b  c"_s));
    EXPECT_EQ(
        ProgramFolderFromArgument(parent.filePath(u"a*b**c"_s)), parent.filePath(u"a b  c"_s));
}

#ifdef Q_OS_UNIX // Windows has no such names
TEST(CommandLine, AFolderWithAStarInItsNameIsTakenAsItIsCalled)
{
    const QTemporaryDir parent;
    ASSERT_TRUE(QDir(parent.path()).mkdir(u"a*b"_s));
    ASSERT_TRUE(QDir(parent.path()).mkdir(u"a b"_s));
    EXPECT_EQ(ProgramFolderFromArgument(parent.filePath(u"a*b"_s)), parent.filePath(u"a*b"_s));
}
#endif

TEST(CommandLine, AMissingFolderIsNamed)
{
    const QTemporaryDir parent;
    try {
        ProgramFolderFromArgument(parent.filePath(u"no*where"_s));
        FAIL() << "a folder was found";
    } catch (const clsRunTimeError &error) {
        EXPECT_EQ(error.Number(), RunTimeErrors::PathNotFound);
        EXPECT_TRUE(error.Description().contains(u"no where"_s));
    }
}

} // namespace

#include "platform/Paths.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

QString Native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

void WriteFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

/// A folder with the files named, each holding its own relative path.
class Tree
{
public:
    explicit Tree(const QStringList &files)
    {
        for (const QString &file : files) {
            const QString path = m_folder.filePath(file);
            QDir().mkpath(QFileInfo(path).path());
            WriteFile(path, file.toUtf8());
        }
    }
    QString Root() const { return m_folder.path(); }
    QString Find(const QString &relative) const
    {
        const QString found = FindIgnoringCase(Root(), relative);
        // Where the case of letters makes no difference, the name is as it was asked for.
        return found.isEmpty() ? found
                               : QDir(QFileInfo(Root()).canonicalFilePath())
                                     .relativeFilePath(QFileInfo(found).canonicalFilePath());
    }

private:
    QTemporaryDir m_folder;
};

} // namespace

TEST(JoinPath, PutsOneSeparatorBetween)
{
    EXPECT_EQ(JoinPath(u"/a/b"_s, u"c.db"_s), u"/a/b"_s + QDir::separator() + u"c.db"_s);
}

TEST(JoinPath, DoesNotDoubleASeparatorThatIsThere)
{
    EXPECT_EQ(JoinPath(u"/a/b/"_s, u"c"_s), u"/a/b/c"_s);
    EXPECT_EQ(JoinPath(u"/"_s, u"c"_s), u"/c"_s);
}

TEST(JoinPath, TurnsSlashesOfTheNameIntoThePlatformsSeparator)
{
    EXPECT_EQ(JoinPath(u"/a"_s, u"soa/startup.m4p"_s),
        u"/a"_s + QDir::separator() + Native(u"soa/startup.m4p"_s));
}

TEST(JoinPath, KeepsBlanksAndLettersAsTheyAre)
{
    EXPECT_EQ(JoinPath(u"/Müller & Söhne"_s, u" x y"_s),
        u"/Müller & Söhne"_s + QDir::separator() + u" x y"_s);
}

TEST(ProgramFolder, IsWhereTheProgramLiesWithoutASeparatorAtTheEnd)
{
    EXPECT_EQ(ProgramFolder(), Native(QCoreApplication::applicationDirPath()));
    EXPECT_FALSE(ProgramFolder().endsWith(QDir::separator()));
}

#ifdef Q_OS_UNIX // on Windows the name that was asked for is as good
TEST(FindIgnoringCase, FindsHiddenFoldersAndFilesToo)
{
    const Tree tree({u".Mas90/.Settings"_s});
    EXPECT_EQ(tree.Find(u".mas90/.settings"_s), u".Mas90/.Settings"_s);
}

TEST(FindIgnoringCase, FindsTheFileWhateverTheCase)
{
    const Tree tree({u"Home/lib/pvxwin32.exe"_s});
    EXPECT_EQ(tree.Find(u"home/LIB/PVXWIN32.EXE"_s), u"Home/lib/pvxwin32.exe"_s);
    EXPECT_EQ(tree.Find(u"Home/lib/pvxwin32.exe"_s), u"Home/lib/pvxwin32.exe"_s);
    EXPECT_EQ(tree.Find(u"HOME"_s), u"Home"_s);
}
#endif

TEST(FindIgnoringCase, IsEmptyWhenAStepIsMissing)
{
    const Tree tree({u"Home/a"_s});
    EXPECT_EQ(tree.Find(u"Home/b"_s), QString());
    EXPECT_EQ(tree.Find(u"Homes/a"_s), QString());
    EXPECT_EQ(tree.Find(u"Home/a/b"_s), QString()); // a file has nothing below it
}

#ifdef Q_OS_UNIX // on Windows two names cannot differ in case alone
TEST(FindIgnoringCase, PrefersTheVeryLetters)
{
    const Tree tree({u"HOME"_s, u"Home"_s, u"home"_s});
    EXPECT_EQ(tree.Find(u"Home"_s), u"Home"_s);
    EXPECT_EQ(tree.Find(u"home"_s), u"home"_s);
    EXPECT_EQ(tree.Find(u"hOME"_s), u"HOME"_s); // the first by name when none has them
}

TEST(FindIgnoringCase, LooksIntoTheOtherFolderOfThatNameToo)
{
    const Tree tree({u"Home/pvxwin32.exe"_s, u"home/wkStatus.flp"_s});
    EXPECT_EQ(tree.Find(u"Home/wkStatus.flp"_s), u"home/wkStatus.flp"_s);
    EXPECT_EQ(tree.Find(u"home/pvxwin32.exe"_s), u"Home/pvxwin32.exe"_s);
}
#endif

#ifdef Q_OS_UNIX // on Windows the name that was asked for is as good
TEST(FindIgnoringCase, KnowsLettersBeyondEnglishOnes)
{
    const Tree tree({u"BÜRO/Straße.txt"_s});
    EXPECT_EQ(tree.Find(u"büro/straße.TXT"_s), u"BÜRO/Straße.txt"_s);
}
#endif

#ifdef Q_OS_UNIX // on Windows a link is a file that a program interprets
TEST(FindIgnoringCase, DoesNotCallALinkToNothingAFile)
{
    const Tree tree({u"other"_s});
    ASSERT_TRUE(QFile::link(tree.Root() + u"/gone"_s, tree.Root() + u"/startup.m4p"_s));
    EXPECT_EQ(tree.Find(u"startup.m4p"_s), QString());
    EXPECT_EQ(tree.Find(u"STARTUP.M4P"_s), QString());
}
#endif

TEST(FindIgnoringCase, IsEmptyUnderARootThatIsNotThere)
{
    const Tree tree({u"a"_s});
    EXPECT_EQ(FindIgnoringCase(tree.Root() + u"/none"_s, u"a"_s), QString());
    EXPECT_EQ(FindIgnoringCase(tree.Root() + u"/none"_s, QString()), QString());
}

TEST(ReadFileHead, GivesTheFirstBytesOnly)
{
    const Tree tree({u"abcdef"_s});
    const QString path = tree.Root() + u"/abcdef"_s;
    EXPECT_EQ(ReadFileHead(path, 3), "abc");
    EXPECT_EQ(ReadFileHead(path, 6), "abcdef");
    EXPECT_EQ(ReadFileHead(path, 100), "abcdef");
    EXPECT_EQ(ReadFileHead(path, 0), "");
}

TEST(ReadFileHead, KeepsBytesThatAreNoText)
{
    const Tree tree({u"x"_s});
    const QByteArray bytes("\0\r\n\xff\x1a", 5);
    WriteFile(tree.Root() + u"/x"_s, bytes);
    EXPECT_EQ(ReadFileHead(tree.Root() + u"/x"_s, 100), bytes);
}

TEST(ReadFileHead, NamesAMissingFile)
{
    const Tree tree({u"x"_s});
    const QString path = tree.Root() + u"/sota.ini"_s;
    const Raised raised = RaisedBy([&] { ReadFileHead(path, 10); });
    EXPECT_EQ(raised.Number, RunTimeErrors::FileNotFound);
    EXPECT_TRUE(raised.Names(path)) << raised.Description.toStdString();
}

TEST(ReadFileHead, NamesAFolderThatItCannotRead)
{
    const Tree tree({u"x/y"_s});
    const QString path = tree.Root() + u"/x"_s;
    const Raised raised = RaisedBy([&] { ReadFileHead(path, 10); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(path)) << raised.Description.toStdString();
}

#include "platform/DurableFiles.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <filesystem>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

/// What the two calls fail with; 0 has them work.
struct Refusals
{
    int Link = 0;
    int Rename = 0;
};

void PrintTo(const Refusals &refusals, std::ostream *out)
{
    *out << "link " << refusals.Link << ", rename " << refusals.Rename;
}

Refusals Refused;

} // namespace

// The linker has the program's calls of link and renameat2 arrive here.
extern "C" {
int __real_link(const char *from, const char *to);
int __wrap_link(const char *from, const char *to);
int __real_renameat2(
    int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags);
int __wrap_renameat2(
    int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags);

int __wrap_link(const char *from, const char *to)
{
    if (Refused.Link == 0)
        return __real_link(from, to);
    errno = Refused.Link;
    return -1;
}

int __wrap_renameat2(
    int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags)
{
    if (Refused.Rename == 0)
        return __real_renameat2(fromFolder, from, toFolder, to, flags);
    errno = Refused.Rename;
    return -1;
}
}

namespace {

/// A file system that answers with the errors of the case.
class FilesWithoutLinks : public testing::TestWithParam<Refusals>
{
protected:
    FilesWithoutLinks()
    {
        Write(u"unfinished"_s, "content");
        Refused = GetParam();
    }
    ~FilesWithoutLinks() override { Refused = {}; }

    QString At(const QString &name) const { return m_folder.filePath(name); }

    void Write(const QString &name, const QByteArray &content) const
    {
        QFile file(At(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray Read(const QString &name) const
    {
        QFile file(At(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
        return file.readAll();
    }

    QStringList Names() const
    {
        return QDir(m_folder.path())
            .entryList(
                QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
};

TEST_P(FilesWithoutLinks, ANewNameIsTaken)
{
    EXPECT_TRUE(MoveToNewName(At(u"unfinished"_s), At(u"name"_s)));
    EXPECT_EQ(Read(u"name"_s), "content");
    EXPECT_EQ(Names(), QStringList{u"name"_s});
}

TEST_P(FilesWithoutLinks, ATakenNameIsLeftToItsFile)
{
    Write(u"name"_s, "first");
    EXPECT_FALSE(MoveToNewName(At(u"unfinished"_s), At(u"name"_s)));
    EXPECT_EQ(Read(u"name"_s), "first");
    EXPECT_EQ(Read(u"unfinished"_s), "content");
}

TEST_P(FilesWithoutLinks, ANameThatLeadsNowhereIsTakenToo)
{
    std::filesystem::create_symlink("nowhere", At(u"name"_s).toStdString());
    EXPECT_FALSE(MoveToNewName(At(u"unfinished"_s), At(u"name"_s)));
    EXPECT_EQ(Read(u"unfinished"_s), "content");
    EXPECT_TRUE(QFileInfo(At(u"name"_s)).isSymLink());
}

TEST_P(FilesWithoutLinks, ANewNameInAFolderThatIsNotThereIsNamed)
{
    const QString to = At(u"none/name"_s);
    const Raised raised = RaisedBy([&] { MoveToNewName(At(u"unfinished"_s), to); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(to)) << raised.Description.toStdString();
    EXPECT_EQ(Read(u"unfinished"_s), "content");
}

INSTANTIATE_TEST_SUITE_P(Cases, FilesWithoutLinks,
    testing::Values(Refusals{EPERM, 0}, Refusals{EOPNOTSUPP, 0}, Refusals{ENOTSUP, 0},
        Refusals{ENOSYS, 0}, Refusals{EPERM, EINVAL}, Refusals{EOPNOTSUPP, ENOSYS}));

/// Errors that tell of something else than a call that is not there.
using FilesThatAreRefused = FilesWithoutLinks;

TEST_P(FilesThatAreRefused, AreNamedAndStay)
{
    const Raised raised = RaisedBy([&] { MoveToNewName(At(u"unfinished"_s), At(u"name"_s)); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(At(u"name"_s))) << raised.Description.toStdString();
    EXPECT_EQ(Names(), QStringList{u"unfinished"_s});
}

INSTANTIATE_TEST_SUITE_P(Cases, FilesThatAreRefused,
    testing::Values(Refusals{EACCES, 0}, Refusals{ENOSPC, 0}, Refusals{EPERM, EACCES},
        Refusals{EPERM, ENOSPC}));

} // namespace

#include "platform/DurableFiles.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

class DurableFiles : public testing::Test
{
protected:
    QString At(const QString &name) const { return m_folder.filePath(name); }

    void Write(const QString &name, const QByteArray &content) const
    {
        QFile file(At(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    /// What the file holds, "(none)" when there is none.
    QByteArray Read(const QString &name) const
    {
        QFile file(At(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    QStringList Names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(DurableFiles, SyncingLeavesTheContentAsItIs)
{
    Write(u"a"_s, "content");
    SyncFile(At(u"a"_s));
    SyncFolder(m_folder.path());
    EXPECT_EQ(Read(u"a"_s), "content");
    EXPECT_EQ(Names(), QStringList{u"a"_s});
}

TEST_F(DurableFiles, SyncingWhatIsNotThereNamesIt)
{
    for (const auto &sync : {SyncFile, SyncFolder}) {
        const Raised raised = RaisedBy([&] { sync(At(u"none"_s)); });
        EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
        EXPECT_TRUE(raised.Names(At(u"none"_s))) << raised.Description.toStdString();
    }
    EXPECT_TRUE(Names().isEmpty());
}

TEST_F(DurableFiles, SyncingAFileAsAFolderIsRefused)
{
    Write(u"a"_s, "content");
    EXPECT_EQ(RaisedBy([&] { SyncFolder(At(u"a"_s)); }).Number, RunTimeErrors::PathAccess);
}

TEST_F(DurableFiles, ReplacingTakesThePlaceOfWhatStoodThere)
{
    Write(u"new"_s, "new content");
    Write(u"old"_s, "old");
    ReplaceFile(At(u"new"_s), At(u"old"_s));
    EXPECT_EQ(Read(u"old"_s), "new content");
    EXPECT_EQ(Names(), QStringList{u"old"_s});
}

TEST_F(DurableFiles, ReplacingAlsoTakesANameThatIsFree)
{
    Write(u"new"_s, "new content");
    ReplaceFile(At(u"new"_s), At(u"free"_s));
    EXPECT_EQ(Read(u"free"_s), "new content");
    EXPECT_EQ(Names(), QStringList{u"free"_s});
}

TEST_F(DurableFiles, ReplacingWithNothingLeavesTheOldFile)
{
    Write(u"old"_s, "old");
    const Raised raised = RaisedBy([&] { ReplaceFile(At(u"none"_s), At(u"old"_s)); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(At(u"old"_s)));
    EXPECT_EQ(Read(u"old"_s), "old");
}

TEST_F(DurableFiles, ReplacingAFolderIsRefusedAndBothStay)
{
    Write(u"new"_s, "new content");
    ASSERT_TRUE(QDir().mkpath(At(u"folder"_s)));
    const Raised raised = RaisedBy([&] { ReplaceFile(At(u"new"_s), At(u"folder"_s)); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(At(u"folder"_s)));
    EXPECT_EQ(Read(u"new"_s), "new content");
    EXPECT_EQ(Names(), (QStringList{u"folder"_s, u"new"_s}));
}

TEST_F(DurableFiles, ANewNameIsTaken)
{
    Write(u"unfinished"_s, "content");
    EXPECT_TRUE(MoveToNewName(At(u"unfinished"_s), At(u"name"_s)));
    EXPECT_EQ(Read(u"name"_s), "content");
    EXPECT_EQ(Names(), QStringList{u"name"_s});
}

TEST_F(DurableFiles, ATakenNameIsLeftToItsFile)
{
    Write(u"unfinished"_s, "content");
    Write(u"name"_s, "first");
    EXPECT_FALSE(MoveToNewName(At(u"unfinished"_s), At(u"name"_s)));
    EXPECT_EQ(Read(u"name"_s), "first");
    EXPECT_EQ(Read(u"unfinished"_s), "content");
}

TEST_F(DurableFiles, ANewNameInAFolderThatIsNotThereIsNamed)
{
    Write(u"unfinished"_s, "content");
    const QString to = At(u"none/name"_s);
    const Raised raised = RaisedBy([&] { MoveToNewName(At(u"unfinished"_s), to); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(to)) << raised.Description.toStdString();
    EXPECT_EQ(Read(u"unfinished"_s), "content");
}

TEST_F(DurableFiles, NamesOutsideTheAlphabetWork)
{
    Write(u"Zürich 日本"_s, "content");
    EXPECT_TRUE(MoveToNewName(At(u"Zürich 日本"_s), At(u"Größe"_s)));
    ReplaceFile(At(u"Größe"_s), At(u"éé"_s));
    SyncFile(At(u"éé"_s));
    EXPECT_EQ(Names(), QStringList{u"éé"_s});
}

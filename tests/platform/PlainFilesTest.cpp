#include "platform/PlainFiles.h"

#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <filesystem>
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

namespace {

class PlainFiles : public testing::Test
{
protected:
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

    Raised Refusal(const QString &name, PlainFileUse use, qint64 maxBytes = MaxPlainFileBytes) const
    {
        QFile file(At(name));
        return RaisedBy([&] { OpenPlainFile(file, use, maxBytes); });
    }

    QTemporaryDir m_folder;
};

TEST_F(PlainFiles, AreRead)
{
    Write(u"file"_s, "content");
    QFile file(At(u"file"_s));
    OpenPlainFile(file, PlainFileUse::Read);
    EXPECT_EQ(file.size(), 7);
    EXPECT_EQ(file.readAll(), "content");
}

TEST_F(PlainFiles, AreCreatedToAppendAndGrowAtTheirEnd)
{
    for (const char *line : {"one", "two"}) {
        QFile file(At(u"log"_s));
        OpenPlainFile(file, PlainFileUse::Append);
        EXPECT_EQ(file.write(line), 3);
    }
    EXPECT_EQ(Read(u"log"_s), "onetwo");
}

TEST_F(PlainFiles, ANewOneNeverReplacesAnother)
{
    {
        QFile file(At(u"new"_s));
        OpenPlainFile(file, PlainFileUse::CreateNew);
        EXPECT_EQ(file.write("first"), 5);
    }
    EXPECT_EQ(Refusal(u"new"_s, PlainFileUse::CreateNew).Number, RunTimeErrors::PathAccess);
    EXPECT_EQ(Read(u"new"_s), "first");
}

TEST_F(PlainFiles, AMissingOneIsNamed)
{
    const Raised raised = Refusal(u"none"_s, PlainFileUse::Read);
    EXPECT_EQ(raised.Number, RunTimeErrors::FileNotFound);
    EXPECT_TRUE(raised.Names(At(u"none"_s)));
    const Raised folder = Refusal(u"none/new"_s, PlainFileUse::CreateNew);
    EXPECT_EQ(folder.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(folder.Names(At(u"none/new"_s)));
}

TEST_F(PlainFiles, ALargerOneThanAllowedIsRefused)
{
    Write(u"large"_s, "12345");
    EXPECT_EQ(Refusal(u"large"_s, PlainFileUse::Read, 5).Number, 0);
    const Raised raised = Refusal(u"large"_s, PlainFileUse::Read, 4);
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(At(u"large"_s)) && raised.Names(u"4 bytes"_s));
}

TEST_F(PlainFiles, AFolderIsRefused)
{
    for (const PlainFileUse use : {PlainFileUse::Read, PlainFileUse::Append}) {
        QFile file(m_folder.path());
        EXPECT_EQ(RaisedBy([&] { OpenPlainFile(file, use); }).Number, RunTimeErrors::PathAccess);
    }
}

#ifdef Q_OS_UNIX // On Windows only administrators make symbolic links

TEST_F(PlainFiles, ALinkIsNotFollowed)
{
    Write(u"private"_s, "mine");
    for (const char *target : {"private", "nowhere"}) {
        std::filesystem::create_symlink(target, At(u"link"_s).toStdString());
        for (const PlainFileUse use :
            {PlainFileUse::Read, PlainFileUse::Append, PlainFileUse::CreateNew}) {
            const Raised raised = Refusal(u"link"_s, use);
            EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
            EXPECT_TRUE(raised.Names(At(u"link"_s)));
        }
        EXPECT_TRUE(QFileInfo(At(u"link"_s)).isSymLink());
        ASSERT_TRUE(QFile::remove(At(u"link"_s)));
    }
    EXPECT_EQ(Read(u"private"_s), "mine");
    EXPECT_FALSE(QFile::exists(At(u"nowhere"_s)));
}

TEST_F(PlainFiles, APipeIsRefusedWithoutWaiting)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(At(u"pipe"_s)).constData(), 0600), 0);
    for (const PlainFileUse use : {PlainFileUse::Read, PlainFileUse::Append}) {
        const Raised raised = Refusal(u"pipe"_s, use);
        EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
        EXPECT_TRUE(raised.Names(u"not a regular file"_s)) << raised.Description.toStdString();
    }
}

TEST_F(PlainFiles, ADeviceIsRefused)
{
    QFile file(u"/dev/zero"_s);
    EXPECT_EQ(RaisedBy([&] { OpenPlainFile(file, PlainFileUse::Read); }).Number,
        RunTimeErrors::PathAccess);
}

mode_t RightsOf(const QString &path)
{
    struct stat about = {};
    EXPECT_EQ(stat(QFile::encodeName(path).constData(), &about), 0);
    return about.st_mode & 07777;
}

TEST_F(PlainFiles, TakeTheRightsOfTheirFolder)
{
    Write(u"file"_s, {});
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"folder"_s));
    for (const mode_t rights : {0770U, 0755U, 02775U, 01777U}) {
        ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), rights), 0);
        TakeRightsOfFolder(At(u"file"_s));
        TakeRightsOfFolder(At(u"folder"_s));
        EXPECT_EQ(RightsOf(At(u"file"_s)), rights & 0666);
        EXPECT_EQ(RightsOf(At(u"folder"_s)), rights);
    }
}

TEST_F(PlainFiles, AreNoWiderThanTheirModel)
{
    Write(u"model"_s, {});
    Write(u"copy"_s, {});
    ASSERT_EQ(chmod(QFile::encodeName(At(u"copy"_s)).constData(), 0644), 0);
    LimitRights(At(u"copy"_s), At(u"none"_s));
    EXPECT_EQ(RightsOf(At(u"copy"_s)), 0644);
    ASSERT_EQ(chmod(QFile::encodeName(At(u"model"_s)).constData(), 0660), 0);
    LimitRights(At(u"copy"_s), At(u"model"_s));
    EXPECT_EQ(RightsOf(At(u"copy"_s)), 0640);
    ASSERT_EQ(chmod(QFile::encodeName(At(u"model"_s)).constData(), 0600), 0);
    LimitRights(At(u"copy"_s), At(u"model"_s));
    EXPECT_EQ(RightsOf(At(u"copy"_s)), 0600);
}

#endif

} // namespace

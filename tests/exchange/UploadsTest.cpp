#include "exchange/Uploads.h"

#include "platform/clsRunTimeError.h"
#include "store/BatchName.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

QByteArray Contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

TEST(Uploads, BatchNamesAreFileNamesAndNeverTheSame)
{
    QSet<QString> names;
    for (const QString &employee : {u"007"_s, u"A/B"_s, u"Süd"_s, u""_s, u"../"_s}) {
        const QString name = NewBatchName(employee);
        EXPECT_TRUE(IsBatchName(name)) << qPrintable(name);
        EXPECT_TRUE(QRegularExpression(u"^\\d{8}-\\d{6}-[A-Za-z0-9_]+-[0-9a-f]{8}$"_s)
                        .match(name)
                        .hasMatch())
            << qPrintable(name);
        names.insert(name);
        names.insert(NewBatchName(employee));
    }
    EXPECT_EQ(names.size(), 10);
}

TEST(Uploads, ATextThatCouldLeadElsewhereIsNoBatchName)
{
    for (const QString &text : {u""_s, u"../x"_s, u"a.b"_s, u"a b"_s, u"a/b"_s, u"ä"_s})
        EXPECT_FALSE(IsBatchName(text)) << qPrintable(text);
}

TEST(Uploads, AFileIsSeenOnlyWhenItIsHandedOver)
{
    const QTemporaryDir worklog;
    const Uploads uploads(worklog.path(), u"ABC"_s);
    uploads.MakeFolder();
    uploads.Write(u"b1"_s, "one");
    EXPECT_TRUE(uploads.Delivered(u"b1"_s).isEmpty());
    EXPECT_FALSE(QFile::exists(uploads.FileOf(u"b1"_s)));
    uploads.HandOver(u"b1"_s);
    EXPECT_EQ(uploads.Delivered(u"b1"_s), uploads.FileOf(u"b1"_s));
    EXPECT_EQ(Contents(uploads.FileOf(u"b1"_s)), "one");
}

TEST(Uploads, AnImportedFileCountsAsHandedOver)
{
    const QTemporaryDir worklog;
    const Uploads uploads(worklog.path(), u"ABC"_s);
    uploads.MakeFolder();
    uploads.Write(u"b1"_s, "one");
    uploads.HandOver(u"b1"_s);
    const QString imported = worklog.filePath(u"ABC/uploads/Imported"_s);
    ASSERT_TRUE(QDir().mkdir(imported));
    ASSERT_TRUE(QFile::rename(uploads.FileOf(u"b1"_s), imported + u"/b1.csv"_s));
    EXPECT_EQ(QFileInfo(uploads.Delivered(u"b1"_s)), QFileInfo(imported + u"/b1.csv"_s));
}

TEST(Uploads, AFileThatIsThereIsNeverReplaced)
{
    const QTemporaryDir worklog;
    const Uploads uploads(worklog.path(), u"ABC"_s);
    uploads.MakeFolder();
    uploads.Write(u"b1"_s, "one");
    uploads.HandOver(u"b1"_s);
    uploads.Write(u"b1"_s, "two");
    EXPECT_THROW(uploads.HandOver(u"b1"_s), clsRunTimeError);
    EXPECT_EQ(Contents(uploads.FileOf(u"b1"_s)), "one");
}

TEST(Uploads, WritingAnewLeavesAFileAloneThatStillHasBothNames)
{
    const QTemporaryDir worklog;
    const Uploads uploads(worklog.path(), u"ABC"_s);
    uploads.MakeFolder();
    uploads.Write(u"b1"_s, "one");
    uploads.HandOver(u"b1"_s);
    // What a kill in the middle of handing over can leave.
    const QString part = worklog.filePath(u"ABC/uploads/.b1.part"_s);
    ASSERT_TRUE(QFile::rename(uploads.FileOf(u"b1"_s), part));
    std::filesystem::create_hard_link(part.toStdString(), uploads.FileOf(u"b1"_s).toStdString());
    uploads.Write(u"b1"_s, "two");
    EXPECT_EQ(Contents(uploads.FileOf(u"b1"_s)), "one");
}

} // namespace

// What another account that can write to the shared folder may have put there.

#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

class UntrustedRoot : public testing::Test
{
protected:
    UntrustedRoot() { EXPECT_EQ(Place.Synchronise().ExitStatus, 0); }

    QString InWorklog(const QString &file) const { return Place.Worklog + u'/' + file; }

    void PlantLink(const QString &file, const QString &target) const
    {
        QFile::remove(InWorklog(file));
        std::filesystem::create_symlink(target.toStdString(), InWorklog(file).toStdString());
    }

    void PlantPipe(const QString &file) const
    {
        QFile::remove(InWorklog(file));
        ASSERT_EQ(mkfifo(QFile::encodeName(InWorklog(file)).constData(), 0666), 0);
    }

    /// A run that must fail and leave the computer as it is.
    void ExpectRefused(const QString &file, const QString &words) const
    {
        const QMap<QString, QByteArray> before = Place.LocalFiles();
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        EXPECT_TRUE(outcome.Errors.contains(InWorklog(file))) << qPrintable(outcome.Errors);
        EXPECT_TRUE(outcome.Errors.contains(words)) << qPrintable(outcome.Errors);
        EXPECT_EQ(Place.LocalFiles(), before);
    }

    const QStringList Files = {u"Company.csv"_s, u"ABC/Options.csv"_s, u"ABC/Employee.csv"_s,
        u"ABC/Customers.csv"_s, u"ABC/Projects.csv"_s};
    Installation Place;
};

TEST_F(UntrustedRoot, ALogThatIsALinkIsNotWrittenThrough)
{
    const QString startFile = Place.Program + u"/.profile"_s;
    for (const bool isThere : {false, true}) {
        if (isThere) {
            QFile file(startFile);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
        PlantLink(u"exchange.log"_s, startFile);
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
        EXPECT_EQ(outcome.Errors.count(u"the log cannot be written: "_s), 1);
        EXPECT_EQ(QFileInfo(startFile).size(), 0);
        EXPECT_EQ(QFile::exists(startFile), isThere);
    }
}

TEST_F(UntrustedRoot, ALogThatIsAPipeIsNotWaitedFor)
{
    PlantPipe(u"exchange.log"_s);
    const Outcome outcome = Place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0);
    EXPECT_TRUE(outcome.Errors.contains(u"not a regular file"_s)) << qPrintable(outcome.Errors);
}

TEST_F(UntrustedRoot, AFileThatIsALinkIsNotRead)
{
    for (const QString &file : Files) {
        const QByteArray sound = Place.Read(file);
        Place.Write(u"elsewhere"_s, sound);
        PlantLink(file, InWorklog(u"elsewhere"_s));
        ExpectRefused(file, u"the file is a link"_s);
        ASSERT_TRUE(QFile::remove(InWorklog(file)));
        Place.Write(file, sound);
    }
}

TEST_F(UntrustedRoot, AFileThatIsAPipeIsRefusedAndNotWaitedFor)
{
    for (const QString &file : Files) {
        const QByteArray sound = Place.Read(file);
        PlantPipe(file);
        ExpectRefused(file, u"this is not a regular file"_s);
        ASSERT_TRUE(QFile::remove(InWorklog(file)));
        Place.Write(file, sound);
    }
}

TEST_F(UntrustedRoot, AnUploadThatIsALinkOrAPipeTakesNoEntryAway)
{
    const QString batch = u"20240101-120000-007-0123abcd"_s;
    const QString upload = u"ABC/uploads/"_s + batch + u".csv"_s;
    Place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    Place.PutNote(u"ABC"_s, batch);
    ASSERT_TRUE(QDir(Place.Worklog).mkpath(u"ABC/uploads"_s));
    Place.Write(u"elsewhere"_s, {});
    PlantLink(upload, InWorklog(u"elsewhere"_s));
    ExpectRefused(upload, u"link"_s);
    PlantPipe(upload);
    ExpectRefused(upload, u"regular file"_s);
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 1U);
}

TEST_F(UntrustedRoot, AHiddenUploadThatIsALinkIsReplacedAndNotWrittenThrough)
{
    const QString batch = u"20240101-120000-007-0123abcd"_s;
    Place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    Place.PutNote(u"ABC"_s, batch);
    ASSERT_TRUE(QDir(Place.Worklog).mkpath(u"ABC/uploads"_s));
    Place.Write(u"elsewhere"_s, "mine");
    PlantLink(u"ABC/uploads/."_s + batch + u".part"_s, InWorklog(u"elsewhere"_s));
    EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(Place.Read(u"elsewhere"_s), "mine");
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{batch + u".csv"_s});
    EXPECT_FALSE(QFileInfo(Place.UploadPath(u"ABC"_s, batch + u".csv"_s)).isSymLink());
}

TEST_F(UntrustedRoot, ALockThatIsALinkIsNotEmptied)
{
    const QString target = Place.Program + u"/private"_s;
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write("mine"), 4);
    file.close();
    std::filesystem::create_symlink(
        target.toStdString(), (Place.Program + u"/exchange.lock"_s).toStdString());
    EXPECT_EQ(Place.Synchronise().ExitStatus, 1);
    EXPECT_EQ(file.size(), 4);
}

TEST_F(UntrustedRoot, NoEscapeSequenceOfACellReachesTheLogOrTheTerminal)
{
    for (const QByteArray &code : {QByteArray("\x1B]0;title\x07"), QByteArray("\xC2\x9B\x31m"),
             QByteArray("\xE2\x80\xAE"), QByteArray("\x7F"), QByteArray("\xE2\x80\xA8")}) {
        const QByteArray sound = Place.Read(u"ABC/Customers.csv"_s);
        Place.Replace(u"ABC/Customers.csv"_s, "01,N,95", code + ",N,95");
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        const QString raw = QString::fromUtf8(code);
        EXPECT_TRUE(outcome.Errors.contains(u"<U+"_s)) << qPrintable(outcome.Errors);
        EXPECT_FALSE(outcome.Errors.contains(raw));
        EXPECT_FALSE(Place.Log().contains(raw));
        EXPECT_FALSE(Place.Log().contains(QChar(0x1B)));
        Place.Write(u"ABC/Customers.csv"_s, sound);
    }
}

TEST_F(UntrustedRoot, AFileOfOneEndlessCellIsRefusedWithItsLine)
{
    QFile file(InWorklog(u"ABC/Customers.csv"_s));
    ASSERT_TRUE(file.resize(1'000'000'000)); // zeros that take no space on the disk
    ExpectRefused(u"ABC/Customers.csv"_s, u"more than 1048576 bytes"_s);
}

} // namespace

#include "tests/exchange/Installation.h"

#include "exchange/Collection.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

const QString Batch = u"20240101-120000-007-0123abcd"_s;

/// Three entries, and what a run that was killed had come to.
class InterruptedRun : public testing::Test
{
protected:
    InterruptedRun()
    {
        EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
        Place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2), EntryNumber(2)});
    }

    static QByteArray WholeFile() { return UploadOf({1, 2, 2}); }

    /// Comes to a company's note and its file under the hidden name; the batch.
    QString PrepareOnly(const QString &company) const
    {
        LocalDatabases local(Place.Program);
        Collection collection(local, Place.Worklog, company, u"007"_s);
        EXPECT_TRUE(collection.Prepare());
        return QFileInfo(collection.File()).completeBaseName();
    }

    /// Comes to the file that is handed over, and not to its entries in the table; the file.
    QString HandOverOnly(const QString &company) const
    {
        const QString batch = PrepareOnly(company);
        const Uploads uploads(Place.Worklog, company);
        uploads.HandOver(batch);
        return uploads.FileOf(batch);
    }

    void Finish()
    {
        const Outcome outcome = Place.Synchronise();
        ASSERT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
        EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
        EXPECT_TRUE(IsSettled(Place.Note(u"ABC"_s)));
        EXPECT_TRUE(Place.HiddenUploads(u"ABC"_s).isEmpty());
    }

    /// Descriptions of the entries in all files that were handed over, sorted.
    QStringList Delivered() const
    {
        QStringList lines;
        for (const QString &folder : {u""_s, u"imported/"_s}) {
            const QDir files(Place.UploadPath(u"ABC"_s, folder));
            for (const QString &name : files.entryList({u"*.csv"_s}, QDir::Files)) {
                for (const QString &line : UploadedLines(files.filePath(name)))
                    lines.append(line.section(u',', 18));
            }
        }
        lines.sort();
        return lines;
    }

    const QStringList AllThree = {u"Entry 1"_s, u"Entry 2"_s, u"Entry 2"_s};
    Installation Place;
};

TEST_F(InterruptedRun, AHiddenFileOfAnotherComputerIsLeftAlone)
{
    Place.Write(u"ABC/uploads/."_s + Batch + u".part"_s, "half of a li");
    const Outcome outcome = Place.Synchronise();
    ASSERT_EQ(outcome.ExitStatus, 0);
    EXPECT_EQ(Delivered(), AllThree);
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_EQ(Place.Read(u"ABC/uploads/."_s + Batch + u".part"_s), "half of a li");
}

TEST_F(InterruptedRun, BeforeTheNoteThereIsNoHiddenFile)
{
    {
        const auto tables = Place.Open();
        RecordStore::Batch writing(
            tables->Store, tables->Main.OpenTable(u"ABCEntries-WkLg"_s)); // no note can be written
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        EXPECT_TRUE(outcome.Errors.contains(u"ABCEntries-WkLg"_s)) << qPrintable(outcome.Errors);
    }
    EXPECT_EQ(Place.HiddenUploads(u"ABC"_s), QStringList());
    Finish();
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, NotedAndTheHiddenFileIsHalfWritten)
{
    Place.Write(u"ABC/uploads/."_s + Batch + u".part"_s, "half of a li");
    Place.PutNote(u"ABC"_s, Batch);
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{Batch + u".csv"_s});
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, NotedButNotHandedOver)
{
    Place.Write(u"ABC/uploads/."_s + Batch + u".part"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{Batch + u".csv"_s}); // the name is kept
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, NotedAndThenEverythingWasDeletedByTheUser)
{
    Place.Write(u"ABC/uploads/."_s + Batch + u".part"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Place.Choose(u"ABC"_s, u"2"_s);
    Finish();
    EXPECT_TRUE(Delivered().isEmpty());
}

TEST_F(InterruptedRun, NotedWithAnEmptyTable)
{
    Place.Choose(u"ABC"_s, u"2"_s);
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    Place.Choose(u"ABC"_s, u"0"_s);
    Place.PutNote(u"ABC"_s, Batch);
    Place.Write(u"ABC/uploads/."_s + Batch + u".part"_s, UploadOf({1}));
    Finish();
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());
}

TEST_F(InterruptedRun, HandedOverButNotTakenOut)
{
    Place.Write(u"ABC/uploads/"_s + Batch + u".csv"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{Batch + u".csv"_s});
    EXPECT_EQ(Delivered(), AllThree);
    EXPECT_TRUE(Place.Log().contains(u"finished an interrupted run: 3 entries"_s));
}

TEST_F(InterruptedRun, HandedOverUnderBothNames)
{
    Place.Write(u"ABC/uploads/"_s + Batch + u".csv"_s, WholeFile());
    Place.Write(u"ABC/uploads/."_s + Batch + u".part"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Finish();
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, HandedOverAndImportedMeanwhile)
{
    Place.Write(u"ABC/uploads/imported/"_s + Batch + u".csv"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Finish();
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, AnEntryAddedSinceComesWithTheNextFile)
{
    Place.Write(u"ABC/uploads/"_s + Batch + u".csv"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Place.PutEntries(u"ABC"_s, {EntryNumber(9)});
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 2);
    EXPECT_EQ(Delivered(), (QStringList{u"Entry 1"_s, u"Entry 2"_s, u"Entry 2"_s, u"Entry 9"_s}));
}

TEST_F(InterruptedRun, AnEntryEqualToADeliveredOneComesWithTheNextFile)
{
    Place.Write(u"ABC/uploads/"_s + Batch + u".csv"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    Place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 2);
    EXPECT_EQ(Delivered(), (QStringList{u"Entry 1"_s, u"Entry 1"_s, u"Entry 2"_s, u"Entry 2"_s}));
}

TEST_F(InterruptedRun, AnEntryChangedSinceComesWithTheNextFile)
{
    Place.Write(u"ABC/uploads/"_s + Batch + u".csv"_s, WholeFile());
    Place.PutNote(u"ABC"_s, Batch);
    {
        const auto tables = Place.Open();
        tables->Entries.Handle = tables->Main.OpenTable(u"ABCEntries-WkLg"_s);
        EntryRecord changed = EntryNumber(1);
        changed.Hours = Currency::FromScaled(1);
        tables->Entries.UpdateEntry(changed);
    }
    Finish();
    ASSERT_EQ(Place.Uploads(u"ABC"_s).size(), 2);
    EXPECT_EQ(UploadedLines(Place.UploadPath(u"ABC"_s, Place.Uploads(u"ABC"_s).last())).size(), 1);
}

TEST_F(InterruptedRun, AMarkOfAnotherProgramIsRefused)
{
    for (const QString &mark : {u"../../elsewhere"_s, Batch + u" 12ab"_s}) {
        Place.PutNote(u"ABC"_s, mark);
        const QMap<QString, QByteArray> before = Place.LocalFiles();
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        EXPECT_TRUE(outcome.Errors.contains(u"mark of another program: "_s + mark))
            << qPrintable(outcome.Errors);
        EXPECT_EQ(Place.LocalFiles(), before);
    }
}

TEST_F(InterruptedRun, AnAlteredUploadIsNamedAndNothingIsTakenOut)
{
    const QString file = HandOverOnly(u"ABC"_s);
    const QString upload = u"ABC/uploads/"_s + QFileInfo(file).fileName();
    const QByteArray original = Place.Read(upload);
    Place.Replace(upload, "1.0000", "1"); // as a spreadsheet program saves it
    const QMap<QString, QByteArray> before = Place.LocalFiles();

    const Outcome outcome = Place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(file)) << qPrintable(outcome.Errors);
    EXPECT_EQ(Place.LocalFiles(), before);
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    Place.Write(upload, original);
    Finish();
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, AnUploadThatWasAlteredAndImportedIsNamed)
{
    const QString name = QFileInfo(HandOverOnly(u"ABC"_s)).fileName();
    Place.Write(u"ABC/uploads/imported/"_s + name, Place.Read(u"ABC/uploads/"_s + name) + "\n");
    ASSERT_TRUE(QFile::remove(Place.UploadPath(u"ABC"_s, name)));
    const Outcome outcome = Place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(Place.UploadPath(u"ABC"_s, u"imported/"_s + name)))
        << qPrintable(outcome.Errors);
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 3U);
}

TEST_F(InterruptedRun, AnAlteredUploadThatIsTakenAwayIsWrittenAnew)
{
    const QString file = HandOverOnly(u"ABC"_s);
    const QString name = QFileInfo(file).fileName();
    Place.Replace(u"ABC/uploads/"_s + name, "1.0000", "1");
    ASSERT_EQ(Place.Synchronise().ExitStatus, 1);
    ASSERT_TRUE(QFile::remove(file));
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{name});
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, AnAlteredUploadDoesNotKeepTheUserFromDeletingTheEntries)
{
    const QString name = QFileInfo(HandOverOnly(u"ABC"_s)).fileName();
    Place.Replace(u"ABC/uploads/"_s + name, "1.0000", "1");
    Place.Choose(u"ABC"_s, u"2"_s);
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{name});
}

TEST_F(InterruptedRun, ADamagedUploadIsNamedAndNothingIsTakenOut)
{
    Place.Write(u"ABC/uploads/"_s + Batch + u".csv"_s, "Customer_Number\n");
    Place.PutNote(u"ABC"_s, Batch);
    const Outcome outcome = Place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(Batch + u".csv, line 1: "_s));
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 3U);
}

TEST_F(InterruptedRun, AnotherOptionInBetweenLeavesItAsItIs)
{
    const QString file = HandOverOnly(u"ABC"_s);
    const QString note = Place.Note(u"ABC"_s);
    Place.Choose(u"ABC"_s, u"3"_s);
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 3U);
    EXPECT_EQ(Place.Note(u"ABC"_s), note);
    Place.Choose(u"ABC"_s, u"0"_s);
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{QFileInfo(file).fileName()});
    EXPECT_EQ(Delivered(), AllThree);
}

TEST_F(InterruptedRun, AnotherOptionInBetweenLeavesTheHiddenFile)
{
    const QString batch = PrepareOnly(u"ABC"_s);
    Place.Choose(u"ABC"_s, u"3"_s);
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(Place.HiddenUploads(u"ABC"_s).size(), 1);
    Place.PutEntries(u"ABC"_s, {EntryNumber(9)});
    Place.Choose(u"ABC"_s, u"0"_s);
    Finish();
    EXPECT_EQ(Place.Uploads(u"ABC"_s), QStringList{batch + u".csv"_s});
    EXPECT_EQ(Delivered(), (QStringList{u"Entry 1"_s, u"Entry 2"_s, u"Entry 2"_s, u"Entry 9"_s}));
}

/// The same with a second company, TWO, that has an entry.
class InterruptedRunOfTwo : public InterruptedRun
{
protected:
    InterruptedRunOfTwo()
    {
        Place.AddCompany(u"TWO"_s);
        Place.Choose(u"ABC"_s, u"3"_s);
        EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
        Place.Choose(u"ABC"_s, u"0"_s);
        Place.PutEntries(u"TWO"_s, {EntryNumber(7)});
        Place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
    }

    void FinishTwo()
    {
        Finish();
        EXPECT_TRUE(Place.Entries(u"TWO"_s).empty());
        EXPECT_TRUE(IsSettled(Place.Note(u"TWO"_s)));
        EXPECT_TRUE(Place.HiddenUploads(u"TWO"_s).isEmpty());
        EXPECT_EQ(Place.Uploads(u"TWO"_s).size(), 1);
    }
};

TEST_F(InterruptedRunOfTwo, ADroppedCompanyIsFinished)
{
    const QString file = HandOverOnly(u"TWO"_s);
    Place.DropCompany(u"TWO"_s);
    FinishTwo();
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_TRUE(Place.Log().contains(u"TWO: finished an interrupted run: 1 entry"_s));
}

TEST_F(InterruptedRunOfTwo, ADroppedCompanyHandsOverUnderTheNotedName)
{
    const QString batch = PrepareOnly(u"TWO"_s);
    Place.DropCompany(u"TWO"_s);
    FinishTwo();
    EXPECT_EQ(Place.Uploads(u"TWO"_s), QStringList{batch + u".csv"_s});
}

TEST_F(InterruptedRunOfTwo, TheSecondCannotPrepareAfterTheFirstDid)
{
    Place.Write(u"TWO/uploads"_s, "a file where the folder should be");

    const Outcome outcome = Place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"uploads"_s)) << qPrintable(outcome.Errors);
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 3U);
    EXPECT_EQ(Place.Entries(u"TWO"_s).size(), 1U);
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());
    EXPECT_EQ(Place.CustomerNames(u"ABC"_s).first(), u"Acme"_s);
    ASSERT_TRUE(QFile::remove(Place.Worklog + u"/TWO/uploads"_s));
    FinishTwo();
    EXPECT_EQ(Delivered(), AllThree);
}

#ifdef Q_OS_UNIX // On Windows only administrators make symbolic links
TEST_F(InterruptedRunOfTwo, TheSecondCannotHandOverAfterTheFirstDid)
{
    // A name that is taken, though no file is found under it, is met first when handing over.
    Place.PutNote(u"TWO"_s, Batch);
    Place.Write(u"TWO/uploads/.keep"_s, {});
    const QString taken = Place.UploadPath(u"TWO"_s, Batch + u".csv"_s);
    std::filesystem::create_symlink("nowhere", taken.toStdString());

    const Outcome outcome = Place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(taken)) << qPrintable(outcome.Errors);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_TRUE(IsSettled(Place.Note(u"ABC"_s)));
    EXPECT_EQ(Delivered(), AllThree);
    EXPECT_EQ(Place.Entries(u"TWO"_s).size(), 1U);
    EXPECT_EQ(Place.CustomerNames(u"ABC"_s).first(), u"Acme"_s);
    ASSERT_TRUE(QFile::remove(taken));
    FinishTwo();
    EXPECT_EQ(Delivered(), AllThree);
    EXPECT_EQ(Place.CustomerNames(u"ABC"_s).first(), u"Renamed"_s);
}
#endif

} // namespace

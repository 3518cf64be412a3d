#include "exchange/LocalDatabases.h"
#include "platform/Paths.h"
#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <numeric>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int EntryCount = 3000;
constexpr int MostKillsInARow = 6; // then a run comes to its end; a killed repair is met as well

std::vector<int> ManyNumbers()
{
    std::vector<int> numbers(EntryCount);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

std::vector<EntryRecord> ManyEntries()
{
    std::vector<EntryRecord> entries;
    for (const int number : ManyNumbers())
        entries.push_back(EntryNumber(number));
    return entries;
}

/// All entries in all upload files together.
QStringList DeliveredLines(const Installation &place)
{
    QStringList lines;
    for (const QString &name : place.Uploads(u"ABC"_s))
        lines.append(UploadedLines(place.UploadPath(u"ABC"_s, name)));
    lines.sort();
    return lines;
}

/// Runs the client and kills it if it has not ended by then; whether it was killed.
bool KillAfter(const Installation &place, int milliseconds)
{
    const auto client = place.Start();
    if (client->waitForFinished(milliseconds))
        return false;
    client->kill();
    client->waitForFinished(-1);
    return client->exitStatus() == QProcess::CrashExit;
}

/// Runs the client and kills it as soon as the condition holds; whether it was killed. On a busy
/// machine it may have ended before its moment was seen.
template <class Condition>
bool KillWhen(const Installation &place, const Condition &holds)
{
    const auto client = place.Start();
    while (!holds()) {
        if (client->waitForFinished(0))
            return false;
    }
    client->kill();
    client->waitForFinished(-1);
    return client->exitStatus() == QProcess::CrashExit;
}

/// The folder with these files and no other, and no upload file.
void PutBack(const Installation &place, const QMap<QString, QByteArray> &files)
{
    for (const QString &name : place.LocalFiles().keys()) {
        if (!files.contains(name)) {
            ASSERT_TRUE(QFile::remove(name));
        }
    }
    for (const QString &name : files.keys()) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(files[name]), files[name].size());
    }
    for (const QString &name : place.Uploads(u"ABC"_s))
        ASSERT_TRUE(QFile::remove(place.UploadPath(u"ABC"_s, name)));
}

/// The databases that the accounting side fills: all but the entries. Equal reference data gives
/// equal files.
QMap<QString, QByteArray> ReferenceFiles(const Installation &place)
{
    QMap<QString, QByteArray> files = place.LocalFiles();
    files.removeIf([](const auto &file) { return file.key().contains(u"Entries"_s); });
    return files;
}

std::string Names(const QMap<QString, QByteArray> &files)
{
    return QStringList(files.keys()).join(u'\n').toStdString();
}

int MillisecondsOfARun(const Installation &place)
{
    QElapsedTimer clock;
    clock.start();
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    return static_cast<int>(clock.elapsed());
}

TEST(KilledRun, AtAnyMomentLosesNoEntryAndDeliversNoneTwice)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, ManyEntries());
    const QStringList expected = LinesOf(ManyNumbers());
    const QMap<QString, QByteArray> before = place.LocalFiles();

    int wholeRun = MillisecondsOfARun(place);
    std::mt19937 random(20240501);
    std::uniform_int_distribution<int> inARow(1, MostKillsInARow);
    int kills = 0;
    int killsBetweenHandingOverAndTakingOut = 0;
    while (kills < KILLED_RUNS) {
        PutBack(place, before);
        std::uniform_int_distribution<int> moment(wholeRun / 10, wholeRun);
        const int rounds = kills == 0 ? MostKillsInARow : inARow(random);
        if (rounds == MostKillsInARow) { // a random kill seldom meets the moment that matters
            kills += KillWhen(place, [&] { return !place.Uploads(u"ABC"_s).isEmpty(); }) ? 1 : 0;
            killsBetweenHandingOverAndTakingOut += place.Entries(u"ABC"_s).empty() ? 0 : 1;
        }
        for (int i = 0; i < rounds; ++i) {
            kills += KillAfter(place, moment(random)) ? 1 : 0;
            if (!place.Uploads(u"ABC"_s).isEmpty() && !place.Entries(u"ABC"_s).empty())
                ++killsBetweenHandingOverAndTakingOut;
        }
        // The quickest run says how late a kill can come; the first one may have had to wait.
        wholeRun = std::min(wholeRun, MillisecondsOfARun(place));
        ASSERT_TRUE(place.Entries(u"ABC"_s).empty());
        ASSERT_TRUE(IsSettled(place.Note(u"ABC"_s)));
        ASSERT_TRUE(DeliveredLines(place) == expected) << "after " << kills << " kills";
        ASSERT_EQ(place.HiddenUploads(u"ABC"_s), QStringList());
        ASSERT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
        ASSERT_EQ(Names(place.LocalFiles()), Names(before));
    }
    RecordProperty("InTheMiddle", killsBetweenHandingOverAndTakingOut);
    EXPECT_GT(killsBetweenHandingOverAndTakingOut, 0) << "no kill met the moment that matters";
}

TEST(KilledRun, WhileANewCompanyIsMovedInLeavesNothingUnfinished)
{
    Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Choose(u"ABC"_s, u"1"_s);
    place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2)});
    const QStringList expected = LinesOf({1, 2});
    const QMap<QString, QByteArray> before = place.LocalFiles();
    place.AddCompany(u"NEW"_s);
    place.Replace(u"NEW/Options.csv"_s, "Ledger,0", "Ledger,1"); // is written while incomplete
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    ASSERT_EQ(place.Companies(), (QStringList{u"ABC"_s, u"NEW"_s}));
    const QMap<QString, QByteArray> reference = ReferenceFiles(place);

    int killsInTheMiddle = 0;
    constexpr int mostRounds = 20;
    for (int round = 0; round < mostRounds && killsInTheMiddle == 0; ++round) {
        for (const QStringView prefix : ReferencePrefixes) {
            const QString name
                = RecordStore::FileName(place.Open()->Main.CompanyName(u"NEW"_s, prefix));
            PutBack(place, before);
            if (!KillWhen(place, [&] { return QFile::exists(JoinPath(place.Program, name)); }))
                continue;
            const QStringList movedIn = QDir(place.Program).entryList({u"NEW*.db"_s}, QDir::Files);
            killsInTheMiddle += movedIn.size() < std::ssize(ReferencePrefixes) ? 1 : 0;
            const Outcome outcome = place.Synchronise();
            ASSERT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
            EXPECT_TRUE(ReferenceFiles(place) == reference) << qPrintable(name) << '\n'
                                                            << Names(ReferenceFiles(place));
            EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
            EXPECT_TRUE(DeliveredLines(place) == expected);
        }
    }
    RecordProperty("InTheMiddle", killsInTheMiddle);
    EXPECT_GT(killsInTheMiddle, 0) << "every kill came too late";
}

} // namespace

#include "exchange/EntryRows.h"
#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int EntryCount = 3000;
constexpr int KillsInAll = 200;
constexpr int MostKillsInARow = 6; // then a run comes to its end; a killed repair is met as well

std::vector<EntryRecord> ManyEntries()
{
    std::vector<EntryRecord> entries;
    for (int i = 0; i < EntryCount; ++i)
        entries.push_back(EntryNumber(i));
    return entries;
}

EntryLines LinesOf(const std::vector<EntryRecord> &entries)
{
    EntryLines lines;
    for (const EntryRecord &entry : entries)
        ++lines[EntryLine(entry)];
    return lines;
}

/// All entries in all upload files together.
EntryLines DeliveredLines(const Installation &place)
{
    EntryLines lines;
    for (const QString &name : place.Uploads(u"ABC"_s)) {
        for (const auto &[line, count] : ReadEntryLines(place.UploadPath(u"ABC"_s, name)))
            lines[line] += count;
    }
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

void PutBack(const Installation &place, const QMap<QString, QByteArray> &files)
{
    for (const QString &name : files.keys()) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(files[name]), files[name].size());
    }
    for (const QString &name : place.Uploads(u"ABC"_s))
        ASSERT_TRUE(QFile::remove(place.UploadPath(u"ABC"_s, name)));
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
    const EntryLines expected = LinesOf(ManyEntries());
    const QMap<QString, QByteArray> before = place.LocalFiles();

    int wholeRun = MillisecondsOfARun(place);
    std::mt19937 random(20240501);
    std::uniform_int_distribution<int> inARow(1, MostKillsInARow);
    int kills = 0;
    int killsBetweenHandingOverAndTakingOut = 0;
    while (kills < KillsInAll) {
        PutBack(place, before);
        std::uniform_int_distribution<int> moment(wholeRun / 10, wholeRun);
        const int rounds = inARow(random);
        for (int i = 0; i < rounds; ++i) {
            kills += KillAfter(place, moment(random)) ? 1 : 0;
            if (!place.Uploads(u"ABC"_s).isEmpty() && !place.Entries(u"ABC"_s).empty())
                ++killsBetweenHandingOverAndTakingOut;
        }
        // The quickest run says how late a kill can come; the first one may have had to wait.
        wholeRun = std::min(wholeRun, MillisecondsOfARun(place));
        ASSERT_TRUE(place.Entries(u"ABC"_s).empty());
        ASSERT_EQ(place.Note(u"ABC"_s), QString());
        ASSERT_TRUE(DeliveredLines(place) == expected) << "after " << kills << " kills";
        ASSERT_EQ(place.HiddenUploads(u"ABC"_s), QStringList());
        ASSERT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
        ASSERT_EQ(Names(place.LocalFiles()), Names(before));
    }
    RecordProperty("InTheMiddle", killsBetweenHandingOverAndTakingOut);
    EXPECT_GT(killsBetweenHandingOverAndTakingOut, 0) << "no kill met the moment that matters";
}

} // namespace

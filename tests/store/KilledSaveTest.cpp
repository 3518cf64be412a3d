#include "tests/store/SaveSteps.h"
#include "tests/store/StoreFixture.h"
#include "tests/support/Deadline.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// A program that saves without end, killed at a moment that nobody chose.
class KilledSave : public StoreFixture
{
protected:
    // In memory a save takes the time that its steps take, not the disk's: more of the kills then
    // meet it between two of them.
    KilledSave()
        : StoreFixture(InMemory())
    {
    }

    /// Runs the program until it has reported some times and a random moment more has passed, then
    /// kills it. The result is the number of reports.
    qsizetype RunAndKill(const QStringList &arguments)
    {
        QProcess program;
        program.start(QStringLiteral(SAVE_LOOP), arguments);
        const qsizetype wanted = static_cast<qsizetype>(m_random() % 30 + 1);
        QByteArray reports;
        while (reports.size() < wanted && program.waitForReadyRead(DeadlineMilliseconds))
            reports += program.readAllStandardOutput();
        EXPECT_GE(reports.size(), wanted) << program.readAllStandardError().toStdString();
        const auto moment = static_cast<qint64>(m_random() % 400000);
        QElapsedTimer timer;
        timer.start();
        while (timer.nsecsElapsed() < moment) { }
        program.kill();
        EXPECT_TRUE(program.waitForFinished(DeadlineMilliseconds));
        EXPECT_EQ(program.exitStatus(), QProcess::CrashExit)
            << program.readAllStandardError().toStdString();
        return (reports + program.readAllStandardOutput()).size();
    }

    std::vector<ThreeFields> Contents()
    {
        std::vector<ThreeFields> records;
        const Handle handle = Open(u"T"_s);
        for (Store.MoveFirst(handle); !Store.IsEndOfTable(handle); Store.MoveNext(handle))
            records.push_back(Read(handle));
        Store.CloseDatabase(handle);
        return records;
    }

    QString Integrity() { return OtherProgram(FileOf(u"T"_s)).Values(u"PRAGMA integrity_check"_s); }

    const unsigned m_start = std::random_device()();
    std::mt19937 m_random{m_start};
};

} // namespace

TEST_F(KilledSave, AgainAndAgainLosesNothingThatWasAcknowledged)
{
    Build(u"T"_s, {});
    std::vector<ThreeFields> before;
    int halfDone = 0; // a journal stayed behind: the kill met the middle of a save
    int inFlight = 0; // the save had happened and was not reported yet
    for (unsigned round = 0; round < KILLED_SAVES; ++round) {
        const unsigned start = m_start + round;
        const qsizetype reports = RunAndKill({u"save"_s, PathOf(u"T"_s), QString::number(start)});
        const QFileInfo journal(FileOf(u"T"_s) + u"-journal"_s);
        halfDone += journal.exists() && journal.size() > 0 ? 1 : 0;

        std::mt19937 random(start);
        std::vector<ThreeFields> expected = before;
        for (qsizetype i = 0; i < reports; ++i)
            Apply(NextSave(random, static_cast<qint32>(expected.size())), expected);
        std::vector<ThreeFields> oneMore = expected;
        Apply(NextSave(random, static_cast<qint32>(expected.size())), oneMore);

        const std::vector<ThreeFields> found = Contents();
        ASSERT_TRUE(found == expected || found == oneMore)
            << "round " << round << ", start " << start << ", " << reports << " reported, "
            << expected.size() << " records expected, " << found.size() << " found";
        ASSERT_EQ(Integrity(), u"ok"_s) << "round " << round << ", start " << start;
        inFlight += found == oneMore && found != expected ? 1 : 0;
        before = found;
    }
    // Otherwise the kills have missed what they were for.
    EXPECT_GT(halfDone, KILLED_SAVES / 50);
    RecordProperty("half_done", halfDone);
    RecordProperty("in_flight", inFlight);
}

TEST_F(KilledSave, ACreationIsWholeOrDoesNotExist)
{
    int without = 0;
    for (unsigned round = 0; round < KILLED_CREATIONS; ++round) {
        RunAndKill({u"create"_s, PathOf(u"T"_s)});
        if (!QFileInfo::exists(FileOf(u"T"_s))) {
            ++without;
            EXPECT_EQ(Open(u"T"_s), 0);
            Build(u"T"_s, {}); // what was left does not hinder
        }
        ASSERT_TRUE(Contents().empty()) << "round " << round;
        ASSERT_EQ(Integrity(), u"ok"_s) << "round " << round;
    }
    EXPECT_GT(without, 0);
    RecordProperty("without", without);
}

// The exchange client, to which something happens at every one of its calls to the disk: the call
// fails, the process ends, the power goes, a second program starts, the clock is wrong. The next
// synchronization always comes to its end, with every entry delivered once.

#include "exchange/Synchronisation.h"
#include "tests/exchange/Installation.h"
#include "tests/support/Deadline.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/Soak.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <random>

using namespace Qt::StringLiterals;

namespace {

const std::vector<int> FirstNumbers = {1, 2, 3};
const std::vector<int> SecondNumbers = {4, 5};

std::vector<EntryRecord> EntriesOf(const std::vector<int> &numbers)
{
    std::vector<EntryRecord> entries;
    for (const int number : numbers)
        entries.push_back(EntryNumber(number));
    return entries;
}

/// Two companies with entries and new reference data; the state is restored before each fault.
class ClientFailure : public testing::Test
{
protected:
    ClientFailure()
    {
        m_place.AddCompany(u"SEC"_s);
        EXPECT_EQ(m_place.Synchronise().ExitStatus, 0);
        m_place.Choose(u"SEC"_s, u"1"_s); // collects, and keeps its reference data
        m_place.PutEntries(u"ABC"_s, EntriesOf(FirstNumbers));
        m_place.PutEntries(u"SEC"_s, EntriesOf(SecondNumbers));
        m_place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
        EXPECT_TRUE(QFile::remove(QDir(m_place.Worklog).filePath(u"exchange.log"_s)));
        m_names = FileNames();
        Copy(m_place.Program, m_saved.filePath(u"program"_s));
        Copy(m_place.Worklog, m_saved.filePath(u"worklog"_s));
    }

    static void Copy(const QString &from, const QString &to)
    {
        namespace files = std::filesystem;
        files::remove_all(to.toStdString());
        files::copy(from.toStdString(), to.toStdString(), files::copy_options::recursive);
    }
    void Restore() const
    {
        Copy(m_saved.filePath(u"program"_s), m_place.Program);
        Copy(m_saved.filePath(u"worklog"_s), m_place.Worklog);
    }
    QStringList FileNames() const
    {
        return QDir(m_place.Program)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QString Argument() const { return QString(m_place.Program).replace(u' ', u'*'); }
    QStringList Delivered(const QString &company) const
    {
        QStringList lines;
        for (const QString &name : m_place.Uploads(company))
            lines.append(UploadedLines(m_place.UploadPath(company, name)));
        lines.sort();
        return lines;
    }

    /// Each database is whole, the old one or the new one.
    void ExpectWhole() const
    {
        EXPECT_EQ(m_place.Companies(), (QStringList{u"ABC"_s, u"SEC"_s}));
        const QStringList names = m_place.CustomerNames(u"ABC"_s);
        ASSERT_EQ(names.size(), 2);
        EXPECT_TRUE(names[0] == u"Acme"_s || names[0] == u"Renamed"_s) << names[0].toStdString();
        EXPECT_EQ(m_place.Options(u"SEC"_s).Sync_Option, u"1"_s);
    }
    void ExpectDelivered() const
    {
        for (const QString &company : {u"ABC"_s, u"SEC"_s}) {
            EXPECT_TRUE(m_place.Entries(company).empty()) << company.toStdString();
            EXPECT_TRUE(IsSettled(m_place.Note(company))) << company.toStdString();
            EXPECT_EQ(m_place.HiddenUploads(company), QStringList());
        }
        EXPECT_EQ(Delivered(u"ABC"_s), LinesOf(FirstNumbers));
        EXPECT_EQ(Delivered(u"SEC"_s), LinesOf(SecondNumbers));
        EXPECT_EQ(m_place.CustomerNames(u"ABC"_s).value(0), u"Renamed"_s);
    }
    /// What the user does after anything has happened: synchronizes again.
    void ExpectNextRunCompletes() const
    {
        ExpectWhole();
        EXPECT_EQ(Synchronise(m_place.Client(), Argument()), 0);
        ExpectDelivered();
        EXPECT_EQ(FileNames(), m_names);
    }

    static void ExpectReason(const std::string &errors)
    {
        const QString text = QString::fromStdString(errors);
        EXPECT_TRUE(text.startsWith(u"pvxwin32.exe: "_s)) << errors;
        EXPECT_FALSE(text.contains(u"unknown"_s, Qt::CaseInsensitive)) << errors;
        const bool saysWhy = text.contains(u"No space left"_s) || text.contains(u"is full"_s)
            || text.contains(u"Input/output error"_s) || text.contains(u"cannot be"_s)
            || text.contains(u"disk I/O error"_s);
        EXPECT_TRUE(saysWhy) << errors;
    }

    /// One run with the n-th call failing; false when there was no such call.
    bool RunFailing(int call, DiskFault fault, FaultLasts lasts)
    {
        Restore();
        bool failed = false;
        QByteArray where;
        {
            FaultyDisk disk(QStringList{m_place.Program, m_place.Worklog});
            disk.FailAt(call, fault, lasts);
            testing::internal::CaptureStderr();
            const int status = Synchronise(m_place.Client(), Argument());
            const std::string errors = testing::internal::GetCapturedStderr();
            disk.Repair();
            failed = disk.HasFailed();
            where = disk.FailedCall();
            SCOPED_TRACE("call " + std::to_string(call) + ": " + where.toStdString());
            EXPECT_TRUE(status == 0 || failed);
            if (status != 0)
                ExpectReason(errors);
            else if (lasts == FaultLasts::Once)
                ExpectDelivered();
        }
        SCOPED_TRACE("afterwards, call " + std::to_string(call) + ": " + where.toStdString());
        ExpectNextRunCompletes();
        return failed;
    }
    int RunAllFailing(DiskFault fault)
    {
        int runs = 0;
        for (const FaultLasts lasts : {FaultLasts::Once, FaultLasts::ForGood}) {
            for (int call = 1; RunFailing(call, fault, lasts) && !HasFailure(); call += Stride())
                ++runs;
        }
        return runs;
    }

    bool RunWithPowerLoss(int call, std::mt19937 *random)
    {
        Restore();
        FaultyDisk disk(QStringList{m_place.Program, m_place.Worklog});
        disk.FailAt(call, DiskFault::PowerLoss);
        testing::internal::CaptureStderr();
        const int status = Synchronise(m_place.Client(), Argument());
        testing::internal::GetCapturedStderr();
        const bool failed = disk.HasFailed();
        SCOPED_TRACE("call " + std::to_string(call) + ": " + disk.FailedCall().toStdString());
        disk.LosePower(random);
        if (status == 0 && !failed)
            ExpectDelivered();
        ExpectNextRunCompletes();
        return failed;
    }

    /// The client as a process of its own.
    std::unique_ptr<QProcess> StartFaulted(const QString &fault, int call) const
    {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral(FAULTED_CLIENT),
            {m_place.Client(), Argument(), fault, QString::number(call)});
        return process;
    }
    bool RunEnded(const QString &fault, int call)
    {
        Restore();
        const auto process = StartFaulted(fault, call);
        EXPECT_TRUE(process->waitForFinished(DeadlineMilliseconds));
        const bool ended = process->exitStatus() == QProcess::CrashExit;
        EXPECT_TRUE(ended || process->exitCode() == 0)
            << process->readAllStandardError().toStdString();
        SCOPED_TRACE(fault.toStdString() + " at call " + std::to_string(call));
        ExpectNextRunCompletes();
        return ended;
    }

    static int Stride() { return Rounds(17, 1); }

    Installation m_place;
    QTemporaryDir m_saved;
    QStringList m_names; // of the program folder's files
};

} // namespace

TEST_F(ClientFailure, OfAFullDiskOnEitherSideLosesNothingAndIsReported)
{
    const int runs = RunAllFailing(DiskFault::Full);
    EXPECT_GT(runs, 10);
    TellCount("client, full disk", runs);
}

TEST_F(ClientFailure, OfAFailingDiskOnEitherSideLosesNothingAndIsReported)
{
    const int runs = RunAllFailing(DiskFault::InputOutput);
    EXPECT_GT(runs, 10);
    TellCount("client, failing disk", runs);
}

TEST_F(ClientFailure, ToDeleteAFileThatIsGoneAllTheSameLosesNothing)
{
    int runs = 0;
    for (int call = 1;
         RunFailing(call, DiskFault::DeletedAnyway, FaultLasts::Once) && !HasFailure();
         call += Rounds(4, 1))
        ++runs;
    EXPECT_GT(runs, 1);
    TellCount("client, deleted anyway", runs);
}

TEST_F(ClientFailure, OfThePowerLosesAndDoublesNothing)
{
    int runs = 0;
    const int mixtures = Rounds(1, 5);
    bool failed = true;
    for (int call = 1; failed && !HasFailure(); call += Stride()) {
        failed = RunWithPowerLoss(call, nullptr);
        for (int mixture = 0; mixture < mixtures; ++mixture) {
            std::mt19937 random(static_cast<unsigned>(call * 1000 + mixture));
            RunWithPowerLoss(call, &random);
        }
        runs += 1 + mixtures;
    }
    EXPECT_GT(runs, 10);
    TellCount("client, power lost", runs);
}

TEST_F(ClientFailure, OfTheProcessLosesAndDoublesNothing)
{
    int runs = 0;
    for (int call = 1; RunEnded(u"kill"_s, call) && !HasFailure(); call += Stride())
        ++runs;
    EXPECT_GT(runs, 10);
    TellCount("client, killed", runs);
}

TEST_F(ClientFailure, ByTheEndOfTheSessionLosesAndDoublesNothing)
{
    int runs = 0;
    for (int call = 1; RunEnded(u"terminate"_s, call) && !HasFailure(); call += Stride())
        ++runs;
    EXPECT_GT(runs, 10);
    TellCount("client, session ended", runs);
}

TEST_F(ClientFailure, OfTheClockLosesAndDoublesNothing)
{
    constexpr qint64 day = 24 * 60 * 60;
    const std::vector<qint64> jumps = {0, -30 * day, 3650 * day, -3650 * day, 1, -1, 0};
    Restore();
    int number = 10;
    std::vector<int> numbers = FirstNumbers;
    for (const qint64 ahead : jumps) {
        SCOPED_TRACE(ahead);
        const auto process = StartFaulted(u"clock"_s, static_cast<int>(ahead));
        ASSERT_TRUE(process->waitForFinished(DeadlineMilliseconds));
        ASSERT_EQ(process->exitCode(), 0) << process->readAllStandardError().toStdString();
        EXPECT_TRUE(m_place.Entries(u"ABC"_s).empty());
        EXPECT_EQ(Delivered(u"ABC"_s), LinesOf(numbers));
        numbers.push_back(++number);
        m_place.PutEntries(u"ABC"_s, EntriesOf({number}));
    }
    EXPECT_EQ(m_place.Uploads(u"ABC"_s).size(), std::ssize(jumps));
    TellCount("client, clock jumps", std::ssize(jumps));
}

TEST(Clients, OfManyComputersAtOneRootDeliverEveryEntryOnce)
{
    const int computers = Rounds(6, 50);
    constexpr int entriesOfEach = 120;
    Installation place;
    const QTemporaryDir folders{SampleFolderTemplate()};
    const auto use = [&](int computer) {
        place.Program = folders.filePath(QString::number(computer));
        QDir().mkpath(place.Program);
    };
    std::vector<int> all;
    for (int computer = 0; computer < computers; ++computer) {
        use(computer);
        ASSERT_EQ(place.Synchronise().ExitStatus, 0);
        std::vector<int> numbers(entriesOfEach);
        std::iota(numbers.begin(), numbers.end(), computer * entriesOfEach);
        place.PutEntries(u"ABC"_s, EntriesOf(numbers));
        all.insert(all.end(), numbers.begin(), numbers.end());
    }
    std::vector<std::unique_ptr<QProcess>> clients;
    for (int computer = 0; computer < computers; ++computer) {
        use(computer);
        clients.push_back(place.Start());
    }
    for (const auto &client : clients) {
        EXPECT_TRUE(client->waitForFinished(DeadlineMilliseconds));
        EXPECT_EQ(client->exitCode(), 0) << client->readAllStandardError().toStdString();
    }
    for (int computer = 0; computer < computers; ++computer) {
        use(computer);
        EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
    }
    QStringList delivered;
    for (const QString &name : place.Uploads(u"ABC"_s))
        delivered.append(UploadedLines(place.UploadPath(u"ABC"_s, name)));
    delivered.sort();
    EXPECT_TRUE(delivered == LinesOf(all));
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), computers);
    TellCount("clients at one root at once", computers);
    TellCount("entries delivered by them, each once", delivered.size());
}

/// A program over the folder, whose client something happens to.
class ProgramAndClient : public ClientFailure
{
protected:
    /// The program starts the faulted client in the place of the real one.
    void UseFaulted(const QString &fault, int call)
    {
        Restore();
        const QString root = m_place.Root;
        QDir(root).mkpath(u"soa"_s);
        Write(root + u"/soa/startup.m4p"_s, {});
        Write(m_place.Program + u"/mas90.ini"_s, (root + u"\n-ARG X\n"_s).toUtf8());
        const QString client = m_place.Client();
        QFile::remove(client);
        Write(client,
            u"#!/bin/sh\nfor last; do :; done\nexec '%1' '%2' \"$last\" %3 %4\n"_s
                .arg(QStringLiteral(FAULTED_CLIENT), client, fault, QString::number(call))
                .toUtf8());
        QFile::setPermissions(client, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    static void Write(const QString &name, const QByteArray &contents)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        ASSERT_EQ(file.write(contents), contents.size());
    }
    std::unique_ptr<QProcess> StartProgram(const QStringList &more = {}) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::MergedChannels);
        process->start(QStringLiteral(SYNCHRONIZING_PROGRAM), QStringList{m_place.Program} + more);
        return process;
    }
    /// Starts the program until a client that is at work keeps it away no longer.
    void ExpectSecondStartCompletes()
    {
        UseFaultedAgain();
        QByteArray report;
        const auto done = [&] {
            const auto process = StartProgram();
            process->waitForFinished(DeadlineMilliseconds);
            report = process->readAll();
            return process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
        };
        QElapsedTimer clock;
        clock.start();
        while (!done() && clock.elapsed() < DeadlineMilliseconds) { }
        SCOPED_TRACE(report.toStdString());
        ExpectDelivered();
    }
    /// From now on nothing happens to the client; everything else stays as it is.
    void UseFaultedAgain()
    {
        QFile file(m_place.Client());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QByteArray script = file.readAll();
        file.close();
        script = script.left(script.lastIndexOf(' ')) + " 0\n";
        Write(m_place.Client(), script.replace("kill-both", "kill"));
    }
};

TEST_F(ProgramAndClient, KilledTogetherAtAnyMomentLoseAndDoubleNothing)
{
    int runs = 0;
    bool killed = true;
    for (int call = 1; killed && !HasFailure(); call += Stride()) {
        UseFaulted(u"kill-both"_s, call);
        const auto process = StartProgram();
        ASSERT_TRUE(process->waitForFinished(DeadlineMilliseconds));
        killed = process->exitStatus() == QProcess::CrashExit;
        SCOPED_TRACE("killed at call " + std::to_string(call));
        if (!killed) {
            EXPECT_EQ(process->exitCode(), 0) << process->readAll().toStdString();
            ExpectDelivered();
            break;
        }
        ExpectSecondStartCompletes();
        ++runs;
    }
    EXPECT_GT(runs, 10);
    TellCount("program and client killed together", runs);
}

TEST_F(ProgramAndClient, OfWhichTheProgramIsEndedAtAnyMomentLoseAndDoubleNothing)
{
    int runs = 0;
    bool killed = true;
    for (int call = 1; killed && !HasFailure(); call += Rounds(9, 1)) {
        UseFaulted(u"kill"_s, 0);
        const QString fault = runs % 2 == 0 ? u"kill"_s : u"terminate"_s;
        const auto process = StartProgram({fault, QString::number(call)});
        ASSERT_TRUE(process->waitForFinished(DeadlineMilliseconds));
        killed = process->exitStatus() == QProcess::CrashExit;
        SCOPED_TRACE("killed at call " + std::to_string(call));
        ExpectSecondStartCompletes();
        ++runs;
    }
    EXPECT_GT(runs, 5);
    TellCount("program killed, or asked to end, around a synchronization", runs);
}

TEST_F(ProgramAndClient, RefuseASecondStartAtEveryMoment)
{
    int runs = 0;
    for (int call = 1; !HasFailure(); call += Stride() * Rounds(2, 1)) {
        UseFaulted(u"pause"_s, call);
        const QTemporaryDir pauses;
        qputenv("WORKLOG_PAUSES", pauses.path().toUtf8());
        const auto first = StartProgram();
        while (!QFile::exists(pauses.filePath(u"paused"_s)) && !first->waitForFinished(1)) { }
        if (first->state() == QProcess::NotRunning)
            break; // its client has come to its end
        SCOPED_TRACE("second start at call " + std::to_string(call));
        QProcess second;
        second.start(QStringLiteral(STARTED_PROGRAM), {m_place.Program});
        second.closeWriteChannel();
        EXPECT_TRUE(second.waitForFinished(DeadlineMilliseconds));
        EXPECT_EQ(second.readAllStandardOutput().trimmed(),
            "Error 70; Worklog Remote is already running.");
        Write(pauses.filePath(u"go"_s), {});
        EXPECT_TRUE(first->waitForFinished(DeadlineMilliseconds));
        EXPECT_EQ(first->exitCode(), 0) << first->readAll().toStdString();
        ExpectDelivered();
        ++runs;
    }
    EXPECT_GT(runs, 5);
    TellCount("second starts during a synchronization", runs);
}

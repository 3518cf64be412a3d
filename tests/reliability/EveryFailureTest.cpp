// Every call that changes something on the disk fails once, at every point of everything that
// writes: full disk, failing disk, killed process, power lost.

#include "store/StoreErrors.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/Deadline.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/Soak.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

enum class Step
{
    SaveNew,
    SaveChanged,
    Delete,
    StartUp,
    CreateGlobalOptions,
    CreateEntries,
    LastCompany,
    EntriesExist,
    Options,
    HoursSummary,
    DeleteDatabases
};

const Operation &Of(Step step)
{
    return Operations.at(static_cast<size_t>(step));
}

EntryRecord TypedEntry()
{
    EntryRecord entry = SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9),
        Currency::FromWhole(2), Currency::FromWhole(90), u"typed with care"_s);
    entry.Billing_Option = u"6"_s;
    entry.Mgmt_Approval = entry.Sec_Approval = QString();
    return entry;
}

void PrintTo(Step step, std::ostream *out)
{
    *out << Of(step).Name;
}

bool ChangesEntries(Step step)
{
    return step == Step::SaveNew || step == Step::SaveChanged || step == Step::Delete;
}

bool IsStartUp(Step step)
{
    return step == Step::StartUp || step == Step::CreateGlobalOptions
        || step == Step::CreateEntries;
}

class EveryFailure : public testing::TestWithParam<Step>
{
protected:
    static void SetUpTestSuite()
    {
        s_original = std::make_unique<QTemporaryDir>(SampleFolderTemplate());
        ProgramOnDisk::MakeFolder(s_original->path());
    }
    static void TearDownTestSuite() { s_original.reset(); }

    QString Folder() const { return m_place.filePath(u"program"_s); }
    void NewFolder() const
    {
        ProgramOnDisk::CopyFolder(s_original->path(), Folder());
        PrepareFolder(Of(GetParam()), Folder());
    }
    /// The program, up to the moment before the operation.
    std::unique_ptr<ProgramOnDisk> Prepared() const
    {
        auto program = std::make_unique<ProgramOnDisk>(Folder());
        if (Of(GetParam()).Prepare != nullptr) {
            program->StartUp();
            Of(GetParam()).Prepare(*program);
        }
        EXPECT_THAT(program->Messages.Texts(), IsEmpty());
        return program;
    }

    static std::vector<EntryRecord> Before()
    {
        if (GetParam() == Step::CreateEntries)
            return {};
        return ProgramOnDisk::MadeEntries();
    }
    std::vector<EntryRecord> After() const
    {
        std::vector<EntryRecord> entries = Before();
        if (GetParam() == Step::SaveNew)
            entries.push_back(m_typed);
        if (GetParam() == Step::SaveChanged)
            entries[0].Description = u"typed with care"_s;
        if (GetParam() == Step::Delete)
            entries.erase(entries.begin());
        if (GetParam() == Step::DeleteDatabases)
            entries.clear();
        return entries;
    }

    void ExpectClear(const QString &message) const
    {
        const bool namesFile = message.contains(Folder());
        const bool saysWhy = message.contains(u"The disk is full"_s)
            || message.contains(u"cannot be opened"_s) || message.contains(u"cannot be used"_s)
            || message.contains(u"cannot be deleted"_s) || message.contains(u"cannot be removed"_s)
            || message.contains(u"No space left"_s) || message.contains(u"Input/output error"_s);
        const bool isWhole
            = message == u"Unable to determine if entries exist. Sync unsuccessful."_s
            || message == u"Failed to delete databases."_s
            || message == u"Please perform a synchronization first."_s;
        EXPECT_TRUE((namesFile && saysWhy) || isWhole) << message.toStdString();
    }

    void ExpectSound() const
    {
        for (const QString &name : QDir(Folder()).entryList({u"*.db"_s})) {
            if (name.contains(u"HoursSummary"_s))
                continue; // a scratch table
            sqlite3 *database = nullptr;
            ASSERT_EQ(
                sqlite3_open((Folder() + u'/' + name).toUtf8().constData(), &database), SQLITE_OK);
            const auto row = [](void *result, int, char **values, char **) {
                *static_cast<QByteArray *>(result) += values[0];
                return 0;
            };
            QByteArray result;
            sqlite3_exec(database, "PRAGMA integrity_check", row, &result, nullptr);
            sqlite3_close(database);
            EXPECT_EQ(result, "ok") << name.toStdString();
        }
    }

    /// A new start finds everything as it was told.
    void ExpectUsable(const std::vector<EntryRecord> &entries) const
    {
        EXPECT_EQ(StoredEntries(Folder()), entries);
        ExpectSound();
        ProgramOnDisk program(Folder());
        program.StartUp();
        ASSERT_NE(program.Window(), nullptr) << program.Failures().join(u'|').toStdString();
        if (GetParam() != Step::DeleteDatabases) {
            EXPECT_THAT(program.Failures(), IsEmpty());
        }
    }

    void CheckEntries(ProgramOnDisk &program) const
    {
        if (program.Failures().isEmpty()) {
            EXPECT_EQ(StoredEntries(Folder()), After());
            return;
        }
        ASSERT_EQ(program.Failures().size(), 1);
        EXPECT_TRUE(program.Failures()[0].contains(u"ABCEntries-WkLg.db"_s));
        EXPECT_EQ(StoredEntries(Folder()), Before());
        EXPECT_TRUE(program.Text("txtDescription")
                        .endsWith(GetParam() == Step::Delete ? u"first"_s : u"typed with care"_s));
        EXPECT_EQ(program.Text("txtHours"), u"2.00"_s);
        // And what was typed is not lost: the same button does it now.
        Of(GetParam()).Run(program);
        EXPECT_EQ(program.Failures().size(), 1);
        EXPECT_EQ(StoredEntries(Folder()), After());
    }

    void CheckOthers(const ProgramOnDisk &program) const
    {
        const bool failed = !program.Failures().isEmpty();
        // A failure after the window has been shown leaves it, with nothing in it.
        if (IsStartUp(GetParam())) {
            EXPECT_NE(program.HasEnded, program.Window() != nullptr);
            EXPECT_TRUE(failed || !program.HasEnded);
        }
        if (GetParam() == Step::LastCompany) {
            EXPECT_TRUE(program.HasEnded);
            EXPECT_EQ(StoredGlobalOptions(Folder()).Last_Company, failed ? u"ABC"_s : u"XYZ"_s);
        }
        if (GetParam() == Step::EntriesExist && !program.Process.Programs.isEmpty()) {
            EXPECT_EQ(StoredGlobalOptions(Folder()).Entries_Exist, u"Y"_s);
        }
        if (GetParam() == Step::Options) {
            EXPECT_EQ(StoredSyncOption(Folder()), failed ? u"3"_s : u"1"_s);
        }
        if (GetParam() == Step::HoursSummary) {
            EXPECT_EQ(program.DialogRows.contains(u"|4.00|"_s), !failed)
                << program.DialogRows.toStdString();
        }
    }

    /// One run with the n-th call failing; false when there was no such call.
    bool RunFailing(int call, DiskFault fault, FaultLasts lasts)
    {
        NewFolder();
        FaultyDisk disk(Folder());
        std::vector<EntryRecord> entries = Before();
        bool hasFailed = false;
        {
            const auto program = Prepared();
            disk.FailAt(call, fault, lasts);
            Of(GetParam()).Run(*program);
            disk.Repair();
            hasFailed = disk.HasFailed();
            SCOPED_TRACE("call " + std::to_string(call) + ": " + disk.FailedCall().toStdString());
            for (const QString &message : program->Failures())
                ExpectClear(message);
            if (ChangesEntries(GetParam()))
                CheckEntries(*program);
            else
                CheckOthers(*program);
            if (GetParam() == Step::DeleteDatabases || ChangesEntries(GetParam()))
                entries = StoredEntries(Folder());
        }
        SCOPED_TRACE(
            "afterwards, call " + std::to_string(call) + ": " + disk.FailedCall().toStdString());
        ExpectUsable(entries);
        return hasFailed;
    }

    int RunAll(DiskFault fault, FaultLasts lasts)
    {
        int runs = 0;
        for (int call = 1; RunFailing(call, fault, lasts) && !HasFailure(); call += Stride())
            ++runs;
        return runs;
    }

    /// The short form looks at each call of what changes entries, and at some of all others.
    static int Stride() { return ChangesEntries(GetParam()) ? 1 : Rounds(4, 1); }

    /// The power goes at the n-th call; false when it went after the last one.
    bool RunWithPowerLoss(int call, std::mt19937 *random)
    {
        NewFolder();
        FaultyDisk disk(Folder());
        bool acknowledged = false;
        {
            const auto program = Prepared();
            disk.FailAt(call, DiskFault::PowerLoss);
            Of(GetParam()).Run(*program);
            acknowledged = program->Failures().isEmpty();
        }
        const bool hasFailed = disk.HasFailed();
        disk.LosePower(random);
        SCOPED_TRACE("call " + std::to_string(call) + ": " + disk.FailedCall().toStdString());
        const std::vector<EntryRecord> found = StoredEntries(Folder());
        if (ChangesEntries(GetParam()) && acknowledged) {
            EXPECT_EQ(found, After());
        } else if (found != Before()) {
            EXPECT_EQ(found, After());
        }
        if (GetParam() == Step::Options) {
            EXPECT_TRUE(StoredSyncOption(Folder()) == u"1"_s || (!acknowledged && hasFailed));
        }
        ExpectUsable(found);
        return hasFailed;
    }

    /// Runs the operation in a process of its own, which is killed at the n-th call; false when it
    /// came to its end.
    bool RunKilled(int call) const
    {
        NewFolder();
        QProcess process;
        process.start(QStringLiteral(KILLED_OPERATION),
            {Folder(), QString::fromLatin1(Of(GetParam()).Name), QString::number(call)});
        EXPECT_TRUE(process.waitForFinished(DeadlineMilliseconds));
        const bool killed = process.exitStatus() == QProcess::CrashExit;
        EXPECT_TRUE(killed || process.exitCode() == 0)
            << process.readAllStandardError().toStdString();
        SCOPED_TRACE("killed at call " + std::to_string(call));
        const std::vector<EntryRecord> found = StoredEntries(Folder());
        if (!killed || found != Before()) {
            EXPECT_EQ(found, After());
        }
        ExpectUsable(found);
        return killed;
    }

    static void Count(const char *how, int calls)
    {
        TellCount(std::string(Of(GetParam()).Name) + ", " + how, calls);
    }

    EntryRecord m_typed = TypedEntry();

private:
    static std::unique_ptr<QTemporaryDir> s_original;
    QTemporaryDir m_place{SampleFolderTemplate()};
};

std::unique_ptr<QTemporaryDir> EveryFailure::s_original;

std::string NameOf(const testing::TestParamInfo<Step> &info)
{
    std::string name = Of(info.param).Name;
    std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
    return name;
}

} // namespace

TEST_P(EveryFailure, OfAFullDiskLosesNothingAndIsTold)
{
    const int once = RunAll(DiskFault::Full, FaultLasts::Once);
    const int forGood = RunAll(DiskFault::Full, FaultLasts::ForGood);
    EXPECT_GT(once + forGood, 3); // a start makes its locks
    Count("full disk", once + forGood);
}

TEST_P(EveryFailure, OfAFailingDiskLosesNothingAndIsTold)
{
    const int once = RunAll(DiskFault::InputOutput, FaultLasts::Once);
    const int forGood = RunAll(DiskFault::InputOutput, FaultLasts::ForGood);
    EXPECT_GT(once + forGood, 4);
    Count("failing disk", once + forGood);
}

TEST_P(EveryFailure, ToDeleteAFileThatIsGoneAllTheSameIsSeenThrough)
{
    const int once = RunAll(DiskFault::DeletedAnyway, FaultLasts::Once);
    const int forGood = RunAll(DiskFault::DeletedAnyway, FaultLasts::ForGood);
    EXPECT_GT(once + forGood, 0); // of journals and locks
    Count("deleted anyway", once + forGood);
}

TEST_P(EveryFailure, OfThePowerLeavesEveryAcknowledgedEntry)
{
    int runs = 0;
    const int mixtures = Rounds(1, 20);
    bool hasFailed = true;
    for (int call = 1; hasFailed && !HasFailure(); call += Stride()) {
        hasFailed = RunWithPowerLoss(call, nullptr);
        for (int mixture = 0; mixture < mixtures; ++mixture) {
            std::mt19937 random(static_cast<unsigned>(call * 1000 + mixture));
            RunWithPowerLoss(call, &random);
        }
        runs += 1 + mixtures;
    }
    EXPECT_GT(runs, 4);
    Count("power lost", runs);
}

TEST_P(EveryFailure, OfTheProcessLeavesEveryAcknowledgedEntry)
{
    int kills = 0;
    for (int call = 1; RunKilled(call) && !HasFailure(); call += Stride())
        ++kills;
    EXPECT_GT(kills, 2);
    Count("killed", kills);
}

TEST(Disk, IsWaitedForFiveTimesAtMostToSaveANewEntry)
{
    const QTemporaryDir place{SampleFolderTemplate()};
    const QString folder = place.path();
    ProgramOnDisk::MakeFolder(folder);
    FaultyDisk disk(folder);
    ProgramOnDisk program(folder);
    program.StartUp();
    Of(Step::SaveNew).Prepare(program);
    disk.FailAt(0, DiskFault::InputOutput);
    Of(Step::SaveNew).Run(program);
    EXPECT_THAT(program.Failures(), IsEmpty());
    EXPECT_EQ(StoredEntries(folder).size(), 3U);
    EXPECT_LE(disk.Flushes(), 5);
    // Of a journal its contents and its name, the database, and that the journal is gone.
    EXPECT_GE(disk.Flushes(), 4);
    TellCount("flushes of a save", disk.Flushes());
}

INSTANTIATE_TEST_SUITE_P(All, EveryFailure,
    testing::Values(Step::SaveNew, Step::SaveChanged, Step::Delete, Step::StartUp,
        Step::CreateGlobalOptions, Step::CreateEntries, Step::LastCompany, Step::EntriesExist,
        Step::Options, Step::HoursSummary, Step::DeleteDatabases),
    NameOf);
